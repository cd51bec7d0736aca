#include "statusline.h"

#include "host.h"
#include "palette.h"

#include <QHBoxLayout>
#include <QLabel>

namespace {

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

StatusLine::StatusLine(const Host &host, QWidget *parent)
    : QWidget(parent)
    , m_output(new QLabel)
    , m_figures(new QLabel)
{
    const HostInfo &info = host.info();
    auto *build = new QLabel(tr("BEYOND %1").arg(info.build));
    auto *ready = new QLabel(
        info.ready ? lamp(palette::good, tr("Ready")) : lamp(palette::waiting, tr("Not ready")));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->setSpacing(22);
    layout->addWidget(build);
    layout->addWidget(ready);
    layout->addWidget(m_output);
    layout->addStretch();
    layout->addWidget(m_figures);
    QPalette colors = m_figures->palette();
    colors.setColor(QPalette::WindowText, palette::quiet);
    m_figures->setPalette(colors);
    setOutputOn(false);
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
