#pragma once

#include "events.h"
#include "frames.h"
#include "recorder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <variant>
#include <vector>

// Hand-made shows for the tests of recording and playback.

inline constexpr SharedTime showMs = 1'000'000;
inline constexpr SharedTime showStart = 90'000 * showMs;

struct ZoneFrame
{
    int zone;
    Frame frame;
};
using Show = std::vector<std::variant<Event, ZoneFrame>>;

/// A frame at `at` milliseconds.
inline ZoneFrame frameAt(int at, std::vector<LdbPoint> points, int zone = 0)
{
    return {zone, {.missed = 0, .sentAt = showStart + at * showMs, .points = std::move(points)}};
}

inline Event eventAt(int at, Event::Kind kind, std::uint64_t process = 0)
{
    return {kind, showStart + at * showMs, process};
}

/// One white point, whose position identifies the frame.
inline std::vector<LdbPoint> pointAt(int x)
{
    return {{float(x), 0, 0, 0xFFFFFF, 0, 0, 1, 0}};
}

inline void write(Recorder &recorder, const Show &show)
{
    for (const auto &entry : show) {
        if (const auto *event = std::get_if<Event>(&entry))
            recorder.write(*event);
        else
            recorder.write(std::get<ZoneFrame>(entry).zone, std::get<ZoneFrame>(entry).frame);
    }
}

/// The bytes of a show's recording.
inline QByteArray recorded(const Show &show, bool finished = true)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("show.rec"));
    Recorder recorder;
    if (!recorder.open(path))
        qFatal("%s", qPrintable(recorder.errorString()));
    recorder.begin(showStart);
    write(recorder, show);
    recorder.flush();
    if (finished && !recorder.finish())
        qFatal("%s", qPrintable(recorder.errorString()));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s", qPrintable(file.errorString()));
    return file.readAll();
}
