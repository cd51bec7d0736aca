#include "debuglines.h"
#include "settings.h"
#include "settingsfile.h"
#include "workingfolder.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using settingsfile::contentOf;

namespace {

const QString fileName = u".pong"_s;

using Keys = QMap<QString, QVariant>;

template <class T>
void insert(Keys &keys, const Setting<T> &setting)
{
    if constexpr (std::is_same_v<T, QLatin1StringView>)
        keys.insert(setting.key, QString(setting.fallback));
    else
        keys.insert(setting.key, QVariant(setting.fallback));
}

template <class T>
void insert(Keys &keys, const SettingOfSides<T> &setting)
{
    insert(keys, setting[Side::Left]);
    insert(keys, setting[Side::Right]);
}

/// The lines of the settings file, sorted: order and line ends differ between systems.
QStringList sortedLines()
{
    QStringList lines =
        QString::fromUtf8(contentOf(fileName)).remove(u'\r').split(u'\n', Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

QByteArray notANumber(const char *key, const char *value)
{
    return QByteArray("Setting \"") + key + "\" is not a number: \"" + value + '"';
}

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_keys_their_types_and_defaults_are_those_of_the_file();
    void the_halves_of_a_pair_are_the_left_and_the_right_side();
    void without_a_file_every_setting_has_its_default();
    void an_empty_file_is_not_an_error();
    void a_folder_in_place_of_the_file_is_not_an_error();
    void a_file_for_one_side_leaves_the_other_its_default();
    void values_are_written_at_the_top_level_of_the_file();
    void written_values_are_read_back();
    void a_write_leaves_the_other_keys_alone();
    void unchanged_values_are_not_written_again();
    void another_working_directory_has_another_file();
    void a_change_of_the_working_directory_leaves_the_settings_in_their_file();
    void values_that_are_not_numbers_read_as_0_and_are_logged_data();
    void values_that_are_not_numbers_read_as_0_and_are_logged();
    void numbers_are_read_as_qt_converts_them_data();
    void numbers_are_read_as_qt_converts_them();
    void a_negative_number_is_not_a_key();
    void a_mode_is_read_verbatim_data();
    void a_mode_is_read_verbatim();

private:
    std::optional<WorkingFolder> m_folder;
};

void tst_Settings::init()
{
    m_folder.emplace();
}

void tst_Settings::cleanup()
{
    m_folder.reset();
}

void tst_Settings::the_keys_their_types_and_defaults_are_those_of_the_file()
{
    const Keys expected = {
        {u"BallSpeed"_s, 20},
        {u"SensL"_s, 512},
        {u"SensR"_s, 512},
        {u"ControlModeLeft"_s, u"XBOX"_s},
        {u"ControlModeRight"_s, u"XBOX"_s},
        {u"XStartL"_s, 0},
        {u"XStartR"_s, 0},
        {u"XMoveL"_s, 0},
        {u"XMoveR"_s, 0},
        {u"CC_00"_s, 0U},
        {u"CC_01"_s, 0U},
        {u"CC_10"_s, 0U},
        {u"CC_11"_s, 0U},
        {u"Start_00"_s, 0U},
        {u"Start_01"_s, 0U},
        {u"Start_10"_s, 0U},
        {u"Start_11"_s, 0U},
        {u"KeyboardUpL"_s, 0U},
        {u"KeyboardDownL"_s, 0U},
        {u"KeyboardStartL"_s, 0U},
        {u"KeyboardUpR"_s, 0U},
        {u"KeyboardDownR"_s, 0U},
        {u"KeyboardStartR"_s, 0U},
    };
    Keys keys;
    insert(keys, settings::ballSpeed);
    insert(keys, settings::sensitivity);
    insert(keys, settings::controlMode);
    for (const auto &setting : {settings::xStart, settings::xMove})
        insert(keys, setting);
    for (const auto &setting : {settings::moveStatus, settings::moveNumber, settings::startStatus,
             settings::startNumber, settings::upKey, settings::downKey, settings::startKey})
        insert(keys, setting);
    QCOMPARE(keys.size(), 23);
    QCOMPARE(keys.keys(), expected.keys());
    for (auto wanted = expected.cbegin(); wanted != expected.cend(); ++wanted) {
        const QVariant found = keys.value(wanted.key());
        QVERIFY2(found.metaType() == wanted->metaType(), qPrintable(wanted.key()));
        QVERIFY2(found == *wanted, qPrintable(wanted.key()));
    }
}

void tst_Settings::the_halves_of_a_pair_are_the_left_and_the_right_side()
{
    QCOMPARE(settings::sensitivity[Side::Left].key, "SensL"_L1);
    QCOMPARE(settings::sensitivity[Side::Right].key, "SensR"_L1);
    QCOMPARE(settings::controlMode[Side::Left].key, "ControlModeLeft"_L1);
    QCOMPARE(settings::controlMode[Side::Right].key, "ControlModeRight"_L1);
    QCOMPARE(settings::moveStatus[Side::Left].key, "CC_00"_L1);
    QCOMPARE(settings::moveNumber[Side::Left].key, "CC_01"_L1);
    QCOMPARE(settings::moveStatus[Side::Right].key, "CC_10"_L1);
    QCOMPARE(settings::moveNumber[Side::Right].key, "CC_11"_L1);
    QCOMPARE(settings::startStatus[Side::Left].key, "Start_00"_L1);
    QCOMPARE(settings::startNumber[Side::Left].key, "Start_01"_L1);
    QCOMPARE(settings::startStatus[Side::Right].key, "Start_10"_L1);
    QCOMPARE(settings::startNumber[Side::Right].key, "Start_11"_L1);
    const auto endInTheirSide = [](const auto &setting, QLatin1StringView prefix) {
        QCOMPARE(setting[Side::Left].key, QString(prefix + 'L'_L1));
        QCOMPARE(setting[Side::Right].key, QString(prefix + 'R'_L1));
    };
    endInTheirSide(settings::upKey, "KeyboardUp"_L1);
    endInTheirSide(settings::downKey, "KeyboardDown"_L1);
    endInTheirSide(settings::startKey, "KeyboardStart"_L1);
    endInTheirSide(settings::xStart, "XStart"_L1);
    endInTheirSide(settings::xMove, "XMove"_L1);
}

void tst_Settings::without_a_file_every_setting_has_its_default()
{
    const auto store = settings::open();
    QCOMPARE(settings::read(*store, settings::ballSpeed), 20);
    for (const Side side : bothSides) {
        QCOMPARE(settings::read(*store, settings::sensitivity[side]), 512);
        QCOMPARE(settings::read(*store, settings::controlMode[side]), u"XBOX"_s);
        QCOMPARE(settings::read(*store, settings::xStart[side]), 0);
        QCOMPARE(settings::read(*store, settings::moveStatus[side]), 0U);
        QCOMPARE(settings::read(*store, settings::startKey[side]), 0U);
    }
    store->sync();
    QCOMPARE(WorkingFolder::files(), QStringList());
}

void tst_Settings::an_empty_file_is_not_an_error()
{
    WorkingFolder::write(fileName, "");
    const auto store = settings::open();
    QCOMPARE(settings::read(*store, settings::ballSpeed), 20);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

void tst_Settings::a_folder_in_place_of_the_file_is_not_an_error()
{
    QVERIFY(QDir().mkdir(fileName));
    QTest::ignoreMessage(QtDebugMsg,
        QRegularExpression(u"The settings file cannot be read; changes will not be kept: .+"_s));
    const auto store = settings::open();
    QCOMPARE(settings::read(*store, settings::ballSpeed), 20);
    settings::write(*store, settings::ballSpeed, 25);
    QCOMPARE(settings::read(*store, settings::ballSpeed), 25);
}

void tst_Settings::a_file_for_one_side_leaves_the_other_its_default()
{
    WorkingFolder::write(fileName, "[General]\nSensL=300\n");
    const auto store = settings::open();
    QCOMPARE(settings::read(*store, settings::sensitivity[Side::Left]), 300);
    QCOMPARE(settings::read(*store, settings::sensitivity[Side::Right]), 512);
}

void tst_Settings::values_are_written_at_the_top_level_of_the_file()
{
    {
        const auto store = settings::open();
        settings::write(*store, settings::controlMode[Side::Right], "MIDI"_L1);
        settings::write(*store, settings::moveStatus[Side::Right], 176);
        settings::write(*store, settings::ballSpeed, 25);
    }
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
    QCOMPARE(sortedLines(),
        (QStringList{
            u"BallSpeed=25"_s, u"CC_10=176"_s, u"ControlModeRight=MIDI"_s, u"[General]"_s}));
}

void tst_Settings::written_values_are_read_back()
{
    const uint largestKey = 0xffffffff;
    {
        const auto store = settings::open();
        settings::write(*store, settings::xMove[Side::Left], -3);
        settings::write(*store, settings::upKey[Side::Left], largestKey);
        settings::write(*store, settings::controlMode[Side::Left], "KEYBOARD"_L1);
        QCOMPARE(settings::read(*store, settings::upKey[Side::Left]), largestKey);
    }
    const auto store = settings::open();
    QCOMPARE(settings::read(*store, settings::xMove[Side::Left]), -3);
    QCOMPARE(settings::read(*store, settings::upKey[Side::Left]), largestKey);
    QCOMPARE(settings::read(*store, settings::controlMode[Side::Left]), u"KEYBOARD"_s);
}

void tst_Settings::a_write_leaves_the_other_keys_alone()
{
    WorkingFolder::write(fileName, "[General]\nForeign=kept\nSensR=600\n");
    settings::write(*settings::open(), settings::sensitivity[Side::Left], 300);
    QCOMPARE(sortedLines(),
        (QStringList{u"Foreign=kept"_s, u"SensL=300"_s, u"SensR=600"_s, u"[General]"_s}));
}

void tst_Settings::unchanged_values_are_not_written_again()
{
    WorkingFolder::write(fileName, "[General]\nBallSpeed=25\nControlModeLeft=MIDI\n");
    const auto store = settings::open();
    QVERIFY(QFile::remove(fileName)); // the next write would recreate it
    settings::write(*store, settings::ballSpeed, 25);
    settings::write(*store, settings::controlMode[Side::Left], "MIDI"_L1);
    store->sync();
    QVERIFY(!QFile::exists(fileName));
    settings::write(*store, settings::ballSpeed, 26);
    store->sync();
    QVERIFY(QFile::exists(fileName));
}

void tst_Settings::another_working_directory_has_another_file()
{
    settings::write(*settings::open(), settings::ballSpeed, 25);
    {
        const WorkingFolder other;
        QCOMPARE(settings::read(*settings::open(), settings::ballSpeed), 20);
        settings::write(*settings::open(), settings::ballSpeed, 12);
    }
    QCOMPARE(settings::read(*settings::open(), settings::ballSpeed), 25);
}

void tst_Settings::a_change_of_the_working_directory_leaves_the_settings_in_their_file()
{
    const auto store = settings::open();
    const WorkingFolder other;
    settings::write(*store, settings::ballSpeed, 25);
    QTRY_VERIFY(contentOf(m_folder->filePath(fileName)).contains("BallSpeed=25"));
    QCOMPARE(WorkingFolder::files(), QStringList());
}

void tst_Settings::values_that_are_not_numbers_read_as_0_and_are_logged_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("logged");
    const auto add = [](const char *name, const QByteArray &written, const QByteArray &logged) {
        QTest::addRow("%s", name) << written << logged;
    };
    add("a word", "fast", "fast");
    add("nothing", "", "");
    add("a number with a tail", "12abc", "12abc");
    add("a fraction", "20.5", "20.5");
    add("a list", "20, 21", "");
}

void tst_Settings::values_that_are_not_numbers_read_as_0_and_are_logged()
{
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, logged);
    WorkingFolder::write(fileName, "[General]\nBallSpeed=" + written + "\nCC_00=" + written + '\n');
    const auto store = settings::open();
    QTest::ignoreMessage(QtDebugMsg, notANumber("BallSpeed", logged));
    QCOMPARE(settings::read(*store, settings::ballSpeed), 0);
    QTest::ignoreMessage(QtDebugMsg, notANumber("CC_00", logged));
    QCOMPARE(settings::read(*store, settings::moveStatus[Side::Left]), 0U);
}

void tst_Settings::numbers_are_read_as_qt_converts_them_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<int>("asInt");
    QTest::addColumn<uint>("asUInt");
    QTest::addRow("beyond 32 bits") << QByteArray("99999999999") << 1215752191 << 1215752191U;
    QTest::addRow("the largest key") << QByteArray("4294967295") << -1 << 4294967295U;
    QTest::addRow("in quotes") << QByteArray("\"25\"") << 25 << 25U;
    QTest::addRow("escaped") << QByteArray("\\x32\\x35") << 25 << 25U;
}

void tst_Settings::numbers_are_read_as_qt_converts_them()
{
    QFETCH(QByteArray, written);
    QFETCH(int, asInt);
    QFETCH(uint, asUInt);
    WorkingFolder::write(fileName, "[General]\nBallSpeed=" + written + "\nCC_00=" + written + '\n');
    DebugLines log;
    const auto store = settings::open();
    QCOMPARE(settings::read(*store, settings::ballSpeed), asInt);
    QCOMPARE(settings::read(*store, settings::moveStatus[Side::Left]), asUInt);
    QCOMPARE(log.takeAll(), QStringList());
}

void tst_Settings::a_negative_number_is_not_a_key()
{
    WorkingFolder::write(fileName, "[General]\nKeyboardUpL=-1\nXMoveL=-1\n");
    const auto store = settings::open();
    QTest::ignoreMessage(QtDebugMsg, notANumber("KeyboardUpL", "-1"));
    QCOMPARE(settings::read(*store, settings::upKey[Side::Left]), 0U);
    QCOMPARE(settings::read(*store, settings::xMove[Side::Left]), -1);
}

void tst_Settings::a_mode_is_read_verbatim_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("mode");
    QTest::addRow("MIDI") << QByteArray("MIDI") << u"MIDI"_s;
    QTest::addRow("lower case") << QByteArray("midi") << u"midi"_s;
    QTest::addRow("empty") << QByteArray() << QString();
    QTest::addRow("a list") << QByteArray("MIDI, XBOX") << QString();
}

void tst_Settings::a_mode_is_read_verbatim()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, mode);
    WorkingFolder::write(fileName, "[General]\nControlModeLeft=" + written + '\n');
    QCOMPARE(settings::read(*settings::open(), settings::controlMode[Side::Left]), mode);
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
