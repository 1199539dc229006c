// What a screen reader is told of the program's own controls: the gradient button is a push
// button (a checkable one when it is two-state), never a check box; the colour swatch is a push
// button that names its colour, never text; the program's windows are a frame and dialogs; a
// screen reader's press acts as a click a moment later.
#include "TestSupport.h"
#include "core/DialogService.h"
#include "widgets/AccessibleControls.h"
#include "widgets/ColorSwatch.h"
#include "widgets/GradientButton.h"
#include "widgets/TabStrip.h"

#include <QApplication>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

namespace {
QAccessibleInterface* spoken(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object);
}

// A window of the program's own kind: a plain widget subclass.
class OwnWindow : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
};
} // namespace

class TestAccessibleControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { installAccessibleControls(); }
    void init() { DialogService::reset(); }

    void theCaptionIsSpokenWithoutItsMnemonicMarks()
    {
        QCOMPARE(spokenCaption("&Save"), QStringLiteral("Save"));
        QCOMPARE(spokenCaption("Fish && Chips"), QStringLiteral("Fish & Chips"));
        QCOMPARE(spokenCaption("More..."), QStringLiteral("More..."));
        QCOMPARE(spokenCaption("end&"), QStringLiteral("end"));
        QCOMPARE(spokenCaption(QString()), QString());
    }

    void aGradientButtonIsAPushButtonNamedByItsCaption()
    {
        GradientButton button("SaveBtn", "&Save", nullptr);
        button.setToolTip("Save the Web Page Button Assignments");
        QAccessibleInterface* iface = spoken(&button);
        QVERIFY(iface);
        QCOMPARE(iface->role(), QAccessible::Button);
        QCOMPARE(iface->text(QAccessible::Name), QStringLiteral("Save"));
        QCOMPARE(iface->text(QAccessible::Description), QStringLiteral("Save the Web Page Button Assignments"));
        QVERIFY(!iface->state().checkable);
        button.setAccessibleName("Save the buttons");
        QCOMPARE(iface->text(QAccessible::Name), QStringLiteral("Save the buttons"));
    }

    void aTwoStateButtonSaysWhetherItIsOn()
    {
        GradientButton button("QuikViewBtn", "Small", nullptr);
        button.setTwoState(true);
        QAccessibleInterface* iface = spoken(&button);
        QCOMPARE(iface->role(), QAccessible::Button);
        QVERIFY(iface->state().checkable);
        QVERIFY(!iface->state().checked);
        button.setValue(true);
        QVERIFY(iface->state().checked);
        QVERIFY(iface->actionInterface()->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    }

    void aOneStateButtonPressedInSaysPressedAndNotChecked()
    {
        GradientButton button("Button_0", "A page", nullptr);
        QAccessibleInterface* iface = spoken(&button);
        button.setValue(true);
        QVERIFY(iface->state().pressed);
        QVERIFY(!iface->state().checkable);
        QVERIFY(!iface->state().checked);
        QCOMPARE(iface->actionInterface()->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    }

    void aScreenReadersPressClicksAMomentLaterAndNotWhenDisabled()
    {
        GradientButton button("NewBtn", "New", nullptr);
        QSignalSpy clicked(&button, &GradientButton::clicked);
        QAccessibleActionInterface* actions = spoken(&button)->actionInterface();
        actions->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicked.count(), 0); // the caller's request is answered first
        QTRY_COMPARE(clicked.count(), 1);
        button.setEnabled(false);
        QVERIFY(actions->actionNames().isEmpty());
        actions->doAction(QAccessibleActionInterface::pressAction());
        QTest::qWait(250);
        QCOMPARE(clicked.count(), 1);
    }

    void aColourSwatchIsAButtonThatNamesItsColourAndOpensTheChoice()
    {
        ColorSwatch swatch("Text1_0", "Set Window Background Color", nullptr);
        swatch.setValue(0xFF8080); // stored as 0x00BBGGRR: light blue
        QAccessibleInterface* iface = spoken(&swatch);
        QCOMPARE(iface->role(), QAccessible::Button);
        QCOMPARE(iface->text(QAccessible::Name), QStringLiteral("Set Window Background Color"));
        QVERIFY2(iface->text(QAccessible::Description).startsWith("Now #8080FF."),
                 qPrintable(iface->text(QAccessible::Description)));
        QVERIFY(!iface->state().editable);
        DialogService::setNextColor(QColor(0x11, 0x22, 0x33));
        iface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(swatch.value(), 0x332211);
        QVERIFY(iface->text(QAccessible::Description).startsWith("Now #112233."));
    }

    void theKeyboardsPlaceOnASwatchIsSeenOnItsOwnColour()
    {
        QWidget window;
        auto* swatch = new ColorSwatch("Text1_0", "Set Window Background Color", &window);
        auto* other = new ColorSwatch("Text1_1", "Set Tab Background Color", &window);
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(swatch);
        layout->addWidget(other);
        QPalette palette = window.palette();
        palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
        window.setPalette(palette);
        swatch->setValue(0xC68C30); // the highlight's own colour, stored as 0x00BBGGRR
        window.show();
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        other->setFocus();
        const QImage unfocused = swatch->grab().toImage();
        swatch->setFocus();
        QVERIFY(swatch->hasFocus());
        const QImage focused = swatch->grab().toImage();
        const QColor base = swatch->palette().color(QPalette::Base);
        // Inside the highlight band lies a line of the base colour, seen even on a swatch of the
        // highlight's colour; without the focus the same place shows the swatch's colour.
        QCOMPARE(focused.pixelColor(2, focused.height() / 2), base);
        QCOMPARE(unfocused.pixelColor(2, unfocused.height() / 2), QColor(0x30, 0x8c, 0xc6));
    }

    void theTabsAreAKeyboardStopHeardAsTheirBar()
    {
        QWidget window;
        auto* before = new QPushButton("Before", &window);
        auto* strip = new TabStrip(&window);
        strip->addTab(new QWidget, "Surf");
        strip->addTab(new QWidget, "Favorites");
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(before);
        layout->addWidget(strip);
        window.show();
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        before->setFocus();
        QTest::keyClick(before, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), strip->tabBar());
        QTest::keyClick(strip->tabBar(), Qt::Key_Right);
        QCOMPARE(strip->currentIndex(), 1);
        QCOMPARE(spoken(strip->tabBar())->role(), QAccessible::PageTabList);
        QCOMPARE(spoken(strip)->role(), QAccessible::Grouping);
        QVERIFY(!spoken(strip)->state().focusable); // the bar has the focus, not a nameless filler
    }

    void theProgramsWindowsAreAFrameAndDialogs()
    {
        OwnWindow main;
        QCOMPARE(spoken(&main)->role(), QAccessible::Window);
        OwnWindow dialog(&main);
        dialog.setWindowFlags(Qt::Tool);
        QCOMPARE(spoken(&dialog)->role(), QAccessible::Dialog);
        // A control inside a window is left to Qt.
        OwnWindow inside;
        auto* child = new OwnWindow(&inside);
        QCOMPARE(spoken(child)->role(), QAccessible::Client);
    }
};

QTEST_MAIN(TestAccessibleControls)
#include "tst_accessiblecontrols.moc"
