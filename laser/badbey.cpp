#include "badbey.h"

#include "beyonddll.h"

#include <QDebug>
#include <QTimer>

#include <algorithm>
#include <array>

namespace {

LdbPoint toLdbPoint(const FramePoint &point)
{
    return {
        .x = static_cast<float>(point.x),
        .y = static_cast<float>(point.y),
        .z = static_cast<float>(point.z),
        .color = point.color,
        .reserved0 = 0,
        .reserved1 = 0,
        .flags = static_cast<quint8>(point.flags & 0xff),
        .reserved2 = 0,
    };
}

} // namespace

BadBey::BadBey(QObject *parent)
    : QObject(parent)
    , dllLoaded(LoadBeyondDll() == 1)
{
}

BadBey::~BadBey()
{
    if (!dllLoaded)
        return;
    CloseSession();
    FreeBeyondDll();
}

int BadBey::ConnectBeyond()
{
    if (!dllLoaded) {
        QTimer::singleShot(0, this, &BadBey::reqExit);
        qDebug("DLL Not found");
        return NotLoaded;
    }
    CloseSession();
    if (ldbBeyondExeReady() != 1)
        return NotReady;
    ldbCreate();
    sessionCreated = true;
    beyondVersion = ldbGetBeyondVersion();
    ldbDisableLaserOutput();
    return beyondVersion;
}

bool BadBey::IsBeyondReady() const
{
    return dllLoaded && ldbBeyondExeReady() == 1 && ldbGetBeyondVersion() >= oldestBeyondBuild;
}

int BadBey::SetLaserOutput(bool on) const
{
    if (!dllLoaded)
        return 0;
    return on ? ldbEnableLaserOutput() : ldbDisableLaserOutput();
}

int BadBey::GetZoneCount() const
{
    return dllLoaded ? ldbGetZoneCount() : 0;
}

void BadBey::SendFrame()
{
    const qint32 target = zone;
    if (litZone >= 0 && litZone != target)
        sendFirst(0, litZone);
    if (target >= 0)
        sendFirst(std::min<qsizetype>(points.size(), ldbMaxPoints), target);
    points.clear();
}

void BadBey::CloseSession()
{
    if (sessionCreated)
        ldbDestroy();
    sessionCreated = false;
}

void BadBey::sendFirst(qsizetype count, qint32 toZone)
{
    if (!dllLoaded)
        return;
    std::array<LdbPoint, ldbMaxPoints> buffer = {};
    std::transform(points.cbegin(), points.cbegin() + count, buffer.begin(), toLdbPoint);
    ldbSendFrame(
        2, toZone, 0, "SingleZone", static_cast<qint32>(count), buffer.data(), nullptr, 100, -1);
    litZone = count > 0 ? toZone : -1;
}
