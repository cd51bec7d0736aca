#pragma once

#include <QString>

/// The maker's update server, NAME or NAME:PORT, from the build setting RALLYVANE_UPDATE_HOST.
QString updateHost();
