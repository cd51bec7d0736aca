#include "matchrecording.h"

#include "fakehost.h"
#include "pong.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace {

constexpr quint64 fnvBasis = 0xcbf29ce484222325;
constexpr quint64 fnvPrime = 0x100000001b3;

/// The 64-bit FNV-1a hash of the records that the host receives.
quint64 hashOf(const QList<LdbPoint> &points)
{
    quint64 hash = fnvBasis;
    const auto *bytes = reinterpret_cast<const quint8 *>(points.constData());
    for (qsizetype i = 0; i < points.size() * qsizetype(sizeof(LdbPoint)); ++i)
        hash = (hash ^ bytes[i]) * fnvPrime;
    return hash;
}

QByteArray hexOf(quint64 value, int digits)
{
    return QByteArray::number(value, 16).rightJustified(digits, '0');
}

QByteArray hexOf(float value)
{
    return hexOf(std::bit_cast<quint32>(value), 8);
}

/// The recorded parts of a match's state, as text.
using State = std::array<QByteArray, 8>;

State stateOf(const Match &match)
{
    const auto number = [](qint32 value) { return QByteArray::number(value); };
    return {
        'b' + number(match.ballPos.x) + ',' + number(match.ballPos.y),
        'l' + number(match.leftPaddle.y),
        'r' + number(match.rightPaddle.y),
        'x' + hexOf(match.ballVx),
        'y' + hexOf(match.ballVy),
        'p' + number(match.servePhase),
        's' + number(match.leftScore) + '-' + number(match.rightScore),
        match.pointPending ? "w1" : "w0",
    };
}

/// A game that is ticked by hand, and its recording.
class Recorder
{
public:
    Recorder()
    {
        m_pong.checkHost();
        tickToFrame();
    }

    /// Plays one line of a script. Returns false if it is malformed.
    bool play(const QByteArray &line)
    {
        const QByteArrayList words = line.simplified().split(' ');
        if (words.size() == 1)
            return playWord(words[0]);
        bool isNumber = false;
        const int number = words.last().toInt(&isNumber);
        if (words.size() == 2 && words[0] == "speed" && isNumber)
            m_pong.ballSpeed = number;
        else if (words.size() == 2 && words[0] == "tick" && isNumber && number > 0)
            tick(number);
        else if (words.size() == 2 && words[0] == "start" && sideOf(words[1]) >= 0)
            m_pong.requestStart(sideOf(words[1]));
        else if (words.size() == 3 && words[0] == "step" && sideOf(words[1]) >= 0 && isNumber)
            m_pong.setPaddleInput(sideOf(words[1]), number);
        else
            return false;
        return true;
    }

    /// The states after the ticks since the last call, one line each.
    QByteArray takeStates() { return std::exchange(m_states, {}); }

private:
    static int sideOf(const QByteArray &word)
    {
        return static_cast<int>(QByteArrayList{"left", "right"}.indexOf(word));
    }

    bool playWord(const QByteArray &word)
    {
        if (word == "show")
            m_pong.gameShown = true;
        else if (word == "hide")
            m_pong.gameShown = false;
        else if (word == "reset")
            m_pong.resetMatch();
        else
            return false;
        return true;
    }

    /// Ticks until a frame is sent, because the process-wide divider may be at any count; then
    /// resets the match.
    void tickToFrame()
    {
        m_pong.gameShown = true;
        while (m_host.framesSent == 0)
            m_pong.UpdatePongDisplay();
        m_host.takeFrames();
        static_cast<Match &>(m_pong) = Match();
    }

    void tick(int times)
    {
        for (int i = 0; i < times; ++i) {
            m_pong.UpdatePongDisplay();
            writeState();
        }
    }

    void writeState()
    {
        m_states += '=' + QByteArray::number(++m_ticks);
        const State state = stateOf(m_pong);
        for (size_t i = 0; i < state.size(); ++i) {
            if (state.at(i) != m_written.at(i))
                m_states += ' ' + state.at(i);
        }
        m_written = state;
        for (const FakeHost::Frame &frame : m_host.takeFrames()) {
            m_states += " f" + QByteArray::number(frame.points.size()) + ':'
                + hexOf(hashOf(frame.points), 16);
        }
        m_states += '\n';
    }

    FakeHost m_host;
    Pong m_pong;
    State m_written;
    QByteArray m_states;
    int m_ticks = 0;
};

} // namespace

Recording recordMatch(const QByteArray &script)
{
    Recorder recorder;
    Recording recording;
    QByteArrayList lines = script.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines[i].trimmed();
        if (line.startsWith('='))
            continue;
        if (!line.isEmpty() && !line.startsWith('#') && !recorder.play(line)) {
            recording.error = "line " + QByteArray::number(i + 1) + ": cannot read \"" + line + '"';
            break;
        }
        recording.text += line + '\n' + recorder.takeStates();
    }
    return recording;
}

QByteArray firstDifference(const QByteArray &expected, const QByteArray &actual)
{
    const QByteArrayList wanted = expected.split('\n');
    const QByteArrayList got = actual.split('\n');
    for (qsizetype i = 0; i < std::max(wanted.size(), got.size()); ++i) {
        const QByteArray wantedLine = wanted.value(i);
        const QByteArray gotLine = got.value(i);
        if (wantedLine == gotLine && i < wanted.size() && i < got.size())
            continue;
        const QByteArray &tick = gotLine.startsWith('=') ? gotLine : wantedLine;
        return "tick " + tick.mid(1, tick.indexOf(' ') - 1) + ", line " + QByteArray::number(i + 1)
            + ": recorded \"" + wantedLine + "\", now \"" + gotLine + '"';
    }
    return {};
}
