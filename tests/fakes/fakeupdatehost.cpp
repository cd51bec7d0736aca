#include "fakeupdatehost.h"

#include "updatehost.h"

#include <utility>

namespace {

FakeUpdateHost *current = nullptr;

} // namespace

FakeUpdateHost::FakeUpdateHost(QString host_)
    : host(std::move(host_))
{
    current = this;
}

FakeUpdateHost::~FakeUpdateHost()
{
    current = nullptr;
}

QString updateHost()
{
    return current ? current->host : QStringLiteral("updates.example");
}
