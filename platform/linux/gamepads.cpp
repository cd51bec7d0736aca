#include "atomicvalue.h"
#include "windowsapi.h"

#include <SDL2/SDL.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <latch>
#include <mutex>
#include <stop_token>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// How often the pads are read: more often than any poller asks for their state.
constexpr auto updatePeriod = 2ms;
/// How often to look for pads while there are none.
constexpr auto searchPeriod = 100ms;
/// The motors run this long after the last update, so that they never outlive the program.
constexpr Uint32 rumbleMilliseconds = 1000;

struct ButtonBit
{
    SDL_GameControllerButton button;
    WORD bit;
};

constexpr auto buttonBits = std::to_array<ButtonBit>({
    {SDL_CONTROLLER_BUTTON_DPAD_UP, XINPUT_GAMEPAD_DPAD_UP},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, XINPUT_GAMEPAD_DPAD_DOWN},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, XINPUT_GAMEPAD_DPAD_LEFT},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, XINPUT_GAMEPAD_DPAD_RIGHT},
    {SDL_CONTROLLER_BUTTON_START, XINPUT_GAMEPAD_START},
    {SDL_CONTROLLER_BUTTON_BACK, XINPUT_GAMEPAD_BACK},
    {SDL_CONTROLLER_BUTTON_LEFTSTICK, XINPUT_GAMEPAD_LEFT_THUMB},
    {SDL_CONTROLLER_BUTTON_RIGHTSTICK, XINPUT_GAMEPAD_RIGHT_THUMB},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, XINPUT_GAMEPAD_LEFT_SHOULDER},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, XINPUT_GAMEPAD_RIGHT_SHOULDER},
    {SDL_CONTROLLER_BUTTON_A, XINPUT_GAMEPAD_A},
    {SDL_CONTROLLER_BUTTON_B, XINPUT_GAMEPAD_B},
    {SDL_CONTROLLER_BUTTON_X, XINPUT_GAMEPAD_X},
    {SDL_CONTROLLER_BUTTON_Y, XINPUT_GAMEPAD_Y},
});

/// SDL counts downward, with the centre at 0 on both scales and full deflection full on both.
SHORT upward(Sint16 value)
{
    return static_cast<SHORT>(value > 0 ? ~value : std::min(-value, 32767));
}

/// SDL's triggers go to 32767, these to 255.
BYTE trigger(Sint16 value)
{
    return static_cast<BYTE>(std::max<Sint16>(value, 0) >> 7);
}

XINPUT_GAMEPAD readPad(SDL_GameController *pad)
{
    const auto axis = [pad](SDL_GameControllerAxis which) -> Sint16 {
        return SDL_GameControllerGetAxis(pad, which);
    };
    unsigned buttons = 0;
    for (const auto &[button, bit] : buttonBits)
        buttons |= SDL_GameControllerGetButton(pad, button) ? bit : 0U;
    return {
        .wButtons = static_cast<WORD>(buttons),
        .bLeftTrigger = trigger(axis(SDL_CONTROLLER_AXIS_TRIGGERLEFT)),
        .bRightTrigger = trigger(axis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT)),
        .sThumbLX = axis(SDL_CONTROLLER_AXIS_LEFTX),
        .sThumbLY = upward(axis(SDL_CONTROLLER_AXIS_LEFTY)),
        .sThumbRX = axis(SDL_CONTROLLER_AXIS_RIGHTX),
        .sThumbRY = upward(axis(SDL_CONTROLLER_AXIS_RIGHTY)),
    };
}

/// One user's pad. Only the SDL thread touches `pad`; the other fields are atomic one by one, so
/// two fields of one reading may come from neighbouring updates.
struct User
{
    SDL_GameController *pad = nullptr;
    Relaxed<bool> connected = false;
    Relaxed<DWORD> packetNumber = 0;
    Relaxed<WORD> buttons = 0;
    Relaxed<BYTE> leftTrigger = 0;
    Relaxed<BYTE> rightTrigger = 0;
    Relaxed<SHORT> thumbLX = 0;
    Relaxed<SHORT> thumbLY = 0;
    Relaxed<SHORT> thumbRX = 0;
    Relaxed<SHORT> thumbRY = 0;
    Relaxed<WORD> leftMotor = 0;
    Relaxed<WORD> rightMotor = 0;

    void publish(const XINPUT_GAMEPAD &now)
    {
        bool changed = false;
        const auto update = [&changed](auto &field, auto value) {
            changed |= field.exchange(value) != value;
        };
        update(buttons, now.wButtons);
        update(leftTrigger, now.bLeftTrigger);
        update(rightTrigger, now.bRightTrigger);
        update(thumbLX, now.sThumbLX);
        update(thumbLY, now.sThumbLY);
        update(thumbRX, now.sThumbRX);
        update(thumbRY, now.sThumbRY);
        if (changed)
            packetNumber += 1;
    }
    XINPUT_STATE state() const
    {
        return {
            packetNumber, {buttons, leftTrigger, rightTrigger, thumbLX, thumbLY, thumbRX, thumbRY}};
    }
};

/// All of SDL, on one thread: it opens the pads, reads them and publishes their state, so that
/// callers wait neither for SDL nor for each other. A user index is SDL's player index: a pad keeps
/// it until it is unplugged, and the next pad takes the lowest free one.
class Gamepads
{
public:
    /// Waits until all connected pads have been found.
    Gamepads()
        : m_thread([this](const std::stop_token &stop) { run(stop); })
    {
        m_found.wait();
    }

    User &user(DWORD index) { return m_users[index]; }

private:
    void run(const std::stop_token &stop);
    void openAndClose();
    void update();
    bool isAnyConnected() const;

    std::array<User, XUSER_MAX_COUNT> m_users;
    std::latch m_found = std::latch(1);
    std::jthread m_thread; ///< last, so that it ends before what it uses
};

void Gamepads::run(const std::stop_token &stop)
{
    // Pads work while another window has the focus, and Qt handles the signals.
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    const bool works = SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER) == 0;
    if (works)
        update();
    m_found.count_down();

    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any stopped;
    while (works && !stop.stop_requested()) {
        stopped.wait_for(lock, stop, isAnyConnected() ? updatePeriod : searchPeriod,
            [&stop] { return stop.stop_requested(); });
        update();
    }

    for (User &user : m_users)
        SDL_GameControllerClose(user.pad);
    SDL_Quit(); // with its hints: this is the only user of SDL
}

void Gamepads::update()
{
    SDL_GameControllerUpdate();
    if (SDL_HasEvents(SDL_CONTROLLERDEVICEADDED, SDL_CONTROLLERDEVICEREMOVED))
        openAndClose();
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    for (User &user : m_users) {
        if (!user.pad)
            continue;
        user.publish(readPad(user.pad));
        SDL_GameControllerRumble(user.pad, user.leftMotor, user.rightMotor, rumbleMilliseconds);
    }
}

void Gamepads::openAndClose()
{
    for (User &user : m_users) {
        if (!user.pad || SDL_GameControllerGetAttached(user.pad))
            continue;
        SDL_GameControllerClose(user.pad);
        user.pad = nullptr;
        user.connected = false;
        user.leftMotor = 0;
        user.rightMotor = 0;
    }
    for (int device = 0; device < SDL_NumJoysticks(); ++device) {
        const int index = SDL_JoystickGetDevicePlayerIndex(device);
        if (!SDL_IsGameController(device) || index < 0
            || index >= static_cast<int>(XUSER_MAX_COUNT))
            continue;
        User &user = m_users[static_cast<std::size_t>(index)];
        if (user.pad)
            continue;
        user.pad = SDL_GameControllerOpen(device);
        if (user.pad)
            user.publish(readPad(user.pad));
        user.connected = user.pad != nullptr;
    }
}

bool Gamepads::isAnyConnected() const
{
    return std::any_of(
        m_users.begin(), m_users.end(), [](const User &user) { return user.pad != nullptr; });
}

/// Starts at the first call and ends with the program.
Gamepads &gamepads()
{
    static Gamepads all;
    return all;
}

} // namespace

DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state)
{
    if (userIndex >= XUSER_MAX_COUNT || !state)
        return ERROR_BAD_ARGUMENTS;
    const User &user = gamepads().user(userIndex);
    if (!user.connected)
        return ERROR_DEVICE_NOT_CONNECTED;
    *state = user.state();
    return ERROR_SUCCESS;
}

DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration)
{
    if (userIndex >= XUSER_MAX_COUNT || !vibration)
        return ERROR_BAD_ARGUMENTS;
    User &user = gamepads().user(userIndex);
    if (!user.connected)
        return ERROR_DEVICE_NOT_CONNECTED;
    user.leftMotor = vibration->wLeftMotorSpeed;
    user.rightMotor = vibration->wRightMotorSpeed;
    return ERROR_SUCCESS;
}
