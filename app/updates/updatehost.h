#pragma once

#include <QString>

/// The maker's update server, a name with or without a port: the build setting
/// RALLYVANE_UPDATE_HOST.
QString updateHost();
