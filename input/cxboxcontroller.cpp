#include "cxboxcontroller.h"

#include <QThread>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto pollPeriod = 10ms;

struct ButtonSource
{
    CXBOXController::buttonList button;
    WORD mask; ///< in wButtons
    BYTE XINPUT_GAMEPAD::*trigger = nullptr; ///< in place of a mask

    bool isPressed(const XINPUT_GAMEPAD &pad) const
    {
        return trigger ? pad.*trigger != 0 : (pad.wButtons & mask) != 0;
    }
};

/// The buttons in the order in which a poll reads them.
constexpr auto buttonSources = std::to_array<ButtonSource>({
    {CXBOXController::DPadUp, XINPUT_GAMEPAD_DPAD_UP},
    {CXBOXController::DPadDown, XINPUT_GAMEPAD_DPAD_DOWN},
    {CXBOXController::DPadLeft, XINPUT_GAMEPAD_DPAD_LEFT},
    {CXBOXController::DPadRight, XINPUT_GAMEPAD_DPAD_RIGHT},
    {CXBOXController::ButtonA, XINPUT_GAMEPAD_A},
    {CXBOXController::ButtonB, XINPUT_GAMEPAD_B},
    {CXBOXController::ButtonX, XINPUT_GAMEPAD_X},
    {CXBOXController::ButtonY, XINPUT_GAMEPAD_Y},
    {CXBOXController::LeftThumb, XINPUT_GAMEPAD_LEFT_THUMB},
    {CXBOXController::RightThumb, XINPUT_GAMEPAD_RIGHT_THUMB},
    {CXBOXController::LeftShoulder, XINPUT_GAMEPAD_LEFT_SHOULDER},
    {CXBOXController::RightShoulder, XINPUT_GAMEPAD_RIGHT_SHOULDER},
    {CXBOXController::ButtonStart, XINPUT_GAMEPAD_START},
    {CXBOXController::ButtonBack, XINPUT_GAMEPAD_BACK},
    {CXBOXController::LeftTrigger, 0, &XINPUT_GAMEPAD::bLeftTrigger},
    {CXBOXController::RightTrigger, 0, &XINPUT_GAMEPAD::bRightTrigger},
});

struct StickSource
{
    CXBOXController::controllerList control;
    SHORT XINPUT_GAMEPAD::*value;
};

/// The sticks in the order in which a poll reads them.
constexpr auto stickSources = std::to_array<StickSource>({
    {CXBOXController::ThumbLX, &XINPUT_GAMEPAD::sThumbLX},
    {CXBOXController::ThumbLY, &XINPUT_GAMEPAD::sThumbLY},
    {CXBOXController::ThumbRX, &XINPUT_GAMEPAD::sThumbRX},
    {CXBOXController::ThumbRY, &XINPUT_GAMEPAD::sThumbRY},
});

} // namespace

CXBOXController::CXBOXController(unsigned playerNumber, QObject *parent)
    : QObject(parent)
    , controllerIndex(playerNumber - 1)
{
    qRegisterMetaType<buttonList>("buttonList");
    qRegisterMetaType<controllerList>("controllerList");
    qRegisterMetaType<SHORT>("SHORT");
    pollTimer.setTimerType(Qt::PreciseTimer);
    pollTimer.setInterval(pollPeriod);
    connect(&pollTimer, &QTimer::timeout, &pollTimer, [this] { requestPoll(); });
    QTimer::singleShot(0, this, &CXBOXController::FirstLoad);
}

CXBOXController::~CXBOXController()
{
    pollTimer.stop();
    emit killThread();
    if (thread)
        thread->wait();
}

void CXBOXController::startPolling()
{
    Q_ASSERT(QThread::currentThread() == pollTimer.thread());
    pollTimer.start();
}

void CXBOXController::stopPolling()
{
    Q_ASSERT(QThread::currentThread() == pollTimer.thread());
    pollTimer.stop();
}

XINPUT_STATE CXBOXController::getState() const
{
    XINPUT_STATE now;
    read(now);
    return now;
}

bool CXBOXController::isConnected() const
{
    XINPUT_STATE now;
    return read(now);
}

bool CXBOXController::read(XINPUT_STATE &now) const
{
    now = {};
    return XInputGetState(controllerIndex, &now) == ERROR_SUCCESS;
}

DWORD CXBOXController::vibrate(quint16 leftMotor, quint16 rightMotor) const
{
    XINPUT_VIBRATION vibration = {leftMotor, rightMotor};
    return XInputSetState(controllerIndex, &vibration);
}

void CXBOXController::FirstLoad()
{
    thread = std::make_unique<QThread>();
    connect(this, &CXBOXController::killThread, thread.get(), &QThread::quit);
    moveToThread(thread.get());
    thread->start(QThread::InheritPriority);
}

void CXBOXController::requestPoll()
{
    if (!pollRequested.exchange(true))
        QMetaObject::invokeMethod(this, &CXBOXController::CheckStates, Qt::QueuedConnection);
}

void CXBOXController::CheckStates()
{
    Q_ASSERT(QThread::currentThread() == QObject::thread());
    pollRequested = false;
    bool answered = false;
    for (const ButtonSource &source : buttonSources) {
        answered = read(state);
        bool &reported = buttonState[source.button];
        if (source.isPressed(state.Gamepad) != reported) {
            reported = !reported;
            emit buttonXbox(source.button, reported);
        }
    }
    for (const StickSource &source : stickSources) {
        answered = read(state);
        const SHORT value = withoutDeadZone(state.Gamepad.*source.value);
        SHORT &reported = axisValue[source.control];
        if (value != reported) {
            reported = value;
            emit controllerXbox(source.control, value);
        }
    }
    if (std::exchange(connected, answered) != answered)
        emit padConnection.changed(answered);
}
