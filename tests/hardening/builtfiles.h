#pragma once

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTest>

#include <cstring>
#include <optional>

/// The paths of all programs and libraries of ours in this build.
inline QStringList builtFiles()
{
    QFile list(QStringLiteral(BUILT_FILES));
    if (!list.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(list.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

/// Adds the column `file` and a row for each of them.
inline void addBuiltFiles()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : builtFiles())
        QTest::addRow("%s", qUtf8Printable(QFileInfo(file).fileName())) << file;
}

inline QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The structure at an offset of a file, if it is there completely.
template <class T>
std::optional<T> structureAt(const QByteArray &content, quint64 offset)
{
    const auto size = quint64(content.size());
    if (offset > size || size - offset < sizeof(T))
        return std::nullopt;
    T structure;
    std::memcpy(&structure, content.constData() + offset, sizeof(T));
    return structure;
}
