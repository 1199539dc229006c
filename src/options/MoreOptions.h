#pragma once

#include <QWidget>

#include <vector>

class QCheckBox;
class QFormLayout;
class QLineEdit;
class QSpinBox;

// The "More Options" dialog: the settings of Vantrel's own additions (VantrelConf), one control
// each with its tool tip, and a button that opens the log. OK keeps what is shown; Cancel and
// closing leave the settings as they were.
class MoreOptions : public QWidget
{
    Q_OBJECT

public:
    explicit MoreOptions(QWidget* owner);

    // Shows the stored settings.
    void showSettings();
    // Stores what the controls show; false when the settings file could not be written.
    bool storeSettings();
    // Writes or removes the autostart entry as the stored "Start Vantrel when I log in" says;
    // false with the reason in `error` when that failed.
    static bool applyStartAtLogin(QString* error);

    // The control of a setting: a QCheckBox or a QSpinBox, named after the setting's key.
    QWidget* control(const char* key) const;

signals:
    // The settings were stored (OK): what follows them in the running program takes them up.
    void applied();
    // "Schedules..." was pressed: the window that knows the lists and the scheduler opens them.
    void schedulesRequested();
    // "Screens..." was pressed: the window that knows the monitors' placer opens them.
    void screensRequested();
    // "MQTT..." was pressed: the window that knows the broker's door opens its dialog.
    void mqttRequested();
    // "Remote Page..." was pressed.
    void remotePageRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void okClicked();
    void openLog();
    // The bookmarks file kept in step: its path and a button to choose it, under its check box.
    void addSyncFileRow(QFormLayout* form, QCheckBox* on);
    void chooseSyncFile();

    struct Row
    {
        const char* key;
        QCheckBox* box = nullptr;
        QSpinBox* number = nullptr;
    };
    std::vector<Row> m_rows;
    QLineEdit* m_syncFile = nullptr;
};
