#include "fakehost.h"

#include "windowsapi.h"

#include <utility>

namespace {

FakeHost *host = nullptr;

void run(const std::function<void()> &scripted)
{
    if (scripted)
        scripted();
}

// The functions that do more than record the call.

std::int32_t answer(const char *name)
{
    const QByteArrayView called(name);
    host->record(QString::fromLatin1(name));
    if (called == "ldbBeyondExeReady") {
        run(host->onReady);
        return host->ready;
    }
    if (called == "ldbGetBeyondVersion")
        return host->build;
    if (called == "ldbGetZoneCount") {
        run(host->onZoneCount);
        return host->zones;
    }
    if (called == "ldbEnableLaserOutput" || called == "ldbDisableLaserOutput") {
        host->outputOn = called == "ldbEnableLaserOutput";
        run(host->onOutput);
        return host->outputAnswer;
    }
    return 0;
}

std::int32_t answer(
    const char *name, std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d)
{
    host->record(
        QStringLiteral("%1 %2 %3 %4 %5").arg(QLatin1StringView(name)).arg(a).arg(b).arg(c).arg(d));
    return 0;
}

std::int32_t answer(const char *name, std::int32_t frameType, std::int32_t zone,
    std::int32_t reserved, const char *imageName, std::int32_t pointCount, const LdbPoint *points,
    const void *extra, std::int32_t rate, std::int32_t option)
{
    if (host->recording) {
        const auto given = [](const void *pointer, const char *what) {
            return QString::fromLatin1(pointer ? what : "null");
        };
        const QStringList words = {QString::fromLatin1(name), QString::number(frameType),
            QString::number(zone), QString::number(reserved), QString::fromLatin1(imageName),
            QString::number(pointCount), given(points, "points"), given(extra, "extra"),
            QString::number(rate), QString::number(option)};
        host->record(words.join(QLatin1Char(' ')));
        host->recordFrame({zone, QList<LdbPoint>(points, points + pointCount)});
    }
    ++host->framesSent;
    run(host->onSendFrame);
    return 0;
}

#define PASS(...) __VA_OPT__(, ) __VA_ARGS__
#define DEFINE_ENTRY_POINT(name, parameters, arguments) \
    std::int32_t name parameters                        \
    {                                                   \
        return answer(#name PASS arguments);            \
    }
namespace library {
LDB_ENTRY_POINTS(DEFINE_ENTRY_POINT)
} // namespace library

} // namespace

FakeHost::FakeHost()
{
    host = this;
}

FakeHost::~FakeHost()
{
    host = nullptr;
}

QStringList FakeHost::takeCalls()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_calls, {});
}

QList<FakeHost::Frame> FakeHost::takeFrames()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_frames, {});
}

QStringList FakeHost::takeResolved()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_resolved, {});
}

void FakeHost::record(const QString &call)
{
    const std::lock_guard lock(m_mutex);
    m_calls.append(call);
}

void FakeHost::recordFrame(const Frame &frame)
{
    const std::lock_guard lock(m_mutex);
    m_frames.append(frame);
}

void FakeHost::recordResolved(const char *name)
{
    const std::lock_guard lock(m_mutex);
    m_resolved.append(QString::fromLatin1(name));
}

HMODULE LoadLibraryW(LPCWSTR fileName)
{
    if (!host)
        return nullptr;
    host->record(QStringLiteral("LoadLibrary ") + QString::fromWCharArray(fileName));
    host->loaded = host->installed;
    return host->installed ? reinterpret_cast<HMODULE>(host) : nullptr;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name)
{
    if (!host || module != reinterpret_cast<HMODULE>(host))
        return nullptr;
    host->recordResolved(name);
    const QByteArrayView wanted(name);
    if (wanted == host->missingEntryPoint)
        return nullptr;
#define FIND_ENTRY_POINT(entry, parameters, arguments) \
    if (wanted == #entry)                              \
        return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(&library::entry));
    LDB_ENTRY_POINTS(FIND_ENTRY_POINT)
    return nullptr;
}

BOOL FreeLibrary(HMODULE module)
{
    if (!host || module != reinterpret_cast<HMODULE>(host))
        return 0;
    host->record(QStringLiteral("FreeLibrary"));
    host->loaded = false;
    return 1;
}
