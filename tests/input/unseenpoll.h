#pragma once

#include "playerstage.h"

#include <QDeadlineTimer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>

/// Lets the poller of the first pad run while the window processes no events.
class UnseenPoll
{
public:
    /// Must be created before the window is opened and outlive it.
    explicit UnseenPoll(PlayerStage &stage)
        : m_stage(stage)
    {
        stage.pads.onGetState = [this](DWORD pad) {
            // The first read is the probe for the device lists; the polls follow.
            const bool isFirstRead = m_stage.pads.pads[0].reads % readsOfPoll == 1;
            if (pad != 0 || !isFirstRead || !m_holds.exchange(false))
                return;
            m_polledOn = QThread::currentThread();
            m_arrived.release();
            m_goesOn.acquire();
        };
    }
    ~UnseenPoll()
    {
        m_goesOn.release(); // in case a failed check left the poller waiting
        m_stage.close();
    }
    UnseenPoll(const UnseenPoll &) = delete;
    UnseenPoll &operator=(const UnseenPoll &) = delete;

    /// Pushes the left stick up, presses A and waits for a complete poll of that.
    void pushAndPress()
    {
        m_holds = true;
        QTRY_COMPARE(m_arrived.available(), 1);
        m_arrived.acquire();
        FakePads::Pad &pad = m_stage.pads.pads[0];
        const int end = pad.reads + readsOfPoll;
        pad.thumbLX = 32767;
        pad.buttons = XINPUT_GAMEPAD_A;
        m_goesOn.release();
        // When the last stick is read, all earlier signals have been emitted.
        for (const QDeadlineTimer patience(5000); pad.reads < end;) {
            QVERIFY(!patience.hasExpired());
            QThread::yieldCurrentThread();
        }
    }

    QThread *polledOn() const { return m_polledOn; }

private:
    static constexpr int readsOfPoll = 20;
    PlayerStage &m_stage;
    QSemaphore m_arrived;
    QSemaphore m_goesOn;
    std::atomic<bool> m_holds = false;
    std::atomic<QThread *> m_polledOn = nullptr;
};
