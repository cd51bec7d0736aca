#pragma once

#include "debuglines.h"
#include "httpsserver.h"
#include "messageboxes.h"
#include "update.h"

#include <QTemporaryDir>

#include <optional>

/// Where the server has the files of an update to 1.02, and where its installer is saved.
inline const QString versionPath =
    QStringLiteral("/Telechargements/LaserRallyvane/VersionNotes.txt");
inline const QString installerPath =
    QStringLiteral("/Telechargements/LaserRallyvane/Rallyvane_v1.02_setup.exe");
inline const QString savedInstaller = QStringLiteral("sw_fw/Rallyvane_v1.02_setup.exe");

/// The separator of a version file.
QByteArray separator();
/// A version file in the published format.
QByteArray versionFile(const QByteArray &version, const QByteArray &notes = "- new\n");
/// The content of a file; empty if it cannot be read.
QByteArray contents(const QString &path);
/// The program that stands in for an installer: its path and its content.
QString installerProgram();
QByteArray installer();

/// Base class for tests of the update check. Each test function runs as version 1.01, in a new
/// folder and with a new server.
class UpdateCase : public QObject
{
    Q_OBJECT

protected:
    static constexpr int ownVersion = 101;

    bool check(const QString &host);
    bool check() { return check(server->host()); }

    std::optional<QTemporaryDir> folder;
    std::optional<HttpsServer> server;
    std::optional<DebugLines> log;
    QString notes;

private slots:
    void initTestCase();
    void init();
    void cleanup();
};
