#include "download.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int httpOk = 200;
/// The result of a download's event loop when the reply has finished; if the application exits, the
/// loop returns another value.
constexpr int answered = 1;

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

    auto manager = std::make_unique<QNetworkAccessManager>();
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
