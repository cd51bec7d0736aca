#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

class QUrl;

/// What a download may cost before it counts as no answer.
struct DownloadLimits
{
    std::chrono::milliseconds silence; ///< without any data, from the request on
    qint64 size; ///< in bytes
};

/// What came of a download.
struct Download
{
    enum Result {
        Complete,
        Failed, ///< no answer, or none that can be trusted
        Abandoned, ///< the program is ending
    };

    Result result = Failed;
    QByteArray body = {}; ///< whole; empty unless complete
    QString failure = {}; ///< why it failed, for the log
};

/// Gets `url` from an HTTPS server that proves who it is, following redirects to other such
/// servers. Waits for the answer with an event loop of its own, so that the window goes on
/// working; when the application exits, or has exited, it returns at once. On the GUI thread.
Download download(const QUrl &url, const DownloadLimits &limits);
