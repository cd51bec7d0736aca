#include "sidepanel.h"

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QTest>

/// Runs with the platform's own fonts, whose metrics decide where a field draws its text.
class tst_SidePanel : public QObject
{
    Q_OBJECT

private slots:
    void each_number_is_drawn_in_its_field();
};

void tst_SidePanel::each_number_is_drawn_in_its_field()
{
    SidePanel panel;
    panel.resize(panel.sizeHint());
    const auto boxes = panel.findChildren<QAbstractSpinBox *>();
    QCOMPARE(boxes.size(), 4);
    for (QAbstractSpinBox *box : boxes) {
        auto *field = box->findChild<QLineEdit *>();
        QVERIFY(field);
        field->deselect();
        const QImage number =
            panel.grab(QRect(box->mapTo(&panel, QPoint()), box->size())).toImage();
        field->setText({});
        const QImage empty = panel.grab(QRect(box->mapTo(&panel, QPoint()), box->size())).toImage();
        QVERIFY2(number != empty, qPrintable(box->accessibleName()));
    }
}

QTEST_MAIN(tst_SidePanel)

#include "tst_sidepanel.moc"
