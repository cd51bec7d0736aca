#include "options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QImageWriter>

#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void refuse(const QString &message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): no thread has begun yet
}

qint32 wholeNumber(const QCommandLineParser &parser, const QString &name, int lowest, int highest)
{
    bool ok = false;
    const int number = parser.value(name).toInt(&ok);
    if (!ok || number < lowest || number > highest) {
        refuse(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\".")
                   .arg(name)
                   .arg(lowest)
                   .arg(highest)
                   .arg(parser.value(name)));
    }
    return number;
}

double secondsOf(const QCommandLineParser &parser)
{
    constexpr double longest = 86400;
    if (!parser.isSet(QStringLiteral("seconds")))
        return 0;
    bool ok = false;
    const double seconds = parser.value(QStringLiteral("seconds")).toDouble(&ok);
    if (!ok || !(seconds > 0 && seconds <= longest)) {
        refuse(QStringLiteral("--seconds takes a number above 0, at most 86400, not \"%1\".")
                   .arg(parser.value(QStringLiteral("seconds"))));
    }
    return seconds;
}

QString pictureFile(const QCommandLineParser &parser)
{
    QString file = parser.value(QStringLiteral("snapshot"));
    if (parser.isSet(QStringLiteral("snapshot")) && !QImageWriter(file).canWrite())
        refuse(QStringLiteral("--snapshot cannot write a picture to \"%1\".").arg(file));
    return file;
}

} // namespace

Options Options::read(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A stand-in for the laser host BEYOND: it takes the frames that the game "
                       "sends and draws them as light."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("build"), QStringLiteral("Build number of the host."),
            QStringLiteral("number"), QStringLiteral("1700")},
        {QStringLiteral("zones"), QStringLiteral("Number of zones, 0 to %1.").arg(maxZones),
            QStringLiteral("number"), QStringLiteral("1")},
        {QStringLiteral("not-ready"), QStringLiteral("Be a host that is running but not ready.")},
        {QStringLiteral("record"), QStringLiteral("Write every frame received to a file, as text."),
            QStringLiteral("file")},
        {QStringLiteral("snapshot"),
            QStringLiteral("Write a picture of the zones to a file at the end."),
            QStringLiteral("file.png")},
        {QStringLiteral("seconds"), QStringLiteral("End after so many seconds."),
            QStringLiteral("number")},
    });
    parser.process(application);
    if (!parser.positionalArguments().isEmpty())
        refuse(QStringLiteral("Unexpected argument \"%1\". Try --help.")
                   .arg(parser.positionalArguments().constFirst()));

    Options options;
    options.host.build = wholeNumber(parser, QStringLiteral("build"),
        std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    options.host.zoneCount = wholeNumber(parser, QStringLiteral("zones"), 0, maxZones);
    options.host.ready = !parser.isSet(QStringLiteral("not-ready"));
    options.recordFile = parser.value(QStringLiteral("record"));
    options.snapshotFile = pictureFile(parser);
    options.seconds = secondsOf(parser);
    return options;
}
