#include "updatecase.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class tst_UpdateInstaller : public UpdateCase
{
    Q_OBJECT

private slots:
    void a_newer_version_is_downloaded_and_started();
    void an_earlier_installer_is_replaced();
    void an_incomplete_installer_is_neither_kept_nor_started_data();
    void an_incomplete_installer_is_neither_kept_nor_started();
    void an_installer_that_cannot_be_written_is_not_started_data();
    void an_installer_that_cannot_be_written_is_not_started();
    void an_installer_that_cannot_be_started_is_reported();
    void closing_the_window_ends_the_check_and_the_program_data();
    void closing_the_window_ends_the_check_and_the_program();
};

void tst_UpdateInstaller::a_newer_version_is_downloaded_and_started()
{
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response(installer())};
    const MessageBoxes boxes({QMessageBox::Yes});
    QVERIFY(check());
    const QString path = QDir::current().filePath(savedInstaller);
    QCOMPARE(log->takeAll(),
        (QStringList{u"Update Requested - Actual Version = 101"_s, "Installer saved: "_L1 + path,
            u"Installer started"_s}));
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(server->asked, (QStringList{versionPath, installerPath}));
    QCOMPARE(contents(savedInstaller), installer());
    QTRY_COMPARE(
        contents(u"installed"_s), "0 arguments\n" + QDir::toNativeSeparators(path).toUtf8() + "\n");
    QCOMPARE(QDir(u"sw_fw"_s).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_UpdateInstaller::an_earlier_installer_is_replaced()
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

void tst_UpdateInstaller::an_incomplete_installer_is_neither_kept_nor_started_data()
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

void tst_UpdateInstaller::an_incomplete_installer_is_neither_kept_nor_started()
{
    QFETCH(Answer, answer);
    QFETCH(QString, reason);
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = answer;
    const MessageBoxes boxes({QMessageBox::Yes});
    const UpdateServer impatient = {.host = server->host(), .installer = {2s, largestInstaller}};
    QVERIFY(!checkForUpdate(impatient, ownVersion, notes));
    QCOMPARE(boxes.shown.size(), 1);
    const QStringList lines = log->takeAll();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[1].contains(reason), qPrintable(lines[1]));
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
}

void tst_UpdateInstaller::an_installer_that_cannot_be_written_is_not_started_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("a file in place of the folder") << u"sw_fw"_s;
    QTest::newRow("a folder in place of the file") << savedInstaller + "/occupied"_L1;
    QTest::newRow("a folder that may not be written") << u"sw_fw/"_s;
}

void tst_UpdateInstaller::an_installer_that_cannot_be_written_is_not_started()
{
    QFETCH(QString, obstacle);
    if (obstacle == "sw_fw/"_L1) {
        // Not even root can write there.
        if (!QFileInfo(u"/proc"_s).isDir())
            QSKIP("This system has no folder that is read-only for every user");
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
    const QStringList lines = log->takeAll();
    QVERIFY2(lines[1].startsWith("Cannot save "_L1), qPrintable(lines[1]));
    QCOMPARE(lines.last(), u"Cannot write file"_s);
}

void tst_UpdateInstaller::an_installer_that_cannot_be_started_is_reported()
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
            .defaultButton = true, // the only button
            .parent = false,
            .markup = false,
        }));
    QCOMPARE(log->takeAll().last(), u"Cannot start the installer"_s);
}

void tst_UpdateInstaller::closing_the_window_ends_the_check_and_the_program_data()
{
    QTest::addColumn<QString>("silentPath");
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::newRow("while the version file is awaited")
        << versionPath << QList<QMessageBox::StandardButton>();
    QTest::newRow("while the installer is awaited") << installerPath << QList{QMessageBox::Yes};
}

void tst_UpdateInstaller::closing_the_window_ends_the_check_and_the_program()
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
    QCOMPARE(log->takeAll().last(), u"Update check abandoned: the program ends"_s);
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
}

QTEST_MAIN(tst_UpdateInstaller)

#include "tst_updateinstaller.moc"
