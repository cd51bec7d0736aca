#include "debuglines.h"
#include "foundfile.h"
#include "settings.h"
#include "settingsfile.h"
#include "workingfolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using settingsfile::contentOf;

namespace {

constexpr QLatin1StringView fileName = FoundFile::name;
constexpr QLatin1StringView copyName = FoundFile::copyName;

/// Makes the file newer, because QSettings caches a file until its time or size changes.
void letQSettingsForget()
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QDateTime later = QDateTime::currentDateTime().addSecs(2);
    QVERIFY(file.setFileTime(later, QFileDevice::FileModificationTime));
}

} // namespace

class tst_DamagedSettings : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder.emplace(); }
    void cleanup() { m_folder.reset(); }
    void a_damaged_file_is_kept_and_its_intact_values_are_read_data();
    void a_damaged_file_is_kept_and_its_intact_values_are_read();
    void of_a_file_that_is_too_long_the_beginning_is_read_and_the_whole_kept();
    void the_longest_file_is_not_damage();
    void typed_values_are_read_as_text();
    void everything_but_typed_values_stays_in_the_file();
    void lines_with_at_signs_and_backslashes_are_not_damage();
    void a_file_that_cannot_be_copied_is_unchanged_data();
    void a_file_that_cannot_be_copied_is_unchanged();
    void the_next_start_leaves_the_kept_file_alone_data();
    void the_next_start_leaves_the_kept_file_alone();
    void later_damage_replaces_the_kept_file();
    void an_intact_file_is_not_copied();

private:
    std::optional<WorkingFolder> m_folder;
};

void tst_DamagedSettings::a_damaged_file_is_kept_and_its_intact_values_are_read_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addRow("a line without a key") << QByteArray("[General]\nBallSpeed=25\nKeyboard\n");
    QTest::addRow("cut in the middle of a key") << QByteArray("[General]\nBallSpeed=25\nSen");
    QTest::addRow("rubbish in front") << QByteArray("\xff\xfe rubbish\n[General]\nBallSpeed=25\n");
}

void tst_DamagedSettings::a_damaged_file_is_kept_and_its_intact_values_are_read()
{
    QFETCH(QByteArray, content);
    WorkingFolder::write(fileName, content);
    QTest::ignoreMessage(
        QtDebugMsg, R"(The settings file is damaged; it is kept as ".pong.damaged")");
    {
        const auto store = settings::open();
        QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
        QCOMPARE(settings::read(*store, settings::sensitivity[Side::Left]), 512);
        settings::write(*store, settings::sensitivity[Side::Left], 300);
    }
    QCOMPARE(contentOf(copyName), content);
    const auto store = settings::open(); // repaired, so nothing is logged
    QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
    QCOMPARE(settings::read(*store, settings::sensitivity[Side::Left]), 300);
    QCOMPARE(contentOf(copyName), content);
}

void tst_DamagedSettings::of_a_file_that_is_too_long_the_beginning_is_read_and_the_whole_kept()
{
    const QByteArray beginning = "[General]\nBallSpeed=25\nSensL=@Invalid()\nrubbish\n";
    const QByteArray content = beginning + QByteArray("Noise=1\n").repeated(10'000) + "SensR=300\n";
    WorkingFolder::write(copyName, "older");
    WorkingFolder::write(fileName, content);
    QTest::ignoreMessage(
        QtDebugMsg, R"(The settings file is damaged; it is kept as ".pong.damaged")");
    {
        const auto store = settings::open();
        QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
        QCOMPARE(store->value(settings::sensitivity[Side::Left].key), u"@Invalid()"_s);
        QCOMPARE(settings::read(*store, settings::sensitivity[Side::Right]), 512);
    }
    const auto store = settings::open(); // short and intact, so nothing is logged
    QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
    QCOMPARE(contentOf(copyName), content);
}

void tst_DamagedSettings::the_longest_file_is_not_damage()
{
    const QByteArray line = "Noise=1\n";
    const QByteArray content = "[Rest!]\n" + line.repeated(65'536 / line.size() - 1);
    QCOMPARE(content.size(), 65'536);
    WorkingFolder::write(fileName, content);
    settings::open();
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

void tst_DamagedSettings::typed_values_are_read_as_text()
{
    const QByteArray content =
        "[General]\nBallSpeed=25\nSensL=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x19)\n"
        "SensR=@Variant(\\0\\0\\0\\t\\0\\xff\\xff\\xff\\xfe)\n"
        "ControlModeLeft=@ByteArray(MIDI)\n";
    WorkingFolder::write(fileName, content);
    QTest::ignoreMessage(
        QtDebugMsg, R"(The settings file is damaged; it is kept as ".pong.damaged")");
    {
        const auto store = settings::open();
        for (const QString &key : store->allKeys())
            QCOMPARE(store->value(key).typeId(), int(QMetaType::QString));
        QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
        QCOMPARE(settings::read(*store, settings::sensitivity[Side::Left]), 0);
        QCOMPARE(settings::read(*store, settings::controlMode[Side::Left]), u"@ByteArray(MIDI)"_s);
        settings::write(*store, settings::sensitivity[Side::Left], 300);
    }
    QCOMPARE(contentOf(copyName), content);
    QVERIFY(QFile::remove(copyName));
    QCOMPARE(settings::read(*settings::open(), settings::sensitivity[Side::Left]), 300);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName}); // no longer damaged
}

void tst_DamagedSettings::everything_but_typed_values_stays_in_the_file()
{
    const QByteArray before = "; a remark\n[General]\nForeign=@home\nSensL=";
    const QByteArray after = "\nPath=C:\\\\show\nMail=me@example.org\n\n[Other]\nWindow=";
    WorkingFolder::write(fileName, before + "@Invalid()" + after + "@Rect(1 2 3 4)\r\n");
    settings::open();
    QCOMPARE(contentOf(fileName), before + "@@Invalid()" + after + "@@Rect(1 2 3 4)\r\n");
}

void tst_DamagedSettings::lines_with_at_signs_and_backslashes_are_not_damage()
{
    const QByteArray content = "[General]\nMail=me@example.org\nName=@home\nPath=C:\\\\show\n"
                               "[Other]\nNote=\"(@)\"\nSigned=@@Invalid()\n";
    WorkingFolder::write(fileName, content);
    settings::open();
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
    settings::write(*settings::open(), settings::ballSpeed, 25);
    for (const char *line : {"\nMail=me@example.org", "\nPath=C:\\\\show", "\nNote=(@)"})
        QVERIFY2(contentOf(fileName).contains(line), line);
}

void tst_DamagedSettings::a_file_that_cannot_be_copied_is_unchanged_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addRow("a line without a key") << QByteArray("[General]\nBallSpeed=25\nKeyboard\n");
    QTest::addRow("a typed value")
        << QByteArray("[General]\nBallSpeed=25\n[Other]\nWindow=@Rect(1 2 3 4)\n");
    QTest::addRow("too long") << "[General]\nBallSpeed=25\n"
            + QByteArray("Noise=1\n").repeated(10'000);
}

void tst_DamagedSettings::a_file_that_cannot_be_copied_is_unchanged()
{
    QFETCH(QByteArray, content);
    WorkingFolder::write(fileName, content);
    QVERIFY(QDir().mkdir(copyName));
    DebugLines log;
    {
        const auto store = settings::open();
        QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
        settings::write(*store, settings::ballSpeed, 30);
        store->sync();
        QCOMPARE(settings::read(*store, settings::ballSpeed), 30);
    }
    QCOMPARE(log.takeAll(),
        QStringList{
            u"The settings file is damaged and cannot be copied; changes will not be kept"_s});
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
    QVERIFY(QDir().rmdir(copyName)); // empty, as it was
}

void tst_DamagedSettings::the_next_start_leaves_the_kept_file_alone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addRow("a line without a key") << QByteArray("[General]\nBallSpeed=25\nKeyboard\n");
    QTest::addRow("a typed value") << QByteArray("[General]\nBallSpeed=25\nSensL=@Invalid()\n");
    QTest::addRow("both") << QByteArray("[General]\nBallSpeed=25\nSensL=@Invalid()\nKeyboard\n");
    QTest::addRow("too long") << "[General]\nBallSpeed=25\n"
            + QByteArray("Noise=1\n").repeated(10'000);
    QTest::addRow("too long, and a line without a key")
        << "[General]\nBallSpeed=25\nKeyboard\n" + QByteArray("Noise=1\n").repeated(10'000);
}

void tst_DamagedSettings::the_next_start_leaves_the_kept_file_alone()
{
    QFETCH(QByteArray, content);
    WorkingFolder::write(fileName, content);
    QTest::ignoreMessage(
        QtDebugMsg, R"(The settings file is damaged; it is kept as ".pong.damaged")");
    settings::open();
    QCOMPARE(contentOf(copyName), content);
    letQSettingsForget();
    const DebugLines log;
    QCOMPARE(settings::read(*settings::open(), settings::ballSpeed), 25);
    QCOMPARE(contentOf(copyName), content);
}

void tst_DamagedSettings::later_damage_replaces_the_kept_file()
{
    WorkingFolder::write(copyName, "older");
    WorkingFolder::write(fileName, "newer");
    QTest::ignoreMessage(
        QtDebugMsg, R"(The settings file is damaged; it is kept as ".pong.damaged")");
    settings::open();
    QCOMPARE(contentOf(copyName), QByteArray("newer"));
}

void tst_DamagedSettings::an_intact_file_is_not_copied()
{
    WorkingFolder::write(fileName, "; a remark\n[General]\nBallSpeed=25\n");
    settings::open();
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

QTEST_GUILESS_MAIN(tst_DamagedSettings)
#include "tst_damagedsettings.moc"
