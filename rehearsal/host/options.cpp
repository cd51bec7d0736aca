#include "options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QImageWriter>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

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

/// The task for the recording that --open names.
RecordingTask taskOf(const QCommandLineParser &parser)
{
    using namespace Qt::StringLiterals;
    RecordingTask task;
    task.recording = parser.value(u"open"_s);
    const std::array kinds = {std::pair(u"dump"_s, RecordingTask::Dump),
        std::pair(u"dump-points"_s, RecordingTask::DumpPoints),
        std::pair(u"report"_s, RecordingTask::Report),
        std::pair(u"export-ilda"_s, RecordingTask::ExportIlda)};
    for (const auto &[name, kind] : kinds) {
        if (!parser.isSet(name))
            continue;
        if (!parser.isSet(u"open"_s) && kind != RecordingTask::Report)
            refuse(u"--%1 needs a recording: --open FILE."_s.arg(name));
        if (task.kind != RecordingTask::None)
            refuse(u"--%1 cannot be combined with another use of a recording."_s.arg(name));
        task.kind = kind;
        if (kind == RecordingTask::Report || kind == RecordingTask::ExportIlda)
            task.output = parser.value(name);
    }
    if (!parser.isSet(u"open"_s))
        return {};
    if (task.kind == RecordingTask::None)
        return {};
    task.zone = wholeNumber(parser, u"zone"_s, 1, maxZones) - 1;
    if (parser.isSet(u"blue-first"_s))
        task.colors = ColorOrder::BlueGreenRed;
    return task;
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
        {QStringLiteral("record"),
            QStringLiteral("Record every frame received, and what else happens, in a file."),
            QStringLiteral("file")},
        {QStringLiteral("report"),
            QStringLiteral("At the end, write to a file what happened and whether it left every "
                           "zone dark."),
            QStringLiteral("file")},
        {QStringLiteral("snapshot"),
            QStringLiteral("Write a picture of the zones to a file at the end."),
            QStringLiteral("file.png")},
        {QStringLiteral("seconds"), QStringLiteral("End after so many seconds."),
            QStringLiteral("number")},
        {QStringLiteral("open"),
            QStringLiteral("Be no host, but show a recording, or do one of these with it: --dump, "
                           "--dump-points, --report, --export-ilda."),
            QStringLiteral("file")},
        {QStringLiteral("dump"),
            QStringLiteral("Write the recording's events and frames as lines of text.")},
        {QStringLiteral("dump-points"), QStringLiteral("As --dump, and the points of each frame.")},
        {QStringLiteral("export-ilda"),
            QStringLiteral(
                "Write the recording's frames of one zone as an ILDA file (format 5), or "
                "several if there are more than 65,535."),
            QStringLiteral("file.ild")},
        {QStringLiteral("zone"), QStringLiteral("The zone to export, from 1."),
            QStringLiteral("number"), QStringLiteral("1")},
        {QStringLiteral("blue-first"),
            QStringLiteral("Export colour numbers as 0xBBGGRR instead of 0xRRGGBB.")},
    });
    parser.process(application);
    if (!parser.positionalArguments().isEmpty())
        refuse(QStringLiteral("Unexpected argument \"%1\". Try --help.")
                   .arg(parser.positionalArguments().constFirst()));

    Options options;
    options.task = taskOf(parser);
    options.host.build = wholeNumber(parser, QStringLiteral("build"),
        std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    options.host.zoneCount = wholeNumber(parser, QStringLiteral("zones"), 0, maxZones);
    options.host.ready = !parser.isSet(QStringLiteral("not-ready"));
    if (options.task.kind == RecordingTask::None)
        options.openFile = parser.value(QStringLiteral("open"));
    options.recordFile = parser.value(QStringLiteral("record"));
    if (!options.openFile.isEmpty() && !options.recordFile.isEmpty())
        refuse(QStringLiteral("--record cannot be combined with --open."));
    options.reportFile = parser.value(QStringLiteral("report"));
    options.snapshotFile = pictureFile(parser);
    options.seconds = secondsOf(parser);
    return options;
}
