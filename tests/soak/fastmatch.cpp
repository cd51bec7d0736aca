#include "fastmatch.h"

#include "matchwatch.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int ticksPerFrame = 3;
constexpr int fastest = 30; ///< the maximum of the game speed slider
constexpr int ticksPerAction = 20;

PlayerStage::Settings fadersOnBothSides()
{
    PlayerStage::Settings settings = Fader::settings(0);
    settings.insert(Fader::settings(1));
    return settings;
}

} // namespace

FastMatch::FastMatch()
    : m_stage({u"First"_s, u"Second"_s}, 0, fadersOnBothSides())
{
    m_stage.host.ready = 1;
    m_stage.host.recording = false;
    m_stage.open();
    m_stage.players[0].midiList->setCurrentIndex(1);
    m_stage.players[1].midiList->setCurrentIndex(2);
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): not open before
    m_game = &m_stage.game();
    m_game->checkHost();
    m_game->gameShown = true;
    while (m_stage.host.framesSent == 0)
        m_game->UpdatePongDisplay();
    m_stage.host.framesSent = 0;
}

QString FastMatch::tick()
{
    if (ticks % ticksPerAction == 0)
        play();
    // Recording every frame would take most of the time.
    m_stage.host.recording = m_game->isOver() || ticks % 1000 < ticksPerFrame;
    const int scoresBefore = m_game->leftScore + m_game->rightScore;
    m_game->UpdatePongDisplay();
    ++ticks;
    if (m_game->leftScore + m_game->rightScore != scoresBefore)
        ++points;
    const QString broken = brokenRule(*m_game);
    return broken.isEmpty() ? brokenFrame() : broken;
}

/// The controllers act, but leave the winner display alone for two of their turns.
void FastMatch::play()
{
    if (ticks % 20'000 == 0)
        m_game->ballSpeed = fastest - m_whim.below(3);
    const std::array paddles = {m_game->leftPaddle, m_game->rightPaddle};
    for (std::size_t side = 0; side < paddles.size(); ++side)
        m_faders[side].move(m_whim.faderValue(m_game->ballPos, paddles[side]));
    m_admired = m_game->isOver() ? m_admired + 1 : 0;
    if (m_admired == 1 || m_admired == 2)
        return;
    if (m_admired > 0)
        ++winners;
    for (Fader &fader : m_faders)
        fader.pressStart();
}

QString FastMatch::brokenFrame()
{
    const qint64 sent = m_stage.host.framesSent;
    if (sent != ticks / ticksPerFrame)
        return u"%1 frames in %2 ticks"_s.arg(sent).arg(ticks);
    m_stage.host.takeCalls();
    for (const FakeHost::Frame &frame : m_stage.host.takeFrames()) {
        if (QString broken = ::brokenFrame(*m_game, frame.points); !broken.isEmpty())
            return broken;
    }
    return {};
}
