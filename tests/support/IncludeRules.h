#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The rules of the code's layout: the folders of src/ in their order, bottom first, and what a
// breach of them looks like. A folder includes only itself and folders before it in the order.
namespace IncludeRules {

const QStringList& folderOrder();

struct Include
{
    QString from; // a file, relative to src/
    int line = 0;
    QString to;   // the file it names, relative to src/
};

struct Graph
{
    QStringList files;
    QList<Include> includes; // of files of the tree only; system headers are left out
};

// Every #include "..." of the .h and .cpp files below `root`, each resolved as the compiler would:
// beside the including file, from the root, or from core/ (which every target may name bare).
Graph read(const QString& root);

// "file:line: includes other, which is above folder", one for each include that runs upward.
QStringList upwardIncludes(const Graph& graph);

// "a -> b -> a", one for each set of units (a .cpp with its .h) that include each other round a
// circle.
QStringList circles(const Graph& graph);

} // namespace IncludeRules
