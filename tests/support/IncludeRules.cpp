#include "IncludeRules.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <functional>

namespace IncludeRules {

namespace {

QString folderOf(const QString& file)
{
    const qsizetype slash = file.indexOf(u'/');
    return slash < 0 ? QStringLiteral(".") : file.left(slash);
}

QString unitOf(const QString& file)
{
    const qsizetype dot = file.lastIndexOf(u'.');
    return dot < 0 ? file : file.left(dot);
}

} // namespace

const QStringList& folderOrder()
{
    // Bottom first. main.cpp, at the top of src/, comes last as ".".
    static const QStringList order = {
        QStringLiteral("core"),     QStringLiteral("settings"),  QStringLiteral("shortcuts"),
        QStringLiteral("bookmarks"), QStringLiteral("browser"),  QStringLiteral("watch"),
        QStringLiteral("screens"),  QStringLiteral("verbs"),    QStringLiteral("tidy"),      QStringLiteral("search"),
        QStringLiteral("sync"),
        QStringLiteral("session"),
        QStringLiteral("desktop"),
        QStringLiteral("doors"),    QStringLiteral("schedule"), QStringLiteral("widgets"),  QStringLiteral("surf"),      QStringLiteral("favorites"),
        QStringLiteral("lists"),    QStringLiteral("history"),   QStringLiteral("options"),
        QStringLiteral("about"),    QStringLiteral("mainwindow"), QStringLiteral("."),
    };
    return order;
}

Graph read(const QString& root)
{
    Graph graph;
    const QDir base(root);
    QDirIterator it(root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        graph.files.append(base.relativeFilePath(it.next()));
    std::sort(graph.files.begin(), graph.files.end());
    const QSet<QString> known(graph.files.begin(), graph.files.end());
    static const QRegularExpression include(QStringLiteral(R"re(^\s*#\s*include\s+"([^"]+)")re"));
    for (const QString& file : graph.files) {
        QFile in(base.filePath(file));
        if (!in.open(QIODevice::ReadOnly))
            continue;
        const QStringList lines = QString::fromUtf8(in.readAll()).split(u'\n');
        for (int i = 0; i < lines.size(); ++i) {
            const QRegularExpressionMatch m = include.match(lines[i]);
            if (!m.hasMatch())
                continue;
            const QString named = m.captured(1);
            const QString beside = QDir::cleanPath(QFileInfo(file).path() + u'/' + named);
            QString to;
            for (const QString& candidate : {beside, named, QStringLiteral("core/") + named})
                if (to.isEmpty() && known.contains(candidate))
                    to = candidate;
            if (!to.isEmpty())
                graph.includes.append({file, i + 1, to});
        }
    }
    return graph;
}

QStringList upwardIncludes(const Graph& graph)
{
    QStringList found;
    const QStringList& order = folderOrder();
    for (const Include& inc : graph.includes) {
        const QString from = folderOf(inc.from);
        const QString to = folderOf(inc.to);
        const qsizetype fromRank = order.indexOf(from);
        const qsizetype toRank = order.indexOf(to);
        if (fromRank < 0 || toRank < 0 || toRank > fromRank)
            found.append(QStringLiteral("%1:%2: includes %3, which is above %4").arg(inc.from).arg(inc.line).arg(inc.to, from));
    }
    return found;
}

QStringList circles(const Graph& graph)
{
    QMap<QString, QSet<QString>> edges; // unit -> units it includes
    for (const Include& inc : graph.includes) {
        const QString from = unitOf(inc.from);
        const QString to = unitOf(inc.to);
        if (from != to)
            edges[from].insert(to);
    }
    // Tarjan's strongly connected components: each of more than one unit is a circle.
    QHash<QString, int> index, low;
    QStringList stack;
    QSet<QString> onStack;
    QList<QStringList> components;
    int next = 0;
    std::function<void(const QString&)> visit = [&](const QString& v) {
        index[v] = low[v] = next++;
        stack.append(v);
        onStack.insert(v);
        QStringList targets(edges.value(v).begin(), edges.value(v).end());
        std::sort(targets.begin(), targets.end());
        for (const QString& w : targets) {
            if (!index.contains(w)) {
                visit(w);
                low[v] = std::min(low[v], low[w]);
            } else if (onStack.contains(w)) {
                low[v] = std::min(low[v], index[w]);
            }
        }
        if (low[v] == index[v]) {
            QStringList component;
            QString w;
            do {
                w = stack.takeLast();
                onStack.remove(w);
                component.append(w);
            } while (w != v);
            if (component.size() > 1)
                components.append(component);
        }
    };
    for (auto it = edges.keyBegin(); it != edges.keyEnd(); ++it)
        if (!index.contains(*it))
            visit(*it);

    // Each circle named by one way round it, from its first unit by name, shortest first.
    QStringList named;
    for (QStringList component : components) {
        std::sort(component.begin(), component.end());
        const QSet<QString> inside(component.begin(), component.end());
        const QString start = component.first();
        QHash<QString, QString> cameFrom;
        QStringList queue{start};
        QString last;
        while (!queue.isEmpty() && last.isEmpty()) {
            const QString v = queue.takeFirst();
            QStringList targets(edges.value(v).begin(), edges.value(v).end());
            std::sort(targets.begin(), targets.end());
            for (const QString& w : targets) {
                if (!inside.contains(w))
                    continue;
                if (w == start) {
                    last = v;
                    break;
                }
                if (!cameFrom.contains(w)) {
                    cameFrom[w] = v;
                    queue.append(w);
                }
            }
        }
        QStringList path{start};
        for (QString v = last; v != start; v = cameFrom.value(v))
            path.insert(1, v);
        path.append(start);
        named.append(path.join(QStringLiteral(" -> ")));
    }
    std::sort(named.begin(), named.end());
    return named;
}

} // namespace IncludeRules
