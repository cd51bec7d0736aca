#pragma once

#include "hoststate.h"
#include "ilda.h"

#include <QString>

class QCoreApplication;

/// A task for a recording, given on the command line instead of being a host.
struct RecordingTask
{
    enum Kind { None, Dump, DumpPoints, Report, ExportIlda };
    Kind kind = None;
    QString recording; ///< the file to read
    QString output; ///< the file to write: Report, ExportIlda
    int zone = 0; ///< ExportIlda; from 0
    ColorOrder colors = ColorOrder::RedGreenBlue; ///< ExportIlda
};

/// The options of the command line.
struct Options
{
    HostInfo host;
    RecordingTask task;
    QString openFile; ///< a recording to be shown, instead of being a host; empty: none
    QString recordFile; ///< empty: no recording
    QString reportFile; ///< empty: no report
    QString snapshotFile; ///< empty: no snapshot
    double seconds = 0; ///< until the host ends by itself; 0 = never

    /// Reads the application's arguments. Ends the program after --help and --version, and with a
    /// line on standard error and exit code 1 after arguments that it cannot take.
    static Options read(const QCoreApplication &application);
};
