#include "faults.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int stormRate = 100'000; ///< messages per second and device

/// Both faders send faster than any real one. The game continues, and the window responds.
void midiStorm(ProgramStage &stage)
{
    stage.settings[u"ControlModeLeft"_s] = u"MIDI"_s;
    stage.settings[u"ControlModeRight"_s] = u"MIDI"_s;
    stage.write(u".pong"_s, stage.contentOf(u".pong"_s).replace("KEYBOARD", "MIDI"));
    stage.seams->midiDevices = 2;
    stage.play();
    stage.ask(u"set midiLComboBox 1"_s);
    stage.ask(u"set midiRComboBox 2"_s);
    // A busy machine may fall behind for seconds, and then has to catch up first.
    const int rounds = isLong() ? 3 : 1;
    const int seconds = isLong() ? 10 : 2;
    stage.seams->messagesPerSecond = stormRate;
    for (int round = 0; round < rounds; ++round) {
        const int frames = stage.seams->framesSent;
        QTest::qWait(seconds * 1000);
        QVERIFY2(stage.seams->framesSent > frames, "The game stands still.");
    }
    const qint64 sent = stage.seams->messagesSent;
    stage.seams->messagesPerSecond = 0;
    qInfo("%lld messages in %d s", sent, rounds * seconds);
    stage.changeSpeed(13);
    stage.waitForFrames();
}

/// The pads are listed at the start; then all of them come and go while two are played with.
void padsComeAndGo(ProgramStage &stage)
{
    constexpr std::uint32_t sixteen = 0xFFFF;
    stage.settings[u"ControlModeLeft"_s] = u"XBOX"_s;
    stage.settings[u"ControlModeRight"_s] = u"XBOX"_s;
    stage.write(u".pong"_s, stage.contentOf(u".pong"_s).replace("KEYBOARD", "XBOX"));
    stage.seams->pads = sixteen;
    stage.play();
    QCOMPARE(stage.ask(u"count xboxLComboBox"_s), u"17"_s);
    stage.ask(u"set xboxLComboBox 1"_s);
    stage.ask(u"set xboxRComboBox 16"_s);
    const int times = isLong() ? 2000 : 50;
    for (int time = 0; time < times; ++time) {
        stage.seams->pads = time % 2 == 0 ? 0 : sixteen;
        stage.seams->sticks = static_cast<std::int16_t>(time * 12345);
        const int reads = stage.seams->padReads;
        QVERIFY(QTest::qWaitFor(
            [&] { return stage.seams->padReads > reads + 40; }, ProgramStage::patience));
    }
    stage.changeSpeed(22);
    stage.waitForFrames();
}

} // namespace

std::vector<Fault> deviceFaults()
{
    return {
        {"a MIDI storm on both sides", midiStorm},
        {"sixteen pads that come and go", padsComeAndGo},
    };
}
