#include "hoststate.h"
#include "memoryfile.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QLibrary>
#include <QTemporaryDir>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t pointsInPlay = 175;

using SendFrame = std::int32_t (*)(std::int32_t, std::int32_t, std::int32_t, const char *,
    std::int32_t, const LdbPoint *, const void *, std::int32_t, std::int32_t);

/// A rehearsal host without a window, for the lifetime of this object.
class Host
{
public:
    bool open()
    {
        if (!m_folder.isValid())
            return false;
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
        qputenv(rehearsalVariable, "bench");
        if (!m_file.create(memoryFilePath()))
            return false;
        openHost(*m_file.memory(), {}, sharedNow());
        m_heart = std::jthread([this](const std::stop_token &end) {
            while (!end.stop_requested()) {
                beat(*m_file.memory(), sharedNow());
                std::this_thread::sleep_for(heartbeatInterval);
            }
        });
        return true;
    }
    /// Memory of the same layout in another file.
    SharedMemory *another()
    {
        return m_other.create(m_folder.filePath(QStringLiteral("other"))) ? m_other.memory()
                                                                          : nullptr;
    }

private:
    QTemporaryDir m_folder;
    MemoryFile m_file;
    MemoryFile m_other;
    std::jthread m_heart;
};

std::vector<LdbPoint> somePoints()
{
    std::vector<LdbPoint> points(pointsInPlay);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i].x = static_cast<float>(i);
    return points;
}

void send(benchmark::State &state, SendFrame sendFrame)
{
    const std::vector<LdbPoint> points = somePoints();
    const auto count = static_cast<std::int32_t>(points.size());
    for (auto _ : state) {
        if (sendFrame(2, 0, 0, "SingleZone", count, points.data(), nullptr, 100, -1) != 1)
            state.SkipWithError("The frame was refused.");
        benchmark::ClobberMemory();
    }
}

/// One copy of the points to memory laid out like the library's.
void copy(benchmark::State &state, SharedMemory *memory)
{
    const std::vector<LdbPoint> points = somePoints();
    std::uint64_t number = 0;
    for (auto _ : state) {
        std::memcpy(&memory->zones[0].slotOf(++number).points, points.data(),
            points.size() * sizeof(LdbPoint));
        benchmark::ClobberMemory();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Host host;
    QLibrary library(QStringLiteral(REHEARSAL_LIBRARY));
    const auto isReady = reinterpret_cast<std::int32_t (*)()>(library.resolve("ldbBeyondExeReady"));
    const auto sendFrame = reinterpret_cast<SendFrame>(library.resolve("ldbSendFrame"));
    SharedMemory *other = host.open() ? host.another() : nullptr;
    if (!other || !isReady || !sendFrame || isReady() != 1) {
        std::fputs("The rehearsal library or its host cannot be started.\n", stderr);
        return 1;
    }
    benchmark::RegisterBenchmark("link/ours", send, sendFrame);
    benchmark::RegisterBenchmark("link/baseline", copy, other);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
