#include "sidepanel.h"

#include "eye.h"
#include "palette.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

constexpr int panelWidth = 268;

QLabel *quietLabel(const QString &text)
{
    auto *label = new QLabel(text);
    QPalette colors = label->palette();
    colors.setColor(QPalette::WindowText, palette::quiet);
    label->setPalette(colors);
    return label;
}

QLabel *heading(const QString &text)
{
    QLabel *label = quietLabel(text.toUpper());
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 0.85);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 1);
    label->setFont(font);
    return label;
}

QFormLayout *makeForm(QWidget *parent, const QString &title)
{
    auto *form = new QFormLayout(parent);
    form->setContentsMargins(0, 0, 0, 0);
    form->setVerticalSpacing(4);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(heading(title));
    return form;
}

/// Keys are the window's but for a moment, while a number is typed.
template <class SpinBox>
SpinBox *makeSpinBox(double lowest, double highest, double step, const QString &unit)
{
    using Number = decltype(std::declval<SpinBox>().value());
    auto *box = new SpinBox;
    box->setRange(static_cast<Number>(lowest), static_cast<Number>(highest));
    box->setSingleStep(static_cast<Number>(step));
    box->setSuffix(QLatin1Char(' ') + unit);
    box->setAlignment(Qt::AlignRight);
    box->setFocusPolicy(Qt::ClickFocus);
    box->setKeyboardTracking(false);
    box->setGroupSeparatorShown(true);
    box->setLocale(QLocale(QLocale::English));
    QObject::connect(box, &SpinBox::editingFinished, box, &QWidget::clearFocus);
    return box;
}

void addSetting(QFormLayout *form, const QString &name, QWidget *box, const QString &explanation)
{
    QLabel *label = quietLabel(name);
    label->setBuddy(box);
    form->addRow(label, box);
    box->setAccessibleName(name);
    box->setToolTip(explanation);
    label->setToolTip(explanation);
}

QString paragraph(const QColor &dot, const QString &text, const QString &assumption)
{
    QString html = QStringLiteral("<p style=\"margin:0 0 8px 0\">"
                                  "<span style=\"color:%1\">\u25cf</span> %2")
                       .arg(dot.name(), text.toHtmlEscaped());
    if (!assumption.isEmpty()) {
        html += QStringLiteral(" <span style=\"color:%1\">%2</span>")
                    .arg(palette::quiet.name(), assumption.toHtmlEscaped());
    }
    return html + QStringLiteral("</p>");
}

} // namespace

SidePanel::SidePanel(QWidget *parent)
    : QWidget(parent)
    , m_pointRate(makeSpinBox<QSpinBox>(
          ScannerSettings::slowestRate, ScannerSettings::fastestRate, 1000, tr("points/s")))
    , m_colorDelay(makeSpinBox<QSpinBox>(0, ScannerSettings::longestColorDelay * 1e6, 10, tr("µs")))
    , m_persistence(makeSpinBox<QSpinBox>(
          Eye::shortestPersistence * 1e3, Eye::longestPersistence * 1e3, 5, tr("ms")))
    , m_longestStand(makeSpinBox<QDoubleSpinBox>(0.1, 100, 0.1, tr("ms")))
    , m_settings(makeSettings())
    , m_strip(makeStrip())
    , m_doctor(makeDoctor())
{
    setPointRate(ScannerSettings().pointRate);
    setColorDelay(ScannerSettings().colorDelay);
    setPersistence(Eye::usualPersistence);
    setLongestStand(Conditions().longestStand);
    setFixedWidth(panelWidth);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(14);
    layout->addWidget(m_settings);
    layout->addWidget(m_strip);
    layout->addWidget(m_doctor, 1);
    layout->addStretch();
}

QWidget *SidePanel::makeSettings()
{
    auto *part = new QWidget;
    QFormLayout *form = makeForm(part, tr("Projector"));
    addSetting(form, tr("Scan rate"), m_pointRate, tr("Points that the scanner draws a second"));
    addSetting(form, tr("Colour delay"), m_colorDelay,
        tr("By how much colours come later than points, to make up for the mirrors' lag"));
    addSetting(form, tr("Persistence"), m_persistence,
        tr("After this time a third of the light is left in the eye"));
    addSetting(form, tr("Stand limit"), m_longestStand,
        tr("How long a lit beam may stand still before the frame doctor names it"));
    for (QSpinBox *box : {m_pointRate, m_colorDelay, m_persistence})
        connect(box, &QSpinBox::valueChanged, this, &SidePanel::changed);
    connect(m_longestStand, &QDoubleSpinBox::valueChanged, this, &SidePanel::changed);
    return part;
}

QWidget *SidePanel::makeStrip()
{
    auto *part = new QWidget;
    QFormLayout *form = makeForm(part, tr("Technician"));
    for (const Figure &figure : figuresOf(1, {}, {})) {
        auto *value = new QLabel(figure.value);
        value->setAlignment(Qt::AlignRight);
        value->setAccessibleName(figure.name);
        QLabel *name = quietLabel(figure.name);
        name->setToolTip(figure.explanation);
        form->addRow(name, value);
        m_values.append(value);
    }
    return part;
}

QWidget *SidePanel::makeDoctor()
{
    m_findings = new QLabel;
    m_findings->setWordWrap(true);
    m_findings->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_findings->setTextFormat(Qt::RichText);
    m_findings->setAccessibleName(tr("Findings of the frame doctor"));
    auto *scroll = new QScrollArea;
    scroll->setWidget(m_findings);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumHeight(4 * m_findings->fontMetrics().lineSpacing());
    scroll->setFocusPolicy(Qt::NoFocus);
    auto *part = new QWidget;
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(heading(tr("Frame doctor")));
    layout->addWidget(scroll, 1);
    return part;
}

void SidePanel::setStripShown(bool shown)
{
    m_settings->setVisible(shown);
    m_strip->setVisible(shown);
    setVisible(shown || m_doctor->isVisibleTo(this));
}

void SidePanel::setDoctorShown(bool shown)
{
    m_doctor->setVisible(shown);
    setVisible(shown || m_strip->isVisibleTo(this));
}

void SidePanel::setFigures(const QList<Figure> &figures)
{
    for (qsizetype i = 0; i < m_values.size(); ++i)
        m_values[i]->setText(figures.value(i).value);
}

void SidePanel::setFindings(const QList<Finding> &findings)
{
    QString html;
    for (const Finding &finding : findings) {
        html += paragraph(
            finding.isFact() ? palette::quiet : palette::waiting, finding.text, finding.assumption);
    }
    if (html.isEmpty())
        html = paragraph(palette::good, tr("Nothing found."), {});
    if (m_findings->text() != html)
        m_findings->setText(html);
}

int SidePanel::pointRate() const
{
    return m_pointRate->value();
}

double SidePanel::colorDelay() const
{
    return m_colorDelay->value() * 1e-6;
}

double SidePanel::persistence() const
{
    return m_persistence->value() * 1e-3;
}

double SidePanel::longestStand() const
{
    return m_longestStand->value() * 1e-3;
}

void SidePanel::setPointRate(int rate)
{
    m_pointRate->setValue(rate);
}

void SidePanel::setColorDelay(double seconds)
{
    m_colorDelay->setValue(qRound(seconds * 1e6));
}

void SidePanel::setPersistence(double seconds)
{
    m_persistence->setValue(qRound(seconds * 1e3));
}

void SidePanel::setLongestStand(double seconds)
{
    m_longestStand->setValue(seconds * 1e3);
}
