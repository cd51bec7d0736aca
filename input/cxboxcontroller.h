#pragma once

#include "atomicvalue.h"
#include "windowsapi.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <memory>

class QThread;

/// The dead zone: the deflection below which a stick counts as centred; full deflection is 32767.
inline constexpr int stickDeadZone = 3000;

/// Applies the dead zone to a stick's value: 0 within it, unchanged (not rescaled) outside.
constexpr SHORT withoutDeadZone(SHORT value)
{
    return value > -stickDeadZone && value < stickDeadZone ? SHORT(0) : value;
}

/// Reports whether a polled gamepad is connected.
class PadConnection : public QObject
{
    Q_OBJECT

signals:
    /// The pad was unplugged or plugged in again. Emitted on the poller's worker thread; connect
    /// with a queued connection.
    void changed(bool connected);
};

/// Polls one gamepad and emits a signal for every change of a button or stick. An unplugged pad
/// reads as released and centred.
///
/// Created, started, stopped and deleted on the GUI thread; polls on its own worker thread, every
/// 10 ms while started.
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
        LeftTrigger, ///< any pull counts as pressed
        RightTrigger,
        LeftThumb,
        RightThumb,
        LeftShoulder,
        RightShoulder
    };
    Q_ENUM(buttonList)
    enum controllerList { ThumbLX, ThumbLY, ThumbRX, ThumbRY };
    Q_ENUM(controllerList)

    /// Player numbers count from 1: number n polls the pad of user index n - 1. The worker thread
    /// starts when the event loop runs.
    explicit CXBOXController(unsigned playerNumber, QObject *parent = nullptr);
    /// Waits for a poll in progress.
    ~CXBOXController() override;

    /// Starts polling. GUI thread.
    void startPolling();
    /// Stops polling; a poll may still be in progress. GUI thread.
    void stopPolling();
    /// Reads the pad now; all zero if it is not connected. Any thread.
    XINPUT_STATE getState() const;
    /// Whether the pad is connected now. Any thread.
    bool isConnected() const;
    /// Reports a pad that is unplugged while polled. A separate object, because the signals of this
    /// class are a fixed interface.
    const PadConnection &connection() const { return padConnection; }
    /// Drives the motors (0 ... 65535) and returns the system's result. Any thread.
    DWORD vibrate(quint16 leftMotor, quint16 rightMotor) const;

signals:
    // The types are registered by these names.
    // clazy:excludeall=fully-qualified-moc-types
    void killThread();
    /// A button was pressed or released. Emitted on the worker thread.
    void buttonXbox(buttonList index, bool pressed);
    /// A stick's value changed; 0 within the dead zone. Emitted on the worker thread.
    void controllerXbox(controllerList index, SHORT val);

private slots:
    void FirstLoad();
    /// One poll: reads the pad again for each button and stick and reports changes.
    void CheckStates();

private:
    /// Reads the pad into `now`, all zero if it is not connected. Returns whether it is.
    bool read(XINPUT_STATE &now) const;
    /// Queues a poll to the worker unless one is already queued. GUI thread.
    void requestPoll();

    XINPUT_STATE state = {}; ///< as last read by the poll
    QTimer pollTimer; ///< stays on the GUI thread
    std::unique_ptr<QThread> thread;
    quint32 controllerIndex;
    std::array<bool, 16> buttonState = {}; ///< as last reported, by buttonList
    std::array<SHORT, 4> axisValue = {}; ///< as last reported, by controllerList
    bool connected = true; ///< as last reported; only connected pads are polled at first
    PadConnection padConnection;
    Relaxed<bool> pollRequested = false; ///< a poll is queued to the worker
};
