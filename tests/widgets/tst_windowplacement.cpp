#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "about/About1.h"
#include "about/HelpWindow.h"
#include "mainwindow/Vantrel1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "lists/RunList1.h"
#include "widgets/MessageBoxBackend.h"
#include "widgets/WindowPlacement.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>
#include <QTest>
#include <QTimer>

#include <memory>

// The program's windows come up where a person can see them: in front of the main window that is
// kept on top, and whole on the screen.
class TestWindowPlacement : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;

    bool inFrontOfMain(QWidget* window)
    {
        return window->parentWidget() == m_main.get() && window->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_main = std::make_unique<Vantrel1>();
        m_main->Form_Load();
        m_main->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        QVERIFY(m_main->windowFlags().testFlag(Qt::WindowStaysOnTopHint)); // the default
    }
    void cleanup()
    {
        DialogService::setBackend(nullptr);
        m_main.reset();
        m_app.reset();
    }

    void messageBoxesBelongToTheMainWindowAndStayInFrontOfIt()
    {
        MessageBoxBackend backend;
        DialogService::setBackend(&backend);
        QList<QPair<QWidget*, Qt::WindowFlags>> seen;
        // The question of the closing comes while the main window is not the active one.
        QTimer::singleShot(0, this, [&] {
            QWidget* box = QApplication::activeModalWidget();
            if (box) {
                seen.append({box->parentWidget(), box->windowFlags()});
                static_cast<QMessageBox*>(box)->button(QMessageBox::No)->click();
            }
        });
        DialogService::question("Question?");
        QCOMPARE(seen.size(), 1);
        QCOMPARE(seen[0].first, static_cast<QWidget*>(m_main.get()));
        QVERIFY(seen[0].second.testFlag(Qt::WindowStaysOnTopHint));
    }
    void helpAboutAndTheRunDialogComeUpInFrontOfTheMainWindow()
    {
        m_main->showHelp();
        QVERIFY(inFrontOfMain(m_main->helpWindow()));
        m_main->AboutBtn_Click();
        QVERIFY(inFrontOfMain(m_main->aboutBox()));
        m_main->listsPanel()->lists()->AddListNode("L");
        m_main->listsPanel()->RunListBtn_Click();
        QVERIFY(inFrontOfMain(m_main->listsPanel()->runDialog()));
        // Without "keep on top" they are simply owned by it.
        m_main->aboutBox()->close();
        m_main->setWindowFlag(Qt::WindowStaysOnTopHint, false);
        m_main->AboutBtn_Click();
        QVERIFY(!m_main->aboutBox()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        QCOMPARE(m_main->aboutBox()->parentWidget(), m_main.get());
    }
    void theRunDialogOpensWholeOnTheScreen()
    {
        m_main->listsPanel()->lists()->AddListNode("L");
        m_main->listsPanel()->RunListBtn_Click();
        RunList1* dialog = m_main->listsPanel()->runDialog();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        const QRect area = dialog->screen()->availableGeometry();
        QTRY_VERIFY2(area.contains(dialog->frameGeometry()),
                     qPrintable(QString("%1,%2 %3x%4")
                                    .arg(dialog->frameGeometry().x())
                                    .arg(dialog->frameGeometry().y())
                                    .arg(dialog->frameGeometry().width())
                                    .arg(dialog->frameGeometry().height())));
    }
    void aWindowAboveOrBesideTheScreenIsBroughtOnIt()
    {
        QWidget window(m_main.get(), Qt::Window);
        window.resize(200, 100);
        const QRect area = m_main->screen()->availableGeometry();
        window.move(area.left() + 50, area.top() - 40);
        keepOnScreen(&window);
        QVERIFY(window.frameGeometry().top() >= area.top());
        QCOMPARE(window.x(), area.left() + 50); // only as far as needed
        window.move(area.right() - 20, area.bottom() - 20);
        keepOnScreen(&window);
        QVERIFY(area.contains(window.geometry()));
    }
    void aWindowPlacedBeforeAnythingIsFramedKeepsRoomForItsTitleBar()
    {
        // As the run dialog of a session reopened while the program starts: neither it nor the
        // main window is on screen yet, so no frame is known.
        QWidget owner;
        QWidget window(&owner, Qt::Window);
        window.resize(200, 100);
        const QRect area = owner.screen()->availableGeometry();
        window.move(area.left() + 30, area.top());
        keepOnScreen(&window);
        const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
        QVERIFY(titleBar > 0);
        QCOMPARE(window.y(), area.top() + titleBar);
        QCOMPARE(window.x(), area.left() + 30);
    }
};

VANTREL_GUI_TEST_MAIN(TestWindowPlacement)
#include "tst_windowplacement.moc"
