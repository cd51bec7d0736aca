#include "exposure.h"

#include "bell.h"

#include <cmath>
#include <numbers>

namespace {

/// Standard deviation of the beam as a fraction of the side, and its minimum in pixels, below which
/// lines would look jagged.
constexpr double beamWidth = 1.0 / 850;
constexpr double finestBeam = 0.6;
/// Shorter lines, in beam widths, are indistinguishable from a dot.
constexpr double shortestLine = 0.5;
/// The scale is reset before added light would overflow a float.
constexpr double smallestScale = 1e-18;
/// Less light counts as none: it is invisible, and denormal floats would be slow.
constexpr float leastLight = 1e-11F;

const Bell bell; // looked up for every lit pixel; clazy:exclude=non-pod-global-static

Light lightOf(std::uint32_t rgb, double energy)
{
    const auto part = [energy](std::uint32_t byte) {
        return static_cast<float>(energy * (byte & 0xff) / 255);
    };
    return Light{part(rgb), part(rgb >> 8), part(rgb >> 16), 0};
}

/// Pixels first ... last, inclusive; empty if last < first.
struct Span
{
    int first;
    int last;
};

/// The pixels of the square whose centres are in [from, to].
Span pixelsBetween(double from, double to, int side)
{
    const double low = std::clamp(std::ceil(from - 0.5), 0.0, double(side));
    const double high = std::clamp(std::floor(to - 0.5), -1.0, double(side - 1));
    return {static_cast<int>(low), static_cast<int>(high)};
}

/// Narrows [from, to] to where offset + slope * x is in [low, high].
void narrow(double &from, double &to, double offset, double slope, double low, double high)
{
    if (std::abs(slope) < 1e-6)
        return;
    const auto [first, last] = std::minmax({(low - offset) / slope, (high - offset) / slope});
    from = std::max(from, first);
    to = std::min(to, last);
}

} // namespace

void Exposure::resize(int side)
{
    m_side = std::max(side, 1);
    m_tilesPerSide = (m_side + tileSide - 1) / tileSide;
    m_field.side = m_side;
    m_beamWidth = std::max(m_side * beamWidth, finestBeam);
    m_light.assign(rowSize() * rowSize(), Light{});
    m_lit.assign(std::size_t(m_tilesPerSide) * std::size_t(m_tilesPerSide), 0);
    m_scale = 1;
}

void Exposure::clear()
{
    for (int y = 0; y < m_tilesPerSide; ++y) {
        for (int x = 0; x < m_tilesPerSide; ++x) {
            if (isLit(x, y))
                darken(x, y);
        }
    }
    m_scale = 1;
}

void Exposure::fade(double kept)
{
    m_scale *= kept;
    if (m_scale > smallestScale)
        return;
    for (int y = 0; y < m_tilesPerSide * tileSide; ++y) {
        for (int x = 0; x < m_tilesPerSide * tileSide; ++x) {
            if (isLit(x / tileSide, y / tileSide)) {
                Light &light = m_light[rowSize() * std::size_t(y) + std::size_t(x)];
                light *= scale();
                light = light > leastLight ? light : Light{};
            }
        }
    }
    m_scale = 1;
}

void Exposure::darken(int tileX, int tileY)
{
    m_lit[tileAt(tileX, tileY)] = 0;
    for (int y = tileY * tileSide; y < (tileY + 1) * tileSide; ++y)
        std::fill_n(m_light.data() + rowSize() * std::size_t(y) + std::size_t(tileX) * tileSide,
            tileSide, Light{});
}

double Exposure::energy() const
{
    double sum = 0;
    for (const Light &light : m_light)
        sum += double(light[0]) + double(light[1]) + double(light[2]);
    return sum / 3 * m_scale;
}

void Exposure::add(const QPointF &from, const QPointF &to, std::uint32_t color, double energy)
{
    const QPointF first = m_field.pixelOf(from);
    const QPointF last = m_field.pixelOf(to);
    const double length = std::hypot(last.x() - first.x(), last.y() - first.y());
    if (length < shortestLine * m_beamWidth)
        addDot((first + last) / 2, lightOf(color, energy / m_scale));
    else
        addLine(first, last, length, lightOf(color, energy / m_scale));
}

/// Marks the tiles of these pixels as lit.
void Exposure::light(int left, int top, int right, int bottom)
{
    for (int y = top / tileSide; y <= bottom / tileSide; ++y) {
        for (int x = left / tileSide; x <= right / tileSide; ++x)
            m_lit[tileAt(x, y)] = 1;
    }
}

// The light of a bell-shaped beam that moves at constant speed: a bell across the line, its
// integral along it. The pieces of a longer line therefore add up without a seam.
void Exposure::addLine(const QPointF &from, const QPointF &to, double length, const Light &light)
{
    const QPointF along = (to - from) / length;
    const double reach = m_beamWidth * Bell::reach;
    const auto perWidth = static_cast<float>(1 / m_beamWidth);
    const auto width = static_cast<float>(length / m_beamWidth);
    const auto level =
        static_cast<float>(1 / (length * m_beamWidth * std::sqrt(2 * std::numbers::pi)));

    const auto [top, bottom] = std::minmax({from.y(), to.y()});
    const Span rows = pixelsBetween(top - reach, bottom + reach, m_side);
    for (int y = rows.first; y <= rows.last; ++y) {
        const double down = y + 0.5 - from.y();
        // The centre of pixel x is t along the line from its start, and d away from it.
        const double t0 = down * along.y() - from.x() * along.x();
        const double d0 = down * along.x() + from.x() * along.y();
        double left = std::min(from.x(), to.x()) - reach;
        double right = std::max(from.x(), to.x()) + reach;
        narrow(left, right, t0, along.x(), -reach, length + reach);
        narrow(left, right, d0, -along.y(), -reach, reach);
        const Span columns = pixelsBetween(left, right, m_side);
        if (columns.last < columns.first)
            continue;
        this->light(columns.first, y, columns.last, y);
        auto t = static_cast<float>(t0 + (columns.first + 0.5) * along.x()) * perWidth;
        auto d = static_cast<float>(d0 - (columns.first + 0.5) * along.y()) * perWidth;
        const auto tStep = static_cast<float>(along.x()) * perWidth;
        const auto dStep = static_cast<float>(-along.y()) * perWidth;
        Light *pixel = m_light.data() + rowSize() * std::size_t(y) + columns.first;
        for (int x = columns.first; x <= columns.last; ++x, ++pixel, t += tStep, d += dStep)
            *pixel += light * (level * bell.height(d) * (bell.area(t) - bell.area(t - width)));
    }
}

void Exposure::addDot(const QPointF &middle, const Light &light)
{
    const double reach = m_beamWidth * Bell::reach;
    const auto level = static_cast<float>(1 / (2 * std::numbers::pi * m_beamWidth * m_beamWidth));
    const Span rows = pixelsBetween(middle.y() - reach, middle.y() + reach, m_side);
    const Span columns = pixelsBetween(middle.x() - reach, middle.x() + reach, m_side);
    if (rows.last < rows.first || columns.last < columns.first)
        return;
    this->light(columns.first, rows.first, columns.last, rows.last);
    for (int y = rows.first; y <= rows.last; ++y) {
        const float rowLevel =
            level * bell.height(static_cast<float>((y + 0.5 - middle.y()) / m_beamWidth));
        Light *pixel = m_light.data() + rowSize() * std::size_t(y) + columns.first;
        for (int x = columns.first; x <= columns.last; ++x, ++pixel) {
            const auto across = static_cast<float>((x + 0.5 - middle.x()) / m_beamWidth);
            *pixel += light * (rowLevel * bell.height(across));
        }
    }
}
