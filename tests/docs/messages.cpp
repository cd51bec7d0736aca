#include "messages.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A string literal, or adjacent ones, which make one string.
struct Literal
{
    qsizetype begin;
    QString text;
};

/// The source with comments, include directives and characters blanked, so that positions stay.
QString withoutComments(QString source)
{
    static const QRegularExpression token(
        u"\"(?:\\\\.|[^\"\\\\\n])*\"|'(?:\\\\.|[^'\\\\\n])+'|//[^\n]*|/\\*.*?\\*/|^#include[^\n]*"_s,
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::MultilineOption);
    qsizetype from = 0;
    for (auto match = token.match(source); match.hasMatch(); match = token.match(source, from)) {
        from = match.capturedEnd();
        if (match.captured().startsWith(u'"'))
            continue;
        for (qsizetype i = match.capturedStart(); i < from; ++i) {
            if (source[i] != u'\n')
                source[i] = u' ';
        }
    }
    return source;
}

QList<Literal> literalsIn(const QString &source)
{
    static const QRegularExpression literal(
        u"u?\"((?:\\\\.|[^\"\\\\])*)\"(?:_s|_L1)?(?:\\s*u?\"(?:\\\\.|[^\"\\\\])*\"(?:_s|_L1)?)*"_s);
    static const QRegularExpression join(u"\"(?:_s|_L1)?\\s*u?\""_s);
    static const QRegularExpression ends(u"^u?\"|\"(_s|_L1)?$"_s);
    QList<Literal> literals;
    for (const QRegularExpressionMatch &match : literal.globalMatch(source))
        literals.append({match.capturedStart(), match.captured().remove(ends).remove(join)});
    return literals;
}

/// The end of the statement or call that begins at `begin`, before which every bracket is open.
qsizetype endOf(const QString &source, qsizetype begin, bool statement)
{
    int depth = 0;
    bool quoted = false;
    for (qsizetype i = begin; i < source.size(); ++i) {
        const QChar c = source[i];
        if (c == u'"' && source[i - 1] != u'\\')
            quoted = !quoted;
        if (quoted)
            continue;
        if (c == u'(')
            ++depth;
        else if (c == u')')
            --depth;
        if ((c == u')' && depth == 0 && !statement) || (c == u';' && depth <= 0))
            return i;
    }
    return source.size();
}

QStringList piecesOf(const QString &text)
{
    static const QRegularExpression placeholder(
        u"%[0-9]|%[a-z]+|\\\\n|\\\\\"|\\\\u[0-9A-Fa-f]{4}"_s);
    static const QRegularExpression word(u"[A-Za-z]{2}|^[A-Za-z]$"_s);
    QStringList pieces;
    for (const QString &piece : text.split(placeholder)) {
        if (word.match(piece).hasMatch())
            pieces.append(piece.simplified());
    }
    return pieces;
}

bool readsLikeWords(const QString &text)
{
    static const QRegularExpression words(u"[A-Za-z][,:]? [a-z]"_s);
    return words.match(text).hasMatch();
}

} // namespace

QList<Message> messagesOf(const QString &source)
{
    static const QRegularExpression call(
        u"\\b(tr|translate|qDebug|qInfo|qWarning|qCritical|qFatal)\\s*\\("_s);
    const QString code = withoutComments(source);
    QList<Literal> literals = literalsIn(code);
    QList<Message> messages;
    const auto add = [&](qsizetype position, const QStringList &pieces) {
        if (!pieces.isEmpty())
            messages.append({int(code.first(position).count(u'\n')) + 1, pieces});
    };
    for (const QRegularExpressionMatch &match : call.globalMatch(code)) {
        const bool logs = match.captured(1).startsWith(u'q');
        const qsizetype begin = match.capturedEnd(1);
        const qsizetype end = endOf(code, begin, logs);
        QStringList pieces;
        bool isContext = match.captured(1) == "translate"_L1;
        literals.removeIf([&](const Literal &literal) {
            if (literal.begin < begin || literal.begin > end)
                return false;
            if (!std::exchange(isContext, false))
                pieces += piecesOf(literal.text);
            return true;
        });
        add(begin, pieces);
    }
    for (const Literal &literal : std::as_const(literals)) {
        if (readsLikeWords(literal.text))
            add(literal.begin, piecesOf(literal.text));
    }
    return messages;
}

QList<Message> messagesOfForm(const QString &form)
{
    static const QRegularExpression text(u"<string>([^<]+)</string>"_s);
    QList<Message> messages;
    for (const QRegularExpressionMatch &match : text.globalMatch(form)) {
        messages.append({int(form.first(match.capturedStart()).count(u'\n')) + 1,
            {match.captured(1).simplified()}});
    }
    return messages;
}
