#include "update.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QMessageBox>
#include <QProcess>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Puts the texts into the main window's translation context.
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};

/// The most lines and characters of a text that the question shows: as many as fit on a screen of
/// 1080 lines.
constexpr int mostShownLines = 40;
constexpr qsizetype mostShownCharacters = 3000;

Download fetch(const UpdateServer &server, const QString &file, const DownloadLimits &limits)
{
    const QUrl url("https://"_L1 + server.host + QLatin1StringView(updateFolder) + file);
    Download answer = isUpdateHost(server.host)
        ? download(url, limits)
        : Download{.failure = u"this build has no update server"_s};
    if (answer.result == Download::Failed)
        qDebug("Cannot download %s: %s", qUtf8Printable(url.toDisplayString()),
            qUtf8Printable(answer.failure));
    else if (answer.result == Download::Abandoned)
        qDebug("Update check abandoned: the program ends");
    return answer;
}

/// Whether `file` offers a version newer than `ownVersion`; if not, the reason is logged.
bool offersUpdate(const VersionFile &file, int ownVersion)
{
    if (file.state == VersionFile::NoVersionFile) {
        qDebug("Cannot connect to Website");
        return false;
    }
    if (file.state == VersionFile::Unreadable) {
        qDebug("Cannot parse Version file");
        return false;
    }
    const int offered = versionInHundredths(file.version);
    if (offered == ownVersion)
        qDebug("Software up to date");
    else if (offered < ownVersion)
        qDebug("Living in the future?");
    return offered > ownVersion;
}

/// The beginning of `text` that fits on a screen. Laying out the longest text takes a message box
/// half a minute, and its buttons would be off the screen.
QString shownPart(const QString &text)
{
    qsizetype end = 0;
    for (int lines = 0; lines < mostShownLines && end < text.size(); ++lines) {
        const qsizetype lineEnd = text.indexOf(u'\n', end);
        end = lineEnd < 0 ? text.size() : lineEnd + 1;
    }
    end = std::min(end, mostShownCharacters);
    return end < text.size() ? text.first(end) + u"\u2026"_s : text;
}

bool userWantsUpdate(const QString &version, const QString &releaseNotes)
{
    // The first line, by which Qt detects markup, ends after the version, which is a number; so
    // the notes are never taken for markup.
    const QString text = Texts::tr("Version ") + shownPart(version)
        + Texts::tr(" is available.\n\nDo you want to update and restart now?\n\n"
                    "Content of this new version:\n")
        + shownPart(releaseNotes);
    return QMessageBox::question(nullptr, Texts::tr("New version available"), text,
               QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::Yes;
}

/// Writes `installer` to `path` completely or not at all.
bool saveInstaller(const QString &path, const QByteArray &installer)
{
    QSaveFile file(path);
    bool saved = file.open(QIODevice::WriteOnly) && file.write(installer) == installer.size();
    if (saved) {
        // Some systems start only files with an executable permission.
        file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
        saved = file.commit();
    }
    if (!saved) {
        qDebug("Cannot save %s: %s", qUtf8Printable(path), qUtf8Printable(file.errorString()));
        qDebug("Cannot write file");
        return false;
    }
    qDebug("Installer saved: %s", qUtf8Printable(path));
    return true;
}

bool startInstaller(const QString &path)
{
    if (QProcess::startDetached(path, {})) {
        qDebug("Installer started");
        return true;
    }
    qDebug("Cannot start the installer");
    QMessageBox::critical(nullptr, Texts::tr("Setup program cannot be executed"),
        Texts::tr("Setup program cannot be executed at following path: ") + path);
    return false;
}

/// Downloads, saves and starts the installer of `version`. Returns whether it was started.
bool install(const UpdateServer &server, const QString &version)
{
    const QString name = installerName(version);
    const Download installer = fetch(server, name, server.installer);
    if (installer.result != Download::Complete)
        return false;
    if (installer.body.isEmpty()) {
        qDebug("The installer is empty");
        return false;
    }
    const QDir folder(QDir::currentPath() + "/sw_fw"_L1);
    if (!folder.exists())
        folder.mkpath(u"."_s);
    const QString path = folder.filePath(name);
    return saveInstaller(path, installer.body) && startInstaller(path);
}

} // namespace

bool checkForUpdate(const UpdateServer &server, int ownVersion, QString &releaseNotes)
{
    const Download answer = fetch(server, Texts::tr(versionFileName), server.versionFile);
    if (answer.result == Download::Abandoned)
        return false;
    const VersionFile offer = readVersionFile(answer.body);
    if (!offersUpdate(offer, ownVersion))
        return false;
    releaseNotes += offer.notes;
    qDebug("Update Requested - Actual Version = %d", ownVersion);
    if (!userWantsUpdate(offer.version, releaseNotes)) {
        qDebug("Update declined");
        return false;
    }
    return install(server, offer.version);
}
