#pragma once

#include <QSslCertificate>
#include <QTcpServer>

#include <memory>

/// A certificate and its key, made for this run with the openssl command.
struct Identity
{
    /// For `name`, a subject alternative name such as "IP:127.0.0.1"; valid for a day, or expired a
    /// day ago.
    explicit Identity(const QString &name, bool expired = false);

    QSslCertificate certificate;
    QByteArray key; ///< in PEM, or the name that the TLS proxy has for it
};

/// A server on loopback that proves to be `Identity` and whose connections are decrypted already.
struct TlsServer
{
    explicit TlsServer(const Identity &identity);

    std::unique_ptr<QTcpServer> connections;
    quint16 port; ///< for clients
};
