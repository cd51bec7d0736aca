#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A text that the program shows or logs, as its source has it.
struct Message
{
    int line = 0;
    QStringList pieces; ///< its fixed parts, without placeholders and line ends
};

/// The messages of a C++ source: everything translated or logged, and every other literal that
/// reads like words.
QList<Message> messagesOf(const QString &source);

/// The texts of a Qt Designer form.
QList<Message> messagesOfForm(const QString &form);
