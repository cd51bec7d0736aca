#include "httpsserver.h"

#include <QSslConfiguration>
#include <QTcpSocket>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Sends the rest of `answer` piece by piece.
void send(QTcpSocket *socket, const Answer &answer, qsizetype from)
{
    const qsizetype piece = (answer.bytes.size() + answer.pieces - 1) / answer.pieces;
    socket->write(answer.bytes.mid(from, piece));
    if (from + piece < answer.bytes.size())
        QTimer::singleShot(answer.pause, socket, [=] { send(socket, answer, from + piece); });
    else if (answer.end == Answer::HangUp)
        socket->disconnectFromHost();
}

} // namespace

const Identity &loopback()
{
    static const Identity identity(u"IP:127.0.0.1"_s);
    return identity;
}

void trust(const QList<Identity> &identities)
{
    QList<QSslCertificate> certificates;
    for (const Identity &identity : identities)
        certificates += identity.certificate;
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(certificates);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

QByteArray response(const QByteArray &body, const QByteArray &status)
{
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size())
        + "\r\n\r\n" + body;
}

QByteArray redirect(const QString &url)
{
    return "HTTP/1.1 302 Found\r\nLocation: " + url.toLatin1() + "\r\nContent-Length: 0\r\n\r\n";
}

HttpsServer::HttpsServer(const Identity &identity)
    : m_tls(identity)
{
    QTcpServer *const server = m_tls.connections.get();
    connect(server, &QTcpServer::pendingConnectionAvailable, this, [this, server] {
        while (QTcpSocket *const socket = server->nextPendingConnection())
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
    });
}

QString HttpsServer::host() const
{
    return u"127.0.0.1:%1"_s.arg(m_tls.port);
}

void HttpsServer::serve(QTcpSocket *socket)
{
    while (socket->canReadLine()) {
        const QList<QByteArray> words = socket->readLine().split(' ');
        if (words.first() != "GET")
            continue;
        const QString path = QString::fromLatin1(words.value(1));
        asked += path;
        send(socket, answers.value(path, {response("<h1>Not found</h1>", "404 Not Found")}), 0);
        emit requested(path);
    }
}
