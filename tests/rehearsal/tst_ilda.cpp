#include "ilda.h"
#include "shows.h"

#include <QtEndian>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// A section, parsed byte by byte, independently of the code under test.
struct Section
{
    int records = 0;
    int number = 0;
    int total = 0;
    int projector = 0;
    struct Point
    {
        int x, y, status, blue, green, red;
        bool operator==(const Point &) const = default;
    };
    std::vector<Point> points;
};

int shortAt(const QByteArray &bytes, qsizetype at)
{
    return qFromBigEndian<quint16>(bytes.constData() + at);
}

int signedShortAt(const QByteArray &bytes, qsizetype at)
{
    return qFromBigEndian<qint16>(bytes.constData() + at);
}

/// The sections of a file; empty if it is not an ILDA file or has data after its end.
std::vector<Section> sectionsOf(const QByteArray &bytes)
{
    std::vector<Section> sections;
    for (qsizetype at = 0; at + 32 <= bytes.size();) {
        if (bytes.sliced(at, 8) != QByteArray("ILDA\0\0\0\x05", 8) || bytes[at + 31] != '\0')
            return {};
        Section section = {shortAt(bytes, at + 24), shortAt(bytes, at + 26),
            shortAt(bytes, at + 28), quint8(bytes[at + 30]), {}};
        at += 32;
        if (section.records == 0)
            return at == bytes.size() ? sections : std::vector<Section>();
        for (int i = 0; i < section.records; ++i, at += 8) {
            const auto byte = [&](qsizetype offset) { return int(quint8(bytes[at + offset])); };
            section.points.push_back({signedShortAt(bytes, at), signedShortAt(bytes, at + 2),
                byte(4), byte(5), byte(6), byte(7)});
        }
        sections.push_back(section);
    }
    return {};
}

Section sectionOf(const std::vector<LdbPoint> &points, ColorOrder order = ColorOrder::RedGreenBlue)
{
    const auto sections = sectionsOf(ildaSection(points, {7, 300, 3}, order) + ildaEnd());
    return sections.size() == 1 ? sections.front() : Section();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_Ilda : public QObject
{
    Q_OBJECT

private slots:
    void a_section_has_its_header();
    void a_point_keeps_place_and_color();
    void colors_may_be_blue_first();
    void dark_points_have_the_blanking_bit_data();
    void dark_points_have_the_blanking_bit();
    void the_last_point_is_marked();
    void a_frame_without_points_is_one_blanked_point();
    void coordinates_are_rounded_and_clamped();
    void a_non_finite_point_is_blanked_at_the_previous_position();
    void a_file_has_every_frame_of_the_zone_and_an_end();
    void long_shows_are_split();
    void a_zone_without_frames_is_reported();
    void a_file_that_cannot_be_written_is_reported();
};

void tst_Ilda::a_section_has_its_header()
{
    const Section section = sectionOf(pointAt(1));
    QCOMPARE(section.records, 1);
    QCOMPARE(section.number, 7);
    QCOMPARE(section.total, 300);
    QCOMPARE(section.projector, 3);
}

void tst_Ilda::a_point_keeps_place_and_color()
{
    const Section section = sectionOf({{-32000, 5000, 0, 0x0080FF, 0, 0, 1, 0}});
    QCOMPARE(section.points.front(), (Section::Point{-32000, 5000, 0x80, 0xFF, 0x80, 0x00}));
}

void tst_Ilda::colors_may_be_blue_first()
{
    const Section section = sectionOf({{1, 2, 0, 0x0080FF, 0, 0, 1, 0}}, ColorOrder::BlueGreenRed);
    QCOMPARE(section.points.front(), (Section::Point{1, 2, 0x80, 0x00, 0x80, 0xFF}));
}

void tst_Ilda::dark_points_have_the_blanking_bit_data()
{
    QTest::addColumn<int>("color");
    QTest::addColumn<int>("flags");
    QTest::addColumn<bool>("blanked");
    QTest::addRow("lit") << 0xFFFFFF << 1 << false;
    QTest::addRow("black") << 0 << 1 << true;
    QTest::addRow("blanked travel with a colour") << 0xFFFFFF << 3 << true;
}

void tst_Ilda::dark_points_have_the_blanking_bit()
{
    QFETCH(int, color);
    QFETCH(int, flags);
    const LdbPoint point = {0, 0, 0, color, 0, 0, std::uint8_t(flags), 0};
    QTEST((sectionOf({point, point}).points.front().status & 0x40) != 0, "blanked");
}

void tst_Ilda::the_last_point_is_marked()
{
    const Section section = sectionOf({{}, {}, {}});
    QCOMPARE(section.points[0].status & 0x80, 0);
    QCOMPARE(section.points[1].status & 0x80, 0);
    QCOMPARE(section.points[2].status & 0x80, 0x80);
}

void tst_Ilda::a_frame_without_points_is_one_blanked_point()
{
    const Section section = sectionOf({});
    QCOMPARE(section.records, 1);
    QCOMPARE(section.points.front(), (Section::Point{0, 0, 0xC0, 0, 0, 0}));
}

void tst_Ilda::coordinates_are_rounded_and_clamped()
{
    const auto place = [](float x, float y) {
        const Section::Point point = sectionOf({{x, y, 0, 1, 0, 0, 0, 0}}).points.front();
        return std::pair(point.x, point.y);
    };
    QCOMPARE(place(32767, -32768), std::pair(32767, -32768));
    QCOMPARE(place(32768, -32769), std::pair(32767, -32768));
    QCOMPARE(place(3e38F, -3e38F), std::pair(32767, -32768));
    QCOMPARE(place(0.6F, -0.6F), std::pair(1, -1));
}

void tst_Ilda::a_non_finite_point_is_blanked_at_the_previous_position()
{
    constexpr float nowhere = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const Section section = sectionOf({{5, 6, 0, 0xFFFFFF, 0, 0, 1, 0},
        {nowhere, 7, 0, 0xFFFFFF, 0, 0, 1, 0}, {8, infinite, 0, 0xFFFFFF, 0, 0, 1, 0}});
    QCOMPARE(section.points[1], (Section::Point{5, 6, 0x40, 0xFF, 0xFF, 0xFF}));
    QCOMPARE(section.points[2], (Section::Point{5, 6, 0xC0, 0xFF, 0xFF, 0xFF}));
}

void tst_Ilda::a_file_has_every_frame_of_the_zone_and_an_end()
{
    const QTemporaryDir folder;
    Recording recording;
    QVERIFY(recording.read(recorded({frameAt(0, pointAt(1)), frameAt(1, pointAt(99), 1),
        eventAt(2, Event::OutputEnabled), frameAt(3, {}), frameAt(4, pointAt(3))})));
    QString problem;
    const QString path = folder.filePath(u"show.ild"_s);
    QCOMPARE(exportIlda(recording, 0, ColorOrder::RedGreenBlue, path, problem), QStringList(path));
    const auto sections = sectionsOf(contentOf(path));
    QCOMPARE(sections.size(), 3U);
    const std::array places = {1, 0, 3};
    for (int i = 0; i < 3; ++i) {
        const Section &section = sections[std::size_t(i)];
        QCOMPARE(section.number, i);
        QCOMPARE(section.total, 3);
        QCOMPARE(section.projector, 0);
        QCOMPARE(section.points.front().x, places.at(std::size_t(i)));
    }
}

void tst_Ilda::long_shows_are_split()
{
    QCOMPARE(mostIldaFrames, 65'535);
    const QTemporaryDir folder;
    Show show;
    for (int i = 0; i < 25; ++i)
        show.push_back(frameAt(i, pointAt(i)));
    Recording recording;
    QVERIFY(recording.read(recorded(show)));
    QString problem;
    const QStringList files = exportIlda(
        recording, 0, ColorOrder::RedGreenBlue, folder.filePath(u"a.show.ild"_s), problem, 10);
    QCOMPARE(files,
        (QStringList{folder.filePath(u"a.show.ild"_s), folder.filePath(u"a.show-2.ild"_s),
            folder.filePath(u"a.show-3.ild"_s)}));
    int next = 0;
    for (const QString &file : files) {
        const auto sections = sectionsOf(contentOf(file));
        QCOMPARE(sections.size(), file == files.last() ? 5U : 10U);
        for (std::size_t i = 0; i < sections.size(); ++i) {
            QCOMPARE(sections[i].number, int(i));
            QCOMPARE(sections[i].total, int(sections.size()));
            QCOMPARE(sections[i].points.front().x, next++);
        }
    }
}

void tst_Ilda::a_zone_without_frames_is_reported()
{
    const QTemporaryDir folder;
    Recording recording;
    QVERIFY(recording.read(recorded({frameAt(0, pointAt(1))})));
    QString problem;
    const QString path = folder.filePath(u"show.ild"_s);
    QVERIFY(exportIlda(recording, 1, ColorOrder::RedGreenBlue, path, problem).isEmpty());
    QCOMPARE(problem, u"Zone 2 has no frames."_s);
    QVERIFY(!QFile::exists(path));
}

void tst_Ilda::a_file_that_cannot_be_written_is_reported()
{
    Recording recording;
    QVERIFY(recording.read(recorded({frameAt(0, pointAt(1))})));
    QString problem;
    QVERIFY(exportIlda(recording, 0, ColorOrder::RedGreenBlue, u"/no/such/folder/x.ild"_s, problem)
                .isEmpty());
    QVERIFY2(
        problem.startsWith(u"Cannot write \"/no/such/folder/x.ild\": "_s), qPrintable(problem));
}

QTEST_GUILESS_MAIN(tst_Ilda)

#include "tst_ilda.moc"
