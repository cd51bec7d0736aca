#pragma once

#include <QByteArrayView>
#include <QString>

/// An installer of the program, as its file describes it.
struct InstallerFile
{
    QString fault = {}; ///< why it is not an installer of the program; empty if it is one
    QString version = {};
    QString updateHost = {}; ///< the server that its program asks for updates
};

/// Reads an installer that packaging/windows/build made. Accepts arbitrary bytes. Callable from any
/// thread.
InstallerFile readInstaller(QByteArrayView bytes);
