#include "runningwindow.h"

#include <QApplication>
#include <QGraphicsEffect>
#include <QMap>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// The relative luminance of a colour, 0 to 1, for computing contrast.
double luminance(QRgb colour)
{
    const auto linear = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour))
        + 0.0722 * linear(qBlue(colour));
}

/// The contrast ratio, 1 to 21.
double contrast(QRgb one, QRgb other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

struct Colours
{
    QRgb background = 0;
    QRgb text = 0;
};

/// The colours of a button on the screen.
Colours coloursOf(const QPushButton *button)
{
    const QImage window = button->window()->grab().toImage();
    const QRect inside(button->mapTo(button->window(), QPoint(3, 3)), button->size() - QSize(6, 6));
    const QImage image = window.copy(inside).convertToFormat(QImage::Format_RGB32);
    QMap<QRgb, int> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++pixels[image.pixel(x, y)];
    }
    Colours colours;
    colours.background = std::max_element(pixels.begin(), pixels.end()).key();
    colours.text = *std::max_element(pixels.keyBegin(), pixels.keyEnd(), [&](QRgb one, QRgb other) {
        return contrast(one, colours.background) < contrast(other, colours.background);
    });
    return colours;
}

bool hasActiveEffect(const QPushButton *button)
{
    return button->graphicsEffect() && button->graphicsEffect()->isEnabled();
}

} // namespace

/// The appearance of the operator window's buttons.
class tst_Looks : public QObject
{
    Q_OBJECT

private slots:
    void a_disabled_button_is_faded_and_legible_data();
    void a_disabled_button_is_faded_and_legible();
    void every_button_has_an_effect_only_while_it_is_disabled();
};

void tst_Looks::a_disabled_button_is_faded_and_legible_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
        {"enableButton", "showButton", "resetButton", "learnStartL", "learnCCL", "learnUpR"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void tst_Looks::a_disabled_button_is_faded_and_legible()
{
    QFETCH(QString, name);
    RunningWindow running("[General]\nControlModeRight=KEYBOARD\nKeyboardUpR=87\n");
    running.open();
    auto *button = running.find<QPushButton>(name);
    QVERIFY(button->isVisible());
    button->setEnabled(true);
    const Colours enabled = coloursOf(button);
    button->setEnabled(false);
    const Colours disabled = coloursOf(button);
    QCOMPARE_GE(contrast(enabled.text, enabled.background), 4.5);
    QCOMPARE_GE(contrast(disabled.text, disabled.background), 3.0);
    QCOMPARE_LE(luminance(disabled.background), 0.7 * luminance(enabled.background));
    button->setEnabled(true);
    QCOMPARE(coloursOf(button).background, enabled.background);
}

void tst_Looks::every_button_has_an_effect_only_while_it_is_disabled()
{
    RunningWindow running;
    running.open();
    const QList<QPushButton *> buttons = running.widget()->findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 11);
    for (QPushButton *button : buttons) {
        QCOMPARE(hasActiveEffect(button), !button->isEnabled());
        for (const bool enabled : {true, false, true}) {
            button->setEnabled(enabled);
            QCOMPARE(hasActiveEffect(button), !enabled);
        }
    }
    running.widget()->setEnabled(false);
    QVERIFY(std::all_of(buttons.begin(), buttons.end(), hasActiveEffect));
}

QTEST_MAIN(tst_Looks)

#include "tst_looks.moc"
