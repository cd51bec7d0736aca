#pragma once

#include "match.h"

#include <QObject>
#include <QPointer>

class BadBey;
class QThread;
class QTimer;

/// The state of the laser host.
enum BeyondState : qint32 {
    BeyondNotReady = 0, ///< not running, or too old
    BeyondReady = 2, ///< connected; frames are sent
};

/// The game: a match with a thread of its own, which steps it every 3 ms, draws every third step
/// and looks after the laser host once a second.
///
/// It is made and destroyed on the GUI thread and lives on the game thread after FirstLoad. The
/// GUI thread talks to it by the operations and atomics of Match and by the operations below.
class Pong : public QObject, public Match
{
    Q_OBJECT

public:
    /// Loads the host's library; everything else waits for FirstLoad, 100 ms later.
    explicit Pong(QObject *parent = nullptr);
    /// Ends the game thread, leaves the laser dark and closes the session.
    ~Pong() override;

    /// Switches the host's laser output. GUI thread.
    void enableOutput(bool on);
    /// The number of the host's zones. GUI thread.
    int zoneCount() const;
    /// Selects the zone that frames go to, counted from 0; -1 for none. GUI thread.
    void setZone(int zone);
    /// The binding to the host, for its signal and its build number.
    const BadBey *binding() const { return bey; }

    /// The check of the host that is made every second. Game thread.
    void checkHost();
    /// One step of the ball, with the debug lines of a point scored. Game thread.
    void stepBall();

signals:
    /// Ends the game thread.
    void killThread();
    /// The host was found or lost, or was looked for at the start.
    void beyCoStatus(BeyondState state);

public slots:
    /// Makes the timers and the thread, moves there and connects to the host. GUI thread, once.
    void FirstLoad();
    /// One tick. Game thread.
    void UpdatePongDisplay();

private:
    /// Queues a tick or a check of the host to the game thread, unless one waits there.
    void post(void (Pong::*step)(), Relaxed<bool> &waits);
    void startTimers();
    void startThread();
    void hostFound(int build);

    QPointer<QThread> workerThread;
    BadBey *bey;
    QTimer *tickTimer = nullptr;
    QTimer *statusTimer = nullptr;
    Relaxed<BeyondState> beyondState = BeyondNotReady;
    Relaxed<bool> tickWaits = false;
    Relaxed<bool> checkWaits = false;
};
