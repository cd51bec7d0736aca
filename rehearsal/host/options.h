#pragma once

#include "hoststate.h"

#include <QString>

class QCoreApplication;

/// What the command line asks for.
struct Options
{
    HostInfo host;
    QString recordFile; ///< empty: no record
    QString snapshotFile; ///< empty: no snapshot
    double seconds = 0; ///< until the host ends by itself; 0 = never

    /// Reads the application's arguments. Ends the program after --help and --version, and with a
    /// line on standard error and exit code 1 after arguments that it cannot take.
    static Options read(const QCoreApplication &application);
};
