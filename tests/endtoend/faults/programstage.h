#pragma once

#include "seams.h"

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <optional>

/// The running program in a folder of its own, operated through commands, with scripted devices and
/// one of two host libraries. See operatorcommands.cpp.
class ProgramStage
{
public:
    /// A recording host, which seams() scripts, or the rehearsal host's library.
    enum Library { Recording, Rehearsal };

    /// `programs` has a folder with the program for each library.
    explicit ProgramStage(QString programs);
    ~ProgramStage();
    ProgramStage(const ProgramStage &) = delete;
    ProgramStage &operator=(const ProgramStage &) = delete;

    /// In milliseconds. Enough for any step on a busy machine.
    static constexpr int patience = 60'000;

    /// Starts the program and waits until it answers.
    void start(Library library = Recording);
    /// Starts the program, and plays: the output is on and the ball in play.
    void play(Library library = Recording);
    /// Switches the output on, shows the game and serves, once the host has been found.
    void serve();
    /// Sends a command and waits for the answer. Fails the test if there is none.
    QString ask(const QString &command);
    /// Sends a command without waiting.
    void tell(const QString &command);
    /// Moves the speed slider; the file must then hold the value until the end.
    void changeSpeed(int speed);
    /// Whether the window shows that the host has been found.
    bool hasHost();
    /// Waits until the recording host has received this many more frames.
    void waitForFrames(int count = 20);
    /// Closes the window and waits for the program's end, which must be clean.
    void end();
    /// Ends the program without notice.
    void kill();
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }

    /// Whether the zones of the recording host last received empty frames, or its output is off.
    bool isDark() const;
    /// The settings that the file lacks or holds with another value; empty if none.
    QStringList lostSettings() const;
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QByteArray contentOf(const QString &name) const;
    void write(const QString &name, const QByteArray &content) const;
    QByteArray log() const { return contentOf(QStringLiteral("rallyvane.log")); }

    Seams *seams = nullptr;
    /// The values, by key, that the settings file must have at the end.
    QMap<QString, QString> settings;
    QProcessEnvironment environment;

private:
    QString m_programs;
    QTemporaryDir m_folder;
    QFile m_seamsFile;
    QProcess m_process;
    QByteArray m_output;
};
