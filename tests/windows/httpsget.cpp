// httpsget URL CERTIFICATE: fetches a page, trusting only that certificate, and prints the TLS
// backend and the page.

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QUrl>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    QNetworkRequest request{QUrl(arguments.at(1))};
    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setCaCertificates(QSslCertificate::fromPath(arguments.at(2)));
    request.setSslConfiguration(trust);
    request.setTransferTimeout();

    QNetworkAccessManager network;
    QNetworkReply *const reply = network.get(request);
    QObject::connect(reply, &QNetworkReply::finished, &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    std::printf("%s: %s\n%s\n", qPrintable(QSslSocket::activeBackend()),
        qPrintable(reply->errorString()), reply->readAll().constData());
    return reply->error() == QNetworkReply::NoError ? 0 : 1;
}
