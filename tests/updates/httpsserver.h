#pragma once

#include "tlsserver.h"

#include <QHash>

#include <chrono>

/// The identity for the address that an HttpsServer listens on.
const Identity &loopback();

/// Makes this process trust only `identities`.
void trust(const QList<Identity> &identities);

/// The server's response to a request.
struct Answer
{
    enum End { HangUp, StayConnected };

    QByteArray bytes = {}; ///< the whole response, including the header
    End end = HangUp;
    int pieces = 1; ///< number of pieces in which the bytes are sent
    std::chrono::milliseconds pause = {}; ///< between two pieces
};

/// An HTTP response with a Content-Length.
QByteArray response(const QByteArray &body, const QByteArray &status = "200 OK");
/// A redirect to `url`.
QByteArray redirect(const QString &url);

/// An HTTPS server on loopback that gives fixed answers.
class HttpsServer : public QObject
{
    Q_OBJECT

public:
    explicit HttpsServer(const Identity &identity);

    /// 127.0.0.1 and the port.
    QString host() const;

    /// By path; other paths get status 404.
    QHash<QString, Answer> answers;
    /// The requested paths, in order.
    QStringList asked;

signals:
    void requested(const QString &path);

private:
    void serve(QTcpSocket *socket);

    TlsServer m_tls;
};
