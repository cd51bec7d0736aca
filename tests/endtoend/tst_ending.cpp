// The program always exits promptly when its window closes. Runs the real program and closes it at
// various moments of its startup, with every kind of update server, with and without the host's
// library.
//
// ENDING_ROUNDS repeats each row, adds moments and limits each exit to one second; see
// tests/endtoend/ending.

#include "ownversion.h"
#include "updatecase.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSysInfo>
#include <QTcpServer>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum Server { NoServer, Refusing, Silent, HangingLookup, UpToDate, Offering };

constexpr std::pair<Server, const char *> servers[] = {
    {NoServer, "no server"},
    {Refusing, "a server that refuses"},
    {Silent, "a server that never answers"},
    {HangingLookup, "a name lookup that hangs"},
    {UpToDate, "a server without an update"},
    {Offering, "a server with an update"},
};

/// Whether a kind of server can be had here: an HTTPS server's certificate is made with the openssl
/// command, and name lookups are replaced, both on Linux only.
bool isAvailable([[maybe_unused]] Server server)
{
#ifdef Q_OS_WIN
    return server < HangingLookup;
#else
    return true;
#endif
}

/// In place of a closing time: the program closes the window itself.
constexpr int never = -1;
/// In place of a closing time: as soon as the update check processes events.
constexpr int atCheck = -2;

/// In milliseconds. Enough for any step on a busy machine, while a hanging lookup takes for ever.
constexpr qint64 patience = 30'000;

/// The messages in a log, without times and threads.
QStringList messagesIn(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (QString &line : lines)
        line = line.section(u"] "_s, 1);
    return lines;
}

} // namespace

class tst_Ending : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void the_program_ends_with_its_window_data();
    void the_program_ends_with_its_window();
    void the_log_begins_with_version_and_system_and_ends_with_the_exit_code();

private:
    QString serverName(Server server);
    std::optional<qint64> end(
        const QString &program, Server server, int close, int delay, int answer);

    const int rounds = std::max(1, qEnvironmentVariableIntValue("ENDING_ROUNDS"));
    QTemporaryDir folder; ///< holds the certificate and a program without the host's library
    std::optional<HttpsServer> website;
    QTcpServer mute;
    QString problem; ///< why the last program did not end well
    QStringList log; ///< of the last program, without times and threads
    quint16 closedPort = 0; ///< without a server
};

void tst_Ending::initTestCase()
{
    const QDir bin(QCoreApplication::applicationDirPath());
#ifdef Q_OS_WIN
    const QStringList files = {u"endingprogram.exe"_s};
#else
    const QStringList files = {u"endingprogram"_s, u"winmm.so"_s, u"xinput9_1_0.so"_s};
#endif
    for (const QString &name : files)
        QVERIFY(QFile::copy(bin.filePath(name), folder.filePath(name)));
    if (isAvailable(UpToDate)) {
        QFile certificate(folder.filePath(u"certificate.pem"_s));
        QVERIFY(certificate.open(QIODevice::WriteOnly));
        certificate.write(loopback().certificate.toPem());
        website.emplace(loopback());
    }
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    QTcpServer gone;
    QVERIFY(gone.listen(QHostAddress::LocalHost));
    closedPort = gone.serverPort();
}

QString tst_Ending::serverName(Server server)
{
    switch (server) {
    case NoServer:
        return u"updates.example"_s;
    case Refusing:
        return u"127.0.0.1:%1"_s.arg(closedPort);
    case Silent:
        return u"127.0.0.1:%1"_s.arg(mute.serverPort());
    case HangingLookup:
        return u"updates.invalid"_s;
    case UpToDate:
    case Offering:
        website->answers[versionPath] = {
            response(versionFile(server == Offering ? "1.02" : "1.00"))};
        website->answers[installerPath] = {response(installer())};
        return website->host();
    }
    return {};
}

/// Runs a program until it exits. Returns the milliseconds since its window closed; nothing if it
/// did not exit or failed.
std::optional<qint64> tst_Ending::end(
    const QString &program, Server server, int close, int delay, int answer)
{
    const QTemporaryDir stage;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, stage.path());
    environment.insert(u"RALLYVANE_REHEARSAL"_s, u"ending"_s);
    environment.insert(u"ENDING_SERVER"_s, serverName(server));
    environment.insert(u"ENDING_CERTIFICATE"_s, folder.filePath(u"certificate.pem"_s));
    environment.insert(u"ENDING_LOOKUP"_s, server == HangingLookup ? u"hangs"_s : u"works"_s);
    environment.insert(u"ENDING_ANSWER"_s, QString::number(answer));
    environment.insert(u"ENDING_DELAY"_s, QString::number(delay));
    if (close != never)
        environment.insert(
            u"ENDING_CLOSE"_s, close == atCheck ? u"check"_s : QString::number(close));

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(stage.path());
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer sinceClosed;
    connect(&process, &QProcess::readyReadStandardOutput, this, [&] {
        if (process.readAllStandardOutput().contains("closed"))
            sinceClosed.start();
    });
    std::optional<qint64> time;
    connect(&process, &QProcess::finished, this, [&](int exitCode, QProcess::ExitStatus status) {
        if (status == QProcess::NormalExit && exitCode == 0 && sinceClosed.isValid())
            time = sinceClosed.elapsed();
        else if (sinceClosed.isValid())
            problem = u"It exited with %1, status %2."_s.arg(exitCode).arg(status);
        else
            problem = u"Its window was not closed."_s;
    });
    process.start(program, QStringList());
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, int(patience))) {
        process.disconnect(this);
        problem = u"It did not exit."_s;
        process.kill();
        process.waitForFinished();
    }
    log = messagesIn(stage.filePath(u"rallyvane.log"_s));
    return time;
}

void tst_Ending::the_program_ends_with_its_window_data()
{
    QTest::addColumn<bool>("library");
    QTest::addColumn<Server>("server");
    QTest::addColumn<int>("close");
    QTest::addColumn<int>("delay");
    QTest::addColumn<int>("answer");
    // During the first load; during or just after the download; when everything is done.
    const QList<int> moments = rounds > 1 ? QList{0, 30, 150, 400} : QList{0, 150};
    // The message box about the library, which closes the window itself, is shown after 100 ms. If
    // the first load is late, it is shown as soon as the download processes events.
    const QList<int> momentsWithoutLibrary = rounds > 1 ? QList{0, 120} : QList{0};
    for (const auto &[server, name] : servers) {
        if (!isAvailable(server))
            continue;
        for (const int close : moments)
            QTest::addRow("%s, closed after %d ms", name, close)
                << true << server << close << 0 << 50;
        for (const int close : momentsWithoutLibrary) {
            QTest::addRow("%s, no library, closed after %d ms", name, close)
                << false << server << close << 0 << 50;
        }
        QTest::addRow("%s, closed as the check begins", name)
            << true << server << atCheck << 0 << 50;
        QTest::addRow("%s, no library, closed by the box", name)
            << false << server << never << 0 << 50;
        QTest::addRow("%s, no library, a late first load", name)
            << false << server << never << 150 << 50;
    }
    if (!isAvailable(Offering))
        return;
    QTest::addRow("an update that arrives behind the box about the library")
        << false << Offering << never << 0 << 1500;
    QTest::addRow("an update that is accepted") << true << Offering << never << 0 << 50;
}

void tst_Ending::the_program_ends_with_its_window()
{
    QFETCH(bool, library);
    QFETCH(Server, server);
    QFETCH(int, close);
    QFETCH(int, delay);
    QFETCH(int, answer);
    const QString bin = library ? QCoreApplication::applicationDirPath() : folder.path();
    qint64 longest = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::optional<qint64> time =
            end(bin + "/endingprogram"_L1, server, close, delay, answer);
        QVERIFY2(time, qPrintable(problem));
        longest = std::max(longest, *time);
    }
    qInfo("%d of %d ended, the slowest within %lld ms", rounds, rounds, longest);
    if (rounds > 1)
        QVERIFY2(longest < 1000, qPrintable(QString::number(longest)));
}

void tst_Ending::the_log_begins_with_version_and_system_and_ends_with_the_exit_code()
{
    const QString program = QCoreApplication::applicationDirPath() + "/endingprogram"_L1;
    QVERIFY(end(program, Silent, atCheck, 0, 0));
    QVERIFY(!log.isEmpty());
    QCOMPARE(log.constFirst(),
        u"Laser Rallyvane %1 started on %2, %3, with Qt %4"_s.arg(QLatin1StringView(ownVersionText),
            QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
            QLatin1StringView(qVersion())));
    const QString check = u"Checking for updates, version %1, server \"%2\""_s;
    QCOMPARE(log.count(check.arg(QLatin1StringView(ownVersionText), serverName(Silent))), 1);
    QCOMPARE(log.constLast(), u"Ended with exit code 0"_s);
}

QTEST_GUILESS_MAIN(tst_Ending)
#include "tst_ending.moc"
