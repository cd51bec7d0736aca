#include "figures.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Figures", text);
}

QString number(double value, int decimals = 0)
{
    return QLocale(QLocale::English).toString(value, 'f', decimals);
}

} // namespace

QList<Figure> figuresOf(int zone, const FrameHistory &history, const Conditions &conditions)
{
    const FrameFacts &facts = history.facts();
    const int frames = history.framesInLastSecond(conditions.now);
    const QString none = QStringLiteral("\u2013");
    return {
        {tr("Frames a second"), number(frames), tr("Frames sent within the last second")},
        {tr("Points a frame"), number(facts.points), tr("Points of the last frame")},
        {tr("Points a second"), number(double(facts.points) * frames),
            tr("Points that the game asks for: points a frame times frames a second")},
        {tr("Passes a second"),
            facts.points > 0 ? number(double(conditions.pointRate) / facts.points, 1) : none,
            tr("How often the scanner draws the frame at the set rate")},
        {tr("Longest lit step"), number(facts.longestLitStep),
            tr("Field units between two lit points that follow each other; the field is 65,536 "
               "wide")},
        {tr("Blanked per jump"), facts.jumps > 0 ? number(facts.blankedPerJump(), 1) : none,
            tr("Blanked points on the way from one stroke to the next, on average")},
        {tr("Lit share"), number(100 * facts.litShare()) + QStringLiteral(" %"),
            tr("Lit points in parts of all points of the frame")},
        {tr("Missed frames"), number(double(history.missed())),
            tr("Frames that were written over before they could be taken")},
        {tr("Output"), conditions.outputOn ? tr("enabled") : tr("disabled"),
            tr("Laser output, which the game switches")},
        {tr("Zone"), number(zone), tr("The zone that these figures are about; click one")},
    };
}
