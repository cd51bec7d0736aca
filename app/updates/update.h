#pragma once

#include "download.h"
#include "versionfile.h"

/// Where updates come from, and how much patience they get.
struct UpdateServer
{
    QString host; ///< with or without a port
    DownloadLimits versionFile = {std::chrono::seconds(5), largestVersionFile};
    DownloadLimits installer = {std::chrono::seconds(30), largestInstaller};
};

/// Asks `server` for a version newer than `ownVersion` (in hundredths) and the user whether to
/// update; then downloads the installer into the folder "sw_fw" and starts it. What is new is
/// appended to `releaseNotes`. Returns true when the installer runs, so that the program must
/// end; false in every other case, for which the log tells why. A host under the reserved domain
/// "example" is no server: it is not even looked up. On the GUI thread; the window goes on working
/// while it waits.
bool checkForUpdate(const UpdateServer &server, int ownVersion, QString &releaseNotes);
