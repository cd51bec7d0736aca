#pragma once

#include <array>
#include <cstddef>
#include <optional>

/// A player's side of the field.
enum class Side { Left, Right };

inline constexpr std::array bothSides = {Side::Left, Side::Right};

constexpr Side otherSide(Side side)
{
    return side == Side::Left ? Side::Right : Side::Left;
}

/// A side's number, for interfaces that take an int: 0 left, 1 right.
constexpr int sideNumber(Side side)
{
    return static_cast<int>(side);
}

/// The side with that number, or none.
constexpr std::optional<Side> sideOfNumber(int number)
{
    if (number != 0 && number != 1)
        return std::nullopt;
    return static_cast<Side>(number);
}

/// One value for each side, left first.
template <class T>
struct PerSide
{
    std::array<T, 2> values;

    constexpr T &operator[](Side side) { return values[static_cast<std::size_t>(side)]; }
    constexpr const T &operator[](Side side) const
    {
        return values[static_cast<std::size_t>(side)];
    }

    constexpr auto begin() { return values.begin(); }
    constexpr auto end() { return values.end(); }
    constexpr auto begin() const { return values.begin(); }
    constexpr auto end() const { return values.end(); }
};
