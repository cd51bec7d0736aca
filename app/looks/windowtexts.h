#pragma once

#include <QCoreApplication>

/// Translates the texts of the operator's window, which are all in its context, wherever they are
/// set.
struct WindowTexts
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};
