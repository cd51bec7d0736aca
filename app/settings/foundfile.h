#pragma once

#include <QByteArray>
#include <QLatin1StringView>

class QIODevice;

/// The settings file as it was found at the start. It may be anything, so what QSettings must not
/// read is taken out of it, and nothing replaces a damaged file before it is kept as
/// ".pong.damaged". GUI thread.
class FoundFile
{
public:
    static constexpr QLatin1StringView name{".pong"};
    static constexpr QLatin1StringView copyName{".pong.damaged"};

    /// Reads the file from this device, which is not open if there is no file. Of a file that is
    /// too long only the beginning is read.
    explicit FoundFile(QIODevice &file);

    /// The settings as an INI text without typed values, see withoutTypedValues().
    const QByteArray &safeText() const { return m_safeText; }

    /// Puts the safe text in the file's place if they differ, and keeps the file. Returns false and
    /// leaves the file unchanged if the disk refuses. Syncs the disk.
    bool makeSafe();

    /// Keeps the file, once. Returns false if the disk refuses. Syncs the disk.
    bool keep();

    bool isKept() const { return m_isKept; }

private:
    QByteArray m_beginning; // all of it, unless the file is too long
    QByteArray m_safeText;
    bool m_isTooLong;
    bool m_isKept = false;
};
