#pragma once

#include <QPointer>
#include <QWidget>

#include <array>

class ColorSwatch;
class GradientButton;
class MoreOptions;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;

// The Options tab: the start-up address and list, the new-window address, the start-up and window
// choices, the text style, the ten window colours, and Apply, which saves and applies them all.
class OptionsPanel : public QWidget
{
    Q_OBJECT

public:
    OptionsPanel();

    QComboBox* CMBLIST() const { return m_cmbList; }
    QLineEdit* Text2(int i) const { return m_text2.at(size_t(i)); }
    ColorSwatch* Text1(int i) const { return m_text1.at(size_t(i)); }
    QRadioButton* RDTYPE(int i) const { return m_rdType.at(size_t(i)); }
    QCheckBox* CHKSTARTURL() const { return m_chkStartUrl; }
    QCheckBox* CHKLIST() const { return m_chkList; }
    QCheckBox* CHKTHEATER() const { return m_chkTheater; }
    QCheckBox* CHKTOP() const { return m_chkTop; }
    QCheckBox* CHKBOLD() const { return m_chkBold; }
    GradientButton* WinOptnBtn() const { return m_apply; }
    GradientButton* MoreOptionsBtn() const { return m_more; }
    MoreOptions* moreOptions() const;
    // Opens the "More Options" dialog of Vantrel's own additions.
    void MoreOptionsBtn_Click();
    GradientButton* HelpBtn() const { return m_help; }
    GradientButton* AboutBtn() const { return m_about; }

    // Option values into the controls, and back.
    void ShowOptionControls();
    void ReadOptionControls();
    // Colour values into the swatches, and back.
    void ShowColorControls();
    void ReadColorControls();
    // Apply: colours read and saved, options read and saved, everything painted anew.
    void WinOptnBtn_Click();

signals:
    // Apply saved new colours and options: the main window paints itself with them.
    void colorsApplied();
    // The settings of More Options were applied.
    void moreOptionsApplied();
    // More Options asked for the Schedules dialog.
    void schedulesRequested();
    void screensRequested();
    void mqttRequested();
    void remotePageRequested();
    // The Help and About buttons.
    void helpRequested();
    void aboutRequested();

private:
    QGroupBox* m_frame;
    QComboBox* m_cmbList;
    std::array<QLineEdit*, 2> m_text2{};
    std::array<ColorSwatch*, 10> m_text1{};
    std::array<QRadioButton*, 5> m_rdType{};
    QCheckBox* m_chkStartUrl;
    QCheckBox* m_chkList;
    QCheckBox* m_chkTheater;
    QCheckBox* m_chkTop;
    QCheckBox* m_chkBold;
    QWidget* m_commands; // Apply, More, Help and About, always in view
    GradientButton* m_more;
    QPointer<MoreOptions> m_moreOptions;
    GradientButton* m_apply;
    GradientButton* m_help;
    GradientButton* m_about;
};
