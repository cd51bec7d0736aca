#pragma once

#include "fakemidi.h"
#include "match.h"
#include "playerstage.h"

#include <QRandomGenerator>

#include <cstdlib>

/// The MIDI controller of one player, with a fader and a button, as the settings know them.
class Fader
{
public:
    static constexpr int moveStatus = 0xB0; ///< control change
    static constexpr int moveNumber = 7;
    static constexpr int startStatus = 0x90; ///< note on
    static constexpr int startNumber = 60;

    /// The settings of a player on this side, 0 left, 1 right, with such a controller.
    static PlayerStage::Settings settings(int side)
    {
        const auto key = [side](const char *control, int byte) {
            return midiKey(QLatin1StringView(control), side, byte);
        };
        const auto mode = QLatin1StringView(side == 0 ? "ControlModeLeft" : "ControlModeRight");
        return {{mode, QStringLiteral("MIDI")}, {key("CC", 0), QString::number(moveStatus)},
            {key("CC", 1), QString::number(moveNumber)},
            {key("Start", 0), QString::number(startStatus)},
            {key("Start", 1), QString::number(startNumber)}};
    }

    /// Sends from an input device of the fake MIDI system, on the thread that the fake calls from.
    Fader(FakeMidi &midi, int device, FakeMidi::Thread thread)
        : m_midi(midi)
        , m_device(device)
        , m_thread(thread)
    {
    }

    void move(int value) { send(moveStatus, moveNumber, value); }
    void pressStart() { send(startStatus, startNumber, 127); }

private:
    void send(int status, int number, int value)
    {
        m_midi.send(m_device, DWORD(status | number << 8 | value << 16), m_thread);
    }

    FakeMidi &m_midi;
    int m_device;
    FakeMidi::Thread m_thread;
};

/// Decides where a player steers: now and then after the ball, otherwise out of its way, so that
/// there are rallies but far more misses. The same seed always decides the same.
class Whim
{
public:
    explicit Whim(quint32 seed)
        : m_random(seed)
    {
    }

    /// A fader's value, 0 ... 127; 64 does not move the paddle.
    int faderValue(Point ball, Point paddle)
    {
        const bool isBelow = ball.y > paddle.y;
        if (below(8) == 0)
            return isBelow ? 127 : 0;
        const bool near = std::abs(ball.y - paddle.y) < 2 * paddleHalf;
        return near ? (isBelow ? 0 : 127) : m_random.bounded(128);
    }
    int below(int limit) { return m_random.bounded(limit); }

private:
    QRandomGenerator m_random;
};
