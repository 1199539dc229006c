#pragma once

#include <QList>
#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class Verbs;

// "Run in Other Windows": a list started beside the run of the run dialog, in windows of its own,
// with the run dialog's choices (time between pages, several windows, loop, keep pages loaded) and
// the windows it is to own. A window another run owns cannot be chosen. Go starts it through the
// verbs and closes; what keeps it from starting is said.
class OtherWindowsRun : public QWidget
{
    Q_OBJECT

public:
    OtherWindowsRun(const QString& list, Verbs* verbs, QWidget* owner);

    // The windows ticked, in order.
    QList<int> chosenWindows() const;
    // Starts the run; false (with the reason said) when it could not start.
    bool go();

protected:
    void changeEvent(QEvent* event) override;

private:
    void showWindows();
    void update();

    QString m_list;
    Verbs* m_verbs;
    QComboBox* m_times;
    QCheckBox* m_multi;
    QCheckBox* m_loop;
    QCheckBox* m_keep;
    std::array<QCheckBox*, 8> m_windows{};
    QWidget* m_go;
};
