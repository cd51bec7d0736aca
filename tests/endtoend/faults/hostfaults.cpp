#include "faults.h"

#include "frames.h"
#include "hoststate.h"
#include "memoryfile.h"
#include "resources.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 endless = 2'000'000'000;

/// In milliseconds.
int hang()
{
    return isLong() ? 10'000 : 1'000;
}

/// The host is lost for a moment and asked everything again.
void loseAndFind(ProgramStage &stage)
{
    stage.seams->ready = 0;
    QVERIFY(QTest::qWaitFor([&] { return !stage.hasHost(); }, ProgramStage::patience));
    QVERIFY(!stage.seams->outputOn);
    stage.seams->ready = 1;
    QVERIFY(QTest::qWaitFor([&] { return stage.hasHost(); }, ProgramStage::patience));
    QVERIFY(!stage.seams->outputOn);
}

/// One call blocks on the game thread; meanwhile the operator goes on.
void hangsInGame(ProgramStage &stage, HostCall call)
{
    stage.play();
    stage.seams->blockTime = hang();
    stage.seams->blocks = call;
    QVERIFY(QTest::qWaitFor([&] { return bool(stage.seams->isBlocked); }, ProgramStage::patience));
    stage.changeSpeed(25);
    QVERIFY2(QTest::qWaitFor([&] { return !stage.seams->isBlocked; }, ProgramStage::patience),
        "The call still blocks.");
    stage.waitForFrames();
}

/// One call blocks on the GUI thread; the game goes on afterwards.
void hangsInWindow(ProgramStage &stage, HostCall call, void (*cause)(ProgramStage &))
{
    stage.play();
    stage.seams->blockTime = hang();
    stage.seams->blocks = call;
    cause(stage);
    QCOMPARE(stage.seams->blocks.load(), HostCall::None);
    stage.changeSpeed(25);
    stage.waitForFrames();
}

void frameHangs(ProgramStage &stage)
{
    hangsInGame(stage, HostCall::SendFrame);
}

void readinessHangs(ProgramStage &stage)
{
    hangsInGame(stage, HostCall::Ready);
}

void zoneCountHangs(ProgramStage &stage)
{
    hangsInWindow(stage, HostCall::ZoneCount, [](ProgramStage &stage) {
        loseAndFind(stage);
        stage.serve();
    });
}

void outputHangs(ProgramStage &stage)
{
    hangsInWindow(stage, HostCall::SwitchOutput, [](ProgramStage &stage) {
        stage.ask(u"click enableButton"_s);
        QVERIFY(!stage.seams->outputOn);
        stage.ask(u"click enableButton"_s);
    });
    QVERIFY(stage.seams->outputOn);
}

/// The window is closed while a frame is being sent, and the last frames still reach the host.
void closedWhileFrameHangs(ProgramStage &stage)
{
    stage.play();
    stage.seams->blockTime = hang();
    stage.seams->blocks = HostCall::SendFrame;
    QVERIFY(QTest::qWaitFor([&] { return bool(stage.seams->isBlocked); }, ProgramStage::patience));
}

void zones(ProgramStage &stage, qint32 count, int entries)
{
    stage.play();
    stage.seams->zones = count;
    loseAndFind(stage);
    QCOMPARE(stage.ask(u"count zoneComboBox"_s).toInt(), entries);
    stage.serve();
    stage.waitForFrames();
}

void minusOneZone(ProgramStage &stage)
{
    zones(stage, -1, 1);
}

void noZone(ProgramStage &stage)
{
    zones(stage, 0, 1);
}

void endlessZones(ProgramStage &stage)
{
    zones(stage, endless, 1001);
}

/// Answers that make the host unusable: it counts as lost until they are right again.
void unusable(ProgramStage &stage, std::atomic<std::int32_t> Seams::*answer, qint32 wrong)
{
    stage.play();
    const qint32 right = stage.seams->*answer;
    stage.seams->*answer = wrong;
    QVERIFY(QTest::qWaitFor([&] { return !stage.hasHost(); }, ProgramStage::patience));
    QVERIFY(stage.isDark());
    QCOMPARE(stage.ask(u"text showButton"_s), u"Show pong"_s);
    stage.seams->*answer = right;
    stage.serve();
    stage.waitForFrames();
}

void negativeBuild(ProgramStage &stage)
{
    unusable(stage, &Seams::build, -1700);
}

void readyTwo(ProgramStage &stage)
{
    unusable(stage, &Seams::ready, 2);
}

/// The selected zone disappears, others appear: frames go on to it until the host is asked again,
/// then to the first.
void zonesChange(ProgramStage &stage)
{
    stage.play();
    stage.ask(u"click showButton"_s);
    stage.waitForFrames();
    stage.ask(u"set zoneComboBox 3"_s);
    stage.ask(u"click showButton"_s);
    for (const qint32 count : {1, 0, 8, 2}) {
        stage.seams->zones = count;
        stage.waitForFrames();
        QVERIFY(stage.seams->points[2] > 0);
    }
    // A zone that is left keeps its picture, as it does when the host comes back.
    stage.ask(u"click showButton"_s);
    stage.waitForFrames();
    loseAndFind(stage);
    stage.serve();
    stage.waitForFrames();
    QVERIFY(stage.seams->points[0] > 0);
    QCOMPARE(stage.seams->points[2].load(), 0);
}

// The rehearsal host --------------------------------------------------------------------------

class HostProcess
{
public:
    explicit HostProcess(const ProgramStage &stage)
    {
        m_process.setProcessEnvironment(stage.environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(
            QCoreApplication::applicationDirPath() + "/rehearsalhost"_L1, QStringList());
        QByteArray output;
        while (!output.contains("is running") && m_process.waitForReadyRead(ProgramStage::patience))
            output += m_process.readAllStandardOutput();
        QVERIFY2(output.contains("is running"), "The host did not start.");
    }
    ~HostProcess() { kill(); }
    HostProcess(const HostProcess &) = delete;
    HostProcess &operator=(const HostProcess &) = delete;

    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

/// Killed while it plays, and started again; the operator switches everything on each time.
void hostRestarts(ProgramStage &stage)
{
    constexpr int few = 2;
    const int rounds = isLong() ? 100 : few;
    Resources before = {};
    stage.start(ProgramStage::Rehearsal);
    for (int round = 0; round < rounds; ++round) {
        HostProcess host(stage);
        stage.serve();
        QVERIFY(!QTest::currentTestFailed());
        if (round == 1) // every buffer has its size
            before = Resources::of(stage.processId());
        host.kill();
        QVERIFY(QTest::qWaitFor([&] { return !stage.hasHost(); }, ProgramStage::patience));
        QCOMPARE(stage.ask(u"text enableButton"_s), u"Enable Laser Output"_s);
        QCOMPARE(stage.ask(u"text showButton"_s), u"Show pong"_s);
    }
    const Resources after = Resources::of(stage.processId());
    qInfo("%d restarts, before: %s, after: %s", rounds, qPrintable(before.text()),
        qPrintable(after.text()));
    QCOMPARE(after.threads, before.threads);
    QCOMPARE(after.handles, before.handles);
    QVERIFY(after.resident - before.resident < 1 << 20);
}

/// Fills the memory shared with the host with random bytes, repeatedly, from the byte `from` on.
void fillWithNoise(SharedMemory &memory, std::size_t from, int times)
{
    auto *bytes = reinterpret_cast<uchar *>(&memory);
    QRandomGenerator random(7);
    for (int time = 0; time < times; ++time) {
        for (std::size_t at = from; at + 4 <= sizeof memory; at += 4) {
            const quint32 noise = random.generate();
            std::memcpy(bytes + at, &noise, 4);
        }
        beat(memory, sharedNow());
        QTest::qWait(10);
    }
}

/// The memory is full of noise when the program starts and while it plays: everywhere, which looks
/// like no host, and behind the signature of a running host.
void memoryNoise(ProgramStage &stage)
{
    constexpr std::size_t signature = sizeof(std::uint64_t) + sizeof(std::uint32_t);
    qputenv("XDG_RUNTIME_DIR", stage.path(QString()).toUtf8());
    qputenv(rehearsalVariable, "faults");
    MemoryFile file;
    QVERIFY(file.create(memoryFilePath()));
    SharedMemory &memory = *file.memory();
    const int times = isLong() ? 200 : 8;
    fillWithNoise(memory, 0, 1);
    stage.start(ProgramStage::Rehearsal);
    fillWithNoise(memory, 0, times);
    QVERIFY(!stage.hasHost());
    const auto beats = [&] { beat(memory, sharedNow()); };
    openHost(memory, {}, sharedNow());
    QVERIFY(QTest::qWaitFor([&] { return beats(), stage.hasHost(); }, ProgramStage::patience));
    stage.serve();
    fillWithNoise(memory, signature, times);
    // A host that starts over the noise finds a game that works.
    openHost(memory, {.zoneCount = 1}, sharedNow());
    memory.zones[0].newest.write(0);
    QVERIFY(QTest::qWaitFor(
        [&] { return beats(), !stage.hasHost() || !isOutputOn(memory); }, ProgramStage::patience));
    QVERIFY(QTest::qWaitFor([&] { return beats(), stage.hasHost(); }, ProgramStage::patience));
    FrameReader reader(memory.zones[0]);
    Frame frame;
    const auto receives = [&] { return beats(), reader.take(frame); };
    QVERIFY2(QTest::qWaitFor(receives, ProgramStage::patience), "There are no frames.");
    closeHost(memory);
}

} // namespace

std::vector<Fault> hostFaults()
{
    // The loss of the host in a match: a_match_survives_the_host_and_output_is_off_afterwards; a
    // library that lacks a name: a_library_without_one_function_counts_as_missing, both in
    // tests/endtoend/run.
    return {
        {"the host hangs in a frame", frameHangs},
        {"the host hangs when asked whether it is ready", readinessHangs},
        {"the host hangs when asked for its zones", zoneCountHangs},
        {"the host hangs when the output is switched on", outputHangs},
        {"the window is closed while the host hangs", closedWhileFrameHangs},
        {"the host has -1 zones", minusOneZone},
        {"the host has no zone", noZone},
        {"the host has 2,000,000,000 zones", endlessZones},
        {"the host's build is negative", negativeBuild},
        {"the host answers 2 when asked whether it is ready", readyTwo},
        {"the zones change while playing", zonesChange},
        {"the host is killed and restarted again and again", hostRestarts},
        {"the shared memory is full of noise", memoryNoise},
    };
}
