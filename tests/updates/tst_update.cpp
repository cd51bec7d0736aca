#include "debuglines.h"
#include "httpsserver.h"
#include "messageboxes.h"
#include "update.h"
#include "updatehost.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QNetworkProxyFactory>
#include <QTcpServer>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int ownVersion = 101;
QByteArray separator()
{
    return {43, '='};
}
const QString versionPath = u"/Telechargements/LaserRallyvane/VersionNotes.txt"_s;
const QString installerPath = u"/Telechargements/LaserRallyvane/Rallyvane_v1.02_setup.exe"_s;
const QString savedInstaller = u"sw_fw/Rallyvane_v1.02_setup.exe"_s;

QByteArray versionFile(const QByteArray &version, const QByteArray &notes = "- new\n")
{
    return separator() + "\nV" + version + " \n" + notes + separator() + "\n";
}

MessageBoxes::Box question(const QString &version, const QString &notes)
{
    return {
        .icon = QMessageBox::Question,
        .title = u"New version available"_s,
        .text = "Version "_L1 + version
            + " is available.\n\nDo you want to update and restart now?\n\n"
              "Content of this new version:\n"_L1
            + notes,
        .buttons = QMessageBox::Yes | QMessageBox::No,
        .defaultButton = false,
        .parent = false,
        .markup = false,
    };
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The program that stands in for an installer.
QByteArray installer()
{
    return contents(QStringLiteral(INSTALLER));
}

} // namespace

class tst_Update : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void the_version_file_decides_without_a_question_data();
    void the_version_file_decides_without_a_question();
    void no_answer_counts_as_no_website_data();
    void no_answer_counts_as_no_website();
    void a_server_that_falls_silent_counts_as_no_website_data();
    void a_server_that_falls_silent_counts_as_no_website();
    void a_name_that_does_not_resolve_counts_as_no_website();
    void a_certificate_that_does_not_verify_counts_as_no_website();
    void the_reserved_domain_is_not_asked_data();
    void the_reserved_domain_is_not_asked();
    void the_limits_are_5_seconds_for_the_version_file_and_30_for_the_installer();

    void a_newer_version_is_offered_with_its_notes_data();
    void a_newer_version_is_offered_with_its_notes();
    void declining_downloads_nothing_data();
    void declining_downloads_nothing();
    void a_newer_version_is_downloaded_and_started();
    void an_earlier_installer_is_replaced();
    void an_installer_that_does_not_arrive_whole_is_neither_kept_nor_started_data();
    void an_installer_that_does_not_arrive_whole_is_neither_kept_nor_started();
    void an_installer_that_cannot_be_written_is_not_started_data();
    void an_installer_that_cannot_be_written_is_not_started();
    void an_installer_that_cannot_be_started_is_reported();
    void closing_the_window_ends_the_check_and_the_program_data();
    void closing_the_window_ends_the_check_and_the_program();

private:
    bool check(const QString &host);
    bool check() { return check(server->host()); }

    std::optional<Identity> identity;
    std::optional<QTemporaryDir> folder;
    std::optional<HttpsServer> server;
    std::optional<DebugLines> log;
    QString notes;
};

void tst_Update::initTestCase()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    identity.emplace(u"IP:127.0.0.1"_s);
    trust({*identity});
    QVERIFY2(!installer().isEmpty(), "the installer for tests is not built");
}

void tst_Update::init()
{
    folder.emplace();
    QVERIFY(QDir::setCurrent(folder->path()));
    server.emplace(*identity);
    notes.clear();
    log.emplace();
}

void tst_Update::cleanup()
{
    log.reset();
    QDir::setCurrent(QCoreApplication::applicationDirPath());
}

bool tst_Update::check(const QString &host)
{
    return checkForUpdate({.host = host}, ownVersion, notes);
}

void tst_Update::the_version_file_decides_without_a_question_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("line");
    const QString upToDate = u"Software up to date"_s;
    const QString older = u"Living in the future?"_s;
    const QString unreadable = u"Cannot parse Version file"_s;
    const QString noWebsite = u"Cannot connect to Website"_s;
    QTest::newRow("up to date") << versionFile("1.01") << upToDate;
    QTest::newRow("rounded up to the own version") << versionFile("1.005") << upToDate;
    QTest::newRow("rounded down to the own version") << versionFile("1.0149") << upToDate;
    QTest::newRow("older") << versionFile("1.00") << older;
    QTest::newRow("negative") << versionFile("-2") << older;
    QTest::newRow("letters") << versionFile("next") << older;
    QTest::newRow("an empty version") << versionFile("") << older;
    QTest::newRow("infinite") << versionFile("inf") << older;
    QTest::newRow("not a number") << versionFile("nan") << older;
    QTest::newRow("too large for a whole number") << versionFile("1e30") << older;
    QTest::newRow("a space on a later line only")
        << separator() + "\nV1.02\nall new\n" + separator() << older;
    QTest::newRow("no space") << separator() + "\nV1.02\nnew\n" + separator() << unreadable;
    QTest::newRow("one separator") << separator() + "\nV1.02 \nnew\n" << unreadable;
    QTest::newRow("no separator") << QByteArray("<h1>Welcome</h1>") << noWebsite;
    QTest::newRow("nothing") << QByteArray() << noWebsite;
}

void tst_Update::the_version_file_decides_without_a_question()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, line);
    server->answers[versionPath] = {response(body)};
    const MessageBoxes boxes;
    QVERIFY(!check());
    QCOMPARE(log->take(), QStringList{line});
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(server->asked, QStringList{versionPath});
    QCOMPARE(notes, QString());
}

void tst_Update::no_answer_counts_as_no_website_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray newer = versionFile("1.02");
    QTest::newRow("404 with a page") << response(newer, "404 Not Found");
    QTest::newRow("500 with a page") << response(newer, "500 Internal Server Error");
    QTest::newRow("shorter than announced") << response(newer + "\n").chopped(1);
    QTest::newRow("too large") << response(newer + QByteArray(1 << 20, ' '));
    QTest::newRow("hung up") << QByteArray();
}

void tst_Update::no_answer_counts_as_no_website()
{
    QFETCH(QByteArray, bytes);
    server->answers[versionPath] = {bytes};
    const MessageBoxes boxes;
    QVERIFY(!check());
    const QStringList lines = log->take();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[0].startsWith("Cannot download https://"_L1 + server->host() + versionPath),
        qPrintable(lines[0]));
    QCOMPARE(lines[1], u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
}

void tst_Update::a_server_that_falls_silent_counts_as_no_website_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("accepts and never answers") << QByteArray();
    QTest::newRow("stalls in the middle") << response(versionFile("1.02")).chopped(10);
}

void tst_Update::a_server_that_falls_silent_counts_as_no_website()
{
    QFETCH(QByteArray, bytes);
    server->answers[versionPath] = {bytes, Answer::StayConnected};
    const MessageBoxes boxes;
    const UpdateServer impatient = {.host = server->host(), .versionFile = {1s, 1 << 20}};
    QVERIFY(!checkForUpdate(impatient, ownVersion, notes));
    QCOMPARE(log->take(),
        (QStringList{"Cannot download https://"_L1 + server->host() + versionPath
                + ": no data for 1000 ms"_L1,
            u"Cannot connect to Website"_s}));
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(server->asked, QStringList{versionPath});
}

void tst_Update::a_name_that_does_not_resolve_counts_as_no_website()
{
    const MessageBoxes boxes;
    QVERIFY(!check(u"updates.invalid"_s));
    QCOMPARE(log->take().last(), u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
}

void tst_Update::a_certificate_that_does_not_verify_counts_as_no_website()
{
    HttpsServer impostor(Identity(u"IP:127.0.0.1"_s));
    impostor.answers[versionPath] = {response(versionFile("1.02"))};
    const MessageBoxes boxes;
    QVERIFY(!check(impostor.host()));
    QCOMPARE(log->take().last(), u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(impostor.asked, QStringList());
}

void tst_Update::the_reserved_domain_is_not_asked_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("in lower case") << u"updates.rallyvane.example"_s;
    QTest::newRow("in upper case") << u"UPDATES.RALLYVANE.EXAMPLE"_s;
    QTest::newRow("with a port") << u"updates.rallyvane.example:8443"_s;
}

void tst_Update::the_reserved_domain_is_not_asked()
{
    QFETCH(QString, host);
    const MessageBoxes boxes;
    // Asking would mean waiting, and waiting would deliver this.
    bool waited = false;
    QMetaObject::invokeMethod(
        this, [&] { waited = true; }, Qt::QueuedConnection);
    QVERIFY(!check(host));
    QVERIFY(!waited);
    QCOMPARE(log->take().last(), u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
    QCoreApplication::processEvents();
}

void tst_Update::the_limits_are_5_seconds_for_the_version_file_and_30_for_the_installer()
{
    const UpdateServer built = {.host = updateHost()};
    QCOMPARE(built.versionFile.silence, 5s);
    QCOMPARE(built.versionFile.size, 1024 * 1024);
    QCOMPARE(built.installer.silence, 30s);
    QCOMPARE(built.installer.size, 512 * 1024 * 1024);
    QVERIFY(!built.host.isEmpty());
}

void tst_Update::a_newer_version_is_offered_with_its_notes_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("shownNotes");
    QTest::newRow("by one hundredth")
        << versionFile("1.02", "- new\n- better\n") << u"1.02"_s << u"- new\n- better\n"_s;
    QTest::newRow("rounded up") << versionFile("1.015") << u"1.015"_s << u"- new\n"_s;
    QTest::newRow("by far") << versionFile("99") << u"99"_s << u"- new\n"_s;
    QTest::newRow("notes with an equals sign")
        << versionFile("1.02", "speed = 20\nmore\n") << u"1.02"_s << u"speed "_s;
    QTest::newRow("no notes") << versionFile("1.02", "") << u"1.02"_s << u""_s;
    QTest::newRow("notes that look like markup") << versionFile("1.02", "<b>new</b> &lt; <hr>\n")
                                                 << u"1.02"_s << u"<b>new</b> &lt; <hr>\n"_s;
}

void tst_Update::a_newer_version_is_offered_with_its_notes()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, version);
    QFETCH(QString, shownNotes);
    server->answers[versionPath] = {response(body)};
    const MessageBoxes boxes({QMessageBox::No});
    QVERIFY(!check());
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(boxes.shown.first(), question(version, shownNotes));
    QCOMPARE(notes, shownNotes);
    QCOMPARE(log->take().first(), u"Update Requested - Actual Version = 101"_s);
}

void tst_Update::declining_downloads_nothing_data()
{
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::newRow("No") << QList{QMessageBox::No};
    QTest::newRow("the box closed") << QList<QMessageBox::StandardButton>();
}

void tst_Update::declining_downloads_nothing()
{
    QFETCH(QList<QMessageBox::StandardButton>, answers);
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response(installer())};
    const MessageBoxes boxes(answers);
    QVERIFY(!check());
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(server->asked, QStringList{versionPath});
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
    QCOMPARE(log->take(),
        (QStringList{u"Update Requested - Actual Version = 101"_s, u"Update declined"_s}));
}

void tst_Update::a_newer_version_is_downloaded_and_started()
{
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response(installer())};
    const MessageBoxes boxes({QMessageBox::Yes});
    QVERIFY(check());
    const QString path = QDir::current().filePath(savedInstaller);
    QCOMPARE(log->take(),
        (QStringList{u"Update Requested - Actual Version = 101"_s, "Installer saved: "_L1 + path,
            u"Installer started"_s}));
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(server->asked, (QStringList{versionPath, installerPath}));
    QCOMPARE(contents(savedInstaller), installer());
    QTRY_COMPARE(contents(u"installed"_s), "0 arguments\n" + path.toUtf8() + "\n");
    QCOMPARE(QDir(u"sw_fw"_s).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_Update::an_earlier_installer_is_replaced()
{
    QVERIFY(QDir().mkdir(u"sw_fw"_s));
    QFile earlier(savedInstaller);
    QVERIFY(earlier.open(QIODevice::WriteOnly));
    earlier.write(installer() + "and more");
    earlier.close();
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response(installer())};
    const MessageBoxes boxes({QMessageBox::Yes});
    QVERIFY(check());
    QCOMPARE(contents(savedInstaller), installer());
    QTRY_VERIFY(QFileInfo::exists(u"installed"_s));
}

void tst_Update::an_installer_that_does_not_arrive_whole_is_neither_kept_nor_started_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << Answer{response("")} << u"The installer is empty"_s;
    QTest::newRow("truncated") << Answer{response(installer()).chopped(1)} << u"closed"_s;
    QTest::newRow("404 with a page")
        << Answer{response(installer(), "404 Not Found")} << u"Not Found"_s;
    QTest::newRow("redirected to plain HTTP")
        << Answer{redirect(u"http://127.0.0.1:9/"_s)} << u"Insecure"_s;
    QTest::newRow("stalled") << Answer{response(installer()).chopped(1), Answer::StayConnected}
                             << u"no data for 2000 ms"_s;
}

void tst_Update::an_installer_that_does_not_arrive_whole_is_neither_kept_nor_started()
{
    QFETCH(Answer, answer);
    QFETCH(QString, reason);
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = answer;
    const MessageBoxes boxes({QMessageBox::Yes});
    const UpdateServer impatient = {.host = server->host(), .installer = {2s, largestInstaller}};
    QVERIFY(!checkForUpdate(impatient, ownVersion, notes));
    QCOMPARE(boxes.shown.size(), 1);
    const QStringList lines = log->take();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[1].contains(reason), qPrintable(lines[1]));
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
}

void tst_Update::an_installer_that_cannot_be_written_is_not_started_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("a file in place of the folder") << u"sw_fw"_s;
    QTest::newRow("a folder in place of the file") << savedInstaller + "/occupied"_L1;
    QTest::newRow("a folder that may not be written") << u"sw_fw/"_s;
}

void tst_Update::an_installer_that_cannot_be_written_is_not_started()
{
    QFETCH(QString, obstacle);
    if (obstacle == "sw_fw/"_L1) {
        // Not even root may write there.
        if (!QFileInfo(u"/proc"_s).isDir())
            QSKIP("there is no folder that nobody may write");
        QVERIFY(QFile::link(u"/proc"_s, u"sw_fw"_s));
    } else {
        QVERIFY(QDir().mkpath(QFileInfo(obstacle).path()));
        QVERIFY(QFile(obstacle).open(QIODevice::WriteOnly));
    }
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response(installer())};
    const MessageBoxes boxes({QMessageBox::Yes});
    QVERIFY(!check());
    QCOMPARE(boxes.shown.size(), 1);
    const QStringList lines = log->take();
    QVERIFY2(lines[1].startsWith("Cannot save "_L1), qPrintable(lines[1]));
    QCOMPARE(lines.last(), u"Cannot write file"_s);
}

void tst_Update::an_installer_that_cannot_be_started_is_reported()
{
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response("This is no program.")};
    const MessageBoxes boxes({QMessageBox::Yes, QMessageBox::Ok});
    QVERIFY(!check());
    const QString path = QDir::current().filePath(savedInstaller);
    QCOMPARE(boxes.shown.size(), 2);
    QCOMPARE(boxes.shown[1],
        (MessageBoxes::Box{
            .icon = QMessageBox::Critical,
            .title = u"Setup program cannot be executed"_s,
            .text = "Setup program cannot be executed at following path: "_L1 + path,
            .buttons = QMessageBox::Ok,
            .defaultButton = true, // being the only one
            .parent = false,
            .markup = false,
        }));
    QCOMPARE(log->take().last(), u"Cannot start the installer"_s);
}

void tst_Update::closing_the_window_ends_the_check_and_the_program_data()
{
    QTest::addColumn<QString>("silentPath");
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::newRow("while the version file is awaited")
        << versionPath << QList<QMessageBox::StandardButton>();
    QTest::newRow("while the installer is awaited") << installerPath << QList{QMessageBox::Yes};
}

void tst_Update::closing_the_window_ends_the_check_and_the_program()
{
    QFETCH(QString, silentPath);
    QFETCH(QList<QMessageBox::StandardButton>, answers);
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[silentPath] = {response(installer()).chopped(1), Answer::StayConnected};
    QWidget window;
    window.show();
    connect(&*server, &HttpsServer::requested, &window, [&](const QString &path) {
        if (path == silentPath)
            window.close();
    });
    const MessageBoxes boxes(answers);
    std::optional<bool> result;
    QTimer::singleShot(0, this, [&] {
        const UpdateServer patient = {
            .host = server->host(), .versionFile = {60s, 1 << 20}, .installer = {60s, 1 << 20}};
        result = checkForUpdate(patient, ownVersion, notes);
    });
    QElapsedTimer time;
    time.start();
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY2(time.elapsed() < 30'000, "it waited for the server");
    QCOMPARE(result, std::optional(false));
    QCOMPARE(boxes.shown.size(), answers.size());
    QCOMPARE(log->take().last(), u"Update check abandoned: the program ends"_s);
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
}

QTEST_MAIN(tst_Update)

#include "tst_update.moc"
