#include "core/StoredColor.h"

#include <QGuiApplication>
#include <QTest>

class TestStoredColor : public QObject
{
    Q_OBJECT
private slots:
    void rgbValuesHoldRedInTheLowestByte()
    {
        const QPalette palette;
        QCOMPARE(StoredColor::resolve(0xFF8080, palette), QColor(0x80, 0x80, 0xFF));
        QCOMPARE(StoredColor::resolve(0x004040, palette), QColor(0x40, 0x40, 0x00));
        QCOMPARE(StoredColor::resolve(0, palette), QColor(0, 0, 0));
        QCOMPARE(StoredColor::fromColor(QColor(0x80, 0x80, 0xFF)), 0xFF8080);
        QCOMPARE(StoredColor::fromColor(QColor(1, 2, 3, 4)), 0x030201);
    }
    void systemReferencesFollowThePalette_data()
    {
        QTest::addColumn<qint64>("value");
        QTest::addColumn<int>("group");
        QTest::addColumn<int>("role");
        QTest::newRow("8 window text")
            << qint64(0x80000008) << int(QPalette::Active) << int(QPalette::WindowText);
        QTest::newRow("18 button text")
            << qint64(0x80000012) << int(QPalette::Active) << int(QPalette::ButtonText);
        QTest::newRow("5 window") << qint64(0x80000005) << int(QPalette::Active) << int(QPalette::Base);
        QTest::newRow("15 button face")
            << qint64(0x8000000F) << int(QPalette::Active) << int(QPalette::Button);
        QTest::newRow("13 highlight")
            << qint64(0x8000000D) << int(QPalette::Active) << int(QPalette::Highlight);
        QTest::newRow("14 highlight text")
            << qint64(0x8000000E) << int(QPalette::Active) << int(QPalette::HighlightedText);
        QTest::newRow("17 grey text") << qint64(0x80000011) << int(QPalette::Disabled) << int(QPalette::Text);
        QTest::newRow("4 menu") << qint64(0x80000004) << int(QPalette::Active) << int(QPalette::Window);
        QTest::newRow("7 menu text") << qint64(0x80000007) << int(QPalette::Active)
                                     << int(QPalette::WindowText);
    }
    void systemReferencesFollowThePalette()
    {
        QFETCH(qint64, value);
        QFETCH(int, group);
        QFETCH(int, role);
        const auto stored = int32_t(uint32_t(value));
        QVERIFY(StoredColor::isSystemColor(stored));
        const auto sys = StoredColor::systemRole(stored);
        QVERIFY(sys);
        QCOMPARE(int(sys->group), group);
        QCOMPARE(int(sys->role), role);
        // A change of theme shows at once: the same value resolves to the new palette's colour.
        QPalette light;
        light.setColor(QPalette::ColorGroup(group), QPalette::ColorRole(role), QColor(10, 20, 30));
        QPalette dark;
        dark.setColor(QPalette::ColorGroup(group), QPalette::ColorRole(role), QColor(200, 210, 220));
        QCOMPARE(StoredColor::resolve(stored, light), QColor(10, 20, 30));
        QCOMPARE(StoredColor::resolve(stored, dark), QColor(200, 210, 220));
    }
    void valuesThatNameNoColourAreInvalid()
    {
        const QPalette palette;
        QVERIFY(!StoredColor::resolve(0x01000000, palette).isValid());
        QVERIFY(!StoredColor::resolve(0x7FFFFFFF, palette).isValid());
        QVERIFY(!StoredColor::resolve(int32_t(0x80000019), palette).isValid()); // 25 has no colour
        QVERIFY(!StoredColor::resolve(int32_t(0x800000FF), palette).isValid());
        QVERIFY(!StoredColor::resolve(int32_t(0x80010008), palette).isValid());
    }
};

QTEST_MAIN(TestStoredColor)
#include "tst_storedcolor.moc"
