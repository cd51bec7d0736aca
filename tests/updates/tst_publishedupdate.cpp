// A complete update: published by the tool, found by the program's window, downloaded and started;
// and the ways in which the window ends the check.

#include "fakehost.h"
#include "fakemidi.h"
#include "fakepads.h"
#include "fakeupdatehost.h"
#include "mainwindow.h"
#include "ownversion.h"
#include "setupfile.h"
#include "updatecase.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QNetworkProxyFactory>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The version after this one, as it is written.
QString nextVersion()
{
    return QString::number((ownVersion + 1) / 100.0, 'f', 2);
}

QString nextInstallerPath()
{
    return u"/Telechargements/LaserRallyvane/Rallyvane_v%1_setup.exe"_s.arg(nextVersion());
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Publishes the next version into the folder "upload" with the tool. Returns whether it did.
bool publish()
{
    const SetupFile setup = SetupFile().with(u"ProductVersion"_s, nextVersion());
    return write(u"CHANGELOG.md"_s,
               "# Changelog\n\n## " + nextVersion().toUtf8() + " - 2027-03-01\n\n- New.\n")
        && write(u"setup.exe"_s, setup.bytes())
        && QProcess::execute(QCoreApplication::applicationDirPath() + "/publish"_L1,
               {u"--release"_s, nextVersion(), u"setup.exe"_s, u"upload"_s})
        == 0;
}

/// The answers of a server that offers the files below `root`.
QHash<QString, Answer> filesBelow(const QString &root)
{
    QHash<QString, Answer> answers;
    for (QDirIterator file(root, QDir::Files, QDirIterator::Subdirectories); file.hasNext();) {
        const QString path = file.next();
        answers.insert(path.sliced(root.size()), {response(contents(path))});
    }
    return answers;
}

} // namespace

class tst_PublishedUpdate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_published_update_is_found_downloaded_and_started_and_the_program_ends();
    void a_program_that_is_up_to_date_keeps_running();
    void a_program_whose_update_was_declined_keeps_running();
    void closing_the_window_during_a_download_ends_the_program_data();
    void closing_the_window_during_a_download_ends_the_program();
    void quitting_during_a_download_ends_the_program();
    void a_missing_host_library_ends_the_program_during_the_check();
    void a_missing_host_library_ends_the_program_after_an_answer_without_a_question();

private:
    /// Runs the program and closes its window once `lastLine` has been logged. Returns the exit
    /// code.
    int run(const QString &lastLine = {});
    /// On a busy machine the missing library ends the program before the check begins.
    bool isCheckAbandonedOrNotBegun() const
    {
        return server->asked.isEmpty()
            || lines.contains(u"Update check abandoned: the program ends"_s);
    }

    std::optional<QTemporaryDir> folder;
    std::optional<HttpsServer> server;
    std::optional<FakeUpdateHost> updateHost;
    std::optional<FakeHost> host;
    FakeMidi midi;
    FakePads pads;
    MainWindow *window = nullptr; ///< while the program runs
    QStringList lines;
};

void tst_PublishedUpdate::initTestCase()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    trust({loopback()});
}

void tst_PublishedUpdate::init()
{
    folder.emplace();
    QVERIFY(QDir::setCurrent(folder->path()));
    QVERIFY(publish());
    server.emplace(loopback());
    server->answers = filesBelow(u"upload"_s);
    QCOMPARE(server->answers.size(), 2);
    // This system cannot start an installer for Windows; packaging/windows/try does.
    QVERIFY(server->answers.contains(nextInstallerPath()));
    server->answers[nextInstallerPath()] = {response(installer())};
    updateHost.emplace(server->host());
    host.emplace();
    lines.clear();
}

void tst_PublishedUpdate::cleanup()
{
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    host.reset();
    updateHost.reset();
}

int tst_PublishedUpdate::run(const QString &lastLine)
{
    DebugLines log(DebugLines::DebugOnly);
    MainWindow mainWindow;
    window = &mainWindow;
    window->show();
    QTimer reader;
    connect(&reader, &QTimer::timeout, window, [&] {
        lines += log.takeAll();
        if (lines.contains(lastLine))
            window->close();
    });
    reader.start(10);
    const int exitCode = QApplication::exec();
    lines += log.takeAll();
    return exitCode;
}

void tst_PublishedUpdate::a_published_update_is_found_downloaded_and_started_and_the_program_ends()
{
    const MessageBoxes boxes({QMessageBox::Yes});
    QCOMPARE(run(), 0);
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(boxes.shown[0].title, u"New version available"_s);
    QCOMPARE(boxes.shown[0].text,
        u"Version %1 is available.\n\nDo you want to update and restart now?\n\n"
        "Content of this new version:\n- New.\n"_s.arg(nextVersion()));
    QVERIFY(lines.contains(u"Update Requested - Actual Version = %1"_s.arg(ownVersion)));
    QCOMPARE(server->asked, (QStringList{versionPath, nextInstallerPath()}));
    const QString path =
        QDir::current().filePath(u"sw_fw/Rallyvane_v%1_setup.exe"_s.arg(nextVersion()));
    QCOMPARE(contents(path), installer());
    QTRY_COMPARE(
        contents(u"installed"_s), "0 arguments\n" + QDir::toNativeSeparators(path).toUtf8() + "\n");
}

void tst_PublishedUpdate::a_program_that_is_up_to_date_keeps_running()
{
    const QByteArray separator(43, '=');
    server->answers[versionPath] = {
        response(separator + "\nV" + ownVersionText + " \nold\n" + separator)};
    const MessageBoxes boxes;
    QCOMPARE(run(u"Software up to date"_s), 0);
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(server->asked, QStringList{versionPath});
}

void tst_PublishedUpdate::a_program_whose_update_was_declined_keeps_running()
{
    const MessageBoxes boxes({QMessageBox::No});
    QCOMPARE(run(u"Update declined"_s), 0);
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(server->asked, QStringList{versionPath});
}

void tst_PublishedUpdate::closing_the_window_during_a_download_ends_the_program_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("of the version file") << versionPath;
    QTest::newRow("of the installer") << nextInstallerPath();
}

void tst_PublishedUpdate::closing_the_window_during_a_download_ends_the_program()
{
    QFETCH(QString, path);
    server->answers[path] = {server->answers[path].bytes.chopped(1), Answer::StayConnected};
    connect(&*server, &HttpsServer::requested, qApp, [&](const QString &requested) {
        if (requested == path)
            window->close();
    });
    const MessageBoxes boxes({QMessageBox::Yes});
    QCOMPARE(run(), 0);
    QCOMPARE(boxes.shown.size(), path == versionPath ? 0 : 1);
    QVERIFY(lines.contains(u"Update check abandoned: the program ends"_s));
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
}

void tst_PublishedUpdate::quitting_during_a_download_ends_the_program()
{
    server->answers[versionPath].end = Answer::StayConnected;
    server->answers[versionPath].bytes.chop(1);
    connect(&*server, &HttpsServer::requested, qApp, &QCoreApplication::quit);
    QCOMPARE(run(), 0);
    QVERIFY(lines.contains(u"Update check abandoned: the program ends"_s));
}

void tst_PublishedUpdate::a_missing_host_library_ends_the_program_during_the_check()
{
    host->installed = false;
    server->answers[versionPath] = {"", Answer::StayConnected};
    const MessageBoxes boxes({QMessageBox::Ok});
    QCOMPARE(run(), 0);
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(boxes.shown[0].title, u"BEYOND DLL Not Found"_s);
    QVERIFY(isCheckAbandonedOrNotBegun());
}

void tst_PublishedUpdate::
    a_missing_host_library_ends_the_program_after_an_answer_without_a_question()
{
    host->installed = false;
    // The answer arrives while the message box about the library is shown.
    server->answers[versionPath].pieces = 2;
    server->answers[versionPath].pause = std::chrono::milliseconds(500);
    MessageBoxes boxes({QMessageBox::Ok});
    boxes.delay = std::chrono::milliseconds(1500);
    QCOMPARE(run(), 0);
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(boxes.shown[0].title, u"BEYOND DLL Not Found"_s);
    QVERIFY(isCheckAbandonedOrNotBegun());
}

QTEST_MAIN(tst_PublishedUpdate)

#include "tst_publishedupdate.moc"
