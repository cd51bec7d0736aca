#pragma once

#include "atomicvalue.h"
#include "windowsapi.h"

#include <SDL2/SDL.h>

/// The result of reading a user's pad: ERROR_SUCCESS if it is connected.
inline DWORD resultOf(DWORD user)
{
    XINPUT_STATE state = {};
    return XInputGetState(user, &state);
}

/// A pad that is plugged in for the lifetime of this object.
class VirtualPad
{
public:
    VirtualPad()
    {
        resultOf(0); // the first query starts SDL
        const Locked locked;
        SDL_VirtualJoystickDesc desc = {};
        desc.version = SDL_VIRTUAL_JOYSTICK_DESC_VERSION;
        desc.type = SDL_JOYSTICK_TYPE_GAMECONTROLLER;
        desc.naxes = SDL_CONTROLLER_AXIS_MAX;
        desc.nbuttons = SDL_CONTROLLER_BUTTON_DPAD_RIGHT + 1;
        desc.name = "Test pad";
        desc.userdata = this;
        desc.Rumble = [](void *self, Uint16 low, Uint16 high) {
            static_cast<VirtualPad *>(self)->lowMotor = low;
            static_cast<VirtualPad *>(self)->highMotor = high;
            return 0;
        };
        m_joystick = SDL_JoystickOpen(SDL_JoystickAttachVirtualEx(&desc));
    }
    ~VirtualPad() { unplug(); }
    VirtualPad(const VirtualPad &) = delete;
    VirtualPad &operator=(const VirtualPad &) = delete;

    bool works() const { return m_joystick != nullptr; }
    void press(SDL_GameControllerButton button, bool pressed)
    {
        const Locked locked;
        SDL_JoystickSetVirtualButton(m_joystick, button, pressed);
    }
    void move(SDL_GameControllerAxis axis, Sint16 value)
    {
        const Locked locked;
        SDL_JoystickSetVirtualAxis(m_joystick, axis, value);
    }
    void unplug()
    {
        if (!m_joystick)
            return;
        const Locked locked;
        const SDL_JoystickID id = SDL_JoystickInstanceID(m_joystick);
        for (int device = 0; device < SDL_NumJoysticks(); ++device) {
            if (SDL_JoystickGetDeviceInstanceID(device) == id)
                SDL_JoystickDetachVirtual(device);
        }
        SDL_JoystickClose(m_joystick);
        m_joystick = nullptr;
    }

    Relaxed<Uint16> lowMotor = 0;
    Relaxed<Uint16> highMotor = 0;

private:
    /// Locks SDL's joysticks, so that SDL may be called from outside its own thread.
    class Locked
    {
    public:
        Locked() { SDL_LockJoysticks(); }
        ~Locked() { SDL_UnlockJoysticks(); }
        Locked(const Locked &) = delete;
        Locked &operator=(const Locked &) = delete;
    };

    SDL_Joystick *m_joystick = nullptr;
};
