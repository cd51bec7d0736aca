#include "messages.h"
#include "project.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString guide = u"docs/operator-guide.md"_s;

/// Style sheets are not for reading.
bool hasNoTexts(const QString &file)
{
    return file == "app/looks/looks.cpp"_L1;
}

/// The texts of the program that a paragraph of the guide quotes, as code or in bold.
QString quotedIn(const Document::Paragraph &paragraph)
{
    static const QRegularExpression quoted(u"`([^`]+)`|\\*\\*([^*]+)\\*\\*"_s);
    QStringList texts;
    for (const QRegularExpressionMatch &match : quoted.globalMatch(paragraph.text))
        texts.append(match.captured(1) + match.captured(2));
    return texts.join(u'\n');
}

/// The rehearsal host's signal to the program that starts it; the operator does not see it.
bool isHandshake(const Message &message)
{
    return message.pieces == QStringList(u"The rehearsal host is running"_s);
}

bool explains(const QStringList &quotations, const Message &message)
{
    return std::any_of(quotations.begin(), quotations.end(), [&](const QString &quotation) {
        return std::all_of(message.pieces.begin(), message.pieces.end(),
            [&](const QString &piece) { return quotation.contains(piece); });
    });
}

/// Whether a line quotes at least one of a message's alternatives.
bool hasPieceOf(const Message &message, const QString &line)
{
    return std::any_of(message.pieces.begin(), message.pieces.end(),
        [&](const QString &piece) { return line.contains(piece); });
}

} // namespace

/// The operator's guide explains whatever the program shows or logs.
class tst_OperatorGuide : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void every_text_of_the_program_is_in_the_guide_data();
    void every_text_of_the_program_is_in_the_guide();
    void every_log_line_of_the_guide_is_in_the_program();
    void every_kind_of_text_is_found_in_a_source_data();
    void every_kind_of_text_is_found_in_a_source();
    void a_text_that_the_guide_lacks_is_found();

private:
    QList<Message> messagesOfFile(const QString &file) const;

    Project m_project = {QStringLiteral(PROJECT_FOLDER), QStringLiteral(PROGRAMS_FOLDER), {}};
    QStringList m_files;
    QList<Document::Paragraph> m_paragraphs;
    QStringList m_quotations;
};

void tst_OperatorGuide::initTestCase()
{
    for (const auto &folder : {u"app/"_s, u"base/"_s, u"game/"_s, u"input/"_s, u"laser/"_s,
             u"platform/"_s, u"rehearsal/launcher/"_s}) {
        for (const auto &pattern : {u"*.cpp"_s, u"*.h"_s, u"*.ui"_s})
            m_files += m_project.filesIn(folder, pattern);
    }
    QVERIFY(m_files.size() > 50);
    m_paragraphs = Document::parse(guide, m_project.contentOf(guide)).paragraphs;
    for (const Document::Paragraph &paragraph : std::as_const(m_paragraphs))
        m_quotations.append(quotedIn(paragraph));
}

void tst_OperatorGuide::every_text_of_the_program_is_in_the_guide_data()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : std::as_const(m_files)) {
        if (!messagesOfFile(file).isEmpty())
            QTest::newRow(qPrintable(file)) << file;
    }
}

void tst_OperatorGuide::every_text_of_the_program_is_in_the_guide()
{
    QFETCH(QString, file);
    QStringList missing;
    for (const Message &message : messagesOfFile(file)) {
        if (!isHandshake(message) && !explains(m_quotations, message))
            missing.append(
                u"%1:%2: %3"_s.arg(file).arg(message.line).arg(message.pieces.join(u" ... "_s)));
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(u'\n')));
}

void tst_OperatorGuide::every_log_line_of_the_guide_is_in_the_program()
{
    static const QRegularExpression number(u"^\\d+$"_s);
    QList<Message> messages;
    for (const QString &file : std::as_const(m_files))
        messages += messagesOfFile(file);
    bool inTable = false;
    int lines = 0;
    for (const Document::Paragraph &paragraph : std::as_const(m_paragraphs)) {
        const bool isHead = paragraph.text.startsWith("| log line |"_L1);
        inTable = paragraph.isTableRow() && (inTable || isHead);
        if (!inTable || isHead || paragraph.text.startsWith("|--"_L1))
            continue;
        for (const QString &line :
            Document::Paragraph{0, paragraph.text.section(u'|', 1, 1)}.codeSpans()) {
            ++lines;
            const bool known = number.match(line).hasMatch()
                || std::any_of(messages.cbegin(), messages.cend(),
                    [&](const Message &message) { return hasPieceOf(message, line); });
            QVERIFY2(known, qPrintable(line));
        }
    }
    QVERIFY(lines > 15);
}

void tst_OperatorGuide::every_kind_of_text_is_found_in_a_source_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("found");
    const auto row = [](const char *name, const QString &source, const QString &found) {
        QTest::newRow(name) << source << found;
    };
    row("a translated word", u"label(tr(\"Status\"));"_s, u"Status"_s);
    row("a translated text in parts", u"tr(\"A text \"\n \"in parts.\")"_s, u"A text in parts."_s);
    row("a translation with a context", u"translate(\"main\", \"A text\")"_s, u"A text"_s);
    row("a translation with numbers", u"tr(\"%1, channel %2\")"_s, u", channel"_s);
    row("a translation of several lines", u"tr(\" is here.\\n\\nSure?\\n\")"_s,
        u"is here.+Sure?"_s);
    row("a log line", u"qDebug(\"Score LR = %d-%d\", a, b);"_s, u"Score LR ="_s);
    row("a log line with a choice", u"qDebug(on ? \"Left scores\" : \"Right scores\");"_s,
        u"Left scores+Right scores"_s);
    row("a log line with words", u"qDebug(\"Output %s\", on ? \"on\" : \"off\");"_s,
        u"Output+on+off"_s);
    row("a streamed log line",
        u"qDebug().nospace() << name() << \": has \" << f(x) << \" zones\";"_s, u": has+zones"_s);
    row("a reason", u"refuse(u\"no data for %1 ms\"_s.arg(time));"_s, u"no data for+ms"_s);
    row("a log line behind a comment", u"// not \"this\"\nqInfo(\"that\");"_s, u"that"_s);
    row("nothing", u"open(\"name\"); // \"a comment\"\n/* qDebug(\"x y\") */ f(\"%s %d\");"_s,
        QString());
}

void tst_OperatorGuide::every_kind_of_text_is_found_in_a_source()
{
    QFETCH(QString, source);
    QFETCH(QString, found);
    QStringList pieces;
    for (const Message &message : messagesOf(source))
        pieces += message.pieces;
    QCOMPARE(pieces.join(u'+'), found);
}

void tst_OperatorGuide::a_text_that_the_guide_lacks_is_found()
{
    const QStringList quotations = {u"Host lost"_s, u"Score LR = 3-2"_s};
    QVERIFY(explains(quotations, {1, {u"Score LR ="_s}}));
    QVERIFY(!explains(quotations, {1, {u"Host lost"_s, u"Score LR ="_s}}));
    QVERIFY(!explains(quotations, {1, {u"Laser lost"_s}}));
}

QList<Message> tst_OperatorGuide::messagesOfFile(const QString &file) const
{
    if (hasNoTexts(file))
        return {};
    const QString content = m_project.contentOf(file);
    return file.endsWith(".ui"_L1) ? messagesOfForm(content) : messagesOf(content);
}

QTEST_GUILESS_MAIN(tst_OperatorGuide)

#include "tst_operatorguide.moc"
