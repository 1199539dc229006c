#pragma once

#include "settings/PageSettings.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;

// "Page Settings": how one page of a list, or every page of a list, is shown when the list runs:
// its own time, its zoom, when its window is loaded again, its scroll, and "Skip for now". What the
// settings will do is said in a line below them as they change. OK hands them over (chosen());
// Cancel and closing leave everything as it was.
class PageSettingsDialog : public QWidget
{
    Q_OBJECT

public:
    // `what` names the page or the list in the dialog's first line.
    PageSettingsDialog(const QString& what, const PageSettings& given, int runIntervalSeconds, QWidget* owner);

    // The settings as the controls show them.
    PageSettings settings() const;
    void showSettings(const PageSettings& settings);

signals:
    void chosen(const PageSettings& settings);

protected:
    void changeEvent(QEvent* event) override;

private:
    void update();

    int m_interval;
    QSpinBox* m_seconds;
    QSpinBox* m_zoom;
    QCheckBox* m_fit;
    QComboBox* m_reload;
    QSpinBox* m_reloadMinutes;
    QComboBox* m_scroll;
    QLineEdit* m_target;
    QCheckBox* m_skip;
    QLabel* m_preview;
};
