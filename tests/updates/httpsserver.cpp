#include "httpsserver.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

void openssl(const QString &folder, const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(u"openssl"_s, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0)
        qFatal("openssl cannot make a certificate: %s",
            process.error() == QProcess::FailedToStart
                ? "it is not installed"
                : process.readAllStandardError().constData());
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

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

Identity::Identity(const QString &name, bool expired)
{
    const QTemporaryDir folder;
    openssl(folder.path(),
        {u"req"_s, u"-new"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:P-256"_s,
            u"-nodes"_s, u"-keyout"_s, u"key.pem"_s, u"-out"_s, u"request.pem"_s, u"-subj"_s,
            u"/CN=update test"_s, u"-addext"_s, "subjectAltName="_L1 + name});
    openssl(folder.path(),
        {u"x509"_s, u"-req"_s, u"-in"_s, u"request.pem"_s, u"-signkey"_s, u"key.pem"_s,
            u"-copy_extensions"_s, u"copy"_s, u"-days"_s, expired ? u"-1"_s : u"1"_s, u"-out"_s,
            u"certificate.pem"_s});
    certificate = QSslCertificate(contents(folder.filePath(u"certificate.pem"_s)));
    key = QSslKey(contents(folder.filePath(u"key.pem"_s)), QSsl::Ec);
    if (certificate.isNull() || key.isNull())
        qFatal("the certificate that openssl made cannot be read");
}

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
{
    QSslConfiguration configuration;
    configuration.setLocalCertificate(identity.certificate);
    configuration.setPrivateKey(identity.key);
    setSslConfiguration(configuration);
    if (!listen(QHostAddress::LocalHost))
        qFatal("no port to listen on: %s", qUtf8Printable(errorString()));
    connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (QTcpSocket *const socket = nextPendingConnection())
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
    });
}

QString HttpsServer::host() const
{
    return u"127.0.0.1:%1"_s.arg(serverPort());
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
