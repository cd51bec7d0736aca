#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

class QUrl;

/// The limits beyond which a download fails.
struct DownloadLimits
{
    std::chrono::milliseconds silence; ///< longest time without data, from the request on
    qint64 size; ///< in bytes
};

/// The result of a download.
struct Download
{
    enum Result {
        Complete,
        Failed, ///< no answer, or none that can be trusted
        Abandoned, ///< the program is ending
    };

    Result result = Failed;
    QByteArray body = {}; ///< empty unless complete
    QString failure = {}; ///< why it failed, for the log
};

/// Gets `url` over HTTPS, verifying the certificate; redirects are followed to HTTPS only. Waits in
/// a local event loop, so the window stays responsive; returns at once if the application exits or
/// has exited. GUI thread.
Download download(const QUrl &url, const DownloadLimits &limits);
