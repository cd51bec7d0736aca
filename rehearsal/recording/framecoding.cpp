#include "framecoding.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <optional>

namespace {

/// The parts of a point that are stored; the others equal those of the point before.
enum Part : std::uint8_t {
    Place = 1, ///< integral coordinates, as the difference from the point before
    RawPlace = 2, ///< any other coordinates, as raw bits
    Color = 4,
    Flags = 8,
    Rest = 16, ///< z and the reserved bytes
    AllParts = 31,
};

/// Up to this, a float represents every integer exactly.
constexpr std::int64_t wholeLimit = 1 << 24;

bool equal(const LdbPoint &a, const LdbPoint &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

bool equalBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// The integer that a coordinate represents exactly, if any; -0.0 is none.
std::optional<std::int64_t> wholeOf(float value)
{
    if (!(std::abs(value) <= float(wholeLimit)))
        return std::nullopt;
    const auto whole = static_cast<std::int64_t>(value);
    if (!equalBits(float(whole), value))
        return std::nullopt;
    return whole;
}

std::uint8_t partsOf(const LdbPoint &point, const LdbPoint &before)
{
    unsigned parts = 0;
    if (!equalBits(point.x, before.x) || !equalBits(point.y, before.y))
        parts |= wholeOf(point.x) && wholeOf(point.y) ? Place : RawPlace;
    if (point.color != before.color)
        parts |= Color;
    if (point.flags != before.flags)
        parts |= Flags;
    if (!equalBits(point.z, before.z) || point.reserved0 != before.reserved0
        || point.reserved1 != before.reserved1 || point.reserved2 != before.reserved2)
        parts |= Rest;
    return static_cast<std::uint8_t>(parts);
}

void writePoint(ByteWriter &to, const LdbPoint &point, const LdbPoint &before)
{
    const std::uint8_t parts = partsOf(point, before);
    to.byte(parts);
    if ((parts & Place) != 0) {
        to.signedNumber(*wholeOf(point.x) - wholeOf(before.x).value_or(0));
        to.signedNumber(*wholeOf(point.y) - wholeOf(before.y).value_or(0));
    }
    if ((parts & RawPlace) != 0) {
        to.word(std::bit_cast<std::uint32_t>(point.x));
        to.word(std::bit_cast<std::uint32_t>(point.y));
    }
    if ((parts & Color) != 0)
        to.word(static_cast<std::uint32_t>(point.color));
    if ((parts & Flags) != 0)
        to.byte(point.flags);
    if ((parts & Rest) != 0) {
        to.word(std::bit_cast<std::uint32_t>(point.z));
        to.byte(point.reserved0);
        to.byte(point.reserved1);
        to.byte(point.reserved2);
    }
}

float readWhole(ByteReader &from, float before)
{
    const std::int64_t whole = wholeOf(before).value_or(0) + from.signedNumber(2 * wholeLimit);
    if (std::abs(whole) > wholeLimit)
        from.fail();
    return from.hasFailed() ? 0 : static_cast<float>(whole);
}

LdbPoint readPoint(ByteReader &from, LdbPoint point)
{
    const std::uint8_t parts = from.byte();
    if (parts > AllParts)
        from.fail();
    if ((parts & Place) != 0) {
        point.x = readWhole(from, point.x);
        point.y = readWhole(from, point.y);
    }
    if ((parts & RawPlace) != 0) {
        point.x = std::bit_cast<float>(from.word());
        point.y = std::bit_cast<float>(from.word());
    }
    if ((parts & Color) != 0)
        point.color = static_cast<std::int32_t>(from.word());
    if ((parts & Flags) != 0)
        point.flags = from.byte();
    if ((parts & Rest) != 0) {
        point.z = std::bit_cast<float>(from.word());
        point.reserved0 = from.byte();
        point.reserved1 = from.byte();
        point.reserved2 = from.byte();
    }
    return point;
}

} // namespace

void writePoints(
    ByteWriter &to, const std::vector<LdbPoint> &points, const std::vector<LdbPoint> &previous)
{
    to.number(points.size());
    const auto isKept = [&](std::size_t i) {
        return i < previous.size() && equal(points[i], previous[i]);
    };
    for (std::size_t i = 0; i < points.size();) {
        const std::size_t kept = i;
        while (i < points.size() && isKept(i))
            ++i;
        to.number(i - kept);
        const std::size_t own = i;
        while (i < points.size() && !isKept(i))
            ++i;
        to.number(i - own);
        for (std::size_t j = own; j < i; ++j)
            writePoint(to, points[j], j > 0 ? points[j - 1] : LdbPoint());
    }
}

void readPoints(ByteReader &from, std::vector<LdbPoint> &points)
{
    const std::size_t known = points.size();
    const std::size_t count = from.number(ldbMaxPoints);
    points.resize(count);
    for (std::size_t i = 0; i < count && !from.hasFailed();) {
        const std::size_t kept = from.number(std::min(std::max(known, i), count) - i);
        i += kept;
        const std::size_t own = from.number(count - i);
        if (kept == 0 && own == 0)
            from.fail();
        for (const std::size_t end = i + own; i < end && !from.hasFailed(); ++i)
            points[i] = readPoint(from, i > 0 ? points[i - 1] : LdbPoint());
    }
}
