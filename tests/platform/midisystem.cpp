#include "midiserver.h"

#include <QCoreApplication>

#include <cstdlib>
#include <iostream>

// Runs a command with a MIDI system, whose name ("alsa" or "jack") is passed in RALLYVANE_MIDI, and
// returns its exit code. If there is no MIDI system, prints the reason and returns 77.
//
//     midisystem COMMAND...

int main(int argc, char *argv[])
{
    constexpr int skipped = 77;
    const QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().mid(1);
    if (words.isEmpty())
        return EXIT_FAILURE;
    const MidiServer server;
    if (!server.problem.isEmpty()) {
        std::cout << "SKIP   : " << qPrintable(server.problem) << std::endl;
        return skipped;
    }
    qputenv("RALLYVANE_MIDI", server.api.toLatin1());
    QProcess command;
    endWithThisProcess(command);
    command.setProcessChannelMode(QProcess::ForwardedChannels);
    command.setInputChannelMode(QProcess::ForwardedInputChannel);
    command.start(words.takeFirst(), words);
    command.waitForFinished(-1);
    return command.error() == QProcess::UnknownError ? command.exitCode() : EXIT_FAILURE;
}
