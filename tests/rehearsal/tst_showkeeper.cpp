#include "host.h"
#include "hostlink.h"
#include "recording.h"
#include "rehearsalname.h"
#include "showkeeper.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

std::vector<LdbPoint> lit()
{
    return {{5, 6, 0, 0xFFFFFF, 0, 0, 1, 0}};
}

/// A host that keeps its show, and a game.
struct Rehearsal
{
    RehearsalName name;
    Host host{{.build = 1700, .zoneCount = 2, .ready = true}};
    ShowKeeper keeper{host};
    HostLink game;

    void start()
    {
        if (!host.open())
            qFatal("%s", qPrintable(host.errorString()));
        host.start();
        if (!game.isReady())
            qFatal("The game does not find the host.");
    }
    bool send(const std::vector<LdbPoint> &points)
    {
        return game.sendFrame(0, std::int32_t(points.size()), points.data());
    }
};

/// The content of a recording: the kind of each event; for a frame, -1 minus its number of points.
std::vector<int> contentOf(const QString &path)
{
    Recording recording;
    if (!recording.open(path) || !recording.isComplete())
        return {};
    std::vector<int> content;
    for (qsizetype i = 0; i < recording.size(); ++i)
        content.push_back(recording.entry(i).isFrame() ? -1 - int(recording.frame(i).points.size())
                                                       : int(recording.event(i).kind));
    return content;
}

} // namespace

class tst_ShowKeeper : public QObject
{
    Q_OBJECT

private slots:
    void a_recording_from_the_start_has_the_whole_show();
    void a_recording_begun_during_the_show_starts_with_the_current_frames();
    void a_second_recording_is_self_contained();
    void the_report_is_kept_without_a_recording();
    void a_file_that_cannot_be_written_is_reported();
};

void tst_ShowKeeper::a_recording_from_the_start_has_the_whole_show()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    Rehearsal rehearsal;
    QVERIFY(rehearsal.keeper.startRecording(path));
    rehearsal.start();
    rehearsal.game.openSession();
    QVERIFY(rehearsal.game.switchOutput(true));
    QVERIFY(rehearsal.send(lit()) && rehearsal.send({}));
    QVERIFY(rehearsal.game.switchOutput(false));
    rehearsal.game.closeSession();
    rehearsal.host.close();
    QVERIFY(rehearsal.keeper.isRecording());
    QVERIFY(rehearsal.keeper.stopRecording());
    QVERIFY(!rehearsal.keeper.isRecording());
    QCOMPARE(contentOf(path),
        (std::vector<int>{Event::HostStarted, Event::SessionOpened, Event::OutputEnabled, -2, -1,
            Event::OutputDisabled, Event::SessionClosed, Event::HostEnded}));
}

void tst_ShowKeeper::a_recording_begun_during_the_show_starts_with_the_current_frames()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    Rehearsal rehearsal;
    rehearsal.start();
    rehearsal.game.openSession();
    QVERIFY(rehearsal.game.switchOutput(true));
    int frames = 0;
    connect(&rehearsal.host, &Host::frameReceived, this, [&frames] { ++frames; });
    QVERIFY(rehearsal.send(lit()) && rehearsal.send(lit()));
    QTRY_COMPARE(frames, 2);
    QVERIFY(rehearsal.keeper.startRecording(path));
    QVERIFY(rehearsal.send({}));
    rehearsal.host.close();
    QVERIFY(rehearsal.keeper.stopRecording());
    QCOMPARE(contentOf(path),
        (std::vector<int>{Event::SessionOpened, -2, Event::OutputEnabled, -1, Event::HostEnded}));
}

void tst_ShowKeeper::a_second_recording_is_self_contained()
{
    const QTemporaryDir folder;
    Rehearsal rehearsal;
    rehearsal.start();
    int frames = 0;
    connect(&rehearsal.host, &Host::frameReceived, this, [&frames] { ++frames; });
    for (const QString &name : {u"first"_s, u"second"_s}) {
        QVERIFY(rehearsal.keeper.startRecording(folder.filePath(name)));
        const int before = frames;
        QVERIFY(rehearsal.send({}) && rehearsal.send(lit()));
        QTRY_COMPARE(frames, before + 2);
        QVERIFY(rehearsal.keeper.stopRecording());
    }
    QCOMPARE(contentOf(folder.filePath(u"first"_s)), (std::vector<int>{-1, -2}));
    QCOMPARE(contentOf(folder.filePath(u"second"_s)), (std::vector<int>{-2, -1, -2}));
}

void tst_ShowKeeper::the_report_is_kept_without_a_recording()
{
    Rehearsal rehearsal;
    rehearsal.start();
    rehearsal.game.openSession();
    QVERIFY(rehearsal.game.switchOutput(true));
    QVERIFY(rehearsal.send(lit()));
    rehearsal.game.closeSession();
    rehearsal.host.close();
    const QByteArray report = rehearsal.keeper.report();
    QVERIFY2(report.contains("session closed: zone 1 not dark\n"), report.constData());
    QVERIFY2(report.contains("zone 1: 1 frames, 1 lit, 0 missed, at most 1 points, lit at the end"),
        report.constData());
}

void tst_ShowKeeper::a_file_that_cannot_be_written_is_reported()
{
    Rehearsal rehearsal;
    QVERIFY(!rehearsal.keeper.startRecording(u"/no/such/folder/show.rec"_s));
    QVERIFY(!rehearsal.keeper.errorString().isEmpty());
    QVERIFY(!rehearsal.keeper.isRecording());
}

QTEST_GUILESS_MAIN(tst_ShowKeeper)

#include "tst_showkeeper.moc"
