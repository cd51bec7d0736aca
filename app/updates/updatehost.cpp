#include "updatehost.h"

QString updateHost()
{
    return QStringLiteral(RALLYVANE_UPDATE_HOST);
}
