#include "fakeupdatehost.h"

#include "updatehost.h"

namespace {

QString current;

} // namespace

FakeUpdateHost::FakeUpdateHost(const QString &host)
{
    current = host;
}

FakeUpdateHost::~FakeUpdateHost()
{
    current.clear();
}

QString updateHost()
{
    return current.isEmpty() ? QStringLiteral("updates.example") : current;
}
