// Starts a rehearsal from the installed programs: first the host, then the copy of the game in the
// rehearsal folder, which loads the rehearsal's library instead of a real host's. Both find their
// other libraries in the folder of this program. The host is closed when the game ends.

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// Exit code, the same as that of ./play.
constexpr int hostFailed = 3;

/// Waits until the host reports that it is running. False if it exits first.
bool waitForHost(QProcess &host)
{
    QByteArray said;
    while (!said.contains("The rehearsal host is running")) {
        if (!host.waitForReadyRead(-1))
            return false;
        said += host.readAllStandardOutput();
    }
    // Nothing reads them from here on.
    host.closeReadChannel(QProcess::StandardOutput);
    host.closeReadChannel(QProcess::StandardError);
    return true;
}

QString reasonOf(QProcess &host)
{
    const QString said = QString::fromLocal8Bit(host.readAllStandardError()).trimmed();
    return said.isEmpty() ? host.errorString() : said;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QString home = QCoreApplication::applicationDirPath();
    const QDir rehearsal(home + u"/rehearsal"_s);
    qputenv("PATH",
        QDir::toNativeSeparators(home).toLocal8Bit() + QDir::listSeparator().toLatin1()
            + qgetenv("PATH"));

    QProcess host;
    host.start(rehearsal.filePath(u"rehearsalhost"_s), QCoreApplication::arguments().mid(1));
    if (!waitForHost(host)) {
        host.waitForFinished(-1);
        QMessageBox::critical(nullptr, u"Rehearsal"_s,
            QCoreApplication::translate("Launcher",
                "The rehearsal host could not start, so the game was not started.\n\n%1")
                .arg(reasonOf(host)));
        return hostFailed;
    }
    QProcess game;
    game.setProcessChannelMode(QProcess::ForwardedChannels);
    // The corner of the screen that the host's window leaves free.
    game.start(rehearsal.filePath(u"rallyvane"_s), {u"-qwindowgeometry"_s, u"+0+0"_s});
    game.waitForFinished(-1);
    host.terminate();
    host.waitForFinished();
    return game.exitStatus() == QProcess::NormalExit ? game.exitCode() : EXIT_FAILURE;
}
