#pragma once

#include <QByteArrayView>
#include <QString>

// The files that the maker publishes for an update, and how they are read. Pure functions, callable
// from any thread; the publishing tool checks its own output with them.

/// The folder of the update files on the maker's server.
inline constexpr char updateFolder[] = "/Telechargements/LaserRallyvane/";
/// The file with the newest version's number and release notes.
inline constexpr char versionFileName[] = "VersionNotes.txt";
/// Precedes the version line, and ends the release notes.
inline constexpr char versionFileSeparator[] = "===========================================";

/// The largest version file and installer that are accepted, in bytes: an endless answer must not
/// fill the memory.
inline constexpr qint64 largestVersionFile = 1LL << 20;
inline constexpr qint64 largestInstaller = 512LL << 20;

/// Whether `host`, a name with or without a port, is an update server. A name under the reserved
/// domain "example" is not: a build without a server has one.
bool isUpdateHost(const QString &host);

/// The name of the installer of `version`.
QString installerName(const QString &version);

/// The contents of a version file.
struct VersionFile
{
    enum State {
        NoVersionFile, ///< no separator: empty, or some other text
        Unreadable, ///< an incomplete version file
        Readable,
    };

    State state = NoVersionFile;
    QString version = {}; ///< verbatim, not necessarily a number
    QString notes = {}; ///< release notes, one Latin-1 character per byte
};

/// Parses a version file: any text, a separator, V and the version followed by a space, the rest of
/// that line, the notes, a separator. Accepts arbitrary bytes.
VersionFile readVersionFile(QByteArrayView bytes);

/// The version in `text`, in hundredths, rounded half away from zero in single precision: 102 for
/// "1.02", and for "1.015". 0 if it is not a finite number; clamped to the range of int.
int versionInHundredths(QStringView text);
