#include "statusline.h"

#include "host.h"
#include "palette.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace {

/// Of the host, for the game.
constexpr int oldestUsableBuild = 1614;

QString inColor(const QColor &color, const QString &text)
{
    return QStringLiteral("<span style=\"color:%1\">%2</span>").arg(color.name(), text);
}

/// A lamp and what it says.
QString lamp(const QColor &color, const QString &text)
{
    return inColor(color, QStringLiteral("\u25cf")) + QStringLiteral("&nbsp;&nbsp;")
        + inColor(palette::text, text);
}

} // namespace

StatusLine::StatusLine(const Host &host, QAction *record, QWidget *parent)
    : QWidget(parent)
    , m_build(new QLabel)
    , m_state(new QLabel)
    , m_output(new QLabel)
    , m_figures(new QLabel)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->setSpacing(22);
    layout->addWidget(m_build);
    layout->addWidget(m_state);
    layout->addWidget(m_output);
    layout->addStretch();
    layout->addWidget(m_figures);
    auto *button = new QToolButton;
    button->setDefaultAction(record);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(record->iconText());
    layout->addWidget(button);
    QPalette colors = m_figures->palette();
    colors.setColor(QPalette::WindowText, palette::quiet);
    m_figures->setPalette(colors);
    m_state->setAccessibleName(tr("State of the host"));
    m_output->setAccessibleName(tr("Laser output"));
    showHost(host);
    setOutputOn(false);
}

void StatusLine::showHost(const Host &host)
{
    const HostInfo &info = host.info();
    m_build->setText(tr("BEYOND %1").arg(info.build));
    if (!host.isRunning())
        m_state->setText(lamp(palette::frame, tr("No host")));
    else if (host.isGone())
        m_state->setText(lamp(palette::lit, tr("Gone")));
    else if (!info.ready)
        m_state->setText(lamp(palette::waiting, tr("Not ready")));
    else if (info.build < oldestUsableBuild)
        m_state->setText(lamp(palette::waiting, tr("Too old")));
    else
        m_state->setText(lamp(palette::good, tr("Ready")));
}

void StatusLine::setOutputOn(bool on)
{
    m_output->setText(on ? lamp(palette::lit, tr("Output enabled"))
                         : lamp(palette::frame, tr("Output disabled")));
}

void StatusLine::setFigures(const QString &figures)
{
    m_figures->setText(figures);
}
