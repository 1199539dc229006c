#include "browser/BrowserEngine.h"

#include <QTest>

#include <cstdlib>
#include <cstring>
#include <malloc.h>

class TestBrowserEngine : public QObject
{
    Q_OBJECT
private slots:
    void largeBlocksAreMappedOnTheirOwnEvenAfterALargerOneWasFreed()
    {
        BrowserEngine::prepare();
        // A large block freed would teach the allocator to take blocks up to its size from the
        // heap: the engine's frame buffers would then pile up there for good.
        void* larger = std::malloc(8 << 20);
        QVERIFY(larger);
        std::memset(larger, 1, 8 << 20);
        std::free(larger);
        const size_t mappedBefore = mallinfo2().hblks;
        void* frame = std::malloc(256 << 10);
        QVERIFY(frame);
        QCOMPARE(mallinfo2().hblks, mappedBefore + 1);
        std::free(frame);
        QCOMPARE(mallinfo2().hblks, mappedBefore); // and given back as it is freed
    }
};

QTEST_GUILESS_MAIN(TestBrowserEngine)
#include "tst_browserengine.moc"
