#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A Markdown file, taken apart as far as the tests need it: prose, code blocks, links, anchors.
struct Document
{
    /// A paragraph, heading, list item or table row, its lines joined by spaces.
    struct Paragraph
    {
        int line = 0; ///< its first line, from 1
        QString text;

        /// The texts between backticks.
        QStringList codeSpans() const;
        bool isTableRow() const { return text.startsWith(u'|'); }
    };

    struct CodeBlock
    {
        int line = 0; ///< the line of its fence, from 1
        QString language; ///< may be empty
        QStringList lines;
    };

    struct Link
    {
        int line = 0;
        QString target;
        bool isPicture = false;
    };

    /// Reads Markdown. `path` is relative to the project's folder.
    static Document parse(const QString &path, const QString &markdown);

    QString path;
    QList<Paragraph> paragraphs;
    QList<CodeBlock> codeBlocks;
    QList<Link> links;
    QStringList anchors; ///< of its headings, as servers of Markdown make them
};
