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
