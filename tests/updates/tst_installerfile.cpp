#include "installerfile.h"
#include "setupfile.h"
#include "versionstrings.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_InstallerFile : public QObject
{
    Q_OBJECT

private slots:
    void an_installer_tells_its_version_and_update_host_data();
    void an_installer_tells_its_version_and_update_host();
    void a_signature_behind_the_archive_changes_nothing();
    void a_value_may_be_empty_or_missing();
    void another_file_is_named_for_what_it_is_data();
    void another_file_is_named_for_what_it_is();
    void a_truncated_installer_is_never_accepted();
    void damage_is_survived();
    void a_program_of_this_system_is_not_an_installer();
};

void tst_InstallerFile::an_installer_tells_its_version_and_update_host_data()
{
    QTest::addColumn<QByteArray>("magic");
    QTest::newRow("with 64 bits") << QByteArray("\x0B\x02");
    QTest::newRow("with 32 bits") << QByteArray("\x0B\x01");
}

void tst_InstallerFile::an_installer_tells_its_version_and_update_host()
{
    QFETCH(QByteArray, magic);
    SetupFile setup;
    setup.magic = magic;
    const InstallerFile installer = readInstaller(setup.bytes());
    QCOMPARE(installer.fault, QString());
    QCOMPARE(installer.version, u"1.02"_s);
    QCOMPARE(installer.updateHost, u"updates.your-domain.org"_s);
}

void tst_InstallerFile::a_signature_behind_the_archive_changes_nothing()
{
    QCOMPARE(readInstaller(SetupFile().bytes() + QByteArray(5000, '\x30')).fault, QString());
}

void tst_InstallerFile::a_value_may_be_empty_or_missing()
{
    const SetupFile setup =
        SetupFile().with(u"UpdateHost"_s, QString()).with(u"Odd"_s, u"\u00E9"_s);
    QCOMPARE(readInstaller(setup.bytes()).updateHost, QString());
    QCOMPARE(readInstaller(setup.bytes()).version, u"1.02"_s);
    QCOMPARE(versionStrings(setup.bytes()).value(u"Odd"_s), u"\u00E9"_s);
    QVERIFY(!versionStrings(setup.bytes()).contains(u"CompanyName"_s));
}

void tst_InstallerFile::another_file_is_named_for_what_it_is_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    const QByteArray setup = SetupFile().bytes();
    const qsizetype archive = setup.indexOf("\xEF\xBE\xAD\xDE") - 4;
    SetupFile uninstaller;
    uninstaller.archiveFlags[0] = '\1';
    const QString noProgram = u"it is not a Windows program with a version"_s;
    QTest::newRow("five bytes") << QByteArray("a\0b\r\n", 5) << noProgram;
    QTest::newRow("a shell script") << QByteArray("#!/bin/sh\nexit 0\n") << noProgram;
    QTest::newRow("a program for DOS") << setup.first(64) + "other" + setup.sliced(69) << noProgram;
    QTest::newRow("a program without a version") << SetupFile{.strings = {}}.bytes() << noProgram;
    QTest::newRow("another program")
        << SetupFile().with(u"ProductName"_s, u"Laser Rallyvanes"_s).bytes()
        << u"it is another program"_s;
    QTest::newRow("the program itself") << setup.first(archive) << u"it installs nothing"_s;
    QTest::newRow("an archive in the wrong place")
        << setup.first(archive) + "." + setup.sliced(archive) << u"it installs nothing"_s;
    QTest::newRow("the uninstaller") << uninstaller.bytes() << u"it is an uninstaller"_s;
    QTest::newRow("one byte less") << setup.chopped(1) << u"it is truncated"_s;
}

void tst_InstallerFile::another_file_is_named_for_what_it_is()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, fault);
    QCOMPARE(readInstaller(bytes).fault, fault);
}

void tst_InstallerFile::a_truncated_installer_is_never_accepted()
{
    const QByteArray setup = SetupFile().bytes();
    for (qsizetype size = 0; size < setup.size(); ++size) {
        // A copy of its own, so that a sanitizer sees a read past the end.
        const QByteArray cut(setup.constData(), size);
        QVERIFY2(!readInstaller(cut).fault.isEmpty(), qPrintable(QString::number(size)));
    }
}

void tst_InstallerFile::damage_is_survived()
{
    const QByteArray setup = SetupFile().bytes();
    int accepted = 0;
    for (qsizetype at = 0; at < setup.size(); ++at) {
        for (const char value : {'\xFF', '\x80', '\0', '\1'}) {
            QByteArray damaged = setup;
            damaged[at] = value;
            accepted += readInstaller(damaged).fault.isEmpty();
        }
    }
    // Most bytes are padding or not looked at, but not all.
    QVERIFY(accepted > 0);
    QVERIFY(accepted < 4 * setup.size());
}

void tst_InstallerFile::a_program_of_this_system_is_not_an_installer()
{
    QFile file(QCoreApplication::applicationFilePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!readInstaller(file.readAll()).fault.isEmpty());
}

QTEST_GUILESS_MAIN(tst_InstallerFile)

#include "tst_installerfile.moc"
