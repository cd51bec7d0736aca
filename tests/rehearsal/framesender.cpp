#include "gamepicture.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QThread>

#include <cstdio>

// Replaces the game: loads the host's library from its own folder and sends a moving picture at the
// rate of the game. Usage: framesender [SECONDS [ZONE [OUTPUT 0 or 1]]]

namespace {

template <class Function>
Function *entry(QLibrary &library, const char *name)
{
    return reinterpret_cast<Function *>(library.resolve(name));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto argument = [](int index, int otherwise) {
        return QCoreApplication::arguments().value(index, QString::number(otherwise)).toInt();
    };
    const int seconds = argument(1, 3);
    const int zone = argument(2, 0);
    const bool outputOn = argument(3, 1) != 0;

    QLibrary library(QCoreApplication::applicationDirPath() + QStringLiteral("/BEYONDIOx64"));
    const auto create = entry<std::int32_t()>(library, "ldbCreate");
    const auto destroy = entry<std::int32_t()>(library, "ldbDestroy");
    const auto ready = entry<std::int32_t()>(library, "ldbBeyondExeReady");
    const auto output =
        entry<std::int32_t()>(library, outputOn ? "ldbEnableLaserOutput" : "ldbDisableLaserOutput");
    const auto send =
        entry<std::int32_t(std::int32_t, std::int32_t, std::int32_t, const char *, std::int32_t,
            const LdbPoint *, const void *, std::int32_t, std::int32_t)>(library, "ldbSendFrame");
    if (!create || !destroy || !ready || !output || !send) {
        std::fprintf(stderr, "%s\n", qPrintable(library.errorString()));
        return EXIT_FAILURE;
    }
    if (ready() != 1) {
        std::fputs("The host is not ready.\n", stderr);
        return EXIT_FAILURE;
    }
    create();
    output();
    constexpr int msBetweenFrames = 9;
    for (int elapsed = 0; elapsed < seconds * 1000; elapsed += msBetweenFrames) {
        const auto points = gamePicture(elapsed / 1000.0);
        send(2, zone, 0, "SingleZone", static_cast<std::int32_t>(points.size()), points.data(),
            nullptr, 100, -1);
        QThread::msleep(msBetweenFrames);
    }
    destroy();
    return EXIT_SUCCESS;
}
