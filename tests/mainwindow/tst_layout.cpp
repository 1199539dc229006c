#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "options/OptionsPanel.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/Globals.h"
#include "favorites/FavoritesPanel.h"
#include "widgets/GradientButton.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <memory>

// The main window at its default size looks right: run at 100 % and (by CTest) at 200 % scale.
class TestLayout : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    static QRect inWindow(QWidget* widget, QWidget* window) { return QRect(widget->mapTo(window, QPoint(0, 0)), widget->size()); }

private slots:
    void initTestCase()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        for (int i = 0; i < 8; ++i) {
            globals().CurrentUrl = QString("https://page%1.example/").arg(i);
            m_main->NewBtnAction(true);
        }
    }
    void cleanupTestCase()
    {
        m_main.reset();
        m_app.reset();
    }

    void allFiveTabsAreInView()
    {
        QTabBar* bar = m_main->TabStrip1()->tabBar();
        for (int i = 0; i < 5; ++i) {
            const QRect tab = bar->tabRect(i);
            QVERIFY2(tab.right() < bar->width() + 2, qPrintable(QString::number(i)));
            QVERIFY(tab.width() > 20);
        }
    }
    void noTabCaptionIsClippedBoldOrNot()
    {
        QTabBar* bar = m_main->TabStrip1()->tabBar();
        for (bool bold : {false, true}) {
            globals().OptBold = bold;
            m_main->ApplyColors();
            QFont font = bar->font();
            font.setBold(bold);
            const QFontMetrics metrics(font);
            for (int i = 0; i < 5; ++i)
                QVERIFY2(metrics.horizontalAdvance(bar->tabText(i)) <= bar->tabRect(i).width() - 2,
                         qPrintable(QString("%1 %2: %3 in %4")
                                        .arg(bold)
                                        .arg(bar->tabText(i))
                                        .arg(metrics.horizontalAdvance(bar->tabText(i)))
                                        .arg(bar->tabRect(i).width())));
        }
        globals().OptBold = false;
        m_main->ApplyColors();
    }
    void rowsStayInsideTheSurfPanelWithoutOverlapping()
    {
        SurfPanel* surf = m_main->surf();
        QRect previous;
        for (int row = 0; row < 8; ++row) {
            const QRect button = surf->Button(row)->geometry();
            const QRect fav = surf->AddFavBtn(row)->geometry();
            const QRect list = surf->AddListBtn(row)->geometry();
            QVERIFY(surf->rect().contains(button));
            QVERIFY(surf->rect().contains(fav));
            QVERIFY(!button.intersects(fav));
            QVERIFY(!fav.intersects(list));
            QVERIFY(!button.intersects(previous));
            previous = button;
        }
        // The command buttons sit below the rows.
        QVERIFY(surf->NewBtn()->geometry().top() > surf->Button(7)->geometry().bottom());
        QVERIFY(surf->rect().contains(surf->CalendarBtn()->geometry()));
    }
    void favoritesTabKeepsItsButtonsAboveTheTree()
    {
        m_main->TabStrip1()->setCurrentIndex(1);
        QCoreApplication::processEvents();
        QWidget* buttons = m_main->favoritesPanel()->Frame4();
        const QRect quick = inWindow(buttons, m_main.get());
        const QRect tree = inWindow(m_main->Frame2(), m_main.get());
        QVERIFY2(quick.bottom() < tree.top(), qPrintable(QString("%1 %2").arg(quick.bottom()).arg(tree.top())));
        const QRect save = inWindow(m_main->favoritesPanel()->SaveBtn(), m_main.get());
        QVERIFY(save.top() > tree.bottom());
        QVERIFY(save.bottom() <= m_main->height());
        QVERIFY(m_main->favoritesPanel()->quickButtons() != nullptr);
        for (int i = 0; i < 32; ++i)
            QVERIFY(buttons->rect().contains(buttons->findChild<GradientButton*>(QString("FavBtn_%1").arg(i))->geometry()));
    }
    void everyOptionCanBeReachedAndTheCommandsStayInView()
    {
        m_main->TabStrip1()->setCurrentIndex(4);
        for (bool bold : {false, true}) {
            globals().OptBold = bold;
            m_main->ApplyColors();
            QCoreApplication::processEvents();
            auto* scroll = m_main->optionsPanel()->findChild<QScrollArea*>("OptionsScroll");
            QVERIFY(scroll);
            const QSize content = scroll->widget()->minimumSizeHint();
            const QSize room = scroll->maximumViewportSize();
            // What does not fit can be scrolled to, in each direction.
            QVERIFY(scroll->horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff);
            QVERIFY(scroll->verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff);
            if (content.width() > room.width())
                QVERIFY(scroll->horizontalScrollBar()->maximum() > 0);
            if (content.height() > room.height())
                QVERIFY(scroll->verticalScrollBar()->maximum() > 0);
            QVERIFY(scroll->widget()->width() >= content.width());
            // Apply, Help and About lie outside the scrolled part, whole inside the window.
            for (const char* name : {"WinOptnBtn", "HelpBtn", "AboutBtn"}) {
                auto* button = m_main->optionsPanel()->findChild<QWidget*>(name);
                QVERIFY2(button && button->isVisible(), name);
                QVERIFY(!scroll->isAncestorOf(button));
                QVERIFY2(m_main->rect().contains(inWindow(button, m_main.get())), name);
                QVERIFY(button->width() > 20);
            }
        }
        globals().OptBold = false;
        m_main->ApplyColors();
    }
};

VANTREL_GUI_TEST_MAIN(TestLayout)
#include "tst_layout.moc"
