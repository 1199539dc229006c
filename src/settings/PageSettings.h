#pragma once

#include <QList>
#include <QPair>
#include <QString>

// How one page of a list is shown when the list runs: for how long, at what zoom, whether its
// window is loaded again while it stays loaded, whether it scrolls, and whether the run passes it
// by for now. A page without any of these is shown exactly as the run's own choices say.
struct PageSettings
{
    enum class Reload
    {
        AsTheRun,     // as "Reload a kept page every" says for the whole program
        EveryMinutes, // every `reloadMinutes` while the page stays loaded
        EachShow,     // every time the run comes to it
        Never,
    };
    enum class Scroll
    {
        None,
        Slowly, // down over the time it is shown, back at the top when it comes again
        ToTarget, // to `scrollTarget`: an anchor ("#prices") or a CSS selector
    };

    static constexpr int kMinSeconds = 5;
    static constexpr int kMaxSeconds = 24 * 60 * 60;
    static constexpr int kMinZoom = 25;
    static constexpr int kMaxZoom = 500;
    static constexpr int kFitWidth = -1; // the page's width fitted to the window's
    static constexpr int kMaxReloadMinutes = 24 * 60;
    static constexpr int kMaxTargetLength = 500;

    int seconds = 0; // 0: the run's interval
    int zoom = 0;    // percent; 0: as the page comes; kFitWidth
    Reload reload = Reload::AsTheRun;
    int reloadMinutes = 0;
    Scroll scroll = Scroll::None;
    QString scrollTarget;
    bool skip = false;

    bool operator==(const PageSettings&) const = default;

    // Nothing set: the page is shown as the run's choices say.
    bool isEmpty() const { return *this == PageSettings(); }
    // The same with every value in its range, and what does not stand alone dropped (a target
    // without its scroll, minutes without their reload).
    PageSettings bounded() const;

    // One line for a tool tip: "10 s, zoom 150 %, reloaded every 5 min, scrolls slowly".
    QString summary() const;

    // The settings as named values, the names written in lower case: "seconds", "zoom" ("150" or
    // "fit"), "reload" ("each", "never" or minutes), "scroll" ("slowly"), "scrollto" (the target),
    // "skip" ("1").
    // Only what is set is given; fromValues() reads them back, leaving out what it cannot read.
    QList<QPair<QString, QString>> values() const;
    static PageSettings fromValues(const QList<QPair<QString, QString>>& values);
};
