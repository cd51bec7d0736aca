#pragma once

#include <QCoreApplication>
#include <QProcess>

/// The host program, run as a user would.
class HostProcess : public QProcess
{
public:
    explicit HostProcess(const QStringList &arguments)
    {
        start(QCoreApplication::applicationDirPath() + QStringLiteral("/rehearsalhost"), arguments);
        if (!waitForStarted())
            qFatal("%s", qPrintable(errorString()));
    }
    ~HostProcess() override
    {
        if (state() != NotRunning)
            end();
        kill();
        waitForFinished();
    }

    /// Asks it to exit, as the system does.
    int end()
    {
        terminate();
        return result();
    }
    /// Waits until it exits and returns the exit code; -1 if there is none.
    int result() { return waitForFinished() && exitStatus() == NormalExit ? exitCode() : -1; }
    QString output() { return lines(readAllStandardOutput()); }
    QString errors() { return lines(readAllStandardError()); }

private:
    static QString lines(const QByteArray &bytes) { return QString::fromUtf8(bytes).remove(u'\r'); }
};
