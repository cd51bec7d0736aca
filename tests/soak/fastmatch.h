#pragma once

#include "players.h"
#include "playerstage.h"

#include <array>

/// A match on the test's own thread with a MIDI controller on each side. No event loop runs, so the
/// game's timers do not start and every tick is one of this class.
class FastMatch
{
public:
    FastMatch();

    /// Plays one tick and returns the first rule that it breaks, or an empty text.
    QString tick();

    qint64 points = 0;
    qint64 winners = 0; ///< winner displays that a start press has ended
    qint64 ticks = 0;

private:
    void play();
    QString brokenFrame();

    PlayerStage m_stage;
    Pong *m_game = nullptr;
    Whim m_whim{1};
    std::array<Fader, 2> m_faders = {
        Fader{m_stage.midi, 0, FakeMidi::Thread::Caller},
        Fader{m_stage.midi, 1, FakeMidi::Thread::Caller},
    };
    int m_admired = 0; ///< how often the players have acted since the match was over
};
