#include "TestSupport.h"
#include "core/PageText.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QFontMetrics>
#include <QStyle>
#include <QTest>

// Captions and node texts of any length cost what can be seen of them.
class TestGradientButton : public QObject
{
    Q_OBJECT

    const QString m_huge = QString(5'000'000, u'W');

private slots:
    void anEnormousCaptionIsElidedToItsWidth()
    {
        GradientButton button("B", m_huge, nullptr);
        button.resize(200, 30);
        const QString shown = button.elidedCaption(190);
        QVERIFY(shown.endsWith(QChar(0x2026)));
        QVERIFY(shown.size() > 1 && shown.size() < 200);
        QVERIFY(m_huge.startsWith(shown.chopped(1)));
        QVERIFY(button.fontMetrics().horizontalAdvance(shown) <= 190);
        QCOMPARE(shown, button.fontMetrics().elidedText(m_huge.left(400), Qt::ElideRight, 190));
        // Painting it works like any other caption.
        QVERIFY(!button.grab().isNull());
    }
    void aCaptionIsElidedOncePerChangeOfTextFontOrWidth()
    {
        GradientButton button("B", m_huge, nullptr);
        const QString first = button.elidedCaption(150);
        // The same caption, font and width: the elided text is the one made before, not made again.
        QCOMPARE(button.elidedCaption(150).constData(), first.constData());
        QVERIFY(button.elidedCaption(100).size() < first.size());
        const QString narrow = button.elidedCaption(100);
        button.setText(QStringLiteral("Short"));
        QCOMPARE(button.elidedCaption(100), QStringLiteral("Short"));
        QFont big = button.font();
        big.setPointSize(big.pointSize() * 4);
        button.setText(m_huge);
        const QString before = button.elidedCaption(100);
        button.setFont(big);
        QVERIFY(button.elidedCaption(100).size() < before.size());
        QCOMPARE(narrow, before);
    }
    void shortCaptionsShowWhole()
    {
        GradientButton button("B", QStringLiteral("Surf"), nullptr);
        QCOMPARE(button.elidedCaption(200), QStringLiteral("Surf"));
        QCOMPARE(button.sizeHint(), QPushButton(QStringLiteral("Surf")).sizeHint());
    }
    void anEnormousCaptionAsksForTheSizeOfWhatCouldBeSeen()
    {
        // Measured as a push button measures the first 513 characters and an ellipsis.
        GradientButton huge("B", m_huge, nullptr);
        QPushButton visible(m_huge.left(513) + QChar(0x2026));
        QCOMPARE(huge.sizeHint(), visible.sizeHint());
        QCOMPARE(huge.minimumSizeHint(), huge.sizeHint());
    }
    void aPictureIsSeenOnAnyButtonColours_data()
    {
        QTest::addColumn<int>("back");
        QTest::addColumn<int>("end");
        QTest::newRow("black to white") << 0x000000 << 0xFFFFFF;
        QTest::newRow("all black") << 0x000000 << 0x000000;
        QTest::newRow("all white") << 0xFFFFFF << 0xFFFFFF;
        QTest::newRow("dark blue") << 0x800000 << 0x400000;
    }
    void aPictureIsSeenOnAnyButtonColours()
    {
        QFETCH(int, back);
        QFETCH(int, end);
        GradientButton button("RunListBtn", QString(), nullptr);
        button.setIcon(button.style()->standardIcon(QStyle::SP_MediaPlay));
        button.setColors(back, 0xFFFFFF, end);
        button.resize(90, 24);
        const QImage image = button.grab().toImage();
        const QRect picture = button.pictureRect();
        // The plate around the picture has the light colour, whatever the gradient is.
        const QColor plate = button.pictureBackground();
        for (const QPoint& corner : {picture.topLeft() + QPoint(-1, 0), picture.bottomRight() + QPoint(1, 0)})
            QCOMPARE(image.pixelColor(corner).rgb(), plate.rgb());
        // And the picture itself stands out from the plate.
        int differing = 0;
        for (int y = picture.top(); y <= picture.bottom(); ++y)
            for (int x = picture.left(); x <= picture.right(); ++x)
                differing += qAbs(qGray(image.pixel(x, y)) - qGray(plate.rgb())) > 80 ? 1 : 0;
        QVERIFY2(differing > 10, qPrintable(QString::number(differing)));
    }
    void aTreeShowsTheBeginningOfAnEnormousTextAndKeepsItWhole()
    {
        KeyedTree tree("SSTree2");
        KeyedNode* node = tree.addNode(QString(), "k", m_huge, KeyedTree::Page);
        QVERIFY(node);
        QCOMPARE(node->nodeText().size(), m_huge.size());
        const QString shown = node->data(0, Qt::DisplayRole).toString();
        QCOMPARE(shown, m_huge.left(kMaxPageTextLength) + QChar(0x2026));
        QCOMPARE(node->data(0, Qt::EditRole).toString().size(), m_huge.size());
        node->setNodeText(QStringLiteral("Short"));
        QCOMPARE(node->text(0), QStringLiteral("Short"));
        QCOMPARE(node->nodeText(), QStringLiteral("Short"));
        tree.resize(300, 200);
        QVERIFY(!tree.grab().isNull());
    }
};

VANTREL_GUI_TEST_MAIN(TestGradientButton)
#include "tst_gradientbutton.moc"
