#include "download.h"
#include "httpsserver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QNetworkProxyFactory>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr DownloadLimits patient = {20s, 1 << 20};
constexpr DownloadLimits impatient = {1s, 1 << 20};

Download get(const HttpsServer &server, const QString &path, const DownloadLimits &limits = patient)
{
    return download(QUrl("https://"_L1 + server.host() + path), limits);
}

} // namespace

class tst_DownloadLimits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void silence_beyond_the_limit_fails_data();
    void silence_beyond_the_limit_fails();
    void a_server_without_tls_fails_after_the_limit();
    void a_slow_answer_that_keeps_arriving_is_waited_for();
    void a_redirect_ends_the_silence();
    void headers_end_the_silence();
    void an_answer_larger_than_the_limit_is_refused_data();
    void an_answer_larger_than_the_limit_is_refused();
    void events_are_delivered_during_the_wait();
    void closing_the_last_window_abandons_it_and_ends_the_program_data();
    void closing_the_last_window_abandons_it_and_ends_the_program();
    void an_answer_that_came_before_the_program_ended_is_abandoned_too();
    void a_download_begun_after_the_program_has_ended_is_abandoned_at_once();
    void quitting_abandons_it_and_ends_the_program();
};

void tst_DownloadLimits::initTestCase()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    trust({loopback()});
}

void tst_DownloadLimits::silence_beyond_the_limit_fails_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("from the start") << QByteArray();
    QTest::newRow("within the head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Len");
    QTest::newRow("in the middle") << response(QByteArray(5000, 'x')).chopped(2500);
}

void tst_DownloadLimits::silence_beyond_the_limit_fails()
{
    QFETCH(QByteArray, bytes);
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {bytes, Answer::StayConnected};
    server.answers[u"/elsewhere"_s] = {redirect("https://"_L1 + server.host() + "/file"_L1)};
    for (const QString &path : {u"/file"_s, u"/elsewhere"_s}) {
        server.asked.clear();
        const Download got = get(server, path, impatient);
        QCOMPARE(got.result, Download::Failed);
        QCOMPARE(got.body, QByteArray());
        QCOMPARE(got.failure, u"no data for 1000 ms"_s);
        QVERIFY(server.asked.contains(u"/file"_s));
    }
}

void tst_DownloadLimits::a_server_without_tls_fails_after_the_limit()
{
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    const QSignalSpy connections(&mute, &QTcpServer::newConnection);
    const Download got =
        download(QUrl(u"https://127.0.0.1:%1/file"_s.arg(mute.serverPort())), impatient);
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.failure, u"no data for 1000 ms"_s);
    QVERIFY(connections.count() > 0);
}

void tst_DownloadLimits::a_slow_answer_that_keeps_arriving_is_waited_for()
{
    HttpsServer server(loopback());
    const QByteArray body(8000, 'x');
    server.answers[u"/file"_s] = {
        .bytes = response(body), .end = Answer::HangUp, .pieces = 8, .pause = 300ms};
    QElapsedTimer time;
    time.start();
    const Download got = get(server, u"/file"_s, {2s, 1 << 20});
    QCOMPARE(got.failure, QString());
    QCOMPARE(got.result, Download::Complete);
    QCOMPARE(got.body, body);
    QVERIFY2(time.elapsed() > 2000, "it came too quickly to tell");
}

void tst_DownloadLimits::a_redirect_ends_the_silence()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {
        .bytes = redirect("https://"_L1 + server.host() + "/elsewhere"_L1),
        .pieces = 2,
        .pause = 1200ms};
    server.answers[u"/elsewhere"_s] = {.bytes = response("body"), .pieces = 2, .pause = 1200ms};
    const Download got = get(server, u"/file"_s, {2s, 1 << 20});
    QCOMPARE(got.failure, QString());
    QCOMPARE(got.body, "body");
}

void tst_DownloadLimits::headers_end_the_silence()
{
    // In three pieces: half of the header, the other half, the body.
    QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 50\r\nX-Padding: \r\n\r\n";
    head.insert(head.size() - 4, QByteArray(100 - head.size(), 'x'));
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {
        .bytes = head + QByteArray(50, 'b'), .pieces = 3, .pause = 1200ms};
    const Download got = get(server, u"/file"_s, {2s, 1 << 20});
    QCOMPARE(got.failure, QString());
    QCOMPARE(got.body, QByteArray(50, 'b'));
}

void tst_DownloadLimits::an_answer_larger_than_the_limit_is_refused_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("refused");
    const QByteArray endless = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
    QTest::newRow("as long as allowed")
        << Answer{.bytes = response(QByteArray(10'000, 'x'))} << false;
    QTest::newRow("announced one byte longer") << Answer{
        .bytes = response(QByteArray(10'001, 'x')).chopped(9'000),
        .end = Answer::StayConnected} << true;
    QTest::newRow("not announced, one byte longer")
        << Answer{.bytes = endless + QByteArray(10'001, 'x')} << true;
    QTest::newRow("without end") << Answer{.bytes = endless + QByteArray(1'000'000, 'x'),
        .end = Answer::StayConnected}
                                 << true;
    QTest::newRow("in pieces") << Answer{.bytes = endless + QByteArray(30'000, 'x'),
        .end = Answer::StayConnected,
        .pieces = 10,
        .pause = 1ms} << true;
}

void tst_DownloadLimits::an_answer_larger_than_the_limit_is_refused()
{
    QFETCH(Answer, answer);
    QFETCH(bool, refused);
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = answer;
    const Download got = get(server, u"/file"_s, {20s, 10'000});
    QCOMPARE(got.result, refused ? Download::Failed : Download::Complete);
    QCOMPARE(got.failure, refused ? u"the answer is larger than 10000 bytes"_s : QString());
    QCOMPARE(got.body.size(), refused ? 0 : 10'000);
}

void tst_DownloadLimits::events_are_delivered_during_the_wait()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("body")};
    bool delivered = false;
    QMetaObject::invokeMethod(
        this, [&] { delivered = true; }, Qt::QueuedConnection);
    QCOMPARE(get(server, u"/file"_s).result, Download::Complete);
    QVERIFY(delivered);
}

void tst_DownloadLimits::closing_the_last_window_abandons_it_and_ends_the_program_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("before the answer") << QByteArray();
    QTest::newRow("in the middle of it") << response(QByteArray(5000, 'x')).chopped(2500);
}

void tst_DownloadLimits::closing_the_last_window_abandons_it_and_ends_the_program()
{
    QFETCH(QByteArray, bytes);
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {bytes, Answer::StayConnected};
    QWidget window;
    window.show();
    connect(&server, &HttpsServer::requested, &window, &QWidget::close);
    std::optional<Download> got;
    QTimer::singleShot(0, this, [&] { got = get(server, u"/file"_s, {60s, 1 << 20}); });
    QElapsedTimer time;
    time.start();
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY2(time.elapsed() < 30'000, "it waited for the server");
    QVERIFY(got);
    QCOMPARE(got->result, Download::Abandoned);
    QCOMPARE(got->body, QByteArray());
}

void tst_DownloadLimits::an_answer_that_came_before_the_program_ended_is_abandoned_too()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("body")};
    // Like a message box that is shown when the answer arrives and whose button ends the program.
    connect(&server, &HttpsServer::requested, qApp, [] {
        QEventLoop box;
        QTimer::singleShot(300ms, &box, &QEventLoop::quit);
        box.exec();
        QCoreApplication::exit();
    });
    std::optional<Download> got;
    QTimer::singleShot(0, this, [&] { got = get(server, u"/file"_s); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(got);
    QCOMPARE(got->result, Download::Abandoned);
}

void tst_DownloadLimits::a_download_begun_after_the_program_has_ended_is_abandoned_at_once()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("body")};
    std::optional<Download> got;
    QTimer::singleShot(0, this, [&] {
        QCoreApplication::exit();
        got = get(server, u"/file"_s);
    });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(got);
    QCOMPARE(got->result, Download::Abandoned);
    QCOMPARE(server.asked, QStringList());
}

void tst_DownloadLimits::quitting_abandons_it_and_ends_the_program()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {"", Answer::StayConnected};
    connect(&server, &HttpsServer::requested, qApp, [] { QCoreApplication::exit(3); });
    std::optional<Download> got;
    QTimer::singleShot(0, this, [&] { got = get(server, u"/file"_s, {60s, 1 << 20}); });
    QCOMPARE(QApplication::exec(), 3);
    QVERIFY(got);
    QCOMPARE(got->result, Download::Abandoned);
}

QTEST_MAIN(tst_DownloadLimits)

#include "tst_downloadlimits.moc"
