#pragma once

#include <QWidget>

class GradientButton;
class QCheckBox;
class QComboBox;
class QLabel;
class Verbs;

// The run dialog "Run List of Web Pages": choose a list, the time between pages, one window or
// several, once or in a loop, and Go. Closing it stops a run at once.
class RunList1 : public QWidget
{
    Q_OBJECT

public:
    // `owner`: the window it opens beside; `listNames`: the lists to offer.
    RunList1(QWidget* owner, Verbs* verbs, const QComboBox* listNames);
    ~RunList1() override;

    QComboBox* CMBLIST() const { return m_lists; }
    QComboBox* CMBTIME() const { return m_times; }
    QCheckBox* CHKPAGE() const { return m_multi; }
    QCheckBox* CHKLOOP() const { return m_loop; }
    QCheckBox* CHKKEEP() const { return m_keep; }
    GradientButton* GoBtn() const { return m_go; }
    GradientButton* CancelBtn() const { return m_cancel; }
    GradientButton* HelpBtn() const { return m_help; }
    GradientButton* PreviousBtn() const { return m_previous; }
    GradientButton* PauseBtn() const { return m_pause; }
    GradientButton* NextBtn() const { return m_next; }

    // The interval table: captions and item data (seconds / 10).
    static const QList<QPair<QString, int>>& intervals();

    void Form_Load();
    void GoBtn_Click();
    void Form_Unload();

signals:
    void helpRequested();

private:
    // The step buttons follow the run.
    void showRun();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* m_owner;
    Verbs* m_verbs;
    const QComboBox* m_listNames;
    QComboBox* m_lists;
    QComboBox* m_times;
    QCheckBox* m_multi;
    QCheckBox* m_loop;
    QCheckBox* m_keep;
    GradientButton* m_go;
    GradientButton* m_cancel;
    GradientButton* m_help;
    GradientButton* m_previous;
    GradientButton* m_pause;
    GradientButton* m_next;
    bool m_unloaded = false;
};
