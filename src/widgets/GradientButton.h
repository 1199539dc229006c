#pragma once

#include <QFont>
#include <QPushButton>

#include <cstdint>

// The program's button: it paints a gradient from its background colour to its end colour, with
// its caption in its text colour. Colours are stored values (RGB or a desktop colour reference),
// resolved against the palette when painted, so desktop colours follow the theme. A tag carries
// the button's data (a page address, a drag source name). The state value is the checked state;
// only a two-state button changes it when clicked.
class GradientButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(QString tag READ tag WRITE setTag)
    Q_PROPERTY(bool value READ value WRITE setValue)

public:
    explicit GradientButton(QWidget* parent = nullptr);
    GradientButton(const QString& name, const QString& caption, QWidget* parent);

    QString tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }

    // The state value: true is "pressed in" (reported as 1).
    bool value() const { return isChecked(); }
    void setValue(bool on) { setChecked(on); }
    void setTwoState(bool twoState) { m_twoState = twoState; }
    bool isTwoState() const { return m_twoState; }

    int32_t backColor() const { return m_backColor; }
    int32_t textColor() const { return m_textColor; }
    int32_t endColor() const { return m_endColor; }
    void setBackColor(int32_t color);
    void setTextColor(int32_t color);
    void setEndColor(int32_t color);
    void setColors(int32_t back, int32_t text, int32_t end);

    // The text style: 0 flat, 1 raised light, 2 lowered light, 3 raised heavy, 4 lowered heavy. A
    // styled caption is drawn twice: a light copy 1 (light) or 2 (heavy) pixels up and to the left
    // (raised) or down and to the right (lowered), and the caption in its colour on top.
    enum TextStyle { Flat = 0, RaisedLight, LoweredLight, RaisedHeavy, LoweredHeavy };
    void setTextStyle(int style);
    int textStyle() const { return m_textStyle; }
    // The offset of the light copy for a style (0, 0 for flat).
    static QPoint lightCopyOffset(int style);

    // Room kept free at the left of the caption (for a picture laid over the button).
    void setLeftInset(int pixels);
    int leftInset() const { return m_leftInset; }

    // True while pressed() is emitted for a mouse button: a press that can start a drag. A press
    // from the keyboard or a screen reader cannot carry anything.
    bool pressedByMouse() const { return m_pressedByMouse; }

    // Drags of the program's controls may be dropped on the button; controlDropped() tells.
    void setAcceptsControlDrops(bool on);

    // The colours as painted now.
    QColor resolvedBackColor() const;
    QColor resolvedTextColor() const;
    QColor resolvedEndColor() const;

    // Where the button's picture is painted, and the light plate under it.
    QRect pictureRect() const;
    QColor pictureBackground() const;

    // The caption as painted in `width` pixels: elided at the right when it does not fit.
    QString elidedCaption(int width) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void controlDropped(const QString& sourceTag);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void nextCheckState() override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QString m_tag;
    bool m_twoState = false;
    bool m_pressedByMouse = false;
    int32_t m_backColor = int32_t(0x8000000F); // button face
    int32_t m_textColor = int32_t(0x80000012); // button text
    int32_t m_endColor = int32_t(0x8000000F);
    int m_textStyle = Flat;
    int m_leftInset = 0;
    mutable QString m_elidedFor; // the caption m_elided was made from (shares its characters)
    mutable int m_elidedWidth = -1;
    mutable QFont m_elidedFont;
    mutable QString m_elided;
};
