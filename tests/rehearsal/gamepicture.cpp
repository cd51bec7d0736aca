#include "gamepicture.h"

#include <cmath>
#include <numbers>

namespace {

struct Place
{
    double x;
    double y;
};

LdbPoint pointAt(const Place &place, std::int32_t color, std::uint8_t flags)
{
    return {static_cast<float>(place.x), static_cast<float>(place.y), 0, color, 0, 0, flags, 0};
}

void addStroke(std::vector<LdbPoint> &points, const std::vector<Place> &places, std::int32_t color)
{
    points.push_back(pointAt(places.front(), 0, 3));
    for (const Place &place : places)
        points.push_back(pointAt(place, color, 0));
    points.push_back(pointAt(places.back(), 0, 3));
}

std::vector<Place> line(const Place &from, const Place &to, int steps)
{
    std::vector<Place> places;
    for (int i = 0; i <= steps; ++i) {
        const double share = double(i) / steps;
        places.push_back({std::lerp(from.x, to.x, share), std::lerp(from.y, to.y, share)});
    }
    return places;
}

std::vector<Place> circle(const Place &middle, double radius, int steps)
{
    std::vector<Place> places;
    for (int i = 0; i <= steps; ++i) {
        const double angle = 2 * std::numbers::pi * i / steps;
        places.push_back(
            {middle.x + radius * std::cos(angle), middle.y + radius * std::sin(angle)});
    }
    return places;
}

} // namespace

std::vector<LdbPoint> gamePicture(double seconds)
{
    const Place ball = {26000 * std::sin(seconds * 1.9), 24000 * std::sin(seconds * 1.3)};
    const double left = 20000 * std::sin(seconds);
    const double right = 20000 * std::cos(seconds * 1.2);
    std::vector<LdbPoint> points;
    addStroke(points, circle(ball, 800, 20), 0x0030FF);
    addStroke(points, line({-32000, left - 5000}, {-32000, left + 5000}, 20), 0xFFFFFF);
    addStroke(points, line({32000, right - 5000}, {32000, right + 5000}, 20), 0xFFFFFF);
    addStroke(points, line({-32000, 32000}, {32000, 32000}, 50), 0xFFFF00);
    addStroke(points, line({-32000, -32000}, {32000, -32000}, 50), 0xFFFF00);
    const double top = 18666;
    const double low = 2666;
    addStroke(points,
        {{-14666, top}, {-6666, top}, {-6666, 10666}, {-14666, 10666}, {-14666, low}, {-6666, low}},
        0x00FFFF);
    addStroke(points, line({-2666, 10666}, {2666, 10666}, 12), 0x00FFFF);
    addStroke(points, {{6666, top}, {14666, top}, {14666, low}, {6666, low}}, 0x00FFFF);
    addStroke(points, {{6666, 10666}, {14666, 10666}}, 0x00FFFF);
    return points;
}
