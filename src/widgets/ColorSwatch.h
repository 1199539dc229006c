#pragma once

#include <QLineEdit>

#include <cstdint>

// A colour swatch of the Options tab: it shows one stored colour (RGB or a desktop colour, which
// then follows the theme). A double click opens the colour dialog "Select Color" starting from the
// shown colour; a cancelled dialog leaves it. Typing changes nothing.
class ColorSwatch : public QLineEdit
{
    Q_OBJECT

public:
    ColorSwatch(const QString& name, const QString& toolTip, QWidget* parent);

    int32_t value() const { return m_value; }
    void setValue(int32_t value);

    // Opens "Select Color" at the shown colour; the colour chosen is shown, a cancel leaves it.
    void chooseColor();

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int32_t m_value = 0;
};
