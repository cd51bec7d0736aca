#include "typedvalues.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <algorithm>

// Parses lines, list elements, quotes and escapes exactly as QSettings does, because only its view
// of where a value begins with "@" matters.

namespace {

constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

/// The digit's value in a base of up to 16, or -1.
int digit(char c, int base)
{
    const int value = c >= '0' && c <= '9' ? c - '0'
        : c >= 'a' && c <= 'f'             ? c - 'a' + 10
        : c >= 'A' && c <= 'F'             ? c - 'A' + 10
                                           : base;
    return value < base ? value : -1;
}

/// Reads a text one character at a time.
class Cursor
{
public:
    Cursor(QByteArrayView text, qsizetype position)
        : m_text(text)
        , m_position(position)
    {
    }

    bool atEnd() const { return m_position >= m_text.size(); }
    char peek() const { return m_text[m_position]; }
    char next() { return m_text[m_position++]; }
    qsizetype position() const { return m_position; }

    template <class Predicate>
    void skip(Predicate matches)
    {
        while (!atEnd() && matches(peek()))
            ++m_position;
    }

    /// After the first character of a line end: skips the second one of a pair.
    void skipLineEndAfter(char first)
    {
        if (!atEnd() && isLineEnd(first) && isLineEnd(peek()) && peek() != first)
            ++m_position;
    }

private:
    QByteArrayView m_text;
    qsizetype m_position;
};

struct Line
{
    qsizetype begin;
    qsizetype value; ///< position after the "=", or -1
    qsizetype end;
};

/// The next line that is not a comment. A line continues after a backslash and within quotes.
Line nextLine(QByteArrayView text, qsizetype position)
{
    Cursor cursor(text, position);
    cursor.skip(isSpace);
    Line line = {.begin = cursor.position(), .value = -1, .end = 0};
    bool quoted = false;
    while (!cursor.atEnd()) {
        const bool first = cursor.position() == line.begin;
        const char c = cursor.peek();
        if (c == ';' && first) {
            cursor.skip([](char passed) { return !isLineEnd(passed); });
            cursor.skip(isSpace);
            line.begin = cursor.position();
            continue;
        }
        if (!quoted && (c == ';' || isLineEnd(c)))
            break;
        cursor.next();
        if (c == '"')
            quoted = !quoted;
        else if (c == '\\' && !cursor.atEnd())
            cursor.skipLineEndAfter(cursor.next());
        else if (c == '=' && !quoted && line.value < 0)
            line.value = cursor.position();
    }
    line.end = cursor.position();
    return line;
}

/// Whether QSettings converts a list element, or a value that is not a list, to anything but text.
/// Its type names begin with a capital; it writes text that contains a NUL as "@String(...)".
bool isTyped(QStringView element)
{
    return element.size() > 1 && element[0] == '@' && element[1] >= 'A' && element[1] <= 'Z'
        && element.trimmed().endsWith(')') && !element.startsWith(u"@String(");
}

/// Appends the character of an escape; the cursor is after the backslash.
void appendEscape(Cursor &cursor, QString &element)
{
    const auto appendNumber = [&](int base) {
        char16_t character = 0; // wraps, as in QSettings
        for (; !cursor.atEnd() && digit(cursor.peek(), base) >= 0; cursor.next())
            character = char16_t(character * base + digit(cursor.peek(), base));
        element += QChar(character);
    };
    if (cursor.atEnd())
        return;
    if (digit(cursor.peek(), 8) >= 0) {
        appendNumber(8);
        return;
    }
    const char c = cursor.next();
    if (c == 'x') {
        if (!cursor.atEnd() && digit(cursor.peek(), 16) >= 0)
            appendNumber(16);
    } else if (isLineEnd(c)) {
        cursor.skipLineEndAfter(c);
    } else if (QByteArrayView("abfnrtv\"?'\\").contains(c)) {
        element += u'\\'; // a placeholder: none of these can be part of a type
    }
}

/// Reads one element, decoding escapes and quotes, and the comma after it.
QString readElement(Cursor &cursor)
{
    QString element;
    bool quoted = false;
    while (!cursor.atEnd()) {
        const char c = cursor.next();
        if (c == '\\') {
            appendEscape(cursor, element);
        } else if (c == '"') {
            quoted = !quoted;
            if (!quoted)
                cursor.skip(isBlank);
        } else if (c == ',' && !quoted) {
            break;
        } else if (uchar(c) < 0x80) {
            // Non-ASCII bytes are ignored: a byte order mark or a truncated character may decode
            // to nothing, so that the "@" after it comes first.
            element += QLatin1Char(c);
        }
    }
    return element;
}

} // namespace

QByteArray withoutTypedValues(const QByteArray &iniText)
{
    QList<qsizetype> typed;
    qsizetype position = iniText.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;
    while (position < iniText.size()) {
        const Line line = nextLine(iniText, position);
        position = line.end;
        if (line.value < 0 || iniText[line.begin] == '[')
            continue;
        Cursor cursor(QByteArrayView(iniText).first(line.end), line.value);
        while (!cursor.atEnd()) {
            cursor.skip(isBlank);
            const qsizetype begin = cursor.position();
            if (isTyped(readElement(cursor)))
                typed.append(begin);
        }
    }
    QByteArray result = iniText;
    std::for_each(typed.crbegin(), typed.crend(), [&](qsizetype at) { result.insert(at, '@'); });
    return result;
}
