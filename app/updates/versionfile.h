#pragma once

#include <QByteArrayView>
#include <QString>

// What the maker publishes for an update, and how it is read. All of it are pure functions, from
// any thread; the tool that publishes an update reads its own result back with them.

/// Where the files of an update lie on the maker's server.
inline constexpr char updateFolder[] = "/Telechargements/LaserRallyvane/";
/// The file that tells the newest version and what is new in it.
inline constexpr char versionFileName[] = "VersionNotes.txt";
/// Opens the version line, and closes the release notes.
inline constexpr char versionFileSeparator[] = "===========================================";

/// The most that is read of a version file, and of an installer, in bytes: a server that sends
/// without end must not fill the memory.
inline constexpr qint64 largestVersionFile = 1LL << 20;
inline constexpr qint64 largestInstaller = 512LL << 20;

/// The name of the installer of `version`.
QString installerName(const QString &version);

/// What a version file says.
struct VersionFile
{
    enum State {
        NoVersionFile, ///< not one separator: some other text, or none
        Unreadable, ///< a version file that is not whole
        Readable,
    };

    State state = NoVersionFile;
    QString version = {}; ///< as it stands in the file, not necessarily a number
    QString notes = {}; ///< what is new, one character for each byte
};

/// Reads the bytes of a version file, whatever they are: any text, a separator, V and the version
/// followed by a space, the rest of that line, the notes, a separator.
VersionFile readVersionFile(QByteArrayView bytes);

/// The version that `text` tells, in hundredths, rounded half away from zero in single precision:
/// 102 for "1.02", and for "1.015". 0 if it is not a finite number; the nearest int if it does not
/// fit one.
int versionInHundredths(QStringView text);
