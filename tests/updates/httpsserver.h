#pragma once

#include <QHash>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

#include <chrono>

/// A certificate and its key, made for this run with the openssl command.
struct Identity
{
    /// One for `name`, a subject alternative name such as "IP:127.0.0.1", that is good for a day
    /// or ended a day ago.
    explicit Identity(const QString &name, bool expired = false);

    QSslCertificate certificate;
    QSslKey key;
};

/// One for the address that an HttpsServer listens on.
const Identity &loopback();

/// Makes this process trust `identities`, and nobody else.
void trust(const QList<Identity> &identities);

/// What the server sends when it is asked.
struct Answer
{
    enum End { HangUp, StayConnected };

    QByteArray bytes = {}; ///< the whole response, its head included
    End end = HangUp;
    int pieces = 1; ///< into which the bytes are cut
    std::chrono::milliseconds pause = {}; ///< between two pieces
};

/// A response of HTTP with its length announced.
QByteArray response(const QByteArray &body, const QByteArray &status = "200 OK");
/// A redirect to `url`.
QByteArray redirect(const QString &url);

/// An HTTPS server on loopback that gives fixed answers.
class HttpsServer : public QSslServer
{
    Q_OBJECT

public:
    explicit HttpsServer(const Identity &identity);

    /// 127.0.0.1 and the port.
    QString host() const;

    /// By path; another path gets a status of 404.
    QHash<QString, Answer> answers;
    /// The paths asked for, in order.
    QStringList asked;

signals:
    void requested(const QString &path);

private:
    void serve(QTcpSocket *socket);
};
