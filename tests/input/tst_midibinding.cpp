#include "midibinding.h"

#include <QTest>

namespace {

constexpr MidiBinding notLearnt;
constexpr MidiBinding fader = {0xB0, 7};
constexpr MidiBinding pad = {0x90, 60};

constexpr MidiAction act(const MidiMessage &message, bool fourteenBits = false)
{
    return midiActionFor(fader, pad, fourteenBits, message);
}

} // namespace

class tst_MidiBinding : public QObject
{
    Q_OBJECT

private slots:
    void a_word_holds_the_status_in_its_low_byte_and_nothing_above_the_third();
    void the_learnt_message_moves_the_paddle_by_its_value_less_64_data();
    void the_learnt_message_moves_the_paddle_by_its_value_less_64();
    void another_controller_or_channel_moves_nothing();
    void with_14_bits_any_controller_of_the_status_moves_by_its_number_less_64_data();
    void with_14_bits_any_controller_of_the_status_moves_by_its_number_less_64();
    void with_14_bits_another_status_moves_nothing();
    void the_learnt_start_message_starts_whatever_its_value_data();
    void the_learnt_start_message_starts_whatever_its_value();
    void another_note_or_channel_starts_nothing();
    void a_message_learnt_for_both_moves_and_starts();
    void an_unlearnt_binding_never_matches_data();
    void an_unlearnt_binding_never_matches();
    void a_binding_that_no_message_can_carry_never_matches();
    void every_word_does_what_its_bytes_say_and_nothing_else();
};

void tst_MidiBinding::a_word_holds_the_status_in_its_low_byte_and_nothing_above_the_third()
{
    const MidiMessage message = decodeMidiWord(0xA96407B2);
    QCOMPARE(int(message.status), 0xB2);
    QCOMPARE(int(message.number), 7);
    QCOMPARE(int(message.value), 100);
    QCOMPARE(encodeMidiWord(message), 0x6407B2U);
}

void tst_MidiBinding::the_learnt_message_moves_the_paddle_by_its_value_less_64_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("step");
    QTest::addRow("lowest") << 0 << -64;
    QTest::addRow("below the centre") << 63 << -1;
    QTest::addRow("centre") << 64 << 0;
    QTest::addRow("highest") << 127 << 63;
}

void tst_MidiBinding::the_learnt_message_moves_the_paddle_by_its_value_less_64()
{
    QFETCH(int, value);
    QFETCH(int, step);
    const MidiAction action = act({0xB0, 7, static_cast<unsigned char>(value)});
    QCOMPARE(action.paddleInput, std::optional(step));
    QVERIFY(!action.start);
}

void tst_MidiBinding::another_controller_or_channel_moves_nothing()
{
    QVERIFY(!act({0xB0, 8, 100}).paddleInput);
    QVERIFY(!act({0xB1, 7, 100}).paddleInput);
    QVERIFY(!act({0x90, 7, 100}).paddleInput);
}

void tst_MidiBinding::with_14_bits_any_controller_of_the_status_moves_by_its_number_less_64_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("step");
    QTest::addRow("lowest") << 0 << -64;
    QTest::addRow("the learnt controller") << 7 << -57;
    QTest::addRow("another controller") << 8 << -56;
    QTest::addRow("highest") << 127 << 63;
}

void tst_MidiBinding::with_14_bits_any_controller_of_the_status_moves_by_its_number_less_64()
{
    QFETCH(int, number);
    QFETCH(int, step);
    const MidiAction action = act({0xB0, static_cast<unsigned char>(number), 100}, true);
    QCOMPARE(action.paddleInput, std::optional(step));
    QVERIFY(!action.start);
}

void tst_MidiBinding::with_14_bits_another_status_moves_nothing()
{
    QVERIFY(!act({0xB1, 7, 100}, true).paddleInput);
}

void tst_MidiBinding::the_learnt_start_message_starts_whatever_its_value_data()
{
    QTest::addColumn<int>("value");
    QTest::addRow("key released, sent as velocity 0") << 0;
    QTest::addRow("softly") << 1;
    QTest::addRow("hard") << 127;
}

void tst_MidiBinding::the_learnt_start_message_starts_whatever_its_value()
{
    QFETCH(int, value);
    for (const bool fourteenBits : {false, true}) {
        const MidiAction action = act({0x90, 60, static_cast<unsigned char>(value)}, fourteenBits);
        QVERIFY(action.start);
        QVERIFY(!action.paddleInput);
    }
}

void tst_MidiBinding::another_note_or_channel_starts_nothing()
{
    QVERIFY(!act({0x90, 61, 100}).start);
    QVERIFY(!act({0x91, 60, 100}).start);
    QVERIFY(!act({0x80, 60, 100}).start);
}

void tst_MidiBinding::a_message_learnt_for_both_moves_and_starts()
{
    for (const bool fourteenBits : {false, true}) {
        const MidiAction action = midiActionFor(fader, fader, fourteenBits, {0xB0, 7, 71});
        QCOMPARE(action.paddleInput, std::optional(fourteenBits ? 7 - 64 : 71 - 64));
        QVERIFY(action.start);
    }
}

void tst_MidiBinding::an_unlearnt_binding_never_matches_data()
{
    QTest::addColumn<unsigned>("number");
    QTest::addRow("nothing learnt") << 0U;
    QTest::addRow("a number without a status, from a damaged file") << 7U;
}

void tst_MidiBinding::an_unlearnt_binding_never_matches()
{
    QFETCH(unsigned, number);
    const MidiBinding binding = {0, number};
    for (const bool fourteenBits : {false, true}) {
        const MidiMessage message = {0, static_cast<unsigned char>(number), 100};
        const MidiAction action = midiActionFor(binding, binding, fourteenBits, message);
        QVERIFY(!action.paddleInput);
        QVERIFY(!action.start);
    }
}

void tst_MidiBinding::a_binding_that_no_message_can_carry_never_matches()
{
    const MidiBinding status = {0x1B0, 7};
    const MidiBinding number = {0xB0, 0x107};
    const MidiMessage message = {0xB0, 7, 100};
    QVERIFY(!midiActionFor(status, status, true, message).paddleInput);
    QVERIFY(!midiActionFor(number, number, false, message).paddleInput);
    QVERIFY(!midiActionFor(number, number, false, message).start);
}

void tst_MidiBinding::every_word_does_what_its_bytes_say_and_nothing_else()
{
    int moves = 0;
    int movesWith14Bits = 0;
    int starts = 0;
    int strays = 0;
    for (const std::uint32_t value : {0x00U, 0x3FU, 0x40U, 0x7FU, 0x80U, 0xFFU, 0xAA05U}) {
        for (std::uint32_t low = 0; low <= 0xFFFF; ++low) {
            const MidiMessage message = decodeMidiWord(value << 16 | low);
            const MidiAction action = act(message);
            const MidiAction action14 = act(message, true);
            const MidiAction none = midiActionFor(notLearnt, notLearnt, (low & 1) != 0, message);
            const int status = static_cast<int>(low & 0xFF);
            const int number = static_cast<int>(low >> 8);
            moves += action.paddleInput && status == 0xB0 && number == 7
                && action.paddleInput == static_cast<int>(value & 0xFF) - 64;
            movesWith14Bits +=
                action14.paddleInput && status == 0xB0 && action14.paddleInput == number - 64;
            starts += action.start && action14.start && status == 0x90 && number == 60;
            strays += action.paddleInput && (status != 0xB0 || number != 7);
            strays += action14.paddleInput && status != 0xB0;
            strays += (action.start || action14.start) && (status != 0x90 || number != 60);
            strays += none.paddleInput || none.start;
        }
    }
    QCOMPARE(moves, 7);
    QCOMPARE(movesWith14Bits, 7 * 256);
    QCOMPARE(starts, 7);
    QCOMPARE(strays, 0);
}

QTEST_APPLESS_MAIN(tst_MidiBinding)

#include "tst_midibinding.moc"
