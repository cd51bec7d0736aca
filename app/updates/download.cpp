#include "download.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QPromise>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int httpOk = 200;

// The results of an event loop here; if the application exits, the loop returns another value.
constexpr int answered = 1;
constexpr int timedOut = 2;

using Proxies = QList<QNetworkProxy>;

/// Names proxies that were looked up before.
class KnownProxies : public QNetworkProxyFactory
{
public:
    explicit KnownProxies(Proxies proxies)
        : m_proxies(std::move(proxies))
    {
    }
    Proxies queryProxy(const QNetworkProxyQuery & /*query*/) override { return m_proxies; }

private:
    Proxies m_proxies;
};

/// The result of looking for proxies.
struct ProxySearch
{
    int end; ///< the result of its event loop
    Proxies found = {};
};

/// The proxies for `url`. They are looked up on another thread: Windows may search the network for
/// their configuration, which can take many seconds, and the game's ticks come from the GUI thread.
ProxySearch findProxies(const QUrl &url, std::chrono::milliseconds patience)
{
    const auto promise = std::make_shared<QPromise<Proxies>>();
    QEventLoop loop;
    QFutureWatcher<Proxies> watcher;
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, [&loop] {
        if (loop.isRunning())
            loop.exit(answered);
    });
    QTimer::singleShot(patience, &loop, [&loop] { loop.exit(timedOut); });
    promise->start();
    watcher.setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, url] {
        promise->addResult(QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url)));
        promise->finish();
    });
    const int end = loop.exec();
    return {end, end == answered ? watcher.result() : Proxies()};
}

Download failed(const QString &why)
{
    return {.result = Download::Failed, .failure = why};
}

/// Whether `reply` contains, or announces, more than `size` bytes.
bool exceeds(const QNetworkReply &reply, qint64 size)
{
    return reply.bytesAvailable() > size
        || reply.header(QNetworkRequest::ContentLengthHeader).toLongLong() > size;
}

/// The error of a finished `reply`; empty if it is complete and its status is 200.
QString faultOf(const QNetworkReply &reply)
{
    if (reply.error() != QNetworkReply::NoError)
        return reply.errorString();
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status == httpOk ? QString() : u"the server answered with status %1"_s.arg(status);
}

} // namespace

Download download(const QUrl &url, const DownloadLimits &limits)
{
    if (url.scheme() != "https"_L1)
        return failed(u"it is not an HTTPS address"_s);

    const ProxySearch proxies = findProxies(url, limits.silence);
    if (proxies.end == timedOut)
        return failed(u"no proxy settings for %1 ms"_s.arg(limits.silence.count()));
    if (proxies.end != answered)
        return {.result = Download::Abandoned};

    auto manager = std::make_unique<QNetworkAccessManager>();
    manager->setProxyFactory(new KnownProxies(proxies.found));
    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, int(QNetworkRequest::NoLessSafeRedirectPolicy));
    QNetworkReply *const reply = manager->get(request);

    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, [&loop] {
        if (loop.isRunning()) // not once the program ends
            loop.exit(answered);
    });

    QString refusal;
    const auto refuse = [&](const QString &why) {
        refusal = why;
        reply->abort();
    };
    // Qt's own transfer timeout stops at the first redirect.
    QTimer silence;
    silence.setSingleShot(true);
    QObject::connect(&silence, &QTimer::timeout, &loop,
        [&] { refuse(u"no data for %1 ms"_s.arg(limits.silence.count())); });
    const auto restartSilence = [&] { silence.start(limits.silence); };
    // A redirect has headers too.
    QObject::connect(reply, &QNetworkReply::metaDataChanged, &loop, restartSilence);
    const auto watchSize = [&] {
        if (exceeds(*reply, limits.size))
            refuse(u"the answer is larger than %1 bytes"_s.arg(limits.size));
    };
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, restartSilence);
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, watchSize);

    restartSilence();
    if (loop.exec() != answered) {
        // Leaked to the application: the destructor would wait for the manager's thread.
        manager.release()->setParent(qApp);
        return {.result = Download::Abandoned};
    }
    if (!refusal.isEmpty())
        return failed(refusal);
    const QString fault = faultOf(*reply);
    if (!fault.isEmpty())
        return failed(fault);
    return {.result = Download::Complete, .body = reply->readAll()};
}
