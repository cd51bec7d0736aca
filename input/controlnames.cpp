#include "controlnames.h"

#include "cxboxcontroller.h"

#include <QCoreApplication>
#include <QMetaEnum>

#include <array>
#include <optional>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(PlayerControls)
};

/// The name of a channel message, by the upper four bits of its status.
QString channelMessage(unsigned kind, unsigned number)
{
    switch (kind) {
    case 0x8:
        return Texts::tr("note off %1").arg(number);
    case 0x9:
        return Texts::tr("note %1").arg(number);
    case 0xA:
        return Texts::tr("pressure on note %1").arg(number);
    case 0xB:
        return Texts::tr("control change %1").arg(number);
    case 0xC:
        return Texts::tr("program change %1").arg(number);
    case 0xD:
        return Texts::tr("channel pressure");
    default:
        return Texts::tr("pitch bend");
    }
}

/// The name of a system message, if it has one.
std::optional<QString> systemMessage(unsigned status)
{
    switch (status) {
    case 0xF1:
        return Texts::tr("time code");
    case 0xF2:
        return Texts::tr("song position");
    case 0xF3:
        return Texts::tr("song select");
    case 0xF6:
        return Texts::tr("tune request");
    case 0xF8:
        return Texts::tr("clock");
    case 0xFA:
        return Texts::tr("start");
    case 0xFB:
        return Texts::tr("continue");
    case 0xFC:
        return Texts::tr("stop");
    case 0xFE:
        return Texts::tr("active sensing");
    case 0xFF:
        return Texts::tr("reset");
    default:
        return std::nullopt;
    }
}

/// Whether a key stands for a printable character.
bool isVisibleCharacter(uint key)
{
    return key <= QChar::LastValidCodePoint && QChar::isPrint(key) && !QChar::isSpace(key);
}

} // namespace

namespace controlnames {

QString midi(const MidiBinding &binding)
{
    constexpr unsigned firstChannelMessage = 0x80;
    constexpr unsigned firstSystemMessage = 0xF0;
    const auto [status, number] = binding;
    if (status >= firstChannelMessage && status < firstSystemMessage) {
        return Texts::tr("%1, channel %2")
            .arg(channelMessage(status >> 4, number))
            .arg((status & 0xF) + 1);
    }
    return systemMessage(status).value_or(Texts::tr("MIDI message %1, %2").arg(status).arg(number));
}

QString padButton(int button)
{
    switch (button) {
    case CXBOXController::ButtonA:
        return Texts::tr("button A");
    case CXBOXController::ButtonB:
        return Texts::tr("button B");
    case CXBOXController::ButtonX:
        return Texts::tr("button X");
    case CXBOXController::ButtonY:
        return Texts::tr("button Y");
    case CXBOXController::ButtonStart:
        return Texts::tr("button Start");
    case CXBOXController::ButtonBack:
        return Texts::tr("button Back");
    case CXBOXController::DPadUp:
        return Texts::tr("directional pad, up");
    case CXBOXController::DPadDown:
        return Texts::tr("directional pad, down");
    case CXBOXController::DPadLeft:
        return Texts::tr("directional pad, left");
    case CXBOXController::DPadRight:
        return Texts::tr("directional pad, right");
    case CXBOXController::LeftTrigger:
        return Texts::tr("left trigger");
    case CXBOXController::RightTrigger:
        return Texts::tr("right trigger");
    case CXBOXController::LeftThumb:
        return Texts::tr("left stick, pressed");
    case CXBOXController::RightThumb:
        return Texts::tr("right stick, pressed");
    case CXBOXController::LeftShoulder:
        return Texts::tr("left shoulder");
    case CXBOXController::RightShoulder:
        return Texts::tr("right shoulder");
    default:
        return Texts::tr("button %1").arg(button);
    }
}

QString padStick(int control)
{
    switch (control) {
    case CXBOXController::ThumbLX:
        return Texts::tr("left stick, horizontal");
    case CXBOXController::ThumbLY:
        return Texts::tr("left stick, vertical");
    case CXBOXController::ThumbRX:
        return Texts::tr("right stick, horizontal");
    case CXBOXController::ThumbRY:
        return Texts::tr("right stick, vertical");
    default:
        return Texts::tr("stick %1").arg(control);
    }
}

QString key(uint key)
{
    QString name;
    if (isVisibleCharacter(key))
        name = QString::fromUcs4(std::array{char32_t(key)}.data(), 1);
    else if (const char *enumerator = QMetaEnum::fromType<Qt::Key>().valueToKey(int(key)))
        name = QString::fromLatin1(enumerator).mid(QLatin1StringView("Key_").size());
    else
        name = QString::number(key);
    return Texts::tr("key %1").arg(name);
}

} // namespace controlnames
