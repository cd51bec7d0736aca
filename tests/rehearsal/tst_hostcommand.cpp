#include "hostprocess.h"
#include "rehearsalname.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// The command line of the rehearsal host.
class tst_HostCommand : public QObject
{
    Q_OBJECT

private slots:
    void it_ends_by_itself_with_a_summary();
    void a_damaged_recording_is_named_with_its_byte();
    void invalid_arguments_are_rejected_with_a_clear_message_data();
    void invalid_arguments_are_rejected_with_a_clear_message();
    void help_and_version_need_no_display_data();
    void help_and_version_need_no_display();

private:
    const RehearsalName m_name;
};

void tst_HostCommand::it_ends_by_itself_with_a_summary()
{
    HostProcess host({u"--seconds"_s, u"0.2"_s});
    QCOMPARE(host.result(), 0);
    QCOMPARE(host.output(),
        u"The rehearsal host is running.\n"
        "0 frames, 0.0 per second, 0 points in the last one, 0 missed\n"_s);
}

void tst_HostCommand::a_damaged_recording_is_named_with_its_byte()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("RALLYREC\x01H") == 10);
    file.close();
    HostProcess reader({u"--open"_s, path, u"--dump"_s});
    QCOMPARE(reader.result(), 1);
    QCOMPARE(reader.errors(),
        u"\"%1\": Damaged at byte 9: the record that begins here is truncated.\n"_s.arg(path));
}

void tst_HostCommand::invalid_arguments_are_rejected_with_a_clear_message_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("line");
    const QString zones = u"--zones takes a whole number from 0 to 8, not \"%1\"."_s;
    for (const QString &number : {u"-1"_s, u"9"_s, u"two"_s, u"1.5"_s, QString()})
        QTest::addRow("zones %s", qPrintable(number))
            << QStringList{u"--zones="_s + number} << zones.arg(number);
    QTest::addRow("build") << QStringList{u"--build"_s, u"99999999999"_s}
                           << u"--build takes a whole number from -2147483648 to 2147483647, "
                              "not \"99999999999\"."_s;
    for (const QString &number : {u"0"_s, u"-3"_s, u"nan"_s, u"inf"_s, u"soon"_s})
        QTest::addRow("seconds %s", qPrintable(number))
            << QStringList{u"--seconds="_s + number}
            << u"--seconds takes a number above 0, at most 86400, not \"%1\"."_s.arg(number);
    QTest::addRow("unknown") << QStringList{u"--loud"_s} << u"Unknown option 'loud'."_s;
    QTest::addRow("positional") << QStringList{u"show"_s}
                                << u"Unexpected argument \"show\". Try --help."_s;
    QTest::addRow("snapshot folder")
        << QStringList{u"--snapshot"_s, u"/no/such/folder/x.png"_s}
        << u"--snapshot cannot write a picture to \"/no/such/folder/x.png\"."_s;
    QTest::addRow("report folder") << QStringList{u"--report"_s, u"/no/such/folder/x"_s}
                                   << u"--report cannot write to \"/no/such/folder/x\": "_s;
    QTest::addRow("dump of nothing")
        << QStringList{u"--dump"_s} << u"--dump needs a recording: --open FILE."_s;
    QTest::addRow("open and record") << QStringList{u"--open"_s, u"x"_s, u"--record"_s, u"y"_s}
                                     << u"--record cannot be combined with --open."_s;
    QTest::addRow("two uses") << QStringList{u"--open"_s, u"x"_s, u"--dump"_s, u"--report"_s,
        u"y"_s} << u"--report cannot be combined with another use of a recording."_s;
    QTest::addRow("open nothing") << QStringList{u"--open"_s, u"/no/such/file"_s, u"--dump"_s}
                                  << u"Cannot read \"/no/such/file\": "_s;
    QTest::addRow("zone") << QStringList{u"--open"_s, u"x"_s, u"--export-ilda"_s, u"y"_s,
        u"--zone"_s, u"9"_s}
                          << u"--zone takes a whole number from 1 to 8, not \"9\"."_s;
    QTest::addRow("record folder") << QStringList{u"--record"_s, u"/no/such/folder/x"_s}
                                   << u"--record cannot write to \"/no/such/folder/x\": "_s;
}

void tst_HostCommand::invalid_arguments_are_rejected_with_a_clear_message()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, line);
    HostProcess host(arguments);
    QCOMPARE(host.result(), 1);
    const QString errors = host.errors();
    QVERIFY2(errors.contains(line), qPrintable(errors));
    QCOMPARE(host.output(), QString());
}

void tst_HostCommand::help_and_version_need_no_display_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");
    for (const QString &option : {u"--build <number>"_s, u"--zones <number>"_s, u"--not-ready"_s,
             u"--record <file>"_s, u"--report <file>"_s, u"--open <file>"_s, u"--dump"_s,
             u"--dump-points"_s, u"--export-ilda <file.ild>"_s, u"--zone <number>"_s,
             u"--blue-first"_s, u"--snapshot <file.png>"_s, u"--seconds <number>"_s})
        QTest::addRow("help: %s", qPrintable(option)) << QStringList{u"--help"_s} << 0 << option;
    QTest::addRow("version") << QStringList{u"--version"_s} << 0 << u"rehearsalhost "_s;
    QTest::addRow("bad option") << QStringList{u"--zones=9"_s} << 1 << u"--zones takes"_s;
}

void tst_HostCommand::help_and_version_need_no_display()
{
    QFETCH(QStringList, arguments);
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "of-no-such-name");
    HostProcess host(arguments);
    qputenv("QT_QPA_PLATFORM", platform);
    QTEST(host.result(), "status");
    const QString said = host.output() + host.errors();
    QFETCH(QString, text);
    QVERIFY2(said.contains(text), qPrintable(said));
}

QTEST_GUILESS_MAIN(tst_HostCommand)
#include "tst_hostcommand.moc"
