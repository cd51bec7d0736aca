#pragma once

#include "atomicvalue.h"
#include "windowsapi.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <memory>

class QThread;

/// The deflection below which a stick counts as centred, on the scale of the system's 32767.
inline constexpr int stickDeadZone = 3000;

/// A stick's value with the dead zone cut out: 0 within it, unchanged (not rescaled) outside.
constexpr SHORT withoutDeadZone(SHORT value)
{
    return value > -stickDeadZone && value < stickDeadZone ? SHORT(0) : value;
}

/// Watches one gamepad and turns every change of a button or a stick into a signal. A pad that is
/// unplugged reads as released and centred.
///
/// It is made, started, stopped and deleted on the GUI thread, and polls on a worker thread of its
/// own, every 10 ms while started.
class CXBOXController : public QObject
{
    Q_OBJECT

public:
    // The numbers are stored in the settings.
    enum buttonList {
        ButtonA,
        ButtonB,
        ButtonX,
        ButtonY,
        ButtonStart,
        ButtonBack,
        DPadUp,
        DPadDown,
        DPadLeft,
        DPadRight,
        LeftTrigger, ///< pressed by the slightest pull
        RightTrigger,
        LeftThumb,
        RightThumb,
        LeftShoulder,
        RightShoulder
    };
    Q_ENUM(buttonList)
    enum controllerList { ThumbLX, ThumbLY, ThumbRX, ThumbRY };
    Q_ENUM(controllerList)

    /// Player numbers count from 1: number n watches the pad of user index n - 1. The worker
    /// thread starts when the event loop runs.
    explicit CXBOXController(unsigned playerNumber, QObject *parent = nullptr);
    /// Waits for the poll under way.
    ~CXBOXController() override;

    /// Starts polling. GUI thread.
    void startPolling();
    /// Stops polling; a poll may still be under way. GUI thread.
    void stopPolling();
    /// Reads the pad now; all zero when it is not connected. Any thread.
    XINPUT_STATE getState() const;
    /// Whether the pad is connected now. Any thread.
    bool isConnected() const;
    /// Drives the motors (0 ... 65535) and returns the system's result. Any thread.
    DWORD vibrate(quint16 leftMotor, quint16 rightMotor) const;

signals:
    // The types are registered by these names.
    // clazy:excludeall=fully-qualified-moc-types
    void killThread();
    /// A button was pressed or released. Emitted on the worker thread.
    void buttonXbox(buttonList index, bool pressed);
    /// A stick has another value, 0 within the dead zone. Emitted on the worker thread.
    void controllerXbox(controllerList index, SHORT val);

private slots:
    void FirstLoad();
    /// One poll: reads the pad anew for each button and stick and reports what has changed.
    void CheckStates();

private:
    /// Asks the worker for a poll unless one is waiting for it already. GUI thread.
    void requestPoll();

    XINPUT_STATE state = {}; ///< what the poll read last
    QTimer pollTimer; ///< stays on the GUI thread
    std::unique_ptr<QThread> thread;
    quint32 controllerIndex;
    std::array<bool, 16> buttonState = {}; ///< as reported last, by buttonList
    std::array<SHORT, 4> axisValue = {}; ///< as reported last, by controllerList
    Relaxed<bool> pollRequested = false; ///< a poll waits for the worker
};
