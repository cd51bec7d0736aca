// With Qt's OpenSSL backend and the openssl command.

#include "tlsserver.h"

#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

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

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
    certificate = QSslCertificate(read(folder.filePath(u"certificate.pem"_s)));
    key = read(folder.filePath(u"key.pem"_s));
    if (certificate.isNull() || key.isEmpty())
        qFatal("the certificate that openssl made cannot be read");
}

TlsServer::TlsServer(const Identity &identity)
{
    QSslConfiguration configuration;
    configuration.setLocalCertificate(identity.certificate);
    configuration.setPrivateKey(QSslKey(identity.key, QSsl::Ec));
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(configuration);
    if (!server->listen(QHostAddress::LocalHost))
        qFatal("no port to listen on: %s", qUtf8Printable(server->errorString()));
    port = server->serverPort();
    connections = std::move(server);
}
