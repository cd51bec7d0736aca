#include "framerecord.h"
#include "host.h"
#include "hostwindow.h"
#include "options.h"

#include <QApplication>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

std::atomic<bool> askedToEnd = false;
static_assert(std::atomic<bool>::is_always_lock_free);

/// On Ctrl+C and on a request of the system; the host looks at it as often as at its memory.
void askToEnd(int /*signal*/)
{
    askedToEnd = true;
}

int fail(const QString &message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    return EXIT_FAILURE;
}

void recordInto(FrameRecord &record, const Host &host)
{
    record.begin(host.startTime());
    QObject::connect(&host, &Host::frameReceived, &host,
        [&record](int zone, const Frame &frame) { record.writeFrame(zone, frame); });
    QObject::connect(&host, &Host::outputSwitched, &host,
        [&record](bool on) { record.writeOutput(sharedNow(), on); });
}

int failRecord(const FrameRecord &record, const Options &options)
{
    return fail(QStringLiteral("--record cannot write to \"%1\": %2")
                    .arg(options.recordFile, record.errorString()));
}

} // namespace

int main(int argc, char *argv[])
{
    std::signal(SIGINT, askToEnd);
    std::signal(SIGTERM, askToEnd);
    QCoreApplication::setApplicationName(QStringLiteral("rehearsalhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(HOST_VERSION));
    // Before there has to be a display: help and version are for terminals too.
    const Options options = Options::read(QCoreApplication(argc, argv));
    const QApplication application(argc, argv);
    // Windows' own style does not take the window's dark colours.
    QApplication::setStyle(QStringLiteral("fusion"));

    FrameRecord record;
    if (!options.recordFile.isEmpty() && !record.open(options.recordFile))
        return failRecord(record, options);
    Host host(options.host);
    if (!host.open())
        return fail(host.errorString());
    HostWindow window(host);
    window.show();
    host.start();
    recordInto(record, host);
    // For what has started it, which starts the game then.
    std::puts("The rehearsal host is running.");
    std::fflush(stdout);
    QObject::connect(&host, &Host::received, qApp, [] {
        if (askedToEnd)
            QApplication::quit();
    });
    if (options.seconds > 0)
        QTimer::singleShot(qRound64(options.seconds * 1000), qApp, &QApplication::quit);

    QApplication::exec();
    host.close();
    window.remember();

    int result = EXIT_SUCCESS;
    if (!options.snapshotFile.isEmpty() && !window.snapshot().save(options.snapshotFile))
        result =
            fail(QStringLiteral("--snapshot cannot write to \"%1\".").arg(options.snapshotFile));
    if (!record.finish())
        result = failRecord(record, options);
    std::printf("%s\n", qPrintable(window.summary()));
    return result;
}
