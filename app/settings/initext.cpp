#include "initext.h"

#include <QStringList>

#include <algorithm>

namespace {

bool isHexDigit(QChar c)
{
    return c.unicode() < 0x80 && QByteArrayView("0123456789abcdefABCDEF").contains(c.toLatin1());
}

bool isKeyCharacter(QChar c)
{
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || QStringView(u"_-.").contains(c));
}

QByteArray hex(QChar c, int digits)
{
    return QByteArray::number(c.unicode(), 16).rightJustified(digits, '0');
}

/// A key or the name of a group.
QByteArray escapedKey(QStringView key)
{
    QByteArray text;
    for (const QChar c : key) {
        if (c == u'/')
            text += '\\';
        else if (isKeyCharacter(c))
            text += c.toLatin1();
        else
            text += c.unicode() < 0x100 ? '%' + hex(c, 2) : "%U" + hex(c, 4);
    }
    return text;
}

/// QSettings reads "[General]" as no group at all, in any case, so a group of that name must be
/// spelled in another way.
QByteArray escapedGroup(QStringView group)
{
    const QByteArray text = escapedKey(group);
    if (text.compare("general", Qt::CaseInsensitive) != 0)
        return text;
    return '%' + hex(group[0], 2) + text.mid(1);
}

/// A text, or an element of a list.
QByteArray escapedText(const QString &value)
{
    const bool quoted = value.isEmpty() || std::any_of(value.begin(), value.end(), [](QChar c) {
        return c <= u' ' || QStringView(u";,=\"").contains(c);
    });
    QByteArray text;
    if (value.startsWith(u'@')) // marks a typed value
        text += '@';
    bool afterNumber = false; // a hexadecimal number ends before the first other character
    for (const QChar c : value) {
        const bool isNumber = !c.isPrint() || (afterNumber && isHexDigit(c));
        if (isNumber)
            text += "\\x" + hex(c, 1);
        else if (c == u'"' || c == u'\\')
            text += '\\' + QByteArray(1, c.toLatin1());
        else
            text += QString(c).toUtf8();
        afterNumber = isNumber;
    }
    return quoted ? '"' + text + '"' : text;
}

QByteArray escapedValue(const QVariant &value)
{
    if (value.typeId() != QMetaType::QStringList && value.typeId() != QMetaType::QVariantList)
        return escapedText(value.toString());
    QByteArrayList elements;
    for (const QString &element : value.toStringList())
        elements.append(escapedText(element));
    return elements.join(", ");
}

} // namespace

QByteArray iniText(const IniValues &values)
{
    QByteArray top;
    QByteArray groups;
    QStringView lastGroup;
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        const QStringView key = entry.key();
        const qsizetype slash = key.indexOf(u'/');
        const QByteArray line =
            escapedKey(key.sliced(slash + 1)) + '=' + escapedValue(entry.value()) + '\n';
        if (slash < 0) {
            top += line;
            continue;
        }
        const QStringView group = key.first(slash);
        if (group != lastGroup)
            groups += "\n[" + escapedGroup(group) + "]\n";
        groups += line;
        lastGroup = group;
    }
    return "[General]\n" + top + groups;
}
