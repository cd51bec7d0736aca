// The icon of the program's windows. On Windows a resource of the program is enough; here it must
// be set, and every program that has the picture does so by linking this file.

#include <QGuiApplication>
#include <QIcon>

namespace {

void setWindowIcon()
{
    // Also called for an application without windows, which has no use for pictures.
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/rallyvane.png")));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(setWindowIcon)
