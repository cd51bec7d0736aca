#include "playerstage.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString mauve = u"QPushButton {background-color:#97A;} "
                      "QPushButton:hover {background-color:#FF4;} "
                      "QPushButton:pressed {background-color:#DD0;} "
                      "QPushButton:disabled {background-color:#999;}"_s;
const QString grey = u"QPushButton {background-color:#BBB;} "
                     "QPushButton:hover {background-color:#FF4;} "
                     "QPushButton:pressed {background-color:#DD0;} "
                     "QPushButton:disabled {background-color:#999;}"_s;
const QString blue = u"QPushButton {background-color:#08F;} "
                     "QPushButton:hover {background-color:#0AF;} "
                     "QPushButton:pressed {background-color:#08D;}"_s;

/// The look of a learn button; default-constructed for a hidden one.
struct Look
{
    QString text;
    bool enabled = true;
    QString styleSheet;

    bool operator==(const Look &) const = default;
};

/// For messages of QCOMPARE.
char *toString(const Look &look)
{
    return QTest::toString(
        look.text + (look.enabled ? u", "_s : u", disabled, "_s) + look.styleSheet.left(45));
}

Look lookOf(const QPushButton *button)
{
    if (!button->isVisible())
        return {};
    return {button->text(), button->isEnabled(), button->styleSheet()};
}

/// Both players have learnt everything, on every kind of device.
PlayerStage::Settings everything()
{
    return {
        {u"CC_00"_s, u"176"_s},
        {u"CC_01"_s, u"0"_s},
        {u"CC_10"_s, u"177"_s},
        {u"CC_11"_s, u"0"_s},
        {u"Start_00"_s, u"144"_s},
        {u"Start_01"_s, u"0"_s},
        {u"Start_10"_s, u"145"_s},
        {u"Start_11"_s, u"0"_s},
        {u"XStartL"_s, u"0"_s},
        {u"XStartR"_s, u"0"_s},
        {u"XMoveL"_s, u"0"_s},
        {u"XMoveR"_s, u"0"_s},
        {u"KeyboardUpL"_s, u"85"_s},
        {u"KeyboardUpR"_s, u"85"_s},
        {u"KeyboardDownL"_s, u"68"_s},
        {u"KeyboardDownR"_s, u"68"_s},
        {u"KeyboardStartL"_s, u"83"_s},
        {u"KeyboardStartR"_s, u"83"_s},
    };
}

QList<QPushButton *> buttonsOf(const PlayerStage::Player &player)
{
    return {player.learnStart, player.learnMove, player.learnUp, player.learnDown};
}

/// The names of the widgets whose style has changed.
class StyleWatch : public QObject
{
public:
    QStringList changed;

    bool eventFilter(QObject *widget, QEvent *event) override
    {
        if (event->type() == QEvent::StyleChange)
            changed.append(widget->objectName());
        return false;
    }
};

} // namespace

Q_DECLARE_METATYPE(Look)

class tst_LearnButtons : public QObject
{
    Q_OBJECT

private slots:
    void a_button_says_what_a_click_does_data();
    void a_button_says_what_a_click_does();
    void a_pad_button_shows_the_numbers_that_play_data();
    void a_pad_button_shows_the_numbers_that_play();
    void a_pad_control_counts_as_learnt_once_it_is_written_data();
    void a_pad_control_counts_as_learnt_once_it_is_written();
    void a_midi_control_counts_as_learnt_by_its_status_alone();
    void a_tool_tip_names_the_learnt_control_data();
    void a_tool_tip_names_the_learnt_control();
    void a_tool_tip_follows_a_new_binding();
    void a_learn_that_lost_its_device_stays_blue();
    void a_refresh_sets_no_look_that_shows_already_data();
    void a_refresh_sets_no_look_that_shows_already();
    void the_form_shows_no_text_of_its_own_after_the_start();
};

void tst_LearnButtons::a_button_says_what_a_click_does_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("device");
    QTest::addColumn<bool>("learnt");
    QTest::addColumn<int>("learning"); // 0 start, 1 move, 2 up, 3 down, -1 nothing
    QTest::addColumn<Look>("start");
    QTest::addColumn<Look>("move");
    QTest::addColumn<Look>("up");
    QTest::addColumn<Look>("down");
    const Look hidden;
    const Look learningStart = {u"Learning Start..."_s, true, blue};
    const Look learningMove = {u"Learning Move..."_s, true, blue};
    const Look learningUp = {u"Learning Up..."_s, true, blue};
    const Look learningDown = {u"Learning Down..."_s, true, blue};
    for (const bool learnt : {false, true}) {
        const QString &colour = learnt ? mauve : grey;
        const char *name = learnt ? "learnt" : "not learnt";
        const Look noStart = {u"Click to learn Start"_s, false, colour};
        const Look noMove = {u"Click to learn Move"_s, false, colour};
        const Look start = {u"Click to learn Start - "_s, true, colour};
        const Look move = {u"Click to learn Move - "_s, true, colour};
        const Look up = {u"Click to learn Up - "_s, true, colour};
        const Look down = {u"Click to learn Down - "_s, true, colour};
        const Look button = {u"Click to learn Start - Button 0"_s, true, colour};
        const Look stick = {u"Click to learn Move - Controller 0"_s, true, colour};

        QTest::addRow("MIDI, no device, %s", name)
            << u"MIDI"_s << false << learnt << -1 << noStart << noMove << hidden << hidden;
        QTest::addRow("MIDI, %s", name)
            << u"MIDI"_s << true << learnt << -1 << start << move << hidden << hidden;
        QTest::addRow("MIDI, %s, learning Start", name)
            << u"MIDI"_s << true << learnt << 0 << learningStart << move << hidden << hidden;
        QTest::addRow("MIDI, %s, learning Move", name)
            << u"MIDI"_s << true << learnt << 1 << start << learningMove << hidden << hidden;

        QTest::addRow("gamepad, no pad, %s", name)
            << u"XBOX"_s << false << learnt << -1 << noStart << noMove << hidden << hidden;
        QTest::addRow("gamepad, %s", name)
            << u"XBOX"_s << true << learnt << -1 << button << stick << hidden << hidden;
        QTest::addRow("gamepad, %s, learning Start", name)
            << u"XBOX"_s << true << learnt << 0 << learningStart << stick << hidden << hidden;
        QTest::addRow("gamepad, %s, learning Move", name)
            << u"XBOX"_s << true << learnt << 1 << button << learningMove << hidden << hidden;

        QTest::addRow("keyboard, %s", name)
            << u"KEYBOARD"_s << false << learnt << -1 << start << hidden << up << down;
        QTest::addRow("keyboard, %s, learning Start", name)
            << u"KEYBOARD"_s << false << learnt << 0 << learningStart << hidden << up << down;
        QTest::addRow("keyboard, %s, learning Up", name)
            << u"KEYBOARD"_s << false << learnt << 2 << start << hidden << learningUp << down;
        QTest::addRow("keyboard, %s, learning Down", name)
            << u"KEYBOARD"_s << false << learnt << 3 << start << hidden << up << learningDown;
    }
}

void tst_LearnButtons::a_button_says_what_a_click_does()
{
    QFETCH(QString, mode);
    QFETCH(bool, device);
    QFETCH(bool, learnt);
    QFETCH(int, learning);
    QFETCH(Look, start);
    QFETCH(Look, move);
    QFETCH(Look, up);
    QFETCH(Look, down);
    PlayerStage::Settings settings = learnt ? everything() : PlayerStage::Settings();
    settings[u"ControlModeLeft"_s] = mode;
    settings[u"ControlModeRight"_s] = mode;
    PlayerStage stage({u"First"_s, u"Second"_s}, 2, settings);
    stage.open();
    for (const PlayerStage::Player &player : stage.players) {
        if (device)
            (mode == "MIDI"_L1 ? player.midiList : player.xboxList)
                ->setCurrentIndex(player.side + 1);
    }
    const auto compare = [&](const PlayerStage::Player &player) {
        QCOMPARE(lookOf(player.learnStart), start);
        QCOMPARE(lookOf(player.learnMove), move);
        QCOMPARE(lookOf(player.learnUp), up);
        QCOMPARE(lookOf(player.learnDown), down);
    };
    QList<QList<Look>> idle;
    for (const PlayerStage::Player &player : stage.players) {
        idle.append(QList<Look>());
        for (const QPushButton *button : buttonsOf(player))
            idle.last().append(lookOf(button));
    }
    for (const PlayerStage::Player &player : stage.players) {
        if (learning >= 0)
            PlayerStage::click(buttonsOf(player).at(learning));
        compare(player);
        // A learn of one player does not show on the other's buttons.
        const PlayerStage::Player &other = stage.players[size_t(1 - player.side)];
        for (int i = 0; learning >= 0 && i < buttonsOf(other).size(); ++i)
            QCOMPARE(lookOf(buttonsOf(other).at(i)), idle[other.side][i]);
    }
}

void tst_LearnButtons::a_pad_button_shows_the_numbers_that_play_data()
{
    addSides();
}

void tst_LearnButtons::a_pad_button_shows_the_numbers_that_play()
{
    QFETCH(int, side);
    const QString letter = sideLetter(side);
    PlayerStage stage({}, 1, {{u"XStart"_s + letter, u"15"_s}, {u"XMove"_s + letter, u"3"_s}});
    stage.open();
    for (const PlayerStage::Player &player : stage.players) {
        player.xboxList->setCurrentIndex(1);
        const bool learnt = player.side == side;
        QCOMPARE(player.learnStart->text(),
            learnt ? u"Click to learn Start - Button 15"_s : u"Click to learn Start - Button 0"_s);
        QCOMPARE(player.learnMove->text(),
            learnt ? u"Click to learn Move - Controller 3"_s
                   : u"Click to learn Move - Controller 0"_s);
    }
}

void tst_LearnButtons::a_pad_control_counts_as_learnt_once_it_is_written_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("mauveButtons");
    QTest::addRow("nothing") << u"Other"_s << u"1"_s << QStringList();
    QTest::addRow("left Move 0") << u"XMoveL"_s << u"0"_s << QStringList{u"learnCCL"_s};
    QTest::addRow("right Move 0") << u"XMoveR"_s << u"0"_s << QStringList{u"learnCCR"_s};
    QTest::addRow("left Start 0") << u"XStartL"_s << u"0"_s << QStringList{u"learnStartL"_s};
    QTest::addRow("right Start 0") << u"XStartR"_s << u"0"_s << QStringList{u"learnStartR"_s};
    QTest::addRow("-1 written") << u"XMoveL"_s << u"-1"_s << QStringList();
}

void tst_LearnButtons::a_pad_control_counts_as_learnt_once_it_is_written()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QStringList, mauveButtons);
    PlayerStage stage({}, 1, {{key, value}});
    stage.open();
    for (const int pad : {0, 1}) { // with and without a pad
        QStringList found;
        for (const PlayerStage::Player &player : stage.players) {
            player.xboxList->setCurrentIndex(pad);
            for (const QPushButton *button : {player.learnMove, player.learnStart}) {
                if (button->styleSheet() == mauve)
                    found.append(button->objectName());
                else
                    QCOMPARE(button->styleSheet(), grey);
            }
        }
        QCOMPARE(found, mauveButtons);
    }
}

void tst_LearnButtons::a_midi_control_counts_as_learnt_by_its_status_alone()
{
    PlayerStage stage({u"First"_s}, 0,
        {{u"ControlModeLeft"_s, u"MIDI"_s}, {u"ControlModeRight"_s, u"MIDI"_s},
            {u"CC_00"_s, u"248"_s}, {u"Start_01"_s, u"60"_s}, {u"CC_11"_s, u"7"_s},
            {u"Start_10"_s, u"144"_s}});
    stage.open();
    QCOMPARE(stage.players[0].learnMove->styleSheet(), mauve);
    QCOMPARE(stage.players[0].learnStart->styleSheet(), grey);
    QCOMPARE(stage.players[1].learnMove->styleSheet(), grey);
    QCOMPARE(stage.players[1].learnStart->styleSheet(), mauve);
}

void tst_LearnButtons::a_tool_tip_names_the_learnt_control_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("tips"); // of the visible buttons, start first
    QTest::addRow("MIDI") << u"MIDI"_s
                          << QStringList(
                                 {u"note 60, channel 1"_s, u"control change 7, channel 3"_s});
    QTest::addRow("gamepad") << u"XBOX"_s
                             << QStringList({u"button A"_s, u"left stick, vertical"_s});
    QTest::addRow("keyboard") << u"KEYBOARD"_s
                              << QStringList({u"key D"_s, u"key W"_s, u"key Down"_s});
}

void tst_LearnButtons::a_tool_tip_names_the_learnt_control()
{
    QFETCH(QString, mode);
    QFETCH(QStringList, tips);
    for (const bool learnt : {false, true}) {
        for (const int device : {0, 1}) {
            for (const int side : {0, 1}) {
                const QString letter = sideLetter(side);
                PlayerStage::Settings settings = bothOn(mode);
                if (learnt) {
                    settings.insert(
                        {{midiKey(u"CC"_s, side, 0), u"178"_s}, {midiKey(u"CC"_s, side, 1), u"7"_s},
                            {midiKey(u"Start"_s, side, 0), u"144"_s},
                            {midiKey(u"Start"_s, side, 1), u"60"_s}, {u"XStart"_s + letter, u"0"_s},
                            {u"XMove"_s + letter, u"1"_s},
                            {u"KeyboardUp"_s + letter, QString::number(Qt::Key_W)},
                            {u"KeyboardDown"_s + letter, QString::number(Qt::Key_Down)},
                            {u"KeyboardStart"_s + letter, QString::number(Qt::Key_D)}});
                }
                PlayerStage stage({u"First"_s}, 1, settings);
                stage.open();
                for (const PlayerStage::Player &player : stage.players) {
                    if (player.side == side) {
                        player.midiList->setCurrentIndex(mode == "MIDI"_L1 ? device : 0);
                        player.xboxList->setCurrentIndex(device);
                    }
                    QStringList expected;
                    for (const QString &tip : tips) {
                        expected.append(learnt && player.side == side ? u"Learnt: "_s + tip
                                                                      : u"Nothing learnt yet"_s);
                    }
                    QStringList found;
                    for (const QPushButton *button : buttonsOf(player)) {
                        if (button->isVisible())
                            found.append(button->toolTip());
                    }
                    QCOMPARE(found, expected);
                }
            }
        }
    }
}

void tst_LearnButtons::a_tool_tip_follows_a_new_binding()
{
    PlayerStage stage({u"First"_s}, 0, {{u"ControlModeLeft"_s, u"MIDI"_s}});
    stage.open();
    const PlayerStage::Player &player = stage.players[0];
    player.midiList->setCurrentIndex(1);
    PlayerStage::click(player.learnMove);
    QCOMPARE(player.learnMove->toolTip(), u"Nothing learnt yet"_s);
    stage.sendMidi(0, 0xE1, 5, 100);
    QCOMPARE(player.learnMove->toolTip(), u"Learnt: pitch bend, channel 2"_s);
    QCOMPARE(player.learnStart->toolTip(), u"Nothing learnt yet"_s);
    PlayerStage::click(player.keyboard);
    QCOMPARE(player.learnStart->toolTip(), u"Nothing learnt yet"_s);
    PlayerStage::click(player.midi);
    QCOMPARE(player.learnMove->toolTip(), u"Learnt: pitch bend, channel 2"_s);
}

void tst_LearnButtons::a_learn_that_lost_its_device_stays_blue()
{
    PlayerStage stage({u"First"_s}, 0, {{u"ControlModeLeft"_s, u"MIDI"_s}});
    stage.open();
    const PlayerStage::Player &player = stage.players[0];
    player.midiList->setCurrentIndex(1);
    PlayerStage::click(player.learnMove);
    player.midiList->setCurrentIndex(0);
    QCOMPARE(lookOf(player.learnMove), (Look{u"Learning Move..."_s, false, blue}));
    QCOMPARE(lookOf(player.learnStart), (Look{u"Click to learn Start"_s, false, grey}));
    // Once the device is back, it learns as the button says.
    player.midiList->setCurrentIndex(1);
    QCOMPARE(lookOf(player.learnMove), (Look{u"Learning Move..."_s, true, blue}));
    stage.sendMidi(0, 0xB0, 7, 100);
    QCOMPARE(lookOf(player.learnMove), (Look{u"Click to learn Move - "_s, true, mauve}));
}

void tst_LearnButtons::a_refresh_sets_no_look_that_shows_already_data()
{
    QTest::addColumn<bool>("learns");
    QTest::addRow("not learning") << false;
    QTest::addRow("learning") << true;
}

void tst_LearnButtons::a_refresh_sets_no_look_that_shows_already()
{
    QFETCH(bool, learns);
    PlayerStage stage({u"Fader"_s}, 0, {{u"ControlModeLeft"_s, u"MIDI"_s}, {u"CC_00"_s, u"176"_s}});
    stage.open();
    const PlayerStage::Player &player = stage.players[0];
    player.midiList->setCurrentIndex(1);
    if (learns)
        PlayerStage::click(player.learnMove);
    // Setting a style sheet is slow enough to delay the ball.
    StyleWatch watch;
    for (const PlayerStage::Player &each : stage.players) {
        for (QPushButton *button : buttonsOf(each))
            button->installEventFilter(&watch);
    }
    stage.controls()->refreshLearnButtons();
    QCOMPARE(watch.changed, QStringList());
    PlayerStage::click(player.learnMove);
    QCOMPARE(watch.changed, QStringList{player.learnMove->objectName()});
}

void tst_LearnButtons::the_form_shows_no_text_of_its_own_after_the_start()
{
    for (const QString &mode : {u"MIDI"_s, u"XBOX"_s, u"KEYBOARD"_s}) {
        PlayerStage stage({}, 0, {{u"ControlModeLeft"_s, mode}, {u"ControlModeRight"_s, mode}});
        stage.open();
        for (const PlayerStage::Player &player : stage.players) {
            for (const QPushButton *button : buttonsOf(player)) {
                if (button->isVisible())
                    QVERIFY2(button->text().startsWith("Click to learn "_L1),
                        qPrintable(button->text()));
            }
        }
    }
}

QTEST_MAIN(tst_LearnButtons)

#include "tst_learnbuttons.moc"
