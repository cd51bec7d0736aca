#include "download.h"
#include "httpsserver.h"

#include <QNetworkProxyFactory>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr DownloadLimits patient = {20s, 1 << 20};

/// Local addresses are asked without a proxy.
QUrl remote()
{
    return QUrl(u"https://updates.invalid/file"_s);
}

Download get(const HttpsServer &server, const QString &path, const DownloadLimits &limits = patient)
{
    return download(QUrl("https://"_L1 + server.host() + path), limits);
}

/// Names `proxy`, but only once it has been allowed to.
class HeldProxies : public QNetworkProxyFactory
{
public:
    explicit HeldProxies(const QNetworkProxy &proxy)
        : m_proxy(proxy)
    {
    }
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery & /*query*/) override
    {
        wasAsked = true;
        constexpr int longest = 20'000; // milliseconds; the end of a test that fails
        if (!allowed.tryAcquire(1, longest))
            gaveUp = true;
        return {m_proxy};
    }

    QSemaphore allowed;
    std::atomic<bool> wasAsked = false;
    std::atomic<bool> gaveUp = false;

private:
    QNetworkProxy m_proxy;
};

HeldProxies *useHeldProxies(const QNetworkProxy &proxy)
{
    auto *proxies = new HeldProxies(proxy);
    QNetworkProxyFactory::setApplicationProxyFactory(proxies);
    return proxies;
}

} // namespace

class tst_Download : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void initTestCase();
    void an_answer_is_complete();
    void an_empty_answer_is_complete();
    void an_answer_whose_length_is_not_announced_ends_with_the_connection();
    void a_redirect_to_https_is_followed();
    void a_redirect_to_anything_else_fails_data();
    void a_redirect_to_anything_else_fails();
    void an_endless_redirect_fails();
    void an_address_that_is_not_https_is_not_requested_data();
    void an_address_that_is_not_https_is_not_requested();
    void a_certificate_that_does_not_verify_fails_data();
    void a_certificate_that_does_not_verify_fails();
    void a_status_other_than_200_yields_nothing_data();
    void a_status_other_than_200_yields_nothing();
    void a_truncated_answer_yields_nothing_data();
    void a_truncated_answer_yields_nothing();
    void a_name_that_does_not_resolve_fails();
    void a_port_without_a_server_fails();
    void the_event_loop_runs_while_proxies_are_looked_up();
    void a_lookup_of_proxies_that_does_not_end_fails();
    void the_proxy_that_is_found_is_used();
};

void tst_Download::init()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
}

void tst_Download::initTestCase()
{
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

void tst_Download::a_redirect_to_anything_else_fails_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("plain HTTP") << u"http://127.0.0.1:%1/there"_s;
    QTest::newRow("a file") << u"file:///etc/hostname?%1"_s;
    QTest::newRow("data of its own") << u"data:text/plain,body%1"_s;
}

void tst_Download::a_redirect_to_anything_else_fails()
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

void tst_Download::an_endless_redirect_fails()
{
    HttpsServer server(loopback());
    server.answers[u"/here"_s] = {redirect("https://"_L1 + server.host() + "/here"_L1)};
    const Download got = get(server, u"/here"_s);
    QCOMPARE(got.result, Download::Failed);
    QVERIFY2(got.failure.contains("redirect"_L1), qPrintable(got.failure));
}

void tst_Download::an_address_that_is_not_https_is_not_requested_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("plain HTTP") << u"http://127.0.0.1:%1/file"_s;
    QTest::newRow("FTP") << u"ftp://127.0.0.1:%1/file"_s;
    QTest::newRow("no scheme") << u"127.0.0.1:%1/file"_s;
}

void tst_Download::an_address_that_is_not_https_is_not_requested()
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

void tst_Download::a_certificate_that_does_not_verify_fails_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expired");
    QTest::addColumn<bool>("trusted");
    QTest::newRow("from an untrusted issuer") << u"IP:127.0.0.1"_s << false << false;
    QTest::newRow("of another host") << u"DNS:updates.rallyvane.example"_s << false << true;
    QTest::newRow("expired") << u"IP:127.0.0.1"_s << true << true;
}

void tst_Download::a_certificate_that_does_not_verify_fails()
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

void tst_Download::a_name_that_does_not_resolve_fails()
{
    const Download got = download(QUrl(u"https://updates.invalid/file"_s), patient);
    QCOMPARE(got.result, Download::Failed);
    QVERIFY2(got.failure.contains("not found"_L1), qPrintable(got.failure));
}

void tst_Download::a_port_without_a_server_fails()
{
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    const Download got = download(QUrl(u"https://127.0.0.1:%1/file"_s.arg(port)), patient);
    QCOMPARE(got.result, Download::Failed);
    QVERIFY2(got.failure.contains("refused"_L1), qPrintable(got.failure));
}

void tst_Download::the_event_loop_runs_while_proxies_are_looked_up()
{
    HeldProxies *proxies = useHeldProxies(QNetworkProxy::NoProxy);
    QTimer::singleShot(0, qApp, [proxies] { proxies->allowed.release(); });
    QCOMPARE(download(remote(), patient).result, Download::Failed);
    QVERIFY(proxies->wasAsked);
    QVERIFY(!proxies->gaveUp);
}

void tst_Download::a_lookup_of_proxies_that_does_not_end_fails()
{
    HeldProxies *proxies = useHeldProxies(QNetworkProxy::NoProxy);
    const Download got = download(remote(), {100ms, 1 << 20});
    QVERIFY(!proxies->gaveUp);
    proxies->allowed.release();
    QCOMPARE(got.result, Download::Failed);
    QCOMPARE(got.failure, u"no proxy settings for 100 ms"_s);
}

void tst_Download::the_proxy_that_is_found_is_used()
{
    QTcpServer proxy;
    QVERIFY(proxy.listen(QHostAddress::LocalHost));
    const auto asked = std::make_shared<QByteArray>();
    connect(&proxy, &QTcpServer::newConnection, this, [&proxy, asked] {
        QTcpSocket *const client = proxy.nextPendingConnection();
        connect(client, &QTcpSocket::readyRead, client, [client, asked] {
            *asked += client->readAll();
            client->disconnectFromHost();
        });
    });
    useHeldProxies({QNetworkProxy::HttpProxy, u"127.0.0.1"_s, proxy.serverPort()})
        ->allowed.release();
    QCOMPARE(download(remote(), patient).result, Download::Failed);
    QVERIFY2(asked->startsWith("CONNECT updates.invalid:443"), *asked);
}

QTEST_MAIN(tst_Download)

#include "tst_download.moc"
