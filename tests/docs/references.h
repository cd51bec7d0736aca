#pragma once

#include "project.h"

/// Checks what a document refers to: links, anchors, pictures, paths, commands and their options,
/// presets, tests, functions and variables of the project.
class References
{
public:
    References(Project &project, const Document &document);

    /// The faults, each as "docs/page.md:12: reason".
    QStringList faults();

private:
    void report(int line, const QString &fault);
    void checkLink(const Document::Link &link);
    void checkSpans(const Document::Paragraph &paragraph);
    void checkSpan(int line, const QString &span, const QStringList &folders);
    void checkPath(int line, const QString &path, const QStringList &folders);
    void checkBlock(const Document::CodeBlock &block);
    /// Whether a line of a block without a language begins like a command.
    bool isCommandOfOurs(const QString &line) const;
    void checkDrawing(int line, const QString &text);
    void checkCommandLine(int line, const QString &text);
    void checkCommand(int line, const QStringList &words);
    void checkExternal(int line, const QStringList &words);
    void checkLooseOption(int line, const QString &option);
    void checkFunction(int line, const QString &name);
    void checkSettings(int line, const QStringList &words);
    void checkPreset(int line, const QStringList &words);

    Project &m_project;
    const Document &m_document;
    QStringList m_commands; ///< executables named so far
    QStringList m_faults;
};
