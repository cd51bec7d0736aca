#include "fakehost.h"
#include "fakemidi.h"
#include "fakepads.h"
#include "mainwindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <thread>
#include <vector>

// The latency from a controller to the paddle's step that the game reads, through the complete main
// window with a match in play: the left player has a MIDI device, the right one a gamepad. Prints
// one line of JSON per round, with the 99th percentiles in nanoseconds.

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto giveUpAfter = 2s;

/// The minimal signal across threads: the arguments of a MIDI message, the same receiving thread,
/// and a slot that stores one number.
class Bare : public QObject
{
    Q_OBJECT

public:
    Bare()
    {
        connect(
            this, &Bare::sent, this,
            [this](int, unsigned char, unsigned char, unsigned char value) { stored = value; },
            Qt::QueuedConnection);
    }

    Relaxed<qint32> stored = -1;

signals:
    void sent(int play, unsigned char data1, unsigned char data2, unsigned char data3);
};

/// The time from a cause to its effect; waits without sleeping, for precision.
Clock::duration timed(const std::function<void()> &cause, const std::function<bool()> &effect)
{
    const auto begin = Clock::now();
    cause();
    while (!effect()) {
        if (Clock::now() - begin > giveUpAfter) {
            std::fputs("A controller event did not arrive.\n", stderr);
            std::_Exit(1);
        }
    }
    return Clock::now() - begin;
}

long long percentile99(std::vector<Clock::duration> &times)
{
    const auto place = times.begin() + static_cast<std::ptrdiff_t>(times.size() * 99 / 100);
    std::nth_element(times.begin(), place, times.end());
    return std::chrono::nanoseconds(*place).count();
}

/// Operates the two controllers from its own thread.
class Player
{
public:
    Player(const Pong &game, FakeMidi &midi, FakePads &pads, Bare &bare)
        : m_game(game)
        , m_midi(midi)
        , m_pads(pads)
        , m_bare(bare)
    {
    }

    /// Sends `samples` messages and as many bare signals in turn, at times unrelated to the
    /// window's timers.
    void playMidi(int samples)
    {
        std::vector<Clock::duration> messages;
        std::vector<Clock::duration> bareSignals;
        for (int i = 0; i < samples; ++i) {
            const int value = i % 2 ? 100 : 20;
            pause(100us, 1500us);
            messages.push_back(timed(
                [&] { m_midi.send(0, 0x07B2U | DWORD(value) << 16, FakeMidi::Thread::Caller); },
                [&] { return m_game.leftStep == value - 64; }));
            pause(100us, 1500us);
            bareSignals.push_back(
                timed([&] { emit m_bare.sent(0, 0xB2, 7, static_cast<unsigned char>(value)); },
                    [&] { return m_bare.stored == value; }));
        }
        std::printf("{\"midi\": %lld, \"signal\": %lld}\n", percentile99(messages),
            percentile99(bareSignals));
    }

    /// Pushes the stick `samples` times, at times unrelated to the poll.
    void playPad(int samples)
    {
        std::vector<Clock::duration> moves;
        for (int i = 0; i < samples; ++i) {
            const SHORT value = i % 2 ? 20000 : -20000;
            pause(0us, 10000us);
            moves.push_back(timed([&] { m_pads.pads[0].thumbLX = value; },
                [&] {
                    std::this_thread::sleep_for(10us);
                    return m_game.rightStep != 0 && (m_game.rightStep > 0) == (value > 0);
                }));
        }
        std::printf("{\"pad\": %lld}\n", percentile99(moves));
    }

private:
    void pause(std::chrono::microseconds least, std::chrono::microseconds most)
    {
        std::uniform_int_distribution<long long> any(least.count(), most.count());
        std::this_thread::sleep_for(std::chrono::microseconds(any(m_chance)));
    }

    const Pong &m_game;
    FakeMidi &m_midi;
    FakePads &m_pads;
    Bare &m_bare;
    std::minstd_rand m_chance{1};
};

void writeSettings()
{
    QSettings store(u".pong"_s, QSettings::IniFormat);
    store.setValue("ControlModeLeft", "MIDI");
    store.setValue("CC_00", 0xB2);
    store.setValue("CC_01", 7);
    store.setValue("ControlModeRight", "XBOX");
}

void workUntil(const std::function<bool()> &condition)
{
    const auto begin = Clock::now();
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (Clock::now() - begin > 20s) {
            std::fputs("The window did not get into play.\n", stderr);
            std::_Exit(1);
        }
    }
}

/// Chooses the devices, shows the game and starts a point, like an operator.
void beginPlay(MainWindow &window, const FakeHost &host)
{
    const auto list = [&](const char *name) { return window.findChild<QComboBox *>(name); };
    auto *show = window.findChild<QAbstractButton *>("showButton");
    workUntil([&] { return list("xboxRComboBox")->count() == 2 && show->isEnabled(); });
    list("midiLComboBox")->setCurrentIndex(1);
    list("xboxRComboBox")->setCurrentIndex(1);
    show->click();
    const int before = host.framesSent;
    workUntil([&] { return host.framesSent > before + 10; });
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QCommandLineParser options;
    const QCommandLineOption rounds(u"rounds"_s, {}, u"N"_s, u"5"_s);
    const QCommandLineOption samples(u"samples"_s, {}, u"N"_s, u"2000"_s);
    const QCommandLineOption padSamples(u"pad-samples"_s, {}, u"N"_s, u"500"_s);
    options.addOptions({rounds, samples, padSamples});
    options.process(application);

    const QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    writeSettings();
    FakeHost host;
    host.recording = false;
    FakeMidi midi({u"Fader"_s});
    FakePads pads(1);
    Bare bare;
    MainWindow window;
    window.show();
    beginPlay(window, host);

    Player player(window.game(), midi, pads, bare);
    std::jthread playing([&] {
        for (int i = 0; i < options.value(rounds).toInt(); ++i) {
            player.playMidi(options.value(samples).toInt());
            player.playPad(options.value(padSamples).toInt());
        }
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    return QApplication::exec();
}

#include "latency.moc"
