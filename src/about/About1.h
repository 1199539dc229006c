#pragma once

#include <QWidget>

class GradientButton;
class QLabel;
class Verbs;

// The about box: the program's icon, name and version, its maker (a click opens the maker's site),
// the system-information program, and OK.
class About1 : public QWidget
{
    Q_OBJECT

public:
    About1(QWidget* owner, Verbs* verbs);

    QLabel* picIcon() const { return m_icon; }
    QLabel* Label1() const { return m_maker; }
    GradientButton* SysBtn() const { return m_sysBtn; }
    GradientButton* OKBtn() const { return m_okBtn; }

    void Form_Load();
    void Label1_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    Verbs* m_verbs;
    QLabel* m_icon;
    QLabel* m_maker;
    GradientButton* m_sysBtn;
    GradientButton* m_okBtn;
};
