#pragma once

#include <QString>

#include <optional>

// Every frame of a page reports, from a script of the program's own (in a world of its own that
// the page cannot reach), when its document is created and when its load event fires. The reports
// travel as console messages that carry a secret made at start, so a page cannot forge one.
namespace FrameReport {

struct Report
{
    enum Kind { Created, Loaded };
    Kind kind = Created;
    bool topFrame = false;
    QString url;
    QString title; // the top frame's document title, "" for sub-frames and untitled pages
};

// A fresh random secret.
QString makeToken();

// The script injected into every frame.
QString scriptSource(const QString& token);

// A console message read back as a report; none when it is an ordinary message of the page.
std::optional<Report> parse(const QString& message, const QString& token);

} // namespace FrameReport
