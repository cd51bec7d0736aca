#include "badbey.h"

#include "beyonddll.h"

#include <QDebug>
#include <QTimer>

#include <algorithm>
#include <array>

namespace {

/// Writes a point into a zeroed record; reserved bytes stay zero.
void writePoint(LdbPoint &record, const FramePoint &point)
{
    record.x = static_cast<float>(point.x);
    record.y = static_cast<float>(point.y);
    record.z = static_cast<float>(point.z);
    record.color = point.color;
    record.flags = static_cast<quint8>(point.flags & 0xff);
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
    if (const qint32 target = zone; dllLoaded && target >= 0)
        sendTo(target);
    points.clear();
}

void BadBey::CloseSession()
{
    if (sessionCreated)
        ldbDestroy();
    sessionCreated = false;
}

void BadBey::sendTo(qint32 target) const
{
    std::array<LdbPoint, ldbMaxPoints> buffer = {};
    const qsizetype count = std::min<qsizetype>(points.size(), ldbMaxPoints);
    LdbPoint *record = buffer.data();
    for (auto point = points.cbegin(); point != points.cbegin() + count; ++point)
        writePoint(*record++, *point);
    ldbSendFrame(
        2, target, 0, "SingleZone", static_cast<qint32>(count), buffer.data(), nullptr, 100, -1);
}
