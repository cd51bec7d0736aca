#include "playerstage.h"

#include <QDataStream>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

/// A value in the store that records when it is compared with its replacement.
struct OldValue
{
    QString key;
    static inline QStringList replaced;
};

// Required because the store writes every value.
QDataStream &operator<<(QDataStream &stream, const OldValue &value)
{
    return stream << value.key;
}

QDataStream &operator>>(QDataStream &stream, OldValue &value)
{
    return stream >> value.key;
}

namespace {

/// Opens the window and gives each player their own MIDI device.
void openDevices(PlayerStage &stage)
{
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.midiList->setCurrentIndex(player.side + 1);
}

} // namespace

class tst_Learn : public QObject
{
    Q_OBJECT

private slots:
    void move_is_learnt_from_the_first_message_data();
    void move_is_learnt_from_the_first_message();
    void start_is_learnt_from_the_first_message_data();
    void start_is_learnt_from_the_first_message();
    void messages_of_the_other_side_play_while_a_side_learns_data();
    void messages_of_the_other_side_play_while_a_side_learns();
    void a_message_being_learnt_does_not_play();
    void a_second_click_cancels_data();
    void a_second_click_cancels();
    void a_learn_cancels_every_other();
    void a_key_is_learnt_while_a_pad_learn_is_replaced();
    void a_key_is_not_learnt_as_move();
    void only_the_control_being_learnt_names_its_side_data();
    void only_the_control_being_learnt_names_its_side();
    void a_learnt_control_is_written_to_the_file();
    void the_status_is_stored_before_the_number_data();
    void the_status_is_stored_before_the_number();
};

void tst_Learn::move_is_learnt_from_the_first_message_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("number");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        QTest::addRow("%s, control change", name) << side << 0xB2 << 7;
        QTest::addRow("%s, controller 0", name) << side << 0xB0 << 0;
        QTest::addRow("%s, pitch bend", name) << side << 0xE0 << 127;
        QTest::addRow("%s, a clock", name) << side << 0xF8 << 0;
    }
}

void tst_Learn::move_is_learnt_from_the_first_message()
{
    QFETCH(int, side);
    QFETCH(int, status);
    QFETCH(int, number);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    openDevices(stage);
    const PlayerStage::Settings before = stage.settings();
    PlayerStage::click(stage.players[size_t(side)].learnMove);
    stage.sendMidi(side, status, number, 100);
    QCOMPARE(stage.settingsSince(before),
        (PlayerStage::Settings{{midiKey(u"CC"_s, side, 0), QString::number(status)},
            {midiKey(u"CC"_s, side, 1), QString::number(number)}}));
    QCOMPARE(stage.learning(), QStringList());
    QCOMPARE(stage.step(side), 0);
    stage.sendMidi(side, status, number, 100);
    QCOMPARE(stage.step(side), 36);
    QCOMPARE(stage.settingsSince(before).size(), 2);
}

void tst_Learn::start_is_learnt_from_the_first_message_data()
{
    addSides();
}

void tst_Learn::start_is_learnt_from_the_first_message()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    openDevices(stage);
    const PlayerStage::Settings before = stage.settings();
    PlayerStage::click(stage.players[size_t(side)].learnStart);
    stage.sendMidi(side, 0x90, 60, 0);
    QCOMPARE(stage.settingsSince(before),
        (PlayerStage::Settings{
            {midiKey(u"Start"_s, side, 0), u"144"_s}, {midiKey(u"Start"_s, side, 1), u"60"_s}}));
    QCOMPARE(stage.learning(), QStringList());
    QVERIFY(!stage.takeStart());
    stage.sendMidi(side, 0x90, 60, 100);
    QCOMPARE(stage.takeStart(), std::optional(side));
    QCOMPARE(stage.settingsSince(before).size(), 2);
}

void tst_Learn::messages_of_the_other_side_play_while_a_side_learns_data()
{
    addSides();
}

void tst_Learn::messages_of_the_other_side_play_while_a_side_learns()
{
    QFETCH(int, side);
    const int other = 1 - side;
    PlayerStage::Settings settings = bothOn(u"MIDI"_s);
    settings[midiKey(u"CC"_s, other, 0)] = u"176"_s;
    settings[midiKey(u"CC"_s, other, 1)] = u"7"_s;
    settings[midiKey(u"Start"_s, other, 0)] = u"144"_s;
    settings[midiKey(u"Start"_s, other, 1)] = u"60"_s;
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, settings);
    openDevices(stage);
    const PlayerStage::Player &player = stage.players[size_t(side)];
    for (QPushButton *button : {player.learnMove, player.learnStart}) {
        const PlayerStage::Settings before = stage.settings();
        PlayerStage::click(button);
        stage.sendMidi(other, 176, 7, 127);
        QCOMPARE(stage.step(other), 63);
        stage.sendMidi(other, 176, 7, 0);
        QCOMPARE(stage.step(other), -64);
        stage.sendMidi(other, 144, 60, 1);
        QCOMPARE(stage.takeStart(), std::optional(other));
        QCOMPARE(stage.settings(), before);
        QCOMPARE(stage.learning(), QStringList{button->objectName()});
        stage.sendMidi(side, 176, 9, 127);
        QCOMPARE(stage.settingsSince(before).size(), 2);
        QCOMPARE(stage.learning(), QStringList());
    }
}

void tst_Learn::a_message_being_learnt_does_not_play()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0,
        {{u"ControlModeLeft"_s, u"MIDI"_s}, {u"CC_00"_s, u"176"_s}, {u"CC_01"_s, u"7"_s},
            {u"Start_00"_s, u"176"_s}, {u"Start_01"_s, u"7"_s}});
    openDevices(stage);
    const PlayerStage::Player &player = stage.players[0];
    stage.sendMidi(0, 176, 7, 80);
    QCOMPARE(stage.takeStart(), std::optional(0));
    for (QPushButton *button : {player.learnMove, player.learnStart}) {
        PlayerStage::click(button);
        stage.sendMidi(0, 176, 7, 127);
        // The learnt message did not play; the paddle keeps its previous step.
        QCOMPARE(stage.step(0), 16);
        QVERIFY(!stage.takeStart());
    }
}

void tst_Learn::a_second_click_cancels_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("button");
    for (const char *side : {"L", "R"}) {
        const QString name = QString::fromLatin1(side);
        for (const QString &mode : {u"MIDI"_s, u"XBOX"_s}) {
            QTest::addRow("%s Move %s", qPrintable(mode), side) << mode << u"learnCC"_s + name;
            QTest::addRow("%s Start %s", qPrintable(mode), side) << mode << u"learnStart"_s + name;
        }
        for (const QString &control : {u"Start"_s, u"Up"_s, u"Down"_s})
            QTest::addRow("KEYBOARD %s %s", qPrintable(control), side)
                << u"KEYBOARD"_s << u"learn"_s + control + name;
    }
}

void tst_Learn::a_second_click_cancels()
{
    QFETCH(QString, mode);
    QFETCH(QString, button);
    PlayerStage stage({u"First"_s, u"Second"_s}, 2,
        {{u"ControlModeLeft"_s, mode}, {u"ControlModeRight"_s, mode}});
    stage.open();
    for (const PlayerStage::Player &player : stage.players) {
        if (mode == "MIDI"_L1)
            player.midiList->setCurrentIndex(player.side + 1);
        player.xboxList->setCurrentIndex(player.side + 1);
    }
    auto *learn = stage.widget()->findChild<QPushButton *>(button);
    const QString text = learn->text();
    const QString styleSheet = learn->styleSheet();
    const PlayerStage::Settings before = stage.settings();
    PlayerStage::click(learn);
    QCOMPARE(stage.learning(), QStringList{button});
    PlayerStage::click(learn);
    QCOMPARE(stage.learning(), QStringList());
    QCOMPARE(learn->text(), text);
    QCOMPARE(learn->styleSheet(), styleSheet);
    for (const std::size_t side : {0U, 1U}) {
        stage.sendMidi(int(side), 0xB0, 7, 100);
        stage.pads.pads[side].thumbRY = 32767;
        stage.pads.pads[side].buttons = XINPUT_GAMEPAD_Y;
        if (mode == "XBOX"_L1)
            stage.poll(side);
    }
    QTest::keyClick(learn, Qt::Key_Y);
    QCOMPARE(stage.settings(), before);
}

void tst_Learn::a_learn_cancels_every_other()
{
    // With the left player on a pad and the right one on the keyboard there is every kind of learn
    // button.
    PlayerStage stage({u"First"_s}, 1,
        {{u"ControlModeLeft"_s, u"XBOX"_s}, {u"ControlModeRight"_s, u"KEYBOARD"_s}});
    stage.open();
    const PlayerStage::Player &left = stage.players[0];
    const PlayerStage::Player &right = stage.players[1];
    left.xboxList->setCurrentIndex(1);
    const QList<QPushButton *> onPadAndKeys = {
        left.learnMove, left.learnStart, right.learnStart, right.learnUp, right.learnDown};
    const auto eachAfterEach = [&stage](const QList<QPushButton *> &buttons) {
        for (QPushButton *first : buttons) {
            for (QPushButton *second : buttons) {
                if (first == second)
                    continue;
                PlayerStage::click(first);
                QCOMPARE(stage.learning(), QStringList{first->objectName()});
                PlayerStage::click(second);
                QCOMPARE(stage.learning(), QStringList{second->objectName()});
                PlayerStage::click(second);
                QCOMPARE(stage.learning(), QStringList());
            }
        }
    };
    eachAfterEach(onPadAndKeys);
    PlayerStage::click(left.midi);
    left.midiList->setCurrentIndex(1);
    eachAfterEach(onPadAndKeys);
    // And the other way round.
    PlayerStage::click(left.keyboard);
    PlayerStage::click(right.xbox);
    right.xboxList->setCurrentIndex(1);
    eachAfterEach(
        {left.learnStart, left.learnUp, left.learnDown, right.learnMove, right.learnStart});
}

void tst_Learn::a_key_is_learnt_while_a_pad_learn_is_replaced()
{
    PlayerStage stage({}, 1, {{u"ControlModeRight"_s, u"KEYBOARD"_s}});
    stage.open();
    stage.players[0].xboxList->setCurrentIndex(1);
    for (QPushButton *padLearn : {stage.players[0].learnMove, stage.players[0].learnStart}) {
        PlayerStage::click(padLearn);
        const PlayerStage::Settings before = stage.settings();
        PlayerStage::click(stage.players[1].learnUp);
        // The pad plays again at once.
        stage.pads.pads[0].thumbLX = 32767;
        stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
        stage.poll(0);
        QCOMPARE(stage.step(0), 63);
        QCOMPARE(stage.takeStart(), std::optional(0));
        stage.pads.pads[0].thumbLX = 0;
        stage.pads.pads[0].buttons = 0;
        stage.poll(0);
        QCOMPARE(stage.learning(), QStringList{u"learnUpR"_s});
        QCOMPARE(stage.settings(), before);
        const Qt::Key key = padLearn == stage.players[0].learnMove ? Qt::Key_U : Qt::Key_V;
        QTest::keyClick(padLearn, key);
        QCOMPARE(stage.settingsSince(before),
            (PlayerStage::Settings{{u"KeyboardUpR"_s, QString::number(key)}}));
        QCOMPARE(stage.learning(), QStringList());
    }
}

void tst_Learn::a_key_is_not_learnt_as_move()
{
    PlayerStage::Settings stored = bothOn(u"KEYBOARD"_s);
    stored[u"KeyboardUpL"_s] = QString::number(Qt::Key_W);
    PlayerStage stage({}, 0, stored);
    stage.open();
    stage.controls()->learnOrCancel(Control::Move, Side::Left);
    const PlayerStage::Settings before = stage.settings();
    QTest::keyPress(stage.widget()->windowHandle(), Qt::Key_W);
    QCOMPARE(stage.settingsSince(before), PlayerStage::Settings());
    QCOMPARE(stage.controls()->moveLearnSide(), 0);
    QVERIFY(stage.step(0) > 0); // it plays instead
}

void tst_Learn::only_the_control_being_learnt_names_its_side_data()
{
    addSides();
}

void tst_Learn::only_the_control_being_learnt_names_its_side()
{
    QFETCH(int, side);
    constexpr int none = 2;
    PlayerStage stage;
    stage.open();
    PlayerControls &controls = *stage.controls();
    const auto sides = [&controls] {
        return QList{controls.moveLearnSide(), controls.startLearnSide(), controls.upLearnSide(),
            controls.downLearnSide()};
    };
    QCOMPARE(sides(), QList<int>(4, none));
    for (int index = 0; index < 4; ++index) {
        controls.learnOrCancel(Control(index), Side(side));
        QList<int> expected(4, none);
        expected[index] = side;
        QCOMPARE(sides(), expected);
    }
    controls.cancelLearn();
    QCOMPARE(sides(), QList<int>(4, none));
}

void tst_Learn::a_learnt_control_is_written_to_the_file()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 1, bothOn(u"MIDI"_s));
    openDevices(stage);
    PlayerStage::click(stage.players[1].learnMove);
    stage.sendMidi(1, 0xE3, 5, 100);
    PlayerStage::click(stage.players[0].xbox);
    stage.players[0].xboxList->setCurrentIndex(1);
    PlayerStage::click(stage.players[0].learnStart);
    stage.pads.pads[0].leftTrigger = 1;
    stage.poll(0);
    stage.close();
    QFile file(u".pong"_s);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    lines.sort();
    QCOMPARE(lines,
        QStringList(
            {u"CC_10=227"_s, u"CC_11=5"_s, u"ControlModeLeft=XBOX"_s, u"ControlModeRight=MIDI"_s,
                u"SensL=512"_s, u"SensR=512"_s, u"XStartL=10"_s, u"[General]"_s}));
}

void tst_Learn::the_status_is_stored_before_the_number_data()
{
    addSides();
}

void tst_Learn::the_status_is_stored_before_the_number()
{
    QFETCH(int, side);
    QMetaType::registerConverter<OldValue, QString>([](const OldValue &value) {
        OldValue::replaced.append(value.key);
        return QString();
    });
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    openDevices(stage);
    const PlayerStage::Player &player = stage.players[size_t(side)];
    for (const auto &[control, button] :
        {std::pair(u"CC"_s, player.learnMove), std::pair(u"Start"_s, player.learnStart)}) {
        PlayerStage::click(button);
        QSettings store(u".pong"_s, QSettings::IniFormat);
        const QStringList keys = {midiKey(control, side, 0), midiKey(control, side, 1)};
        for (const QString &key : keys)
            store.setValue(key, QVariant::fromValue(OldValue{key}));
        OldValue::replaced.clear();
        stage.sendMidi(side, 0xB0, 7, 64);
        QCOMPARE(OldValue::replaced, keys);
        QCOMPARE(store.value(keys[0]).toInt(), 0xB0);
        QCOMPARE(store.value(keys[1]).toInt(), 7);
    }
}

QTEST_MAIN(tst_Learn)

#include "tst_learn.moc"
