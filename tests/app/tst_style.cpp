#include "runningwindow.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>
#include <QStylePlugin>
#include <QTest>

using namespace Qt::StringLiterals;

/// Provides the Windows style's name on other systems; it looks like Fusion.
class VistaStylePlugin : public QStylePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QStyleFactoryInterface_iid FILE "vistastyle.json")

public:
    QStyle *create(const QString & /*key*/) override { return QStyleFactory::create(u"Fusion"_s); }
};

class tst_Style : public QObject
{
    Q_OBJECT

private slots:
    void the_window_sets_the_windows_style();
};

void tst_Style::the_window_sets_the_windows_style()
{
    QVERIFY(QStyleFactory::keys().contains(u"windowsvista"_s, Qt::CaseInsensitive));
    QVERIFY(QApplication::style()->name() != "windowsvista"_L1);
    const RunningWindow running;
    const MainWindow window;
    QCOMPARE(QApplication::style()->name(), u"windowsvista"_s);
}

Q_IMPORT_PLUGIN(VistaStylePlugin)

QTEST_MAIN(tst_Style)
#include "tst_style.moc"
