#include "eye.h"
#include "lightpoints.h"

#include <QTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr int side = 400;
constexpr double pictureSeconds = 1.0 / 60;

const QPointF left(-20000, 0);
const QPointF right(20000, 0);
const QPointF middle(0, 0);

ScannerSettings asSent()
{
    ScannerSettings settings;
    settings.hasMirrors = false;
    return settings;
}

/// A projector and an eye, updated sixty times a second.
class Watched
{
public:
    explicit Watched(int pictureSide = side)
    {
        projector.setSettings(asSent());
        projector.setOutputOn(true);
        eye.resize(pictureSide);
    }

    /// Shows a frame until the picture is steady.
    const QImage &look(const std::vector<LdbPoint> &points, int pictures = 30)
    {
        projector.show(points, now);
        for (int i = 0; i < pictures; ++i)
            seen = eye.look(now += pictureSeconds);
        return eye.picture();
    }

    Projector projector;
    Eye eye{projector};
    double now = 1;
    bool seen = false;
};

QImage pictureOf(const std::vector<LdbPoint> &points, int pictureSide = side)
{
    Watched watched(pictureSide);
    return watched.look(points).copy();
}

/// Dark points, which make the rest of a frame dimmer.
std::vector<LdbPoint> pause(int points)
{
    return {std::size_t(points), dark(0, 0)};
}

QColor seenAt(const QImage &picture, const QPointF &place)
{
    const QPointF pixel = FieldSquare{double(picture.width())}.pixelOf(place);
    return picture.pixelColor(int(std::floor(pixel.x())), int(std::floor(pixel.y())));
}

bool isBlack(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != 0xff000000)
                return false;
        }
    }
    return true;
}

/// The energy of a line drawn in pieces that take one second in total.
Exposure lineInPieces(int pieces)
{
    Exposure exposure;
    exposure.resize(side);
    const QPointF from(-20000, -8000);
    const QPointF step = QPointF(40000, 16000) / pieces;
    for (int i = 0; i < pieces; ++i)
        exposure.add(from + step * i, from + step * (i + 1), 0xFFFFFF, 1.0 / pieces);
    return exposure;
}

} // namespace

class tst_Light : public QObject
{
    Q_OBJECT

private slots:
    void the_energy_of_a_line_is_the_time_it_takes_however_many_its_pieces_data();
    void the_energy_of_a_line_is_the_time_it_takes_however_many_its_pieces();
    void the_pieces_of_a_line_leave_no_seam();
    void the_energy_of_a_frame_is_the_same_however_many_points_its_line_has();
    void energy_does_not_depend_on_the_size_of_the_picture();
    void light_beyond_the_square_is_dropped();
    void a_slow_beam_is_brighter_than_a_fast_one();
    void light_adds_up_where_beams_cross();
    void colours_are_red_green_and_blue_from_the_top_data();
    void colours_are_red_green_and_blue_from_the_top();
    void bright_light_has_a_white_core_and_a_coloured_glow();
    void a_glow_fades_into_black();
    void an_empty_frame_is_black();
    void y_goes_upward_and_x_to_the_right();
    void the_field_fills_the_square_but_for_a_narrow_margin();
    void a_repeated_frame_looks_steady();
    void a_list_too_long_for_the_rate_flickers();
    void light_fades_as_fast_as_persistence_says_data();
    void light_fades_as_fast_as_persistence_says();
    void faded_light_is_black_and_needs_no_more_pictures();
    void light_that_fades_for_long_stays_exact();
    void a_corrupt_frame_is_drawn_in_part();
    void tones_rise_with_light();
};

void tst_Light::the_energy_of_a_line_is_the_time_it_takes_however_many_its_pieces_data()
{
    QTest::addColumn<int>("pieces");
    for (const int pieces : {1, 2, 7, 40, 1000, 20000})
        QTest::addRow("%d", pieces) << pieces;
}

void tst_Light::the_energy_of_a_line_is_the_time_it_takes_however_many_its_pieces()
{
    QFETCH(int, pieces);
    const double energy = lineInPieces(pieces).energy();
    QVERIFY2(std::abs(energy - 1) < 0.01, qPrintable(QString::number(energy)));
}

void tst_Light::the_pieces_of_a_line_leave_no_seam()
{
    const Exposure whole = lineInPieces(1);
    const Exposure inPieces = lineInPieces(40);
    float brightest = 0;
    float largestDifference = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            brightest = std::max(brightest, whole.row(y)[x][0]);
            largestDifference =
                std::max(largestDifference, std::abs(whole.row(y)[x][0] - inPieces.row(y)[x][0]));
        }
    }
    QVERIFY2(largestDifference < 0.02F * brightest,
        qPrintable(QString::number(double(largestDifference / brightest))));
}

void tst_Light::the_energy_of_a_frame_is_the_same_however_many_points_its_line_has()
{
    // There and back, always lit: the beam is on all the time, whatever the number of passes.
    for (const bool hasMirrors : {false, true}) {
        for (const int steps : {5, 20, 100, 400}) {
            Watched watched;
            ScannerSettings settings;
            settings.hasMirrors = hasMirrors;
            watched.projector.setSettings(settings);
            watched.look(litLine(left, right, steps) + litLine(right, left, steps));
            const double energy = watched.eye.exposure().energy();
            QVERIFY2(std::abs(energy - 1) < 0.03,
                qPrintable(QStringLiteral("%1 steps: %2").arg(steps).arg(energy)));
        }
    }
}

void tst_Light::energy_does_not_depend_on_the_size_of_the_picture()
{
    for (const int pictureSide : {160, 333, 1000}) {
        Exposure exposure;
        exposure.resize(pictureSide);
        exposure.add(left, right, 0xFFFFFF, 2);
        exposure.add(middle, middle, 0xFFFFFF, 1);
        QVERIFY2(
            std::abs(exposure.energy() - 3) < 0.03, qPrintable(QString::number(exposure.energy())));
    }
}

void tst_Light::light_beyond_the_square_is_dropped()
{
    Exposure exposure;
    exposure.resize(100);
    exposure.add({-90000, 0}, {90000, 0}, 0xFFFFFF, 1);
    exposure.add({0, 90000}, {0, 90000}, 0xFFFFFF, 1);
    QVERIFY(exposure.energy() > 0.3 && exposure.energy() < 0.5);
}

void tst_Light::a_slow_beam_is_brighter_than_a_fast_one()
{
    const QImage picture = pictureOf(strokeOf({-20000, 10000}, {20000, 10000}, 20, 0xFF0000)
        + strokeOf({-20000, -10000}, {20000, -10000}, 60, 0xFF0000) + pause(300));
    QVERIFY(seenAt(picture, {1000, -10000}).red() > seenAt(picture, {1000, 10000}).red() + 30);
}

void tst_Light::light_adds_up_where_beams_cross()
{
    const QImage picture = pictureOf(strokeOf(left, right, 50, 0xFF0000)
        + strokeOf({0, -20000}, {0, 20000}, 50, 0x00FF00) + pause(100));
    const QColor crossing = seenAt(picture, middle);
    QVERIFY(crossing.red() >= seenAt(picture, {-10000, 0}).red());
    QVERIFY(crossing.green() >= seenAt(picture, {0, 10000}).green());
    QVERIFY(crossing.red() > 120 && crossing.green() > 120);
    QVERIFY(seenAt(picture, {-10000, 0}).green() < 60);
}

void tst_Light::colours_are_red_green_and_blue_from_the_top_data()
{
    QTest::addColumn<int>("color");
    QTest::addColumn<QColor>("expected");
    QTest::addRow("red") << 0xFF0000 << QColor(255, 0, 0);
    QTest::addRow("green") << 0x00FF00 << QColor(0, 255, 0);
    QTest::addRow("blue") << 0x0000FF << QColor(0, 0, 255);
    QTest::addRow("white") << 0xFFFFFF << QColor(255, 255, 255);
    QTest::addRow("yellow") << 0xFFFF00 << QColor(255, 255, 0);
}

void tst_Light::colours_are_red_green_and_blue_from_the_top()
{
    QFETCH(int, color);
    QFETCH(QColor, expected);
    const QColor seen = seenAt(pictureOf(strokeOf(left, right, 20, color) + pause(60)), middle);
    for (const auto &[part, wanted] : {std::pair(seen.red(), expected.red()),
             std::pair(seen.green(), expected.green()), std::pair(seen.blue(), expected.blue())})
        QVERIFY2(wanted == 0 ? part < 40 : part > 120, qPrintable(seen.name()));
}

void tst_Light::bright_light_has_a_white_core_and_a_coloured_glow()
{
    const QImage picture = pictureOf(std::vector<LdbPoint>(20, lit(0, 0, 0x0030FF)), 1000);
    const QColor core = seenAt(picture, middle);
    QVERIFY2(core.red() > 200 && core.blue() == 255, qPrintable(core.name()));
    const QColor glow = seenAt(picture, {1200, 0});
    QVERIFY2(glow.blue() > 60 && glow.blue() > glow.red() + 40, qPrintable(glow.name()));
}

void tst_Light::a_glow_fades_into_black()
{
    const QImage picture = pictureOf(strokeOf(left, right, 50, 0xFF0000), 1000);
    int last = 256;
    for (const int units : {0, 200, 500, 900, 1400}) {
        const int red = seenAt(picture, {0, double(units)}).red();
        QVERIFY2(red < last && red > 0, qPrintable(QString::number(units)));
        last = red;
    }
    QVERIFY(last < 60);
    QCOMPARE(seenAt(picture, {0, 3500}), QColor(Qt::black));
    QCOMPARE(seenAt(picture, {24000, 0}), QColor(Qt::black));
}

void tst_Light::an_empty_frame_is_black()
{
    QVERIFY(isBlack(pictureOf({})));
    QVERIFY(isBlack(pictureOf({dark(0, 0), dark(20000, 20000)})));
}

void tst_Light::y_goes_upward_and_x_to_the_right()
{
    const QImage picture = pictureOf({lit(20000, 25000, 0xFFFFFF)});
    QVERIFY(seenAt(picture, {20000, 25000}).value() > 0);
    for (const QPointF &other : {QPointF(-20000, 25000), QPointF(20000, -25000),
             QPointF(-20000, -25000), QPointF(25000, 20000)})
        QCOMPARE(seenAt(picture, other), QColor(Qt::black));
}

void tst_Light::the_field_fills_the_square_but_for_a_narrow_margin()
{
    const FieldSquare square{1000};
    QCOMPARE(square.pixelOf({0, 0}), QPointF(500, 500));
    QCOMPARE(square.pixelOf({-32768, 32768}), QPointF(30, 30));
    QCOMPARE(square.pixelOf({32768, -32768}), QPointF(970, 970));
}

void tst_Light::a_repeated_frame_looks_steady()
{
    // 175 points, as in a rally: 171 passes a second, not a whole number per picture.
    Watched watched;
    const auto frame = strokeOf(left, right, 172, 0x800000);
    int dimmest = 255;
    int brightest = 0;
    watched.look(frame);
    for (int i = 0; i < 30; ++i) {
        const int red = seenAt(watched.look(frame, 1), {-15000, 0}).red();
        dimmest = std::min(dimmest, red);
        brightest = std::max(brightest, red);
    }
    QVERIFY2(brightest - dimmest <= 3,
        qPrintable(QStringLiteral("%1 to %2").arg(dimmest).arg(brightest)));
}

void tst_Light::a_list_too_long_for_the_rate_flickers()
{
    // 1,500 points, twenty passes a second.
    Watched watched;
    watched.eye.setPersistence(0.01);
    const auto frame = strokeOf(left, right, 100, 0xFF0000) + pause(1397);
    watched.projector.show(frame, watched.now);
    int dimmest = 255;
    int brightest = 0;
    for (int i = 0; i < 60; ++i) {
        watched.eye.look(watched.now += pictureSeconds);
        const int red = seenAt(watched.eye.picture(), middle).red();
        dimmest = std::min(i < 10 ? 255 : dimmest, red);
        brightest = std::max(brightest, red);
    }
    QVERIFY2(dimmest < brightest / 2,
        qPrintable(QStringLiteral("%1 to %2").arg(dimmest).arg(brightest)));
}

void tst_Light::light_fades_as_fast_as_persistence_says_data()
{
    QTest::addColumn<double>("persistence");
    for (const double seconds : {0.005, 0.02, 0.2})
        QTest::addRow("%g s", seconds) << seconds;
}

void tst_Light::light_fades_as_fast_as_persistence_says()
{
    QFETCH(double, persistence);
    Watched watched;
    watched.eye.setPersistence(persistence);
    watched.look(litLine(left, right, 50) + litLine(right, left, 50), 120);
    watched.projector.setOutputOn(false);
    watched.eye.look(watched.now += 0.02); // light not yet fully seen
    const double before = watched.eye.exposure().energy();
    watched.eye.look(watched.now += persistence);
    const double left = watched.eye.exposure().energy() / before;
    QVERIFY2(std::abs(left - std::exp(-1)) < 0.01, qPrintable(QString::number(left)));
}

void tst_Light::faded_light_is_black_and_needs_no_more_pictures()
{
    Watched watched;
    watched.look(strokeOf(left, right, 50));
    QVERIFY(watched.seen);
    QVERIFY(!isBlack(watched.eye.picture()));
    watched.look({}, 1);
    QVERIFY(watched.seen);
    watched.look({}, 60);
    QVERIFY(!watched.seen);
    QVERIFY(isBlack(watched.eye.picture()));
}

void tst_Light::light_that_fades_for_long_stays_exact()
{
    Watched watched;
    const auto frame = litLine(left, right, 50) + litLine(right, left, 50);
    watched.look(frame, 30);
    const double early = watched.eye.exposure().energy();
    const QImage picture = watched.eye.picture().copy();
    watched.look(frame, 600);
    QVERIFY(std::abs(watched.eye.exposure().energy() / early - 1) < 0.01);
    QVERIFY(
        std::abs(seenAt(picture, middle).red() - seenAt(watched.eye.picture(), middle).red()) <= 2);
}

void tst_Light::a_corrupt_frame_is_drawn_in_part()
{
    // As sent, 500 times across the field in one picture: only the longest allowed path is drawn.
    std::vector<LdbPoint> points(ldbMaxPoints);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = lit(i % 2 == 0 ? -32768 : 32768, 0, 0xFF0000);
    Watched watched;
    watched.look(points, 1);
    const double energy = watched.eye.exposure().energy();
    QVERIFY2(energy > 0.01 && energy < 0.1, qPrintable(QString::number(energy)));
}

void tst_Light::tones_rise_with_light()
{
    const Tone tone;
    QCOMPARE(tone(Light{}), 0xff000000U);
    QCOMPARE(tone(Light{-1, -1, -1, 0}), 0xff000000U);
    QCOMPARE(tone(Light{1e30F, 1e30F, 1e30F, 0}), 0xffffffffU);
    QCOMPARE(tone(Light{16, 0, 0, 0}), 0xff0000ffU);
    QCOMPARE(tone(Light{0, 0, 16, 0}), 0xffff0000U);
    std::uint32_t last = 0;
    for (int step = 0; step < 1460; ++step) {
        const float light = 1e-5F * std::pow(1.01F, float(step)); // to 20
        const std::uint32_t green = (tone(Light{0, light, 0, 0}) >> 8) & 0xff;
        QVERIFY(green >= last && green <= last + 4);
        last = green;
    }
    QCOMPARE(last, 255U);
}

QTEST_GUILESS_MAIN(tst_Light)

#include "tst_light.moc"
