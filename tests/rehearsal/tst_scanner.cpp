#include "lightpoints.h"
#include "projector.h"

#include <QTest>

#include <algorithm>
#include <limits>
#include <numbers>
#include <numeric>

namespace {

/// In seconds; short compared with the mirrors' lag.
constexpr double fine = 1e-6;

ScannerSettings asSent(int pointRate = 30000)
{
    ScannerSettings settings;
    settings.hasMirrors = false;
    settings.pointRate = pointRate;
    return settings;
}

std::vector<BeamPiece> wayOf(
    const std::vector<LdbPoint> &points, const ScannerSettings &settings, int passes = 1)
{
    Scanner scanner;
    scanner.setSettings(settings);
    std::vector<BeamPiece> way;
    double time = 0;
    for (int pass = 0; pass < passes; ++pass) {
        for (const LdbPoint &point : points) {
            scanner.scan(point, time, way);
            time += scanner.pointSeconds();
        }
    }
    return way;
}

double litSeconds(const std::vector<BeamPiece> &way)
{
    return std::accumulate(way.begin(), way.end(), 0.0,
        [](double sum, const BeamPiece &piece) { return sum + piece.seconds; });
}

/// The number of pieces that end near a position.
int arrivals(const std::vector<BeamPiece> &way, const QPointF &place, double radius)
{
    return static_cast<int>(std::count_if(way.begin(), way.end(), [&](const BeamPiece &piece) {
        const QPointF apart = piece.to - place;
        return std::hypot(apart.x(), apart.y()) <= radius;
    }));
}

} // namespace

class tst_Scanner : public QObject
{
    Q_OBJECT

private slots:
    void a_small_step_overshoots_according_to_the_damping();
    void a_sine_at_the_bandwidth_is_followed_at_half_power();
    void a_mirrors_motion_does_not_depend_on_the_step_length();
    void a_wide_step_is_limited_by_the_slew_rate();
    void a_line_at_constant_speed_stays_straight();
    void a_corner_becomes_round();
    void a_short_jump_shows_its_tail_and_a_long_one_does_not();
    void colours_are_delayed_as_set();
    void as_sent_a_line_is_lit_between_two_lit_points();
    void as_sent_travel_to_and_from_a_blanked_point_is_dark_data();
    void as_sent_travel_to_and_from_a_blanked_point_is_dark();
    void as_sent_a_single_lit_point_is_a_dot();
    void the_rate_sets_the_duration_of_a_point_data();
    void the_rate_sets_the_duration_of_a_point();
    void points_outside_the_field_are_drawn_at_its_edge();
    void points_without_finite_coordinates_are_blanked();
    void colours_are_read_in_the_set_order();
    void a_frame_is_repeated_until_the_next_comes();
    void the_next_frame_begins_when_the_last_point_is_drawn();
    void of_several_frames_the_last_one_is_drawn();
    void a_frame_from_the_future_waits();
    void an_empty_frame_is_dark_at_once();
    void disabled_output_is_dark();
    void a_list_too_long_for_the_rate_is_drawn_less_often();
    void slow_motion_draws_the_same_path_in_more_time();
    void after_a_pause_no_more_than_the_longest_run_is_drawn();
};

void tst_Scanner::a_small_step_overshoots_according_to_the_damping()
{
    Mirror mirror;
    mirror.setStep(fine);
    double highest = 0;
    for (int i = 0; i < 2000; ++i)
        highest = std::max(highest, mirror.follow(1000));
    const double damping = 0.7;
    const double overshoot =
        std::exp(-std::numbers::pi * damping / std::sqrt(1 - damping * damping));
    QVERIFY2(
        std::abs(highest / 1000 - 1 - overshoot) < 0.001, qPrintable(QString::number(highest)));
    QVERIFY(std::abs(mirror.place() - 1000) < 0.01);
}

void tst_Scanner::a_sine_at_the_bandwidth_is_followed_at_half_power()
{
    Mirror mirror;
    mirror.setStep(fine);
    double highest = 0;
    for (int i = 0; i < 20000; ++i) {
        const double place = mirror.follow(1000 * std::sin(2 * std::numbers::pi * 2400 * i * fine));
        if (i > 10000)
            highest = std::max(highest, place);
    }
    QVERIFY2(
        std::abs(highest - 1000 / std::numbers::sqrt2) < 5, qPrintable(QString::number(highest)));
}

void tst_Scanner::a_mirrors_motion_does_not_depend_on_the_step_length()
{
    Mirror one;
    Mirror other;
    one.setStep(fine);
    other.setStep(40 * fine);
    for (int step = 0; step < 10; ++step) {
        for (int i = 0; i < 40; ++i)
            one.follow(500);
        QVERIFY(std::abs(other.follow(500) - one.place()) < 1e-6);
    }
}

void tst_Scanner::a_wide_step_is_limited_by_the_slew_rate()
{
    Mirror mirror;
    mirror.setStep(fine);
    mirror.rest(-32000);
    double last = mirror.place();
    double fastest = 0;
    for (int i = 0; i < 3000; ++i) {
        const double place = mirror.follow(32000);
        fastest = std::max(fastest, (place - last) / fine);
        last = place;
    }
    QVERIFY(fastest <= Mirror::slewRate * (1 + 1e-9));
    QVERIFY(fastest > Mirror::slewRate * 0.999);
    QVERIFY(std::abs(last - 32000) < 1);
}

void tst_Scanner::a_line_at_constant_speed_stays_straight()
{
    // Start on the same line, so that no jump precedes it.
    const QPointF from(-20000, -10000);
    const QPointF to(20000, 10000);
    const std::vector<BeamPiece> way = wayOf(litLine(from, to, 60), {});
    QVERIFY(way.size() > 60);
    double lastX = from.x() - 20000;
    for (const BeamPiece &piece : way) {
        QVERIFY2(std::abs(piece.to.y() - piece.to.x() / 2) < 1,
            qPrintable(QStringLiteral("%1 %2").arg(piece.to.x()).arg(piece.to.y())));
    }
    // Once the mirrors have accelerated, their speed is constant except for the ripple of the
    // points.
    for (auto piece = way.begin() + std::ptrdiff_t(way.size()) / 2; piece != way.end(); ++piece) {
        const double step = piece->to.x() - piece->from.x();
        const double even = 40000.0 / 60 * piece->seconds * 30000;
        QVERIFY2(std::abs(step / even - 1) < 0.05, qPrintable(QString::number(step / even)));
        QVERIFY(piece->to.x() > lastX);
        lastX = piece->to.x();
    }
}

void tst_Scanner::a_corner_becomes_round()
{
    const std::vector<LdbPoint> corner =
        litLine({0, 0}, {8000, 0}, 20) + litLine({8000, 0}, {8000, 8000}, 20);
    const auto nearest = [&](const ScannerSettings &settings) {
        double apart = 1e9;
        for (const BeamPiece &piece : wayOf(corner, settings))
            apart = std::min(apart, std::hypot(piece.to.x() - 8000, piece.to.y()));
        return apart;
    };
    QVERIFY(nearest(asSent()) < 1);
    QVERIFY2(nearest({}) > 150, qPrintable(QString::number(nearest({}))));
}

void tst_Scanner::a_short_jump_shows_its_tail_and_a_long_one_does_not()
{
    const auto tail = [](int blanked) {
        std::vector<LdbPoint> points(30, lit(-10000, 0, 0xFF));
        points.insert(points.end(), std::size_t(blanked) / 2, dark(-10000, 0));
        points.insert(points.end(), std::size_t(blanked) / 2, dark(10000, 0));
        points.insert(points.end(), 30, lit(10000, 0, 0xFF));
        double seconds = 0;
        for (const BeamPiece &piece : wayOf(points, {})) {
            if (std::abs(piece.to.x()) < 9000)
                seconds += piece.seconds;
        }
        // Skip the first move, from the centre where the mirrors rest.
        for (const BeamPiece &piece : wayOf({30, lit(-10000, 0, 0xFF)}, {})) {
            if (std::abs(piece.to.x()) < 9000)
                seconds -= piece.seconds;
        }
        return seconds;
    };
    QVERIFY2(tail(2) > 50e-6, qPrintable(QString::number(tail(2))));
    QVERIFY2(tail(20) < 1e-6, qPrintable(QString::number(tail(20))));
}

void tst_Scanner::colours_are_delayed_as_set()
{
    for (const double delay : {0.0, 100e-6, 400e-6}) {
        ScannerSettings settings;
        settings.colorDelay = delay;
        std::vector<LdbPoint> points(30, dark(0, 0));
        points.insert(points.end(), 30, lit(0, 0, 0xFF));
        const std::vector<BeamPiece> way = wayOf(points, settings);
        const double late = way.front().begin - 30.0 / 30000;
        QVERIFY2(std::abs(late - delay) < 10e-6, qPrintable(QString::number(late)));
    }
}

void tst_Scanner::as_sent_a_line_is_lit_between_two_lit_points()
{
    const std::vector<BeamPiece> way =
        wayOf(strokeOf({-20000, 0}, {20000, 0}, 1, 0x123456), asSent(10000));
    QCOMPARE(way, (std::vector<BeamPiece>{{{-20000, 0}, {20000, 0}, 0x123456, 2e-4, 1e-4}}));
}

void tst_Scanner::as_sent_travel_to_and_from_a_blanked_point_is_dark_data()
{
    QTest::addColumn<int>("color");
    QTest::addColumn<int>("flags");
    QTest::addRow("colour 0 and flags 3") << 0 << 3;
    QTest::addRow("colour 0 alone") << 0 << 0;
    QTest::addRow("flags 3 alone") << 0xFFFFFF << 3;
    QTest::addRow("no colour in the low 24 bits") << 0x7F000000 << 0;
}

void tst_Scanner::as_sent_travel_to_and_from_a_blanked_point_is_dark()
{
    QFETCH(int, color);
    QFETCH(int, flags);
    const LdbPoint blanked = {0, 10000, 0, color, 0, 0, std::uint8_t(flags), 0};
    const std::vector<BeamPiece> way = wayOf({lit(-20000, 0, 0xff), lit(-10000, 0, 0xff), blanked,
                                                 lit(10000, 0, 0xff), lit(20000, 0, 0xff)},
        asSent());
    QCOMPARE(way.size(), 2U);
    QCOMPARE(way[0].to, QPointF(-10000, 0));
    QCOMPARE(way[1].from, QPointF(10000, 0));
}

void tst_Scanner::as_sent_a_single_lit_point_is_a_dot()
{
    const std::vector<BeamPiece> way =
        wayOf({dark(0, 0), lit(5, 6, 0xff), dark(0, 0)}, asSent(10000));
    QCOMPARE(way, (std::vector<BeamPiece>{{{5, 6}, {5, 6}, 0xff, 1e-4, 1e-4}}));
    QCOMPARE(litSeconds(wayOf({lit(5, 6, 0xff)}, asSent(10000), 4)), 3e-4);
}

void tst_Scanner::the_rate_sets_the_duration_of_a_point_data()
{
    QTest::addColumn<int>("rate");
    for (const int rate : {8000, 30000, 60000})
        QTest::addRow("%d", rate) << rate;
}

void tst_Scanner::the_rate_sets_the_duration_of_a_point()
{
    QFETCH(int, rate);
    ScannerSettings drawn;
    drawn.pointRate = rate;
    drawn.colorDelay = 0;
    for (const ScannerSettings &settings : {asSent(rate), drawn}) {
        const double seconds = litSeconds(wayOf({20, lit(100, 0, 0xff)}, settings));
        const int drawnPoints = settings.hasMirrors ? 20 : 19;
        QVERIFY(std::abs(seconds * rate - drawnPoints) < 1e-6);
    }
}

void tst_Scanner::points_outside_the_field_are_drawn_at_its_edge()
{
    const auto way = wayOf({lit(-1e30, 0, 1), lit(std::numeric_limits<double>::infinity(), 0, 1),
                               lit(40000, 90000, 1), lit(-40000, 90000, 1)},
        asSent());
    QCOMPARE(way.back().from, QPointF(32768, 32768));
    QCOMPARE(way.back().to, QPointF(-32768, 32768));
}

void tst_Scanner::points_without_finite_coordinates_are_blanked()
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const ScannerSettings &settings : {asSent(), ScannerSettings()})
        QVERIFY(wayOf({lit(none, 0, 1), lit(0, none, 1), lit(none, none, 1)}, settings, 9).empty());
}

void tst_Scanner::colours_are_read_in_the_set_order()
{
    QCOMPARE(rgbOf(0x0030FF, ColorOrder::RedGreenBlue), 0x0030FFU);
    QCOMPARE(rgbOf(0x0030FF, ColorOrder::BlueGreenRed), 0xFF3000U);
    QCOMPARE(rgbOf(-1, ColorOrder::BlueGreenRed), 0xFFFFFFU);
    ScannerSettings settings = asSent();
    settings.colorOrder = ColorOrder::BlueGreenRed;
    QCOMPARE(wayOf({lit(0, 0, 0x102030), lit(9, 0, 0x102030)}, settings).front().color, 0x302010U);
}

void tst_Scanner::a_frame_is_repeated_until_the_next_comes()
{
    Projector projector;
    projector.setSettings(asSent(10000));
    projector.setOutputOn(true);
    projector.show(strokeOf({0, 0}, {1000, 0}, 7), 1.0); // ten points take a millisecond
    std::vector<BeamPiece> way;
    projector.run(1.0, way);
    QVERIFY(way.empty());
    projector.run(1.00995, way);
    QCOMPARE(arrivals(way, {1000, 0}, 1), 10);
    QVERIFY(std::abs(litSeconds(way) - 10 * 7e-4) < 1e-9);
}

void tst_Scanner::the_next_frame_begins_when_the_last_point_is_drawn()
{
    Projector projector;
    projector.setSettings(asSent(10000));
    projector.setOutputOn(true);
    projector.show(strokeOf({0, 0}, {1000, 0}, 7), 1.0);
    projector.show(strokeOf({0, 0}, {0, 1000}, 7), 1.0025); // in the middle of the third pass
    std::vector<BeamPiece> way;
    projector.run(1.00595, way);
    QCOMPARE(arrivals(way, {1000, 0}, 1), 3);
    QCOMPARE(arrivals(way, {0, 1000}, 1), 3);
}

void tst_Scanner::of_several_frames_the_last_one_is_drawn()
{
    Projector projector;
    projector.setSettings(asSent(10000));
    projector.setOutputOn(true);
    projector.show(strokeOf({0, 0}, {1000, 0}), 1.0);
    projector.show(strokeOf({0, 0}, {0, 1000}), 1.0001);
    projector.show(strokeOf({0, 0}, {0, -1000}), 1.0002);
    std::vector<BeamPiece> way;
    projector.run(1.0003, way);
    projector.run(1.01, way);
    QCOMPARE(arrivals(way, {1000, 0}, 1), 1);
    QCOMPARE(arrivals(way, {0, 1000}, 1), 0);
    QVERIFY(arrivals(way, {0, -1000}, 1) > 10);
}

void tst_Scanner::a_frame_from_the_future_waits()
{
    Projector projector;
    projector.setOutputOn(true);
    projector.show(strokeOf({0, 0}, {1000, 0}), 2.0);
    std::vector<BeamPiece> way;
    projector.run(1.99, way);
    QVERIFY(way.empty());
    QVERIFY(projector.isLit());
    projector.run(2.01, way);
    QVERIFY(!way.empty());
    QVERIFY(way.front().begin >= 2.0);
}

void tst_Scanner::an_empty_frame_is_dark_at_once()
{
    Projector projector;
    projector.setOutputOn(true);
    projector.show(litLine({0, 0}, {1000, 0}, 8000), 1.0);
    projector.show({}, 1.05);
    std::vector<BeamPiece> way;
    projector.run(1.1, way);
    QVERIFY(!way.empty());
    QVERIFY(way.back().begin < 1.0502);
    QVERIFY(!projector.isLit());
}

void tst_Scanner::disabled_output_is_dark()
{
    Projector projector;
    projector.show(strokeOf({0, 0}, {1000, 0}), 1.0);
    std::vector<BeamPiece> way;
    projector.run(1.01, way);
    QVERIFY(way.empty() && !projector.isLit());
    projector.setOutputOn(true);
    projector.run(1.02, way);
    QVERIFY(!way.empty());
    way.clear();
    projector.setOutputOn(false);
    projector.run(1.03, way);
    QVERIFY(way.empty());
}

void tst_Scanner::a_list_too_long_for_the_rate_is_drawn_less_often()
{
    // The winner display has 688 points: at 30,000 a second 43.6 passes.
    Projector projector;
    projector.setSettings(asSent());
    projector.setOutputOn(true);
    std::vector<BeamPiece> way;
    const auto frame = strokeOf({0, 0}, {30000, 0}, 685);
    for (int number = 0; number < 111; ++number) {
        projector.show(frame, 1 + number * 0.009);
        projector.run(1 + (number + 1) * 0.009, way);
    }
    const int passes = arrivals(way, {30000, 0}, 1);
    QVERIFY2(passes == 43 || passes == 44, qPrintable(QString::number(passes)));
}

void tst_Scanner::slow_motion_draws_the_same_path_in_more_time()
{
    const auto points = strokeOf({0, 0}, {3000, 4000}, 20) + strokeOf({-9000, 0}, {0, 0}, 20);
    ScannerSettings slow;
    slow.speed = 0.01;
    const auto fast = wayOf(points, {}, 2);
    const auto slowed = wayOf(points, slow, 2);
    QVERIFY(std::abs(litSeconds(slowed) / litSeconds(fast) - 100) < 2);
    for (const BeamPiece &piece : slowed)
        QVERIFY(piece.seconds < 0.005);
    const auto isNear = [](const QPointF &one, const QPointF &other) {
        return std::hypot(one.x() - other.x(), one.y() - other.y()) < 400;
    };
    QVERIFY(isNear(fast.back().to, slowed.back().to));
}

void tst_Scanner::after_a_pause_no_more_than_the_longest_run_is_drawn()
{
    Projector projector;
    projector.setSettings(asSent());
    projector.setOutputOn(true);
    projector.show(litLine({0, 0}, {1000, 0}, 100), 1.0);
    std::vector<BeamPiece> way;
    projector.run(1000.0, way);
    QVERIFY(way.size() <= 3001);
    QVERIFY(way.size() >= 2900);
}

QTEST_GUILESS_MAIN(tst_Scanner)

#include "tst_scanner.moc"
