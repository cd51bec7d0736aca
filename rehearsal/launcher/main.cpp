// Starts a rehearsal where the program is installed: the host's window, and once it is running the
// game in the folder with the rehearsal's library, so that it is found before a real host's. Both
// find their other libraries in the folder of this program. They end together with the game.

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// As ./play returns it, and for the same reason.
constexpr int hostFailed = 3;

/// Waits until the host says that it is running. False when it ends before.
bool waitForHost(QProcess &host)
{
    QByteArray said;
    while (!said.contains("The rehearsal host is running")) {
        if (!host.waitForReadyRead(-1))
            return false;
        said += host.readAllStandardOutput();
    }
    // No more of it is read.
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
                "The rehearsal host did not start, so the game was not started either.\n\n%1")
                .arg(reasonOf(host)));
        return hostFailed;
    }
    QProcess game;
    game.setProcessChannelMode(QProcess::ForwardedChannels);
    // In the corner of the screen that the host's window leaves to the game.
    game.start(rehearsal.filePath(u"rallyvane"_s), {u"-qwindowgeometry"_s, u"+0+0"_s});
    game.waitForFinished(-1);
    host.terminate();
    host.waitForFinished();
    return game.exitStatus() == QProcess::NormalExit ? game.exitCode() : EXIT_FAILURE;
}
