#pragma once

#include "PageRecovery.h"
#include "ProcessMemory.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>

#include <array>

class BrowserWindow;

// Brings the browser windows' pages back by themselves: a crashed page is loaded again after a
// short wait (a few times within a while, then it keeps its Reload button), a page that the
// network could not bring is tried again, ever less often, and at once when the network comes
// back; a page still loading after a while is stopped and tried again the same way; a page whose
// process grows past a limit is loaded again (PageMemoryGuard says when). Each window's state is
// told (the Surf rows show it), and what happens goes into the log. The work that is due is done
// at Timer1's ticks, on the program's clock.
class WindowRecovery : public QObject
{
    Q_OBJECT

public:
    explicit WindowRecovery(QObject* parent = nullptr);

    // A slot's new window, whose events are followed from now on.
    void watch(int slot, BrowserWindow* window);
    // The program sent the slot's window to `url`.
    void sentTo(int slot, const QString& url);
    // The slot's window is gone.
    void forget(int slot);
    // Does what is due now (from Timer1).
    void tick();
    // The system says the network is back: waiting retries are due at once.
    void networkBack();
    // The machine woke up: each page shown for longer than the setting says is loaded again (one
    // that cannot be reached is then tried again as after a network failure).
    void wokeUp();

    const PageRecovery& recovery(int slot) const { return m_slots[size_t(slot)].recovery; }
    // When the slot's next retry or reload is due; invalid when none waits.
    QDateTime due(int slot) const { return m_slots[size_t(slot)].due; }
    // How the slot's page is doing now, and its words.
    PageRecovery::State shownState(int slot) const { return m_shown[size_t(slot)].state; }
    QString shownText(int slot) const { return m_shown[size_t(slot)].text; }

signals:
    // The slot's page is now in `state`, told in `toolTip` (Idle: nothing to show).
    void stateShown(int slot, PageRecovery::State state, const QString& toolTip);

private:
    struct Slot
    {
        PageRecovery recovery;
        QPointer<BrowserWindow> window;
        QString url;
        QDateTime due;
        QDateTime loadingSince; // while a load of `loading` is under way
        QString loading;
        QDateTime shownSince;
        PageMemoryGuard memory;
    };
    void checkMemory(const QDateTime& now);
    QDateTime m_memoryChecked;
    static bool isSlot(int slot) { return slot >= 1 && slot <= 8; }
    static constexpr int kMemoryCheckSeconds = 2;
    void applyPolicy(Slot& s);
    void loadBegan(int slot, const QString& url);
    void loadSucceeded(int slot);
    void loadFailed(int slot, const QString& url, const QString& reason, bool network);
    void pageCrashed(int slot, const QString& url);

    struct Shown
    {
        PageRecovery::State state = PageRecovery::State::Idle;
        QString text;
    };
    void show(int slot, PageRecovery::State state, const QString& toolTip);

    std::array<Slot, 9> m_slots{};
    std::array<Shown, 9> m_shown{};
};
