#include "FrameReport.h"

#include "core/PageText.h"

#include <QRandomGenerator>
#include <QStringList>

namespace FrameReport {

namespace {
const QChar kSeparator(0x1F); // the unit separator never occurs in an address or a title
}

QString makeToken()
{
    QString token = QStringLiteral("vantrel-");
    for (int i = 0; i < 4; ++i)
        token += QString::number(QRandomGenerator::system()->generate(), 16).rightJustified(8, u'0');
    return token;
}

QString scriptSource(const QString& token)
{
    // Only the engine's own load event counts, once per document: a page can dispatch a "load" of
    // its own (isTrusted false) as often as it likes. Titles and addresses are cut here already,
    // so that a page's enormous title does not even travel.
    return QStringLiteral(R"JS((function () {
    var token = '%1';
    var limit = %2;
    var top = window === window.top;
    var loaded = false;
    function text(s) { return String(s).slice(0, limit).replace(/\u001f/g, ' '); }
    function report(kind) {
        console.log([token, kind, top ? '1' : '0', text(location.href), top ? text(document.title) : ''].join('\u001f'));
    }
    report('c');
    window.addEventListener('load', function (event) {
        if (!event.isTrusted || loaded)
            return;
        loaded = true;
        report('l');
    });
})();)JS")
        .arg(token)
        .arg(kMaxPageTextLength);
}

std::optional<Report> parse(const QString& message, const QString& token)
{
    if (!message.startsWith(token))
        return std::nullopt;
    const QStringList parts = message.split(kSeparator);
    if (parts.size() != 5 || parts[0] != token || (parts[1] != u"c" && parts[1] != u"l"))
        return std::nullopt;
    Report report;
    report.kind = parts[1] == u"c" ? Report::Created : Report::Loaded;
    report.topFrame = parts[2] == u"1";
    report.url = parts[3];
    report.title = parts[4];
    return report;
}

} // namespace FrameReport
