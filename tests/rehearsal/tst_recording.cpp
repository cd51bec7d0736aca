#include "gamepicture.h"
#include "recording.h"
#include "recordingformat.h"
#include "shows.h"
#include "textdump.h"

#include <QBuffer>
#include <QRandomGenerator>

#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

bool samePoints(const std::vector<LdbPoint> &a, const std::vector<LdbPoint> &b)
{
    return a.size() == b.size()
        && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(LdbPoint)) == 0);
}

/// Random frames, each a modification of the previous one in its zone.
Show anyShow(quint32 seed, int frames)
{
    QRandomGenerator random(seed);
    Show show;
    std::array<std::vector<LdbPoint>, maxZones> last;
    const auto anyFloat = [&random] {
        const auto plain = float(random.bounded(-40'000, 40'000));
        const std::array values = {plain, plain, plain, plain + 0.5F, -0.0F,
            std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity(), 3e38F,
            16'777'216.0F, -16'777'216.0F, 16'777'218.0F};
        return values.at(std::size_t(random.bounded(int(values.size()))));
    };
    for (int i = 0; i < frames; ++i) {
        const int zone = random.bounded(maxZones);
        auto &points = last.at(std::size_t(zone));
        points.resize(std::size_t(random.bounded(30)));
        for (LdbPoint &point : points) {
            if (random.bounded(3) > 0)
                continue;
            const auto byte = [&random] { return std::uint8_t(random.bounded(256)); };
            point = {anyFloat(), anyFloat(), random.bounded(2) ? 0.0F : anyFloat(),
                std::int32_t(random.generate()), std::uint8_t(random.bounded(2)), 0, byte(), 0};
        }
        ZoneFrame frame = frameAt(i * 3, points, zone);
        frame.frame.missed = random.bounded(4) == 0 ? quint64(random.bounded(1'000'000)) : 0;
        show.push_back(frame);
        if (random.bounded(5) == 0) {
            show.push_back(
                eventAt(i * 3 + 1, Event::Kind(random.bounded(Event::kinds)), random.generate64()));
        }
    }
    return show;
}

Show smallShow()
{
    return {eventAt(0, Event::HostStarted), eventAt(5, Event::SessionOpened, 4711),
        frameAt(9, gamePicture(0)), eventAt(10, Event::OutputEnabled),
        frameAt(18, gamePicture(0.1)), frameAt(27, gamePicture(0.2), 3), frameAt(36, {}),
        eventAt(40, Event::HostEnded)};
}

/// The byte that a message names; -1 if it names none.
qsizetype byteIn(const QString &problem)
{
    const QString number = problem.section(u"Damaged at byte "_s, 1).section(u':', 0, 0);
    bool ok = false;
    const qsizetype byte = number.toLongLong(&ok);
    return ok ? byte : -1;
}

} // namespace

class tst_Recording : public QObject
{
    Q_OBJECT

private slots:
    void a_recording_is_lossless();
    void times_are_kept_in_microseconds();
    void any_frame_can_be_read_in_any_order();
    void an_unchanged_picture_takes_a_few_bytes();
    void a_recording_can_be_read_while_it_grows();
    void a_file_that_is_not_a_recording_is_reported_with_its_first_wrong_byte_data();
    void a_file_that_is_not_a_recording_is_reported_with_its_first_wrong_byte();
    void a_changed_byte_is_named_by_its_record();
    void a_cut_recording_keeps_what_comes_before();
    void bytes_after_the_end_are_named();
    void content_out_of_range_is_named_data();
    void content_out_of_range_is_named();
    void a_missing_file_is_reported();
    void a_recording_that_cannot_be_written_says_so();
    void a_full_disk_is_reported_at_the_end();
    void a_dump_contains_every_point();
};

void tst_Recording::a_recording_is_lossless()
{
    for (quint32 seed = 1; seed <= 20; ++seed) {
        const Show show = anyShow(seed, 500);
        Recording recording;
        QVERIFY2(recording.read(recorded(show)), qPrintable(recording.problem()));
        QVERIFY(recording.isComplete());
        QCOMPARE(recording.size(), qsizetype(show.size()));
        for (qsizetype i = 0; i < recording.size(); ++i) {
            const auto &expected = show[std::size_t(i)];
            if (const auto *event = std::get_if<Event>(&expected)) {
                QVERIFY(!recording.entry(i).isFrame());
                QCOMPARE(recording.event(i).kind, event->kind);
                QCOMPARE(recording.event(i).process, event->process);
                QCOMPARE(recording.event(i).at, event->at - showStart);
                continue;
            }
            const auto &[zone, frame] = std::get<ZoneFrame>(expected);
            QCOMPARE(recording.entry(i).zone, zone);
            QCOMPARE(recording.entry(i).at, frame.sentAt - showStart);
            QCOMPARE(recording.frame(i).sentAt, frame.sentAt - showStart);
            QCOMPARE(recording.frame(i).missed, frame.missed);
            QVERIFY(samePoints(recording.frame(i).points, frame.points));
        }
    }
}

void tst_Recording::times_are_kept_in_microseconds()
{
    Recording recording;
    const Event late = {Event::OutputEnabled, showStart + 5'000'999, 0};
    const Event early = {Event::OutputDisabled, showStart + 4'000'000, 0};
    QVERIFY(recording.read(recorded({late, early})));
    QCOMPARE(recording.entry(0).at, SharedTime(5'000'000));
    QCOMPARE(recording.entry(1).at, SharedTime(4'000'000));
}

void tst_Recording::any_frame_can_be_read_in_any_order()
{
    const Show show = anyShow(7, 3000);
    Recording recording;
    QVERIFY(recording.read(recorded(show)));
    QRandomGenerator random(8);
    for (int i = 0; i < 2000; ++i) {
        const qsizetype index = random.bounded(qsizetype(show.size()));
        if (const auto *frame = std::get_if<ZoneFrame>(&show[std::size_t(index)]))
            QVERIFY(samePoints(recording.frame(index).points, frame->frame.points));
    }
}

void tst_Recording::an_unchanged_picture_takes_a_few_bytes()
{
    constexpr int frames = 12'800;
    Show still;
    Show hidden;
    for (int i = 0; i < frames; ++i) {
        still.push_back(frameAt(9 * i, gamePicture(0)));
        hidden.push_back(frameAt(3 * i, {}));
    }
    QVERIFY(recorded(hidden).size() < qsizetype(12) * frames);
    QVERIFY(recorded(still).size() < qsizetype(30) * frames);
}

void tst_Recording::a_recording_can_be_read_while_it_grows()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    Recorder recorder;
    QVERIFY(recorder.open(path));
    recorder.begin(showStart);
    Recording recording;
    QVERIFY(recording.open(path));
    QCOMPARE(recording.size(), 0);
    write(recorder, smallShow());
    recorder.flush();
    QVERIFY(recording.open(path));
    QCOMPARE(recording.size(), qsizetype(smallShow().size()));
    QVERIFY(!recording.isComplete());
    QVERIFY(recorder.finish());
    QVERIFY(recording.open(path));
    QVERIFY(recording.isComplete());
}

void tst_Recording::a_file_that_is_not_a_recording_is_reported_with_its_first_wrong_byte_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qsizetype>("byte");
    QTest::addRow("nothing") << QByteArray() << qsizetype(0);
    QTest::addRow("something else") << QByteArray("PNG") << qsizetype(0);
    QTest::addRow("nearly") << QByteArray("RALLYRAC") << qsizetype(6);
    QTest::addRow("only the beginning") << QByteArray("RALLYREC") << qsizetype(8);
    QTest::addRow("another version") << QByteArray("RALLYREC\x02") << qsizetype(8);
}

void tst_Recording::a_file_that_is_not_a_recording_is_reported_with_its_first_wrong_byte()
{
    QFETCH(QByteArray, bytes);
    Recording recording;
    QVERIFY(!recording.read(bytes));
    QTEST(byteIn(recording.problem()), "byte");
    QCOMPARE(recording.size(), 0);
}

void tst_Recording::a_changed_byte_is_named_by_its_record()
{
    const QByteArray whole = recorded(smallShow());
    for (qsizetype byte = 0; byte < whole.size(); ++byte) {
        QByteArray changed = whole;
        changed[byte] = char(changed[byte] ^ 0x10);
        Recording recording;
        QVERIFY2(!recording.read(changed), qPrintable(QString::number(byte)));
        const qsizetype named = byteIn(recording.problem());
        QVERIFY2(named >= 0 && named <= byte, qPrintable(recording.problem()));
        // Everything before the record is readable, and the record is the changed one.
        Recording before;
        QVERIFY(named < magicSize + 1 || before.read(whole.first(named)));
        QCOMPARE(recording.size(), before.size());
    }
}

void tst_Recording::a_cut_recording_keeps_what_comes_before()
{
    const QByteArray whole = recorded(smallShow());
    qsizetype last = 0;
    for (qsizetype size = magicSize + 1; size < whole.size(); ++size) {
        Recording recording;
        const bool boundary = recording.read(whole.first(size));
        QVERIFY(!recording.isComplete());
        QVERIFY(recording.size() >= last);
        if (boundary)
            QVERIFY(recording.problem().isEmpty());
        else
            QVERIFY2(byteIn(recording.problem()) < size, qPrintable(recording.problem()));
        last = recording.size();
    }
    QCOMPARE(last, qsizetype(smallShow().size()));
}

void tst_Recording::bytes_after_the_end_are_named()
{
    const QByteArray whole = recorded(smallShow());
    Recording recording;
    QVERIFY(!recording.read(whole + 'x'));
    QCOMPARE(byteIn(recording.problem()), whole.size());
    QCOMPARE(recording.size(), qsizetype(smallShow().size()));
}

void tst_Recording::content_out_of_range_is_named_data()
{
    QTest::addColumn<char>("type");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("offset"); // of the reported byte in the content
    QTest::addRow("unknown type") << 'X' << QByteArray("\0", 1) << 0;
    QTest::addRow("no content") << 'W' << QByteArray() << 0;
    QTest::addRow("zone 8") << 'W' << QByteArray("\0\x08\0\0", 4) << 2;
    QTest::addRow("8193 points") << 'W' << QByteArray("\0\0\0\x81\x40", 5) << 3;
    QTest::addRow("a count of one without points") << 'W' << QByteArray("\0\0\0\x01", 4) << 4;
    QTest::addRow("a point of the frame before in a whole one")
        << 'W' << QByteArray("\0\0\0\x01\x01\0", 6) << 4;
    QTest::addRow("a change of nothing") << 'C' << QByteArray("\0\0\0\0", 4) << 3;
    QTest::addRow("a run of no points") << 'W' << QByteArray("\0\0\0\x01\0\0", 6) << 6;
    QTest::addRow("unknown part") << 'W' << QByteArray("\0\0\0\x01\0\x01\x20", 7) << 7;
    QTest::addRow("more than there is") << 'W' << QByteArray("\0\0\0\0\0", 5) << 4;
    QTest::addRow("unknown event") << 'H' << QByteArray("\0\x07\0", 3) << 2;
    QTest::addRow("a number without end") << 'H' << QByteArray(12, '\xff') << 0;
    QTest::addRow("a time beyond any show")
        << 'H' << QByteArray("\xff\xff\xff\xff\xff\xff\xff\x7f\0\0", 10) << 0;
    QTest::addRow("a wrong count at the end") << 'E' << QByteArray("\x01") << 1;
}

void tst_Recording::content_out_of_range_is_named()
{
    QFETCH(char, type);
    QFETCH(QByteArray, content);
    QFETCH(int, offset);
    QByteArray record = type + QByteArray(1, char(content.size())) + content;
    const quint16 sum = qChecksum(record);
    record += char(sum & 0xff);
    record += char(sum >> 8);
    const QByteArray head = QByteArray(recordingMagic, magicSize) + '\x01';
    Recording recording;
    QVERIFY(!recording.read(head + record));
    QVERIFY2(recording.problem().contains(u"invalid"_s), qPrintable(recording.problem()));
    QCOMPARE(byteIn(recording.problem()), head.size() + 2 + offset);
    QCOMPARE(recording.size(), 0);
}

void tst_Recording::a_missing_file_is_reported()
{
    Recording recording;
    QVERIFY(!recording.open(u"/no/such/file"_s));
    QVERIFY(recording.problem().startsWith(u"Cannot read \"/no/such/file\": "_s));
}

void tst_Recording::a_recording_that_cannot_be_written_says_so()
{
    const QTemporaryDir folder;
    Recorder recorder;
    QVERIFY(!recorder.open(folder.path()));
    QVERIFY(!recorder.errorString().isEmpty());
    QVERIFY(!recorder.isOpen());
}

void tst_Recording::a_full_disk_is_reported_at_the_end()
{
    if (!QFile::exists(u"/dev/full"_s))
        QSKIP("This system has no /dev/full.");
    Recorder recorder;
    recorder.open(u"/dev/full"_s);
    write(recorder, smallShow());
    QVERIFY(!recorder.finish());
}

void tst_Recording::a_dump_contains_every_point()
{
    Show show = {eventAt(0, Event::HostStarted), eventAt(1, Event::SessionOpened, 42),
        eventAt(2, Event::OutputEnabled),
        frameAt(3, {{-32000.5F, 5000, 0, 0x0030FF, 0, 0, 1, 0}, {7, -8, 1, -1, 0, 0, 255, 0}}, 2),
        frameAt(4, {}), eventAt(5, Event::OutputDisabled), eventAt(6, Event::SessionClosed),
        eventAt(7, Event::GameGone), eventAt(1008, Event::HostEnded)};
    std::get<ZoneFrame>(show[3]).frame.missed = 4;
    Recording recording;
    QVERIFY(recording.read(recorded(show)));
    const QByteArray expected = "started 0.000\nopened 1.000 42\noutput 2.000 on\n"
                                "frame 3.000 2 2 4\n-32000.5 5000 0 0030FF 1\n7 -8 1 FFFFFF 255\n"
                                "frame 4.000 0 0 0\noutput 5.000 off\nclosed 6.000\ngone 7.000\n"
                                "ended 1008.000\n";
    const auto dumped = [&recording](bool points) {
        QBuffer to;
        to.open(QIODevice::WriteOnly);
        return dump(recording, points, to) ? to.data() : QByteArray("failed");
    };
    QCOMPARE(dumped(true), expected);
    QByteArray heads = expected;
    heads.replace("-32000.5 5000 0 0030FF 1\n7 -8 1 FFFFFF 255\n", "");
    QCOMPARE(dumped(false), heads);
}

QTEST_GUILESS_MAIN(tst_Recording)

#include "tst_recording.moc"
