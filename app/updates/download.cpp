#include "download.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr int httpOk = 200;

Download failed(const QString &why)
{
    return {.result = Download::Failed, .failure = why};
}

/// Whether `reply` holds, or announces, more than `size` bytes.
bool exceeds(const QNetworkReply &reply, qint64 size)
{
    return reply.bytesAvailable() > size
        || reply.header(QNetworkRequest::ContentLengthHeader).toLongLong() > size;
}

/// What is wrong with a finished `reply`; empty when it is whole and what was asked for.
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

    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, int(QNetworkRequest::NoLessSafeRedirectPolicy));
    QNetworkReply *const reply = manager.get(request);

    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);

    QString refusal;
    const auto refuse = [&](const QString &why) {
        refusal = why;
        reply->abort();
    };
    // Qt's own limit on a transfer ends with the first redirect.
    QTimer silence;
    silence.setSingleShot(true);
    QObject::connect(&silence, &QTimer::timeout, &loop,
        [&] { refuse(u"no data for %1 ms"_s.arg(limits.silence.count())); });
    const auto restartSilence = [&] { silence.start(limits.silence); };
    QObject::connect(reply, &QNetworkReply::redirected, &loop, restartSilence);
    QObject::connect(reply, &QNetworkReply::metaDataChanged, &loop, restartSilence);
    const auto watchSize = [&] {
        if (exceeds(*reply, limits.size))
            refuse(u"the answer is larger than %1 bytes"_s.arg(limits.size));
    };
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, restartSilence);
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, watchSize);
    // The box that reports a missing host library closes the window from inside this loop: the
    // answer may have come by then, and the application's own quitting not yet.
    bool abandoned = false;
    QObject::connect(qGuiApp, &QGuiApplication::lastWindowClosed, &loop, [&] {
        abandoned = true;
        loop.quit();
    });

    restartSilence();
    loop.exec();

    if (abandoned || !reply->isFinished())
        return {.result = Download::Abandoned};
    if (!refusal.isEmpty())
        return failed(refusal);
    const QString fault = faultOf(*reply);
    if (!fault.isEmpty())
        return failed(fault);
    return {.result = Download::Complete, .body = reply->readAll()};
}
