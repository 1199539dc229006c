#include "core/DialogService.h"
#include "core/Globals.h"

#include <QTest>

namespace {
class RecordingBackend : public DialogService::Backend
{
public:
    QStringList calls;
    DialogService::Answer answer = DialogService::Answer::Yes;
    std::optional<QColor> color;
    void showMessage(const QString& title, const QString& text) override
    {
        calls << "message:" + title + ":" + text;
    }
    DialogService::Answer askQuestion(const QString& title, const QString& text) override
    {
        calls << "question:" + title + ":" + text;
        return answer;
    }
    std::optional<QColor> chooseColor(const QString& title, const QColor& initial) override
    {
        calls << "color:" + title + ":" + initial.name();
        return color;
    }
    std::optional<DialogService::FileChoice> chooseFile(const QString& caption, const QString& start,
                                                        const QStringList& filters, DialogService::FileUse use) override
    {
        const char* kind = use == DialogService::FileUse::Open ? "open" : use == DialogService::FileUse::Save ? "save" : "share";
        calls << QStringLiteral("file:%1:%2:%3:%4").arg(caption, start, filters.join(u'|'), kind);
        return DialogService::FileChoice{"/chosen", 1};
    }
    std::optional<int> chooseItem(const QString& caption, const QString& label, const QStringList& items) override
    {
        calls << "item:" + caption + ":" + label + ":" + items.join(u'|');
        return 2;
    }
};
} // namespace

class TestDialogService : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetGlobals();
        DialogService::setBackend(nullptr);
        DialogService::reset();
    }
    void queuedAnswersAreUsedInOrderAndTextsRecorded()
    {
        DialogService::setNextAnswer(DialogService::Answer::No);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QVERIFY(!DialogService::question("first?"));
        QVERIFY(DialogService::question("second?"));
        QCOMPARE(DialogService::shownTexts(), (QStringList{"first?", "second?"}));
        QCOMPARE(DialogService::shownTitles(), (QStringList{"Vantrel 2.0", "Vantrel 2.0"}));
    }
    void withoutBackendQuestionsAreAnsweredNo()
    {
        QVERIFY(!DialogService::question("save?"));
        DialogService::message("note");
        QVERIFY(!DialogService::chooseColor(Qt::red));
        QCOMPARE(DialogService::shownTexts(), (QStringList{"save?", "note"}));
    }
    void backendShowsWithTheProgramTitle()
    {
        RecordingBackend backend;
        DialogService::setBackend(&backend);
        globals().AppTitle = "Custom";
        DialogService::message("hello");
        QVERIFY(DialogService::question("go?"));
        backend.answer = DialogService::Answer::No;
        QVERIFY(!DialogService::question("again?"));
        backend.color = QColor(Qt::blue);
        QCOMPARE(DialogService::chooseColor(QColor(Qt::red)), std::optional<QColor>(QColor(Qt::blue)));
        QCOMPARE(backend.calls, (QStringList{"message:Custom:hello", "question:Custom:go?",
                                             "question:Custom:again?", "color:Select Color:#ff0000"}));
        DialogService::setBackend(nullptr);
    }
    void queuedColoursStandForTheDialog()
    {
        DialogService::setNextColor(QColor(Qt::green));
        DialogService::setNextColor(std::nullopt);
        QCOMPARE(DialogService::chooseColor(Qt::red), std::optional<QColor>(QColor(Qt::green)));
        QVERIFY(!DialogService::chooseColor(Qt::red));
    }
    void filesAndItemsGoToTheBackendOrTheQueue()
    {
        // Without a backend nothing is chosen.
        QVERIFY(!DialogService::openFile("Open", "/home", {"A (*.a)"}));
        QVERIFY(!DialogService::chooseItem("Pick", "Which:", {"x", "y"}));
        RecordingBackend backend;
        DialogService::setBackend(&backend);
        const auto opened = DialogService::openFile("Import", "/home", {"A (*.a)", "All (*)"});
        QVERIFY(opened);
        QCOMPARE(opened->path, QStringLiteral("/chosen"));
        QCOMPARE(opened->filter, 1);
        QVERIFY(DialogService::saveFile("Export", "/home/x.html", {"H (*.html)"}));
        QVERIFY(DialogService::shareFile("Keep", "/sync/b.xbel", {"X (*.xbel)"}));
        QCOMPARE(DialogService::chooseItem("Pick", "Which:", {"x", "y", "z"}), std::optional<int>(2));
        QCOMPARE(backend.calls, (QStringList{"file:Import:/home:A (*.a)|All (*):open", "file:Export:/home/x.html:H (*.html):save",
                                             "file:Keep:/sync/b.xbel:X (*.xbel):share", "item:Pick:Which::x|y|z"}));
        // Queued choices stand for the dialogs, in order; the captions and the items offered are kept.
        DialogService::setNextFile(DialogService::FileChoice{"/queued", 0});
        DialogService::setNextFile(std::nullopt);
        DialogService::setNextItem(std::nullopt);
        QCOMPARE(DialogService::saveFile("Save it", "/", {})->path, QStringLiteral("/queued"));
        QVERIFY(!DialogService::openFile("Open it", "/", {}));
        QVERIFY(!DialogService::chooseItem("Pick", "Which:", {"p", "q"}));
        QCOMPARE(backend.calls.size(), 4);
        QCOMPARE(DialogService::fileCaptions(), (QStringList{"Open", "Import", "Export", "Keep", "Save it", "Open it"}));
        QCOMPARE(DialogService::offeredItems(), (QStringList{"p", "q"}));
        DialogService::clearShown();
        QVERIFY(DialogService::fileCaptions().isEmpty());
        QVERIFY(DialogService::offeredItems().isEmpty());
        DialogService::setBackend(nullptr);
    }
    void clearShownForgetsTexts()
    {
        DialogService::message("x");
        DialogService::clearShown();
        QVERIFY(DialogService::shownTexts().isEmpty());
        QVERIFY(DialogService::shownTitles().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDialogService)
#include "tst_dialogservice.moc"
