#include "BrowserEngine.h"

#include "BrowserEngineModule.h"
#include "core/Globals.h"
#include "core/Startup.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

#include <malloc.h>
#include <unistd.h>

namespace BrowserEngine {

namespace {

// Blocks from this size up are mapped on their own (fixed: the allocator does not raise it).
constexpr int kLargestHeapBlock = 64 * 1024;

std::function<BrowserWindow*(QObject*)>& maker()
{
    static std::function<BrowserWindow*(QObject*)> m;
    return m;
}

QString& lastError()
{
    static QString e;
    return e;
}

// Beside the program in a build; in the library folder once installed, found from the program's
// own place first, so that an installation moved elsewhere still finds it.
QStringList moduleCandidates()
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    return {programFolder.filePath(QStringLiteral(VANTREL_ENGINE_MODULE_NAME)),
            QDir::cleanPath(programFolder.filePath(QStringLiteral(VANTREL_ENGINE_MODULE_RELATIVE))),
            QStringLiteral(VANTREL_ENGINE_MODULE_INSTALLED)};
}

bool loadModule()
{
    for (const QString& path : moduleCandidates()) {
        QLibrary module(path);
        module.setLoadHints(QLibrary::PreventUnloadHint);
        if (!module.load()) {
            lastError() = module.errorString();
            continue;
        }
        auto create = reinterpret_cast<BrowserEngineCreateWindow>(module.resolve(kBrowserEngineCreateWindow));
        if (!create) {
            lastError() = module.errorString();
            continue;
        }
        maker() = [create](QObject* parent) {
            return create(parent, appFilePath(QString::fromLatin1(kBrowserFolderName)));
        };
        return true;
    }
    return false;
}

} // namespace

void prepare()
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    // The engine draws its pages in this process, in buffers of a few hundred kilobytes made and
    // freed at every frame of a scrolling page. Left to itself, the allocator soon takes such
    // buffers from its heap instead of mapping them, and a heap it can never give back grows by
    // hundreds of megabytes over a day of scrolling rotations. Mapped each on its own, they go back
    // to the system as they are freed.
    mallopt(M_MMAP_THRESHOLD, kLargestHeapBlock);
    if (::geteuid() != 0)
        return;
    const QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    if (!flags.contains("--no-sandbox"))
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", (flags + " --no-sandbox").trimmed());
}

BrowserWindow* createWindow(QObject* parent)
{
    if (!maker() && !loadModule()) {
        qWarning("Vantrel: the browser engine could not be loaded: %s", qPrintable(lastError()));
        return nullptr;
    }
    return maker()(parent);
}

QString errorString()
{
    return lastError();
}

void setWindowMaker(std::function<BrowserWindow*(QObject*)> m)
{
    maker() = std::move(m);
}

} // namespace BrowserEngine
