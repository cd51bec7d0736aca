#include "exposure.h"
#include "phosphor.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int side = 200;

LdbPoint lit(float x, float y, std::int32_t color)
{
    return {x, y, 0, color, 0, 0, 0, 0};
}

LdbPoint dark(float x, float y)
{
    return {x, y, 0, 0, 0, 0, 3, 0};
}

std::vector<LdbPoint> lineOf(const QPointF &from, const QPointF &to, std::int32_t color)
{
    const auto x0 = float(from.x());
    const auto y0 = float(from.y());
    const auto x1 = float(to.x());
    const auto y1 = float(to.y());
    return {dark(x0, y0), lit(x0, y0, color), lit(x1, y1, color), dark(x1, y1)};
}

std::vector<LdbPoint> operator+(std::vector<LdbPoint> one, const std::vector<LdbPoint> &other)
{
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

std::vector<Stroke> strokesOf(const std::vector<LdbPoint> &points)
{
    std::vector<Stroke> strokes;
    ::strokesOf(points, strokes);
    return strokes;
}

/// What is seen of a frame that stands.
QImage pictureOf(const std::vector<LdbPoint> &points, int pictureSide = side)
{
    Exposure exposure;
    exposure.resize(pictureSide);
    exposure.expose(points);
    Phosphor phosphor;
    phosphor.resize(pictureSide);
    phosphor.show(exposure, std::chrono::seconds(1));
    return phosphor.picture().copy();
}

/// The colour at a place of the field.
QColor seenAt(const QImage &picture, const QPointF &place)
{
    Exposure exposure;
    exposure.resize(picture.width());
    const QPointF pixel = exposure.pixelOf(place);
    return picture.pixelColor(int(std::floor(pixel.x())), int(std::floor(pixel.y())));
}

/// The red of a picture made smaller, each pixel the mean of those that it stands for.
std::vector<int> redOf(const QImage &picture, int smallSide)
{
    const int step = picture.width() / smallSide;
    std::vector<int> red(std::size_t(smallSide) * std::size_t(smallSide));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            red[std::size_t(y / step) * std::size_t(smallSide) + std::size_t(x / step)] +=
                qRed(picture.pixel(x, y));
    }
    for (int &sum : red)
        sum /= step * step;
    return red;
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

const QPointF left(-20000, 0);
const QPointF right(20000, 0);
const QPointF middle(0, 0);

} // namespace

class tst_Light : public QObject
{
    Q_OBJECT

private slots:
    void a_line_is_drawn_between_two_lit_points();
    void travel_to_and_from_a_blanked_point_is_not_drawn_data();
    void travel_to_and_from_a_blanked_point_is_not_drawn();
    void points_in_one_line_are_one_stroke();
    void a_bend_begins_a_stroke();
    void the_way_back_is_a_stroke_of_its_own();
    void a_circle_keeps_its_corners();
    void a_change_of_colour_begins_a_stroke();
    void a_point_that_is_repeated_is_a_dot_that_dwells();
    void a_single_lit_point_is_a_dot();
    void points_outside_the_field_lie_on_its_edge();
    void points_of_no_number_are_blanked();
    void an_empty_frame_is_black();
    void colours_are_red_green_and_blue_from_the_top_data();
    void colours_are_red_green_and_blue_from_the_top();
    void light_adds_up_where_beams_cross();
    void y_goes_upward_and_x_to_the_right();
    void the_field_fills_the_square_but_for_a_narrow_margin();
    void a_line_has_a_soft_glow_and_black_beyond();
    void the_pieces_of_a_line_leave_no_seam();
    void a_dwelling_beam_is_brighter_than_a_passing_one();
    void a_picture_is_as_wide_at_any_size();
    void old_light_fades_and_then_has_nothing_to_fade();
    void what_stands_does_not_fade();
    void a_way_that_would_take_long_is_drawn_without_glow();
    void a_way_that_no_scanner_goes_is_drawn_in_part();
};

void tst_Light::a_line_is_drawn_between_two_lit_points()
{
    QCOMPARE(strokesOf(lineOf(left, right, 0x123456)),
        (std::vector<Stroke>{{left, right, 0x123456, 0}}));
}

void tst_Light::travel_to_and_from_a_blanked_point_is_not_drawn_data()
{
    QTest::addColumn<int>("color");
    QTest::addColumn<int>("flags");
    QTest::addRow("colour 0 and flags 3") << 0 << 3;
    QTest::addRow("colour 0 alone") << 0 << 0;
    QTest::addRow("flags 3 alone") << 0xFFFFFF << 3;
    QTest::addRow("no colour in the low 24 bits") << 0x7F000000 << 0;
}

void tst_Light::travel_to_and_from_a_blanked_point_is_not_drawn()
{
    QFETCH(int, color);
    QFETCH(int, flags);
    const LdbPoint blanked = {0, 10000, 0, color, 0, 0, std::uint8_t(flags), 0};
    const std::vector<LdbPoint> points = {lit(-20000, 0, 0xff), lit(-10000, 0, 0xff), blanked,
        lit(10000, 0, 0xff), lit(20000, 0, 0xff)};
    QCOMPARE(strokesOf(points),
        (std::vector<Stroke>{
            {{-20000, 0}, {-10000, 0}, 0xff, 0}, {{10000, 0}, {20000, 0}, 0xff, 0}}));
    QCOMPARE(seenAt(pictureOf(points), {0, 5000}), QColor(Qt::black));
}

void tst_Light::points_in_one_line_are_one_stroke()
{
    std::vector<LdbPoint> points;
    for (int i = 0; i <= 50; ++i)
        points.push_back(lit(float(-20000 + i * 800), float(-20000 + i * 800), 0xff));
    QCOMPARE(strokesOf(points), (std::vector<Stroke>{{{-20000, -20000}, {20000, 20000}, 0xff, 0}}));
}

void tst_Light::a_bend_begins_a_stroke()
{
    QCOMPARE(strokesOf({lit(0, 0, 1), lit(1000, 0, 1), lit(2000, 20, 1)}),
        (std::vector<Stroke>{{{0, 0}, {1000, 0}, 1, 0}, {{1000, 0}, {2000, 20}, 1, 0}}));
}

void tst_Light::the_way_back_is_a_stroke_of_its_own()
{
    QCOMPARE(strokesOf({lit(0, 0, 1), lit(1000, 0, 1), lit(400, 0, 1)}),
        (std::vector<Stroke>{{{0, 0}, {1000, 0}, 1, 0}, {{1000, 0}, {400, 0}, 1, 0}}));
}

void tst_Light::a_circle_keeps_its_corners()
{
    std::vector<LdbPoint> points;
    for (int i = 0; i <= 20; ++i) {
        const float angle = float(i) * 0.314159265F;
        points.push_back(lit(800 * std::cos(angle), 800 * std::sin(angle), 0x0030FF));
    }
    QCOMPARE(strokesOf(points).size(), 20U);
}

void tst_Light::a_change_of_colour_begins_a_stroke()
{
    QCOMPARE(strokesOf({lit(0, 0, 1), lit(1000, 0, 1), lit(2000, 0, 2)}),
        (std::vector<Stroke>{{{0, 0}, {1000, 0}, 1, 0}, {{1000, 0}, {2000, 0}, 2, 0}}));
}

void tst_Light::a_point_that_is_repeated_is_a_dot_that_dwells()
{
    QCOMPARE(
        strokesOf({lit(0, 0, 1), lit(500, 0, 1), lit(500, 0, 1), lit(500, 0, 1), lit(900, 0, 1)}),
        (std::vector<Stroke>{
            {{0, 0}, {500, 0}, 1, 0}, {{500, 0}, {500, 0}, 1, 3}, {{500, 0}, {900, 0}, 1, 0}}));
}

void tst_Light::a_single_lit_point_is_a_dot()
{
    const std::vector<Stroke> dot = {{{5, 6}, {5, 6}, 0xff, 1}};
    QCOMPARE(strokesOf({dark(0, 0), lit(5, 6, 0xff), dark(0, 0)}), dot);
    QCOMPARE(strokesOf({lit(5, 6, 0xff)}), dot);
}

void tst_Light::points_outside_the_field_lie_on_its_edge()
{
    QCOMPARE(strokesOf({lit(-1e30F, 0, 1), lit(std::numeric_limits<float>::infinity(), 0, 1),
                 lit(40000, 90000, 1)}),
        (std::vector<Stroke>{
            {{-32768, 0}, {-32768, 0}, 1, 1}, {{32768, 32768}, {32768, 32768}, 1, 1}}));
}

void tst_Light::points_of_no_number_are_blanked()
{
    const float none = std::numeric_limits<float>::quiet_NaN();
    QCOMPARE(
        strokesOf({lit(none, 0, 1), lit(0, none, 1), lit(none, none, 1)}), std::vector<Stroke>());
}

void tst_Light::an_empty_frame_is_black()
{
    QVERIFY(isBlack(pictureOf({})));
    QVERIFY(isBlack(pictureOf({dark(0, 0), dark(20000, 20000)})));
}

void tst_Light::colours_are_red_green_and_blue_from_the_top_data()
{
    QTest::addColumn<int>("color");
    QTest::addColumn<QColor>("seen");
    QTest::addRow("red") << 0xFF0000 << QColor(255, 0, 0);
    QTest::addRow("green") << 0x00FF00 << QColor(0, 255, 0);
    QTest::addRow("blue") << 0x0000FF << QColor(0, 0, 255);
    QTest::addRow("the ball's") << 0x0030FF << QColor(0, 0x30, 255);
    QTest::addRow("white") << 0xFFFFFF << QColor(255, 255, 255);
}

void tst_Light::colours_are_red_green_and_blue_from_the_top()
{
    QFETCH(int, color);
    QFETCH(QColor, seen);
    // Where the beam is at its strongest its glow adds a fifth.
    const QImage picture = pictureOf(lineOf(left, right, color), 1001);
    const QColor there = seenAt(picture, middle);
    const auto isNear = [](int one, int other) { return std::abs(one - other) <= other / 4; };
    QVERIFY2(isNear(there.red(), seen.red()), qPrintable(there.name()));
    QVERIFY2(isNear(there.green(), seen.green()), qPrintable(there.name()));
    QVERIFY2(isNear(there.blue(), seen.blue()), qPrintable(there.name()));
}

void tst_Light::light_adds_up_where_beams_cross()
{
    const QImage picture =
        pictureOf(lineOf(left, right, 0xFF0000) + lineOf({0, -20000}, {0, 20000}, 0x00FF00), 1001);
    QCOMPARE(seenAt(picture, middle), QColor(255, 255, 0));
    QCOMPARE(seenAt(picture, {-10000, 0}), QColor(255, 0, 0));
    QCOMPARE(seenAt(picture, {0, 10000}), QColor(0, 255, 0));
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
    Exposure exposure;
    exposure.resize(1000);
    QCOMPARE(exposure.pixelOf({0, 0}), QPointF(500, 500));
    QCOMPARE(exposure.pixelOf({-32768, 32768}), QPointF(30, 30));
    QCOMPARE(exposure.pixelOf({32768, -32768}), QPointF(970, 970));
}

void tst_Light::a_line_has_a_soft_glow_and_black_beyond()
{
    const QImage picture = pictureOf(lineOf(left, right, 0xFF0000), 1000);
    int last = 256;
    for (const int units : {0, 150, 600, 1200}) {
        const int red = seenAt(picture, {0, double(units)}).red();
        QVERIFY2(red < last && red > 0, qPrintable(QString::number(units)));
        last = red;
    }
    QCOMPARE(seenAt(picture, {0, 2500}), QColor(Qt::black));
    QCOMPARE(seenAt(picture, {23000, 0}), QColor(Qt::black));
}

void tst_Light::the_pieces_of_a_line_leave_no_seam()
{
    // Two colours that differ by one step of blue, so that the pieces stay pieces.
    std::vector<LdbPoint> pieces;
    for (int i = 0; i <= 40; ++i)
        pieces.push_back(lit(float(-20000 + i * 1000), float(-8000 + i * 400), 0x804020 + i % 2));
    QCOMPARE(strokesOf(pieces).size(), 40U);
    const QImage inPieces = pictureOf(pieces);
    const QImage whole = pictureOf(lineOf({-20000, -8000}, {20000, 8000}, 0x804020));
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const QColor one = inPieces.pixelColor(x, y);
            const QColor other = whole.pixelColor(x, y);
            QVERIFY(std::abs(one.red() - other.red()) <= 3);
            QVERIFY(std::abs(one.green() - other.green()) <= 3);
        }
    }
}

void tst_Light::a_dwelling_beam_is_brighter_than_a_passing_one()
{
    const std::vector<LdbPoint> passing = {
        lit(-20000, 0, 0x600000), lit(0, 0, 0x600000), lit(20000, 0, 0x600000)};
    std::vector<LdbPoint> dwelling = passing;
    dwelling.insert(dwelling.begin() + 1, 3, lit(0, 0, 0x600000));
    QVERIFY(
        seenAt(pictureOf(dwelling), middle).red() > seenAt(pictureOf(passing), middle).red() + 50);
    QCOMPARE(seenAt(pictureOf(dwelling), {10000, 0}), seenAt(pictureOf(passing), {10000, 0}));
}

void tst_Light::a_picture_is_as_wide_at_any_size()
{
    const auto points = lineOf({-20000, -20000}, {20000, 20000}, 0xFFFFFF);
    const std::vector<int> large = redOf(pictureOf(points, 1200), 300);
    const std::vector<int> half = redOf(pictureOf(points, 600), 300);
    int most = 0;
    for (std::size_t i = 0; i < large.size(); ++i)
        most = std::max(most, std::abs(large[i] - half[i]));
    QVERIFY2(most <= 24, qPrintable(QString::number(most)));
}

void tst_Light::old_light_fades_and_then_has_nothing_to_fade()
{
    using namespace std::chrono_literals;
    Exposure exposure;
    exposure.resize(side);
    Phosphor phosphor;
    phosphor.resize(side);
    exposure.expose(lineOf(left, right, 0xFF0000));
    QVERIFY(!phosphor.show(exposure, 1s));
    int last = seenAt(phosphor.picture(), middle).red();
    exposure.expose({});
    for (int step = 0; step < 5; ++step) {
        QVERIFY(phosphor.show(exposure, 16ms));
        const int red = seenAt(phosphor.picture(), middle).red();
        QVERIFY(red < last);
        last = red;
    }
    QVERIFY(!phosphor.show(exposure, 1s));
    QVERIFY(isBlack(phosphor.picture()));
}

void tst_Light::what_stands_does_not_fade()
{
    using namespace std::chrono_literals;
    Exposure exposure;
    exposure.resize(side);
    exposure.expose(lineOf(left, right, 0x808080));
    Phosphor phosphor;
    phosphor.resize(side);
    phosphor.show(exposure, 0s);
    const QImage first = phosphor.picture().copy();
    QVERIFY(!phosphor.show(exposure, 16ms));
    QCOMPARE(phosphor.picture(), first);
}

void tst_Light::a_way_that_would_take_long_is_drawn_without_glow()
{
    std::vector<LdbPoint> points(300);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = lit(i % 2 == 0 ? -20000 : 20000, 0, 0x800000);
    const QImage longWay = pictureOf(points, 1000);
    points.resize(3);
    const QImage shortWay = pictureOf(points, 1000);
    QCOMPARE(seenAt(longWay, middle), QColor(255, 0, 0));
    QVERIFY(seenAt(shortWay, {0, 1000}).red() > 0);
    QCOMPARE(seenAt(longWay, {0, 1000}), QColor(Qt::black));
}

void tst_Light::a_way_that_no_scanner_goes_is_drawn_in_part()
{
    std::vector<LdbPoint> points(ldbMaxPoints - 2);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = lit(i % 2 == 0 ? -32768 : 32768, 0, 0xFF0000);
    points.push_back(lit(0, 20000, 0xFF0000));
    points.push_back(lit(10000, 20000, 0xFF0000));
    const QImage picture = pictureOf(points);
    QVERIFY(seenAt(picture, middle).red() > 0);
    QCOMPARE(seenAt(picture, {5000, 20000}), QColor(Qt::black));
}

QTEST_GUILESS_MAIN(tst_Light)

#include "tst_light.moc"
