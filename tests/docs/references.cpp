#include "references.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array externalCommands = {"cmake"_L1, "ctest"_L1, "git"_L1, "cd"_L1};
constexpr std::array languages = {""_L1, "sh"_L1, "text"_L1, "mermaid"_L1};

template <std::size_t Size>
bool contains(const std::array<QLatin1StringView, Size> &words, const QString &word)
{
    return std::ranges::find(words, word) != words.end();
}

bool isWhole(const QString &text, const QRegularExpression &pattern)
{
    return pattern.match(text).hasMatch();
}

/// The words of a command without the variables that are set for it.
QStringList withoutAssignments(QStringList words)
{
    static const QRegularExpression assignment(u"^\\w+=.*$"_s);
    while (!words.isEmpty() && isWhole(words.constFirst(), assignment))
        words.removeFirst();
    return words;
}

/// A word in capitals is a placeholder.
bool isPlaceholder(const QString &word)
{
    return word == word.toUpper();
}

} // namespace

References::References(Project &project, const Document &document)
    : m_project(project)
    , m_document(document)
{
}

QStringList References::faults()
{
    for (const Document::Link &link : m_document.links)
        checkLink(link);
    for (const Document::CodeBlock &block : m_document.codeBlocks)
        checkBlock(block);
    for (const Document::Paragraph &paragraph : m_document.paragraphs)
        checkSpans(paragraph);
    return m_faults;
}

void References::report(int line, const QString &fault)
{
    m_faults.append(u"%1:%2: %3"_s.arg(m_document.path).arg(line).arg(fault));
}

void References::checkLink(const Document::Link &link)
{
    if (link.target.startsWith("https://"_L1))
        return;
    const QString path = link.target.section(u'#', 0, 0);
    const QString anchor = link.target.section(u'#', 1);
    const QString file = QDir::cleanPath(QFileInfo(m_document.path).path() + u'/' + path);
    if (!m_project.has(file))
        return report(link.line, u"the link's file is missing: "_s + link.target);
    if (link.isPicture && !QImageReader(m_project.pathOf(file)).canRead())
        return report(link.line, u"not a picture: "_s + link.target);
    if (anchor.isEmpty())
        return;
    const QStringList anchors = path.isEmpty()
        ? m_document.anchors
        : Document::parse(file, m_project.contentOf(file)).anchors;
    if (!anchors.contains(anchor))
        report(link.line, u"no heading has the link's anchor: "_s + link.target);
}

void References::checkSpans(const Document::Paragraph &paragraph)
{
    // Paths are relative to the project, the document, or a folder named before in the paragraph.
    QStringList folders = {u"."_s, QFileInfo(m_document.path).path()};
    for (const QString &span : paragraph.codeSpans()) {
        checkSpan(paragraph.line, span, folders);
        if (span.endsWith(u'/'))
            folders.append(span);
    }
}

void References::checkSpan(int line, const QString &span, const QStringList &folders)
{
    static const QRegularExpression path(u"^\\.?\\w[\\w.-]*(/[\\w.-]*)+$"_s);
    static const QRegularExpression source(u"^[\\w-]+\\.(bash|cmake|cpp|h|json|md|nsi|svg|ui)$"_s);
    static const QRegularExpression function(u"^(\\w+::)*\\w+\\(\\)$"_s);
    static const QRegularExpression variable(u"^RALLYVANE_\\w+$"_s);
    static const QRegularExpression test(u"^tst_\\w+$"_s);
    const QString first = span.section(u' ', 0, 0);
    const bool hasArguments = first != span;
    if (first.startsWith("./"_L1) || (hasArguments && contains(externalCommands, first))
        || ((hasArguments || first.contains(u'/')) && !m_project.executableOf(first).isEmpty()))
        checkCommandLine(line, span);
    else if (first.startsWith("--"_L1))
        checkLooseOption(line, first);
    else if (isWhole(span, path) || isWhole(span, source))
        checkPath(line, span, folders);
    else if (isWhole(span, test) && !m_project.tests().contains(span))
        report(line, u"no such test: "_s + span);
    else if (isWhole(span, variable) && !m_project.mentions(span))
        report(line, u"no such variable: "_s + span);
    else if (isWhole(span, function))
        checkFunction(line, span.section(u"::"_s, -1));
}

void References::checkPath(int line, const QString &path, const QStringList &folders)
{
    if (!m_project.has(path, folders) && !m_project.builds(path))
        report(line, u"no such path: "_s + path);
}

void References::checkBlock(const Document::CodeBlock &block)
{
    if (!contains(languages, block.language))
        report(block.line, u"the code block has an unknown language: "_s + block.language);
    int line = block.line;
    for (const QString &text : block.lines) {
        ++line;
        if (block.language == "sh"_L1 || (block.language.isEmpty() && isCommandOfOurs(text)))
            checkCommandLine(line, text);
        else if (block.language == "mermaid"_L1)
            checkDrawing(line, text);
    }
}

bool References::isCommandOfOurs(const QString &line) const
{
    const QString first = withoutAssignments(line.split(u' ', Qt::SkipEmptyParts)).value(0);
    return first.startsWith("./"_L1) || contains(externalCommands, first)
        || (first.contains(u'/') && m_project.has(first.section(u'/', 0, 0)));
}

void References::checkDrawing(int line, const QString &text)
{
    static const QRegularExpression file(u"[\\w/]+\\.(cpp|h)\\b"_s);
    static const QRegularExpression function(u"\\b\\w+\\(\\)"_s);
    for (const QRegularExpressionMatch &match : file.globalMatch(text))
        checkPath(line, match.captured(), {u"."_s});
    for (const QRegularExpressionMatch &match : function.globalMatch(text))
        checkFunction(line, match.captured());
}

void References::checkCommandLine(int line, const QString &text)
{
    static const QRegularExpression comment(u"(^| )#.*$"_s);
    for (const QString &part : QString(text).remove(comment).split(u"&&"_s)) {
        const QStringList words = withoutAssignments(part.split(u' ', Qt::SkipEmptyParts));
        if (words.isEmpty())
            continue;
        checkPreset(line, words);
        checkSettings(line, words);
        if (contains(externalCommands, words.constFirst()))
            checkExternal(line, words);
        else
            checkCommand(line, words);
    }
}

void References::checkCommand(int line, const QStringList &words)
{
    const QString executable = m_project.executableOf(words.constFirst());
    if (executable.isEmpty())
        return report(line, u"no such command: "_s + words.constFirst());
    m_commands.append(executable);
    for (const QString &word : words.mid(1)) {
        if (word.startsWith("--"_L1) && !m_project.explains(executable, word))
            report(line, u"the help of %1 does not have %2"_s.arg(words.constFirst(), word));
    }
}

void References::checkExternal(int line, const QStringList &words)
{
    const qsizetype pattern = words.indexOf("-R"_L1);
    if (pattern < 0)
        return;
    const QString wanted = QString(words.value(pattern + 1)).remove(u'\'');
    if (m_project.tests().filter(QRegularExpression(wanted)).isEmpty())
        report(line, u"no test matches: "_s + wanted);
}

void References::checkLooseOption(int line, const QString &option)
{
    // It belongs to a command that the document has named.
    const bool known = std::any_of(m_commands.cbegin(), m_commands.cend(),
        [&](const QString &executable) { return m_project.explains(executable, option); });
    if (!known)
        report(line, u"no command named before has "_s + option);
}

void References::checkFunction(int line, const QString &name)
{
    if (!m_project.mentions(name.chopped(1))) // with its opening parenthesis
        report(line, u"no such function: "_s + name);
}

void References::checkSettings(int line, const QStringList &words)
{
    for (const QString &word : words) {
        const QString name = word.mid(2).section(u'=', 0, 0);
        if (word.startsWith("-D"_L1) && !m_project.mentions(name))
            report(line, u"no such setting: "_s + name);
    }
}

void References::checkPreset(int line, const QStringList &words)
{
    const qsizetype option = words.indexOf("--preset"_L1);
    if (option < 0)
        return;
    const QString name = words.value(option + 1);
    if (!isPlaceholder(name) && !m_project.presets().contains(name))
        report(line, u"no such preset: "_s + name);
}
