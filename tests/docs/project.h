#pragma once

#include "document.h"

#include <QMap>
#include <QSet>

/// The project as documents refer to it: files, commands, presets, tests.
class Project
{
public:
    /// `folder` is the source folder, `programs` the folder of the built programs.
    Project(QString folder, QString programs, QStringList tests);

    /// Every Markdown file.
    QList<Document> documents() const;
    /// The files whose paths begin so and whose names match a pattern, relative to the project.
    QStringList filesIn(const QString &beginning, const QString &pattern) const;
    QString contentOf(const QString &file) const;
    /// The absolute path of a file.
    QString pathOf(const QString &file) const { return m_folder + u'/' + file; }

    /// Whether a file or folder is there, below one of `folders`.
    bool has(const QString &path, const QStringList &folders = {QStringLiteral(".")}) const;
    /// Whether a path below build/ is in a preset's folder, or in one that a script writes.
    bool builds(const QString &path) const;
    /// Whether the sources and scripts, documents and their tests aside, contain a text.
    bool mentions(const QString &text) const { return m_sources.contains(text); }
    const QSet<QString> &presets() const { return m_presets; }
    const QStringList &tests() const { return m_tests; }

    /// The executable of a command, a script or a built program; empty if there is none.
    QString executableOf(const QString &command) const;
    /// Whether an executable explains an option in its help, which runs it once.
    bool explains(const QString &executable, const QString &option);

private:
    QString m_folder;
    QString m_programs;
    QStringList m_tests;
    QStringList m_files; ///< all of them, relative to the folder
    QSet<QString> m_presets;
    QString m_sources;
    QMap<QString, QString> m_help; ///< by executable
};
