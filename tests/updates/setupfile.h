#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

/// The smallest file that has what an installer of the program is recognized by: a Windows program
/// with version strings, and the header of an installer's archive.
struct SetupFile
{
    QList<QPair<QString, QString>> strings = {
        {QStringLiteral("ProductName"), QStringLiteral("Laser Rallyvane")},
        {QStringLiteral("ProductVersion"), QStringLiteral("1.02")},
        {QStringLiteral("UpdateHost"), QStringLiteral("updates.your-domain.org")},
    };
    QByteArray magic = "\x0B\x02"; ///< of a 64-bit program
    QByteArray archiveFlags = QByteArray(4, '\0');

    /// Replaces a string, or adds it.
    SetupFile with(const QString &name, const QString &value) const;
    QByteArray bytes() const;
};
