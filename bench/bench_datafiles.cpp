// Load and save of full data files (10001 history records, 1001 list records), set against a plain
// std::ifstream / std::ofstream line loop over the same bytes in the same run.
#include "BenchSupport.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <fstream>
#include <string>

namespace {

constexpr int kRuns = 21;

void fillRecords(QList<QString>& first, QList<QString>& title, QList<QString>& url, int count,
                 const char* group)
{
    for (int i = 0; i < count; ++i) {
        first[i] = QString::fromLatin1(group).arg(i % 8 + 1);
        title[i] = QStringLiteral("A page title, number %1 - Some Site").arg(i);
        url[i] =
            QStringLiteral("https://www.example.org/section/%1/page.html?id=%2&ref=bench").arg(i % 97).arg(i);
    }
}

size_t plainRead(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::string line;
    size_t total = 0;
    while (std::getline(in, line))
        total += line.size();
    return total;
}

void plainWrite(const std::string& path, const std::vector<std::string>& lines)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    for (const std::string& line : lines)
        out << line << "\r\n";
}

std::vector<std::string> linesOf(const std::string& path)
{
    std::vector<std::string> lines;
    std::ifstream in(path, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

void benchFile(const char* name, const QString& path, const std::function<void()>& load,
               const std::function<void()>& save, const std::function<void()>& emptyArrays)
{
    const std::string native = path.toStdString();
    const std::string copy = native + ".plain";
    const std::vector<std::string> lines = linesOf(native);
    volatile size_t sink = 0;

    const double loadMs = medianMs(kRuns, load, emptyArrays);
    const double plainReadMs = medianMs(kRuns, [&] { sink = sink + plainRead(native); });
    const double saveMs = medianMs(kRuns, save);
    const double plainWriteMs = medianMs(kRuns, [&] { plainWrite(copy, lines); });

    std::printf("%s: %zu lines\n", name, lines.size());
    report("  load", loadMs, "plain ifstream read", plainReadMs, 3.0);
    report("  save (atomic, synced)", saveMs, "plain ofstream write", plainWriteMs, 3.0);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    Globals& g = globals();
    g.AppPath = dir.path();

    fillRecords(g.ListName, g.ListTitle, g.ListUrl, kListCapacity, "List %1");
    fillRecords(g.HistGroup, g.HistTitle, g.HistUrl, kHistoryCapacity, "Internet Explorer %1");
    if (!SaveListFile(kListCapacity) || !SaveHistoryFile(kHistoryCapacity))
        return 1;

    const QString listPath = appFilePath(QString::fromLatin1(kListFileName));
    const QString historyPath = appFilePath(QString::fromLatin1(kHistoryFileName));
    // Loads are measured as at start-up, into empty arrays.
    const auto emptyArrays = [] { ClearListsAndHistory(); };
    benchFile(
        "DefaultList.NLS", listPath, [&] { LoadListFile(listPath); }, [&] { SaveListFile(kListCapacity); },
        emptyArrays);
    benchFile(
        "BrowseHistory.LST", historyPath, [&] { LoadHistoryFile(historyPath); },
        [&] { SaveHistoryFile(kHistoryCapacity); }, emptyArrays);
    return g.ListCount == kListCapacity && g.HistoryCount == kHistoryCapacity ? 0 : 1;
}
