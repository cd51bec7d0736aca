#include "ownversion.h"
#include "setupfile.h"
#include "versionfile.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString published = u"upload/Telechargements/LaserRallyvane/"_s;

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

struct Outcome
{
    int exitCode;
    QString output;
    QString errors;
};

Outcome publish(const QStringList &arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/publish"_L1, arguments);
    process.waitForFinished();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        QString::fromLocal8Bit(process.readAllStandardOutput()),
        QString::fromLocal8Bit(process.readAllStandardError())};
}

Outcome publish102()
{
    return publish({u"--release"_s, u"1.02"_s, u"setup.exe"_s, u"upload"_s});
}

QByteArray changelog()
{
    return "# Changelog\n\n"
           "## 1.02 - 2027-03-01\n\n"
           "- Updates.\n"
           "  Of all kinds.\n"
           "- Caf\xC3\xA9.\n\n"
           "## 1.01 - 2026-11-20\n\n"
           "- First = best.\n";
}

} // namespace

class tst_Publish : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_tree_has_the_files_that_the_program_requests();
    void windows_line_ends_are_accepted();
    void the_last_entry_of_a_changelog_ends_with_it();
    void publishing_a_version_again_replaces_it();
    void by_default_it_publishes_the_projects_version();
    void notes_that_the_program_could_not_read_are_refused_data();
    void notes_that_the_program_could_not_read_are_refused();
    void a_missing_file_is_named_data();
    void a_missing_file_is_named();
    void what_is_not_an_installer_of_this_version_is_refused_data();
    void what_is_not_an_installer_of_this_version_is_refused();
    void an_installer_larger_than_the_program_downloads_is_refused();
    void the_version_file_is_not_written_without_its_installer();
    void an_installer_that_does_not_read_back_is_not_published();
    void wrong_usage_is_explained();

private:
    std::optional<QTemporaryDir> folder;
};

void tst_Publish::init()
{
    folder.emplace();
    QVERIFY(QDir::setCurrent(folder->path()));
    QVERIFY(write(u"CHANGELOG.md"_s, changelog()));
    QVERIFY(write(u"setup.exe"_s, SetupFile().bytes()));
}

void tst_Publish::cleanup()
{
    QDir::setCurrent(QCoreApplication::applicationDirPath());
}

void tst_Publish::the_tree_has_the_files_that_the_program_requests()
{
    const Outcome outcome = publish102();
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(QDir(published).entryList(QDir::Files | QDir::Hidden, QDir::Name),
        (QStringList{u"Rallyvane_v1.02_setup.exe"_s, u"VersionNotes.txt"_s}));
    QCOMPARE(contents(published + "Rallyvane_v1.02_setup.exe"_L1), contents(u"setup.exe"_s));
    const QByteArray separator(43, '=');
    QCOMPARE(contents(published + "VersionNotes.txt"_L1),
        "Laser Rallyvane\n" + separator
            + "\nV1.02 - 2027-03-01\n- Updates.\n  Of all kinds.\n- Caf\xE9.\n" + separator + "\n");
    // The version file announces the installer, so it must not be published first.
    QVERIFY2(outcome.output.indexOf("setup.exe"_L1) < outcome.output.indexOf("VersionNotes"_L1),
        qPrintable(outcome.output));
}

void tst_Publish::windows_line_ends_are_accepted()
{
    QVERIFY(write(u"CHANGELOG.md"_s, changelog().replace("\n", "\r\n")));
    QCOMPARE(publish102().errors, QString());
    QCOMPARE(readVersionFile(contents(published + "VersionNotes.txt"_L1)).notes,
        u"- Updates.\n  Of all kinds.\n- Caf\u00E9.\n"_s);
}

void tst_Publish::the_last_entry_of_a_changelog_ends_with_it()
{
    QVERIFY(write(u"CHANGELOG.md"_s, "## 1.02 - 2027-03-01\n- All %1 new."));
    QCOMPARE(publish102().errors, QString());
    QCOMPARE(
        readVersionFile(contents(published + "VersionNotes.txt"_L1)).notes, u"- All %1 new.\n"_s);
}

void tst_Publish::publishing_a_version_again_replaces_it()
{
    QCOMPARE(publish102().exitCode, 0);
    QVERIFY(write(u"setup.exe"_s, SetupFile().bytes() + "signature"));
    QVERIFY(write(u"CHANGELOG.md"_s, "## 1.02 - 2027-03-02\n- b\n"));
    QCOMPARE(publish102().exitCode, 0);
    QCOMPARE(contents(published + "Rallyvane_v1.02_setup.exe"_L1), contents(u"setup.exe"_s));
    QCOMPARE(readVersionFile(contents(published + "VersionNotes.txt"_L1)).notes, u"- b\n"_s);
}

void tst_Publish::by_default_it_publishes_the_projects_version()
{
    const QByteArray own = ownVersionText;
    QVERIFY(write(u"changes"_s, "## " + own + " - 2027-03-01\n- new\n"));
    QVERIFY(write(
        u"setup.exe"_s, SetupFile().with(u"ProductVersion"_s, QString::fromLatin1(own)).bytes()));
    QCOMPARE(
        publish({u"--changelog"_s, u"changes"_s, u"setup.exe"_s, u"upload"_s}).errors, QString());
    QCOMPARE(
        versionInHundredths(readVersionFile(contents(published + "VersionNotes.txt"_L1)).version),
        ownVersion);
}

void tst_Publish::notes_that_the_program_could_not_read_are_refused_data()
{
    QTest::addColumn<QByteArray>("changelog");
    QTest::addColumn<QString>("reason");
    QTest::newRow("an equals sign")
        << QByteArray("## 1.02 - 2027-03-01\n- speed = 20\n") << u"equals sign"_s;
    QTest::newRow("no notes") << QByteArray("## 1.02 - 2027-03-01\n\n## 1.01 - 2026-11-20\n- a\n")
                              << u"empty"_s;
    QTest::newRow("no entry") << QByteArray("# Changelog\n") << u"no entry"_s;
    QTest::newRow("an empty changelog") << QByteArray() << u"no entry"_s;
    QTest::newRow("another version on top")
        << QByteArray("## 1.03 - 2027-03-01\n- a\n\n## 1.02 - 2027-03-01\n- b\n") << u"1.03"_s;
    QTest::newRow("no version") << QByteArray("## Unreleased\n- a\n\n## 1.02 - 2027-03-01\n- b\n")
                                << u"\"## Unreleased\""_s;
    QTest::newRow("no date") << QByteArray("## 1.02\n- a\n") << u"\"## 1.02\""_s;
    QTest::newRow("tenths") << QByteArray("## 1.2 - 2027-03-01\n- a\n") << u"## 1.2 - "_s;
    QTest::newRow("not Latin-1") << QByteArray(
        "## 1.02 - 2027-03-01\n- \xE2\x80\x9Cnew\xE2\x80\x9D")
                                 << u"not of Latin-1"_s;
    QTest::newRow("not UTF-8") << QByteArray("## 1.02 - 2027-03-01\n- \xFF") << u"not of Latin-1"_s;
    QTest::newRow("more than the program reads")
        << "## 1.02 - 2027-03-01\n- " + QByteArray(1 << 20, 'a') << u"could not read"_s;
}

void tst_Publish::notes_that_the_program_could_not_read_are_refused()
{
    QFETCH(QByteArray, changelog);
    QFETCH(QString, reason);
    QVERIFY(write(u"CHANGELOG.md"_s, changelog));
    const Outcome outcome = publish102();
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.startsWith("Nothing is published: "_L1), qPrintable(outcome.errors));
    QVERIFY2(outcome.errors.contains(reason), qPrintable(outcome.errors));
    QVERIFY(!QDir(u"upload"_s).exists());
}

void tst_Publish::a_missing_file_is_named_data()
{
    QTest::addColumn<QString>("missing");
    QTest::addColumn<bool>("empty");
    QTest::newRow("no installer") << u"setup.exe"_s << false;
    QTest::newRow("an empty installer") << u"setup.exe"_s << true;
    QTest::newRow("no changelog") << u"CHANGELOG.md"_s << false;
}

void tst_Publish::a_missing_file_is_named()
{
    QFETCH(QString, missing);
    QFETCH(bool, empty);
    QVERIFY(QFile::remove(missing));
    if (empty)
        QVERIFY(write(missing, ""));
    const Outcome outcome = publish102();
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(missing), qPrintable(outcome.errors));
    QVERIFY(!QDir(u"upload"_s).exists());
}

void tst_Publish::what_is_not_an_installer_of_this_version_is_refused_data()
{
    QTest::addColumn<QByteArray>("installer");
    QTest::addColumn<QString>("reason");
    const SetupFile setup;
    QTest::newRow("five bytes") << QByteArray("a\0b\r\n", 5)
                                << u"setup.exe is not an installer of Laser Rallyvane: "
                                   "it is not a Windows program"_s;
    QTest::newRow("another program's")
        << setup.with(u"ProductName"_s, u"Another"_s).bytes() << u"it is another program"_s;
    QTest::newRow("truncated") << setup.bytes().chopped(1) << u"it is truncated"_s;
    QTest::newRow("of the version before") << setup.with(u"ProductVersion"_s, u"1.01"_s).bytes()
                                           << u"setup.exe installs version \"1.01\""_s;
    QTest::newRow("of the version without its zero")
        << setup.with(u"ProductVersion"_s, u"1.2"_s).bytes()
        << u"setup.exe installs version \"1.2\""_s;
    QTest::newRow("without an update host")
        << setup.with(u"UpdateHost"_s, QString()).bytes() << u"without an update host"_s;
    QTest::newRow("with the update host of a build without one")
        << setup.with(u"UpdateHost"_s, u"updates.rallyvane.example"_s).bytes()
        << u"without an update host"_s;
}

void tst_Publish::what_is_not_an_installer_of_this_version_is_refused()
{
    QFETCH(QByteArray, installer);
    QFETCH(QString, reason);
    QVERIFY(write(u"setup.exe"_s, installer));
    const Outcome outcome = publish102();
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(reason), qPrintable(outcome.errors));
    QVERIFY(!QDir(u"upload"_s).exists());
}

void tst_Publish::an_installer_larger_than_the_program_downloads_is_refused()
{
    QFile setup(u"setup.exe"_s);
    QVERIFY(setup.resize(largestInstaller + 1)); // sparse, takes no disk space
    const Outcome outcome = publish102();
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains("setup.exe is larger than the program downloads"_L1),
        qPrintable(outcome.errors));
    QVERIFY(!QDir(u"upload"_s).exists());
}

void tst_Publish::the_version_file_is_not_written_without_its_installer()
{
    // A folder in place of the installer.
    QVERIFY(QDir().mkpath(published + "Rallyvane_v1.02_setup.exe"_L1));
    const Outcome outcome = publish102();
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains("setup.exe cannot be written"_L1), qPrintable(outcome.errors));
    QVERIFY(!QFileInfo::exists(published + "VersionNotes.txt"_L1));
}

void tst_Publish::an_installer_that_does_not_read_back_is_not_published()
{
#ifdef Q_OS_WIN
    QSKIP("QFile makes shortcuts here, not links.");
#endif
    // Its name links to the version file, which then overwrites it.
    QVERIFY(QDir().mkpath(published));
    QVERIFY(QFile::link(u"VersionNotes.txt"_s, published + "Rallyvane_v1.02_setup.exe"_L1));
    const Outcome outcome = publish102();
    QVERIFY2(outcome.errors.contains("what was written does not read back"_L1),
        qPrintable(outcome.errors));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output, QString());
}

void tst_Publish::wrong_usage_is_explained()
{
    const Outcome outcome = publish({u"setup.exe"_s});
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY2(outcome.output.contains("publish [options] installer folder"_L1),
        qPrintable(outcome.output));
}

QTEST_GUILESS_MAIN(tst_Publish)

#include "tst_publish.moc"
