#include "faults.h"

#include <QDateTime>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString logName = u"rallyvane.log"_s;

void logIsFolder(ProgramStage &stage)
{
    QVERIFY(QDir(stage.path(QString())).mkdir(logName));
    stage.play();
    stage.changeSpeed(23);
    QVERIFY(QFileInfo(stage.path(logName)).isDir());
}

void logIsReadOnly(ProgramStage &stage)
{
    stage.write(logName, "before\n");
    QVERIFY(QFile::setPermissions(stage.path(logName), QFile::ReadOwner));
    stage.play();
    stage.changeSpeed(23);
    QCOMPARE(stage.log(), "before\n");
}

/// By an hour, while playing. Everything that must be punctual uses the steady clock.
void clockSetBack(ProgramStage &stage)
{
    stage.play();
    stage.ask(u"clock 3600"_s);
    stage.changeSpeed(23);
    stage.waitForFrames(100);
    stage.seams->ready = 0;
    QVERIFY(QTest::qWaitFor([&] { return !stage.hasHost(); }, ProgramStage::patience));
    const QByteArray last = stage.log().trimmed().split('\n').last();
    const auto logged =
        QDateTime::fromString(QString::fromLatin1(last.first(23)), Qt::ISODateWithMs);
    QVERIFY2(logged.secsTo(QDateTime::currentDateTime()) > 3000, "The clock was not set back.");
    stage.seams->ready = 1;
    stage.serve();
    stage.waitForFrames();
}

void closedInPlay(ProgramStage &stage)
{
    stage.play();
    stage.changeSpeed(23);
}

} // namespace

std::vector<Fault> systemFaults()
{
    // A window closed at each moment of start-up and of the update check: tst_ending.
    return {
        {"the log is a folder", logIsFolder},
        {"the log is read-only", logIsReadOnly},
        {"the clock is set back", clockSetBack},
        {"the window is closed in play", closedInPlay},
    };
}
