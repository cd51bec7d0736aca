#include "download.h"
#include "httpsserver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QNetworkProxyFactory>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const Identity &loopback()
{
    static const Identity identity(u"IP:127.0.0.1"_s);
    return identity;
}

constexpr DownloadLimits patient = {20s, 1 << 20};
constexpr DownloadLimits impatient = {1s, 1 << 20};

Download get(const HttpsServer &server, const QString &path, const DownloadLimits &limits = patient)
{
    return download(QUrl("https://"_L1 + server.host() + path), limits);
}

} // namespace

class tst_Download : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void an_answer_is_complete();
    void an_empty_answer_is_complete();
    void an_answer_whose_length_is_not_announced_ends_with_the_connection();
    void a_redirect_to_https_is_followed();
    void a_redirect_to_anything_else_is_no_answer_data();
    void a_redirect_to_anything_else_is_no_answer();
    void an_endless_redirect_is_no_answer();
    void an_address_that_is_not_https_is_not_asked_data();
    void an_address_that_is_not_https_is_not_asked();
    void a_certificate_that_does_not_verify_is_no_answer_data();
    void a_certificate_that_does_not_verify_is_no_answer();
    void a_status_other_than_200_yields_nothing_data();
    void a_status_other_than_200_yields_nothing();
    void a_truncated_answer_yields_nothing_data();
    void a_truncated_answer_yields_nothing();
    void silence_for_the_limit_is_no_answer_data();
    void silence_for_the_limit_is_no_answer();
    void a_server_that_does_not_speak_tls_is_no_answer_after_the_limit();
    void a_slow_answer_that_goes_on_is_waited_for();
    void an_answer_larger_than_the_limit_is_refused_data();
    void an_answer_larger_than_the_limit_is_refused();
    void a_name_that_does_not_resolve_is_no_answer();
    void a_port_where_nobody_listens_is_no_answer();
    void events_are_delivered_during_the_wait();
    void closing_the_last_window_abandons_it_and_ends_the_program_data();
    void closing_the_last_window_abandons_it_and_ends_the_program();
    void an_answer_that_came_before_the_last_window_was_closed_is_abandoned_too();
    void quitting_abandons_it_and_ends_the_program();
};

void tst_Download::initTestCase()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    trust({loopback()});
}

void tst_Download::an_answer_is_complete()
{
    HttpsServer server(loopback());
    const QByteArray body(300'000, 'x');
    server.answers[u"/file"_s] = {response(body)};
    const Download got = get(server, u"/file"_s);
    QCOMPARE(got.failure, QString());
    QCOMPARE(got.result, Download::Complete);
    QCOMPARE(got.body, body);
    QCOMPARE(server.asked, QStringList{u"/file"_s});
}

void tst_Download::an_empty_answer_is_complete()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("")};
    const Download got = get(server, u"/file"_s);
    QCOMPARE(got.result, Download::Complete);
    QCOMPARE(got.body, QByteArray());
}

void tst_Download::an_answer_whose_length_is_not_announced_ends_with_the_connection()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nbody"};
    const Download got = get(server, u"/file"_s);
    QCOMPARE(got.result, Download::Complete);
    QCOMPARE(got.body, "body");
}

void tst_Download::a_redirect_to_https_is_followed()
{
    HttpsServer other(loopback());
    other.answers[u"/there"_s] = {response("body")};
    HttpsServer server(loopback());
    server.answers[u"/here"_s] = {redirect("https://"_L1 + other.host() + "/there"_L1)};
    const Download got = get(server, u"/here"_s);
    QCOMPARE(got.result, Download::Complete);
    QCOMPARE(got.body, "body");
}

void tst_Download::a_redirect_to_anything_else_is_no_answer_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("plain HTTP") << u"http://127.0.0.1:%1/there"_s;
    QTest::newRow("a file") << u"file:///etc/hostname?%1"_s;
    QTest::newRow("data of its own") << u"data:text/plain,body%1"_s;
}

void tst_Download::a_redirect_to_anything_else_is_no_answer()
{
    QFETCH(QString, target);
    QTcpServer plain;
    QVERIFY(plain.listen(QHostAddress::LocalHost));
    const QSignalSpy connections(&plain, &QTcpServer::newConnection);
    HttpsServer server(loopback());
    server.answers[u"/here"_s] = {redirect(target.arg(plain.serverPort()))};
    const Download got = get(server, u"/here"_s);
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.body, QByteArray());
    QVERIFY2(!got.failure.isEmpty(), "no reason given");
    QCOMPARE(connections.count(), 0);
    QCOMPARE(server.asked, QStringList{u"/here"_s});
}

void tst_Download::an_endless_redirect_is_no_answer()
{
    HttpsServer server(loopback());
    server.answers[u"/here"_s] = {redirect("https://"_L1 + server.host() + "/here"_L1)};
    const Download got = get(server, u"/here"_s);
    QCOMPARE(got.result, Download::Failed);
    QVERIFY2(got.failure.contains("redirect"_L1), qPrintable(got.failure));
}

void tst_Download::an_address_that_is_not_https_is_not_asked_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("plain HTTP") << u"http://127.0.0.1:%1/file"_s;
    QTest::newRow("FTP") << u"ftp://127.0.0.1:%1/file"_s;
    QTest::newRow("no scheme") << u"127.0.0.1:%1/file"_s;
}

void tst_Download::an_address_that_is_not_https_is_not_asked()
{
    QFETCH(QString, address);
    QTcpServer plain;
    QVERIFY(plain.listen(QHostAddress::LocalHost));
    const QSignalSpy connections(&plain, &QTcpServer::newConnection);
    const Download got = download(QUrl(address.arg(plain.serverPort())), patient);
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.failure, u"it is not an HTTPS address"_s);
    QCoreApplication::processEvents();
    QCOMPARE(connections.count(), 0);
}

void tst_Download::a_certificate_that_does_not_verify_is_no_answer_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expired");
    QTest::addColumn<bool>("trusted");
    QTest::newRow("vouched for by nobody we trust") << u"IP:127.0.0.1"_s << false << false;
    QTest::newRow("of another host") << u"DNS:updates.rallyvane.example"_s << false << true;
    QTest::newRow("expired") << u"IP:127.0.0.1"_s << true << true;
}

void tst_Download::a_certificate_that_does_not_verify_is_no_answer()
{
    QFETCH(QString, name);
    QFETCH(bool, expired);
    QFETCH(bool, trusted);
    const Identity identity(name, expired);
    if (trusted)
        trust({loopback(), identity});
    const auto distrust = qScopeGuard([] { trust({loopback()}); });
    HttpsServer server(identity);
    server.answers[u"/file"_s] = {response("body")};
    const Download got = get(server, u"/file"_s);
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.body, QByteArray());
    QVERIFY2(got.failure.contains("certificate"_L1), qPrintable(got.failure));
    QCOMPARE(server.asked, QStringList());
}

void tst_Download::a_status_other_than_200_yields_nothing_data()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *const status :
        {"204 No Content", "206 Partial Content", "300 Multiple Choices", "304 Not Modified",
            "401 Unauthorized", "403 Forbidden", "404 Not Found", "407 Proxy", "418 I'm a teapot",
            "500 Internal Server Error", "503 Service Unavailable", "999 ?"})
        QTest::addRow("%s", status) << QByteArray(status);
}

void tst_Download::a_status_other_than_200_yields_nothing()
{
    QFETCH(QByteArray, status);
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("<h1>A page</h1>", status)};
    const Download got = get(server, u"/file"_s);
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.body, QByteArray());
    QVERIFY2(!got.failure.isEmpty(), "no reason given");
}

void tst_Download::a_truncated_answer_yields_nothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("shorter than announced") << response(QByteArray(5000, 'x')).chopped(1);
    QTest::newRow("nothing of what was announced") << response(QByteArray(5000, 'x')).chopped(5000);
    QTest::newRow("within a chunk")
        << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10\r\nhalf");
    QTest::newRow("without the last chunk")
        << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n");
    QTest::newRow("within the head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Len");
    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("not HTTP") << QByteArray("hello\r\n\r\n");
}

void tst_Download::a_truncated_answer_yields_nothing()
{
    QFETCH(QByteArray, bytes);
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {bytes};
    const Download got = get(server, u"/file"_s);
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.body, QByteArray());
    QVERIFY2(!got.failure.isEmpty(), "no reason given");
}

void tst_Download::silence_for_the_limit_is_no_answer_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("from the start") << QByteArray();
    QTest::newRow("within the head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Len");
    QTest::newRow("in the middle") << response(QByteArray(5000, 'x')).chopped(2500);
}

void tst_Download::silence_for_the_limit_is_no_answer()
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

void tst_Download::a_server_that_does_not_speak_tls_is_no_answer_after_the_limit()
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

void tst_Download::a_slow_answer_that_goes_on_is_waited_for()
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

void tst_Download::an_answer_larger_than_the_limit_is_refused_data()
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

void tst_Download::an_answer_larger_than_the_limit_is_refused()
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

void tst_Download::a_name_that_does_not_resolve_is_no_answer()
{
    const Download got = download(QUrl(u"https://updates.invalid/file"_s), patient);
    QCOMPARE(got.result, Download::Failed);
    QVERIFY2(got.failure.contains("not found"_L1), qPrintable(got.failure));
}

void tst_Download::a_port_where_nobody_listens_is_no_answer()
{
    QTcpServer nobody;
    QVERIFY(nobody.listen(QHostAddress::LocalHost));
    const quint16 port = nobody.serverPort();
    nobody.close();
    const Download got = download(QUrl(u"https://127.0.0.1:%1/file"_s.arg(port)), patient);
    QCOMPARE(got.result, Download::Failed);
    QVERIFY2(got.failure.contains("refused"_L1), qPrintable(got.failure));
}

void tst_Download::events_are_delivered_during_the_wait()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("body")};
    bool delivered = false;
    QMetaObject::invokeMethod(
        this, [&] { delivered = true; }, Qt::QueuedConnection);
    QCOMPARE(get(server, u"/file"_s).result, Download::Complete);
    QVERIFY(delivered);
}

void tst_Download::closing_the_last_window_abandons_it_and_ends_the_program_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("before the answer") << QByteArray();
    QTest::newRow("in the middle of it") << response(QByteArray(5000, 'x')).chopped(2500);
}

void tst_Download::closing_the_last_window_abandons_it_and_ends_the_program()
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

void tst_Download::an_answer_that_came_before_the_last_window_was_closed_is_abandoned_too()
{
    HttpsServer server(loopback());
    server.answers[u"/file"_s] = {response("body")};
    QWidget window;
    window.show();
    // As a message box does that is up when the answer comes, and whose answer closes the window.
    connect(&server, &HttpsServer::requested, &window, [&] {
        QEventLoop box;
        QTimer::singleShot(300ms, &box, &QEventLoop::quit);
        box.exec();
        window.close();
    });
    std::optional<Download> got;
    QTimer::singleShot(0, this, [&] { got = get(server, u"/file"_s); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(got);
    QCOMPARE(got->result, Download::Abandoned);
}

void tst_Download::quitting_abandons_it_and_ends_the_program()
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

QTEST_MAIN(tst_Download)

#include "tst_download.moc"
