#include "updatecase.h"

#include <QCoreApplication>
#include <QDir>
#include <QNetworkProxyFactory>
#include <QTest>

using namespace Qt::StringLiterals;

QByteArray separator()
{
    return {43, '='};
}

QByteArray versionFile(const QByteArray &version, const QByteArray &notes)
{
    return separator() + "\nV" + version + " \n" + notes + separator() + "\n";
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString installerProgram()
{
    return QCoreApplication::applicationDirPath() + "/" INSTALLER;
}

QByteArray installer()
{
    return contents(installerProgram());
}

bool UpdateCase::check(const QString &host)
{
    return checkForUpdate({.host = host}, ownVersion, notes);
}

void UpdateCase::initTestCase()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    trust({loopback()});
    QVERIFY2(!installer().isEmpty(), "the installer for tests is not built");
}

void UpdateCase::init()
{
    folder.emplace();
    QVERIFY(QDir::setCurrent(folder->path()));
    server.emplace(loopback());
    notes.clear();
    log.emplace(DebugLines::DebugOnly);
}

void UpdateCase::cleanup()
{
    log.reset();
    QDir::setCurrent(QCoreApplication::applicationDirPath());
}
