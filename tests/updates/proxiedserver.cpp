// Under Wine, whose Schannel has no server: behind the proxy that tests/updates/tlsproxy runs
// outside Wine.

#include "tlsserver.h"

#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace {

/// The proxy's answer to one request.
QByteArray ask(const QString &request)
{
    QTcpSocket proxy;
    proxy.connectToHost(u"127.0.0.1"_s, qEnvironmentVariable("RALLYVANE_TLS_PROXY").toUShort());
    proxy.write(request.toLatin1() + '\n');
    while (proxy.waitForReadyRead()) { }
    QByteArray answer = proxy.readAll();
    if (answer.isEmpty())
        qFatal("no answer of the TLS proxy: %s", qUtf8Printable(proxy.errorString()));
    return answer;
}

} // namespace

Identity::Identity(const QString &name, bool expired)
{
    const QByteArray answer = ask("identity %1 %2"_L1.arg(name).arg(expired ? -1 : 1));
    key = answer.left(answer.indexOf('\n'));
    certificate = QSslCertificate(answer.sliced(key.size()));
    if (certificate.isNull())
        qFatal("the certificate that the TLS proxy made cannot be read");
}

TlsServer::TlsServer(const Identity &identity)
    : connections(std::make_unique<QTcpServer>())
{
    if (!connections->listen(QHostAddress::LocalHost))
        qFatal("no port to listen on: %s", qUtf8Printable(connections->errorString()));
    port =
        ask("serve %1 %2"_L1.arg(QString::fromLatin1(identity.key)).arg(connections->serverPort()))
            .trimmed()
            .toUShort();
}
