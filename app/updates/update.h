#pragma once

#include "download.h"
#include "versionfile.h"

/// Where updates come from, and the download limits.
struct UpdateServer
{
    QString host; ///< with or without a port
    DownloadLimits versionFile = {std::chrono::seconds(5), largestVersionFile};
    DownloadLimits installer = {std::chrono::seconds(30), largestInstaller};
};

/// Asks `server` for a version newer than `ownVersion` (in hundredths) and the user whether to
/// update; then downloads the installer into the folder "sw_fw" and starts it. The release notes
/// are appended to `releaseNotes`. Returns true if the installer was started, so that the program
/// must end; otherwise false, and the reason is logged. A host under the reserved domain "example"
/// is never contacted. GUI thread; the window stays responsive meanwhile.
bool checkForUpdate(const UpdateServer &server, int ownVersion, QString &releaseNotes);
