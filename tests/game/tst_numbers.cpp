#include "numbers.h"

#include <QTest>

#include <limits>

namespace {

constexpr auto lowest = std::numeric_limits<qint32>::min();
constexpr auto highest = std::numeric_limits<qint32>::max();
constexpr auto infinity = std::numeric_limits<float>::infinity();
constexpr auto noNumber = std::numeric_limits<float>::quiet_NaN();
constexpr auto largest = std::numeric_limits<float>::max();
constexpr auto smallest = std::numeric_limits<float>::denorm_min();

} // namespace

class tst_Numbers : public QObject
{
    Q_OBJECT

private slots:
    void a_number_is_truncated_toward_zero_and_clamped_data();
    void a_number_is_truncated_toward_zero_and_clamped();
    void nan_becomes_the_other_value();
    void the_hypotenuse_is_rounded_to_single_precision_data();
    void the_hypotenuse_is_rounded_to_single_precision();
    void the_hypotenuse_of_nan_is_nan_unless_a_side_is_infinite();
};

void tst_Numbers::a_number_is_truncated_toward_zero_and_clamped_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<qint32>("expected");
    QTest::addRow("0") << 0.0 << 0;
    QTest::addRow("-0") << -0.0 << 0;
    QTest::addRow("below 1") << 0.999 << 0;
    QTest::addRow("above -1") << -0.999 << 0;
    QTest::addRow("positive") << 5.75 << 5;
    QTest::addRow("negative") << -5.75 << -5;
    QTest::addRow("2^31 - 128") << 2147483520.0 << 2147483520;
    QTest::addRow("2^31") << 2147483648.0 << highest;
    QTest::addRow("-2^31 + 128") << -2147483520.0 << -2147483520;
    QTest::addRow("-2^31") << -2147483648.0 << lowest;
    QTest::addRow("huge") << 1e30 << highest;
    QTest::addRow("huge negative") << -1e30 << lowest;
    QTest::addRow("infinite") << double(infinity) << highest;
    QTest::addRow("negative infinite") << -double(infinity) << lowest;
}

void tst_Numbers::a_number_is_truncated_toward_zero_and_clamped()
{
    QFETCH(double, value);
    QFETCH(qint32, expected);
    QCOMPARE(truncated(value), expected);
    QCOMPARE(truncated(static_cast<float>(value)), expected);
}

void tst_Numbers::nan_becomes_the_other_value()
{
    QCOMPARE(truncated(noNumber), 0);
    QCOMPARE(truncated(noNumber, -31200), -31200);
    QCOMPARE(truncated(-noNumber, 7), 7);
    QCOMPARE(truncated(double(noNumber), 8), 8);
}

void tst_Numbers::the_hypotenuse_is_rounded_to_single_precision_data()
{
    QTest::addColumn<float>("a");
    QTest::addColumn<float>("b");
    QTest::addColumn<float>("expected");
    QTest::addRow("3, 4") << 3.0F << 4.0F << 5.0F;
    QTest::addRow("nothing") << 0.0F << -0.0F << 0.0F;
    QTest::addRow("one side") << -106.0F << 0.0F << 106.0F;
    QTest::addRow("106, 1") << 106.0F << 1.0F << 0x1.a804d4p+6F;
    QTest::addRow("1, 1") << 1.0F << 1.0F << 0x1.6a09e6p+0F;
    QTest::addRow("squares beyond single precision") << 3e30F << 4e30F << 5e30F;
    QTest::addRow("the largest") << largest << 0.0F << largest;
    QTest::addRow("beyond the largest") << largest << largest << infinity;
    QTest::addRow("squares below single precision") << 3e-30F << -4e-30F << 5e-30F;
    QTest::addRow("the smallest") << smallest << 0.0F << smallest;
    QTest::addRow("infinite") << infinity << 1.0F << infinity;
    QTest::addRow("negative infinite") << 1.0F << -infinity << infinity;
    QTest::addRow("both infinite") << infinity << -infinity << infinity;
}

void tst_Numbers::the_hypotenuse_is_rounded_to_single_precision()
{
    QFETCH(float, a);
    QFETCH(float, b);
    QFETCH(float, expected);
    // Not QCOMPARE, which accepts nearby floats.
    QVERIFY2(hypotenuse(a, b) == expected, qPrintable(QString::number(hypotenuse(a, b), 'g', 9)));
    QVERIFY(hypotenuse(b, a) == expected);
}

void tst_Numbers::the_hypotenuse_of_nan_is_nan_unless_a_side_is_infinite()
{
    QVERIFY(std::isnan(hypotenuse(noNumber, 1.0F)));
    QVERIFY(std::isnan(hypotenuse(1.0F, noNumber)));
    QVERIFY(std::isnan(hypotenuse(noNumber, noNumber)));
    QCOMPARE(hypotenuse(noNumber, infinity), infinity);
    QCOMPARE(hypotenuse(-infinity, noNumber), infinity);
}

QTEST_GUILESS_MAIN(tst_Numbers)

#include "tst_numbers.moc"
