#include "recordingtask.h"

#include "options.h"
#include "showlog.h"
#include "textdump.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>
#include <cstdlib>

namespace {

bool fail(const QString &message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    return false;
}

bool dumpToStandardOutput(Recording &recording, bool points)
{
    QFile output;
    return (output.open(stdout, QIODevice::WriteOnly) && dump(recording, points, output)
               && output.flush())
        || fail(output.errorString());
}

bool writeReport(Recording &recording, const QString &path)
{
    ShowLog log;
    for (qsizetype i = 0; i < recording.size(); ++i) {
        const Recording::Entry entry = recording.entry(i);
        if (entry.isFrame())
            log.note(entry.zone, recording.frame(i));
        else
            log.note(recording.event(i));
    }
    QSaveFile file(path);
    return (file.open(QIODevice::WriteOnly) && file.write(log.report()) >= 0 && file.commit())
        || fail(
            QStringLiteral("--report cannot write to \"%1\": %2").arg(path, file.errorString()));
}

bool writeIlda(Recording &recording, const RecordingTask &task)
{
    QString problem;
    const QStringList files = exportIlda(recording, task.zone, task.colors, task.output, problem);
    for (const QString &file : files)
        std::printf("%s\n", qPrintable(file));
    return !files.isEmpty() || fail(problem);
}

bool use(Recording &recording, const RecordingTask &task)
{
    switch (task.kind) {
    case RecordingTask::Dump:
    case RecordingTask::DumpPoints:
        return dumpToStandardOutput(recording, task.kind == RecordingTask::DumpPoints);
    case RecordingTask::Report:
        return writeReport(recording, task.output);
    case RecordingTask::ExportIlda:
        return writeIlda(recording, task);
    case RecordingTask::None:
        break;
    }
    return true;
}

} // namespace

int run(const RecordingTask &task)
{
    Recording recording;
    const bool intact = recording.open(task.recording) || fail(recording.problem());
    const bool used = use(recording, task);
    return intact && used ? EXIT_SUCCESS : EXIT_FAILURE;
}
