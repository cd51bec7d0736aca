#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether a process with this word in its command line is running.
bool runs(const QByteArray &word)
{
    const QDir processes(u"/proc"_s);
    const QStringList numbers = processes.entryList({u"[0-9]*"_s}, QDir::Dirs);
    return std::any_of(numbers.begin(), numbers.end(), [&](const QString &number) {
        QFile commandLine(processes.filePath(number + u"/cmdline"_s));
        return commandLine.open(QIODevice::ReadOnly)
            && commandLine.readAll().split('\0').contains(word);
    });
}

} // namespace

class tst_MidiSystem : public QObject
{
    Q_OBJECT

private slots:
    void a_command_gets_the_name_of_the_midi_system_and_its_exit_code_is_returned();
    void killing_a_test_ends_its_jack_server_and_its_command();

private:
    const QString m_midiSystem = QCoreApplication::applicationDirPath() + u"/midisystem"_s;
};

void tst_MidiSystem::a_command_gets_the_name_of_the_midi_system_and_its_exit_code_is_returned()
{
    QProcess process;
    process.start(m_midiSystem, {u"sh"_s, u"-c"_s, u"echo $RALLYVANE_MIDI; exit 5"_s});
    QVERIFY(process.waitForFinished());
    const QByteArray said = process.readAllStandardOutput();
    if (said.startsWith("SKIP"))
        QSKIP("There is no MIDI system here.");
    QVERIFY2(said == "alsa\n" || said == "jack\n", said.constData());
    QCOMPARE(process.exitCode(), 5);
}

void tst_MidiSystem::killing_a_test_ends_its_jack_server_and_its_command()
{
    const QString unlikeOthers = u"1000."_s + QString::number(QCoreApplication::applicationPid());
    QProcess process;
    process.start(m_midiSystem,
        {u"sh"_s, u"-c"_s, u"echo $RALLYVANE_MIDI $JACK_DEFAULT_SERVER; exec sleep $0"_s,
            unlikeOthers});
    process.waitForReadyRead();
    const QByteArrayList said = process.readLine().simplified().split(' ');
    if (said.first() != "jack")
        QSKIP("JACK is not needed here, or not there.");
    const QByteArray &server = said.last();
    QVERIFY(runs(server) && runs(unlikeOthers.toLatin1()));
    process.kill();
    QVERIFY(process.waitForFinished());
    QTRY_VERIFY(!runs(server) && !runs(unlikeOthers.toLatin1()));
}

QTEST_GUILESS_MAIN(tst_MidiSystem)

#include "tst_midisystem.moc"
