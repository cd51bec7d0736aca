#include "host.h"
#include "hostwindow.h"
#include "options.h"
#include "recordingtask.h"
#include "showkeeper.h"

#include <QApplication>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace std::chrono_literals;

namespace {

std::atomic<bool> askedToEnd = false;
static_assert(std::atomic<bool>::is_always_lock_free);

/// On Ctrl+C and on a request of the system.
void askToEnd(int /*signal*/)
{
    askedToEnd = true;
}

int fail(const QString &message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    return EXIT_FAILURE;
}

int failTo(const char *option, const QString &path, const QString &why)
{
    return fail(
        QStringLiteral("%1 cannot write to \"%2\": %3").arg(QLatin1StringView(option), path, why));
}

} // namespace

int main(int argc, char *argv[])
{
    std::signal(SIGINT, askToEnd);
    std::signal(SIGTERM, askToEnd);
    QCoreApplication::setApplicationName(QStringLiteral("rehearsalhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(HOST_VERSION));
    // Before there has to be a display: help, version and recordings are for terminals too.
    Options options;
    {
        const QCoreApplication terminal(argc, argv);
        options = Options::read(terminal);
        if (options.task.kind != RecordingTask::None)
            return run(options.task);
    }
    const QApplication application(argc, argv);
    // Windows' own style does not take the window's dark colours.
    QApplication::setStyle(QStringLiteral("fusion"));

    Host host(options.host);
    ShowKeeper keeper(host);
    if (!options.recordFile.isEmpty() && !keeper.startRecording(options.recordFile))
        return failTo("--record", options.recordFile, keeper.errorString());
    QFile report(options.reportFile);
    if (!options.reportFile.isEmpty() && !report.open(QIODevice::WriteOnly))
        return failTo("--report", options.reportFile, report.errorString());
    const bool isHost = options.openFile.isEmpty();
    if (isHost && !host.open())
        return fail(host.errorString());
    HostWindow window(host, keeper);
    window.show();
    if (isHost) {
        host.start();
        // The program that started this one waits for the line.
        std::puts("The rehearsal host is running.");
        std::fflush(stdout);
    } else {
        window.openRecording(options.openFile);
    }
    QTimer requests;
    QObject::connect(&requests, &QTimer::timeout, qApp, [] {
        if (askedToEnd)
            QApplication::quit();
    });
    requests.start(16ms);
    if (options.seconds > 0)
        QTimer::singleShot(qRound64(options.seconds * 1000), qApp, &QApplication::quit);

    QApplication::exec();
    host.close();
    window.remember();

    int result = EXIT_SUCCESS;
    if (!options.snapshotFile.isEmpty() && !window.snapshot().save(options.snapshotFile))
        result =
            fail(QStringLiteral("--snapshot cannot write to \"%1\".").arg(options.snapshotFile));
    if (!keeper.stopRecording())
        result = fail(QStringLiteral("The recording \"%1\" is not complete: %2")
                          .arg(keeper.recordingFile(), keeper.errorString()));
    if (report.isOpen() && (report.write(keeper.report()) < 0 || !report.flush()))
        result = failTo("--report", options.reportFile, report.errorString());
    std::printf("%s\n", qPrintable(window.summary()));
    return result;
}
