#include "exposure.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// Of the side of the square, on each side of the field, so that the glow of a border shows.
constexpr double margin = 0.03;
/// Half widths (standard deviations) of the beam and of its glow, in parts of the side; the beam
/// is never finer than what one pixel can show without steps.
constexpr double beamWidth = 1.0 / 850;
constexpr double finestBeam = 0.6;
constexpr double glowWidth = 1.0 / 130;
constexpr double glowLevel = 0.22;
/// A dot is wider and stronger than the line.
constexpr double dotWidth = 1.8;
constexpr double dotLevel = 0.45;
constexpr int brightestDwell = 4;
/// A frame whose way is longer than so many sides is drawn without glow, and no further than so
/// many: no frame, not even one of nonsense, may hold the host up until it seems gone. The game's
/// frames are below ten.
constexpr double longestGlowingWay = 60.0;
constexpr double longestWay = 600.0;

/// A bell curve and its integral, looked up in steps of 1/256 of its width up to where it ends.
class Bell
{
public:
    static constexpr double reach = 3.0;

    Bell()
    {
        for (std::size_t i = 0; i < m_height.size(); ++i) {
            const double x = double(i) / stepsPerWidth;
            m_height[i] = static_cast<float>(std::exp(-x * x / 2));
            m_area[i] = static_cast<float>(std::erf(x / std::sqrt(2.0)) / 2);
        }
        m_height.back() = 0;
        m_area.back() = 0.5F;
    }

    /// 1 in the middle, 0 beyond its reach.
    float height(float x) const { return m_height[index(std::abs(x))]; }
    /// From the middle to x: -0.5 ... 0.5.
    float area(float x) const { return std::copysign(m_area[index(std::abs(x))], x); }

private:
    static constexpr int stepsPerWidth = 256;
    static constexpr auto last = std::size_t(reach * stepsPerWidth);

    static std::size_t index(float x)
    {
        return static_cast<std::size_t>(std::min(x * stepsPerWidth, float(last)));
    }

    std::array<float, last + 1> m_height;
    std::array<float, last + 1> m_area;
};

const Bell bell; // looked up for every lit pixel; clazy:exclude=non-pod-global-static

using Color = std::array<float, 3>; ///< blue, green, red, as a pixel has them

Color colorOf(std::uint32_t rgb)
{
    return {float((rgb & 0xff) << 8), float(rgb & 0xff00), float(rgb >> 8 & 0xff00)};
}

void add(std::uint16_t *pixel, const Color &color, float level)
{
    for (const float part : color) {
        *pixel = static_cast<std::uint16_t>(std::min(float(*pixel) + part * level, 65535.0F));
        ++pixel;
    }
}

/// Pixels first ... last, both included; none when last < first.
struct Span
{
    int first;
    int last;
};

/// The pixels whose middles lie in [from, to] and on the square.
Span pixelsBetween(double from, double to, int side)
{
    const double low = std::clamp(std::ceil(from - 0.5), 0.0, double(side));
    const double high = std::clamp(std::floor(to - 0.5), -1.0, double(side - 1));
    return {static_cast<int>(low), static_cast<int>(high)};
}

/// Narrows [from, to] to where offset + slope * x lies in [low, high].
void narrow(double &from, double &to, double offset, double slope, double low, double high)
{
    if (std::abs(slope) < 1e-6)
        return;
    const auto [first, last] = std::minmax({(low - offset) / slope, (high - offset) / slope});
    from = std::max(from, first);
    to = std::min(to, last);
}

/// In sides of the field.
double lengthOf(const Stroke &stroke)
{
    const QPointF step = stroke.to - stroke.from;
    return std::hypot(step.x(), step.y()) / (2 * fieldLimit);
}

} // namespace

/// What a stroke is drawn with: width in pixels, strength of the light.
struct Exposure::Brush
{
    double width;
    double level;
    double reach() const { return width * Bell::reach; }
};

void Exposure::resize(int side)
{
    m_side = std::max(side, 0);
    m_darkRow.assign(rowSize(), 0);
    for (std::size_t i = 3; i < m_darkRow.size(); i += 4)
        m_darkRow[i] = 0xff00;
    m_light.resize(rowSize() * std::size_t(m_side));
    darken();
}

void Exposure::expose(std::span<const LdbPoint> points)
{
    darken();
    strokesOf(points, m_strokes);
    const Brush beam = {std::max(m_side * beamWidth, finestBeam), 1};
    const Brush glow = {m_side * glowWidth, glowLevel};
    double way = 0;
    for (const Stroke &stroke : m_strokes)
        way += lengthOf(stroke);
    const bool glows = way <= longestGlowingWay;
    way = 0;
    for (const Stroke &stroke : m_strokes) {
        way += lengthOf(stroke);
        if (way > longestWay)
            break;
        const auto draw = stroke.isDot() ? &Exposure::drawDot : &Exposure::drawLine;
        (this->*draw)(beam, stroke);
        if (glows)
            (this->*draw)(glow, stroke);
    }
}

void Exposure::darken()
{
    for (int y = 0; y < m_side; ++y)
        std::copy(m_darkRow.cbegin(), m_darkRow.cend(), pixel(0, y));
}

QPointF Exposure::pixelOf(const QPointF &place) const
{
    const double scale = m_side * (1 - 2 * margin) / (2 * fieldLimit);
    return {m_side / 2.0 + place.x() * scale, m_side / 2.0 - place.y() * scale};
}

// The light of a bell-shaped beam that moves evenly from end to end: across the line a bell,
// along it the bell's integral. So the pieces of a longer line add up to it without a seam.
void Exposure::drawLine(const Brush &brush, const Stroke &stroke)
{
    const QPointF from = pixelOf(stroke.from);
    const QPointF to = pixelOf(stroke.to);
    const double length = std::hypot(to.x() - from.x(), to.y() - from.y());
    if (length <= 0)
        return;
    const QPointF along = (to - from) / length;
    const double reach = brush.reach();
    const Color color = colorOf(stroke.color);
    const auto level = static_cast<float>(brush.level);
    const auto perWidth = static_cast<float>(1 / brush.width);
    const auto width = static_cast<float>(length / brush.width);

    const auto [top, bottom] = std::minmax({from.y(), to.y()});
    const Span rows = pixelsBetween(top - reach, bottom + reach, m_side);
    for (int y = rows.first; y <= rows.last; ++y) {
        const double down = y + 0.5 - from.y();
        // From the line's start to the middle of pixel x it is t along and d beside the line.
        const double t0 = down * along.y() - from.x() * along.x();
        const double d0 = down * along.x() + from.x() * along.y();
        double left = std::min(from.x(), to.x()) - reach;
        double right = std::max(from.x(), to.x()) + reach;
        narrow(left, right, t0, along.x(), -reach, length + reach);
        narrow(left, right, d0, -along.y(), -reach, reach);
        const Span columns = pixelsBetween(left, right, m_side);
        for (int x = columns.first; x <= columns.last; ++x) {
            const auto t = static_cast<float>(t0 + (x + 0.5) * along.x()) * perWidth;
            const auto d = static_cast<float>(d0 - (x + 0.5) * along.y()) * perWidth;
            add(pixel(x, y), color, level * bell.height(d) * (bell.area(t) - bell.area(t - width)));
        }
    }
}

void Exposure::drawDot(const Brush &brush, const Stroke &stroke)
{
    const QPointF middle = pixelOf(stroke.from);
    const double width = brush.width * dotWidth;
    const double reach = width * Bell::reach;
    const Color color = colorOf(stroke.color);
    const auto level =
        static_cast<float>(brush.level * dotLevel * std::min(stroke.dwell, brightestDwell));
    const Span rows = pixelsBetween(middle.y() - reach, middle.y() + reach, m_side);
    const Span columns = pixelsBetween(middle.x() - reach, middle.x() + reach, m_side);
    for (int y = rows.first; y <= rows.last; ++y) {
        const float rowLevel =
            level * bell.height(static_cast<float>((y + 0.5 - middle.y()) / width));
        for (int x = columns.first; x <= columns.last; ++x) {
            const auto across = static_cast<float>((x + 0.5 - middle.x()) / width);
            add(pixel(x, y), color, rowLevel * bell.height(across));
        }
    }
}
