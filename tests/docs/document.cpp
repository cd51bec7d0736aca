#include "document.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// The anchor of a heading: lower case, without punctuation, with hyphens for spaces.
QString anchorOf(const QString &heading)
{
    static const QRegularExpression punctuation(u"[^\\w -]"_s);
    return heading.toLower().remove(punctuation).replace(u' ', u'-');
}

bool beginsParagraph(const QString &line)
{
    static const QRegularExpression beginning(u"^ *([|#]|[-*] |\\d+\\. )"_s);
    return beginning.match(line).hasMatch();
}

QList<Document::Link> linksIn(const Document::Paragraph &paragraph)
{
    static const QRegularExpression code(u"`[^`]*`"_s);
    static const QRegularExpression link(u"(!?)\\[[^\\]]*\\]\\(([^)]*)\\)"_s);
    const QString prose = QString(paragraph.text).remove(code);
    QList<Document::Link> links;
    for (const QRegularExpressionMatch &match : link.globalMatch(prose))
        links.append({paragraph.line, match.captured(2), !match.captured(1).isEmpty()});
    return links;
}

} // namespace

QStringList Document::Paragraph::codeSpans() const
{
    static const QRegularExpression code(u"`([^`]+)`"_s);
    QStringList spans;
    for (const QRegularExpressionMatch &match : code.globalMatch(text))
        spans.append(match.captured(1));
    return spans;
}

Document Document::parse(const QString &path, const QString &markdown)
{
    static const QRegularExpression heading(u"^#+ +(.*)$"_s);
    Document document;
    document.path = path;
    bool inCode = false;
    bool inParagraph = false;
    int number = 0;
    for (const QString &line : markdown.split(u'\n')) {
        ++number;
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith("```"_L1)) {
            if (!inCode)
                document.codeBlocks.append({number, trimmed.mid(3), {}});
            inCode = !inCode;
            inParagraph = false;
        } else if (inCode) {
            document.codeBlocks.last().lines.append(line);
        } else if (trimmed.isEmpty()) {
            inParagraph = false;
        } else if (!inParagraph || beginsParagraph(line)) {
            document.paragraphs.append({number, trimmed});
            inParagraph = !trimmed.startsWith(u'#');
        } else {
            document.paragraphs.last().text += u' ' + trimmed;
        }
    }
    for (const Paragraph &paragraph : std::as_const(document.paragraphs)) {
        document.links += linksIn(paragraph);
        const QRegularExpressionMatch match = heading.match(paragraph.text);
        if (match.hasMatch())
            document.anchors.append(anchorOf(match.captured(1)));
    }
    return document;
}
