#include "faults.h"

#include <QDir>
#include <QLockFile>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString fileName = u".pong"_s;

/// The program cannot write its file: it plays on, and the file is as before.
void playsWithoutWriting(ProgramStage &stage)
{
    const QMap<QString, QString> before = stage.settings;
    stage.changeSpeed(28);
    stage.waitForFrames();
    QCOMPARE(stage.ask(u"text showButton"_s), u"Hide pong"_s);
    stage.settings = before;
}

void readOnly(ProgramStage &stage)
{
    QVERIFY(QFile::setPermissions(stage.path(fileName), QFile::ReadOwner));
    stage.play();
    playsWithoutWriting(stage);
}

/// Another program holds the lock that QSettings takes to write.
void locked(ProgramStage &stage)
{
    stage.play();
    QLockFile lock(stage.path(u".pong.lock"_s));
    QVERIFY(lock.tryLock(ProgramStage::patience));
    stage.tell(u"set speedSlider 24"_s);
    QTest::qWait(1000);
    lock.unlock();
    stage.changeSpeed(27);
    stage.waitForFrames();
}

/// The end of a line is missing, and all after it. The rest is kept.
void truncated(ProgramStage &stage)
{
    const QByteArray content = stage.contentOf(fileName);
    stage.write(fileName, content.first(content.indexOf("KeyboardStartR") + 8));
    for (const auto &key : {u"KeyboardStartR"_s, u"KeyboardUpL"_s, u"SensL"_s, u"SomethingElse"_s})
        stage.settings.remove(key);
    stage.play();
    stage.changeSpeed(26);
    QVERIFY(stage.contentOf(u".pong.damaged"_s).endsWith("Keyboard"));
}

void folder(ProgramStage &stage)
{
    QVERIFY(QFile::remove(stage.path(fileName)));
    QVERIFY(QDir(stage.path(QString())).mkdir(fileName));
    stage.start();
    QVERIFY(QTest::qWaitFor([&] { return stage.hasHost(); }, ProgramStage::patience));
    stage.changeSpeed(26);
    stage.ask(u"click enableButton"_s);
    stage.ask(u"click showButton"_s);
    stage.waitForFrames();
    QVERIFY(QFileInfo(stage.path(fileName)).isDir());
    stage.settings.clear();
}

void noise(ProgramStage &stage)
{
    const qsizetype size = qsizetype(isLong() ? 100 : 1) * 1000 * 1000;
    QByteArray content(size, '\0');
    QRandomGenerator random(9);
    random.fillRange(reinterpret_cast<quint32 *>(content.data()), size / 4);
    stage.write(fileName, content);
    stage.settings.clear();
    stage.start();
    QVERIFY(QTest::qWaitFor([&] { return stage.hasHost(); }, ProgramStage::patience));
    stage.changeSpeed(26);
    stage.waitForFrames();
    QCOMPARE(stage.contentOf(u".pong.damaged"_s), content);
}

/// No file can grow: neither the settings nor the log. Once there is room again, changes are saved.
void diskFull(ProgramStage &stage)
{
    stage.play();
    stage.ask(u"room 20"_s);
    playsWithoutWriting(stage);
    QTest::qWait(300);
    QCOMPARE(stage.lostSettings(), QStringList());
    stage.ask(u"room -1"_s);
    stage.changeSpeed(29);
}

/// Dies after the new file is written, before it replaces the old one. The next start has no
/// trouble.
void killedBeforeReplacing(ProgramStage &stage)
{
    stage.play();
    stage.ask(u"die"_s);
    stage.tell(u"set speedSlider 29"_s);
    QVERIFY(QTest::qWaitFor([&] { return !stage.isRunning(); }, ProgramStage::patience));
    QCOMPARE(stage.lostSettings(), QStringList());
    stage.play();
    stage.changeSpeed(21);
}

/// Dies at any moment while the slider is dragged: the file is whole, with one of the values.
void killedWhileWriting(ProgramStage &stage)
{
    const int rounds = isLong() ? 100 : 3;
    QRandomGenerator random(11);
    for (int round = 0; round < rounds; ++round) {
        stage.start();
        for (int step = 0; step < 200; ++step)
            stage.tell(u"set speedSlider %1"_s.arg(10 + step % 21));
        QTest::qWait(random.bounded(150));
        stage.kill();
        stage.settings.remove(u"BallSpeed"_s);
        QCOMPARE(stage.lostSettings(), QStringList());
    }
    stage.play();
    stage.changeSpeed(21);
}

} // namespace

std::vector<Fault> settingsFaults()
{
    return {
        {"the settings file is read-only", readOnly},
        {"the settings file is locked", locked},
        {"the settings file is cut short", truncated},
        {"the settings file is a folder", folder},
        {"the settings file is noise", noise},
        {"the disk is full", diskFull},
        {"killed before new settings replace the old", killedBeforeReplacing},
        {"killed while settings are written", killedWhileWriting},
    };
}
