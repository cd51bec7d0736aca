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

/// The game: a match with its own thread, which steps it every 3 ms, draws every third step and
/// checks the laser host once a second.
///
/// Created and destroyed on the GUI thread; lives on the game thread after FirstLoad. The GUI
/// thread uses only the operations and atomics of Match and the operations marked below.
class Pong : public QObject, public Match
{
    Q_OBJECT

public:
    /// Loads the host's library. Everything else happens in FirstLoad, 100 ms later.
    explicit Pong(QObject *parent = nullptr);
    /// Ends the game thread, blanks the laser and closes the session.
    ~Pong() override;

    /// Switches the host's laser output. GUI thread.
    void enableOutput(bool on);
    /// The number of the host's zones. GUI thread.
    int zoneCount() const;
    /// Selects the zone that frames go to, counted from 0; -1 for none. GUI thread.
    void setZone(int zone);
    /// The binding to the host, for its signal and its build number.
    const BadBey *binding() const { return bey; }

    /// Checks the host, once a second. Game thread.
    void checkHost();
    /// Moves the ball by one step; logs a scored point. Game thread.
    void stepBall();

signals:
    /// Ends the game thread.
    void killThread();
    /// The host was found or lost, or the first check was made.
    void beyCoStatus(BeyondState state);

public slots:
    /// Creates the timers and the thread, moves to it and connects to the host. GUI thread, once.
    void FirstLoad();
    /// One tick. Game thread.
    void UpdatePongDisplay();

private:
    /// Queues a tick or a host check to the game thread, unless one is already queued.
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
