#pragma once

#include <QByteArrayView>
#include <QMap>
#include <QString>

/// The version strings of a Windows program or library, such as "ProductName", by name; empty if
/// `file` is neither or has none. Accepts arbitrary bytes. Callable from any thread.
QMap<QString, QString> versionStrings(QByteArrayView file);
