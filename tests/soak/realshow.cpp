#include "realshow.h"

#include "cxboxcontroller.h"
#include "matchwatch.h"
#include "numbers.h"

#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int turnsToAdmire = 25;
constexpr int ticksWithoutHost = 30;

PlayerStage::Settings startSettings()
{
    PlayerStage::Settings all = Fader::settings(0);
    all.insert(u"ControlModeRight"_s, u"XBOX"_s);
    all.insert(u"XStartR"_s, QString::number(CXBOXController::ButtonA));
    all.insert(u"XMoveR"_s, QString::number(CXBOXController::ThumbLY));
    all.insert(u"BallSpeed"_s, u"30"_s);
    return all;
}

} // namespace

RealShow::RealShow()
    : m_stage({u"Fader"_s}, 1, startSettings(), PlayerStage::WholeWindow)
{
    m_stage.host.ready = 1;
    m_stage.host.onSendFrame = [this] { watchFrame(); };
}

RealShow::~RealShow()
{
    end();
}

void RealShow::start()
{
    m_stage.open();
    m_game = &m_stage.game();
    m_stage.waitForStatus();
    m_stage.players[0].midiList->setCurrentIndex(1);
    m_stage.players[1].xboxList->setCurrentIndex(1);
    switchOn();
    m_watches = true;
}

void RealShow::switchOn()
{
    m_stage.click(u"enableButton"_s);
    m_stage.click(u"showButton"_s);
    QVERIFY(m_stage.host.outputOn);
    QVERIFY(m_game->gameShown);
}

void RealShow::play()
{
    ++m_turns;
    m_fader.move(m_whim.below(128));
    FakePads::Pad &pad = m_stage.pads.pads[0];
    pad.thumbLY = static_cast<SHORT>(m_whim.below(65536) - 32768);
    const bool presses = m_turns % 6 == 0;
    pad.buttons = m_turns % 6 < 3 ? XINPUT_GAMEPAD_A : 0;
    m_admired = m_game->isOver() ? m_admired + 1 : 0;
    if (presses && (m_admired == 0 || m_admired > turnsToAdmire)) {
        m_fader.pressStart();
        winners += m_admired > 0 ? 1 : 0;
        m_admired = 0;
    }
}

void RealShow::restartHost()
{
    m_stage.host.ready = 0;
    QTRY_VERIFY(!m_stage.find(u"showButton"_s)->isEnabled());
    QVERIFY(!m_game->gameShown);
    QVERIFY(!m_stage.host.outputOn);
    m_stage.tick(1); // the check that reported the loss has ended
    const int sent = m_stage.host.framesSent;
    m_stage.tick(ticksWithoutHost);
    QCOMPARE(m_stage.host.framesSent, sent);
    m_stage.host.ready = 1;
    QTRY_VERIFY(m_stage.find(u"showButton"_s)->isEnabled());
    QVERIFY(!m_game->gameShown);
    QVERIFY(!m_stage.host.outputOn);
    switchOn();
}

void RealShow::end()
{
    m_watches = false;
    m_stage.close();
}

/// Inside the host, on the thread that sent the frame.
void RealShow::watchFrame()
{
    const QList<FakeHost::Frame> frames = m_stage.host.takeFrames();
    m_stage.host.takeCalls();
    const bool lit = !frames.isEmpty() && !frames.last().points.isEmpty();
    {
        const std::lock_guard lock(m_mutex);
        m_lastFrameLit = lit;
    }
    if (!m_watches)
        return;
    breaks(brokenRule(*m_game));
    // The match ends on this thread only, so one that is over was over when the frame was composed.
    if (lit && m_game->isOver())
        breaks(brokenFrame(*m_game, frames.last().points));
    breaks(brokenPace(lit));
}

/// Between two frames in play the ball makes exactly three steps.
QString RealShow::brokenPace(bool lit)
{
    const Flight now = {
        .inPlay = lit && m_game->servePhase == InPlay,
        .ball = m_game->ballPos,
        .vx = m_game->ballVx,
    };
    const Flight last = std::exchange(m_last, now);
    if (!last.inPlay || !now.inPlay || last.vx != now.vx)
        return {};
    comparedFrames += 1;
    qint32 x = last.ball.x;
    for (int tick = 0; tick < 3; ++tick)
        x = truncated(static_cast<float>(x) + last.vx);
    if (x == now.ball.x)
        return {};
    return u"The ball was at %1 and is at %2, not at %3"_s.arg(last.ball.x).arg(now.ball.x).arg(x);
}

void RealShow::breaks(const QString &rule)
{
    const std::lock_guard lock(m_mutex);
    if (m_broken.isEmpty())
        m_broken = rule;
}

QString RealShow::broken() const
{
    const std::lock_guard lock(m_mutex);
    return m_broken;
}

bool RealShow::isDark() const
{
    const std::lock_guard lock(m_mutex);
    return !m_lastFrameLit;
}
