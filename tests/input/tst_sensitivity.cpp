#include "sensitivity.h"

#include <QTest>

#include <limits>

class tst_Sensitivity : public QObject
{
    Q_OBJECT

private slots:
    void a_deflection_is_divided_by_minimum_plus_maximum_minus_value_data();
    void a_deflection_is_divided_by_minimum_plus_maximum_minus_value();
    void a_divisor_below_one_stops_the_paddle_data();
    void a_divisor_below_one_stops_the_paddle();
};

void tst_Sensitivity::a_deflection_is_divided_by_minimum_plus_maximum_minus_value_data()
{
    QTest::addColumn<int>("deflection");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("step");
    QTest::addRow("full at the default equals a MIDI fader") << 32767 << 512 << 63;
    QTest::addRow("full the other way") << -32768 << 512 << -64;
    QTest::addRow("one short of that truncates toward zero") << -32767 << 512 << -63;
    QTest::addRow("least sensitive") << 32767 << 256 << 42;
    QTest::addRow("least sensitive, the other way") << -32768 << 256 << -42;
    QTest::addRow("most sensitive") << 32767 << 768 << 127;
    QTest::addRow("most sensitive, the other way") << -32768 << 768 << -128;
    QTest::addRow("the edge of the dead zone") << 3000 << 512 << 5;
    QTest::addRow("the edge of the dead zone, the other way") << -3000 << 512 << -5;
    QTest::addRow("less than the divisor") << -511 << 512 << 0;
    QTest::addRow("centre") << 0 << 512 << 0;
}

void tst_Sensitivity::a_deflection_is_divided_by_minimum_plus_maximum_minus_value()
{
    QFETCH(int, deflection);
    QFETCH(int, value);
    QTEST(paddleInputFor(deflection, 256, 768, value), "step");
}

void tst_Sensitivity::a_divisor_below_one_stops_the_paddle_data()
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addRow("0") << 0 << 100 << 100;
    QTest::addRow("-1") << -1 << 100 << 100;
    QTest::addRow("the lowest") << lowest << lowest << highest;
}

void tst_Sensitivity::a_divisor_below_one_stops_the_paddle()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, value);
    QCOMPARE(paddleInputFor(32767, minimum, maximum, value), 0);
    QCOMPARE(paddleInputFor(std::numeric_limits<int>::min(), minimum, maximum, value), 0);
}

QTEST_APPLESS_MAIN(tst_Sensitivity)

#include "tst_sensitivity.moc"
