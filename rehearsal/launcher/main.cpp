// Starts a rehearsal where the program is installed: the game in the folder in which the
// rehearsal's library lies, so that it is found before a real host's, and the host's window. Both
// find their other libraries in the folder of this program. They end together with the game.

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString home = QCoreApplication::applicationDirPath();
    const QDir rehearsal(home + u"/rehearsal"_s);
    qputenv("PATH",
        QDir::toNativeSeparators(home).toLocal8Bit() + QDir::listSeparator().toLatin1()
            + qgetenv("PATH"));

    QProcess host;
    host.setProcessChannelMode(QProcess::ForwardedChannels);
    host.start(rehearsal.filePath(u"rehearsalhost"_s), QCoreApplication::arguments().mid(1));
    QProcess game;
    game.setProcessChannelMode(QProcess::ForwardedChannels);
    game.start(rehearsal.filePath(u"rallyvane"_s), QStringList());
    game.waitForFinished(-1);
    host.terminate();
    host.waitForFinished();
    return game.exitStatus() == QProcess::NormalExit ? game.exitCode() : EXIT_FAILURE;
}
