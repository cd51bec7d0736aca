#include "initext.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The values that QSettings reads from a text.
IniValues valuesIn(const QByteArray &text, QSettings::Status &status)
{
    const QTemporaryDir folder; // a new one each time: QSettings caches files
    const QString name = folder.filePath(u"settings"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("Cannot write %s", qUtf8Printable(name));
    file.close();
    const QSettings settings(name, QSettings::IniFormat);
    IniValues values;
    for (const QString &key : settings.allKeys())
        values.insert(key, settings.value(key));
    status = settings.status();
    return values;
}

} // namespace

class tst_IniText : public QObject
{
    Q_OBJECT

private slots:
    void our_settings_are_plain_lines_sorted_by_key();
    void groups_follow_the_settings_without_one();
    void qsettings_reads_back_every_text_data();
    void qsettings_reads_back_every_text();
    void qsettings_reads_back_every_key_data();
    void qsettings_reads_back_every_key();
    void every_character_is_read_back();
};

void tst_IniText::our_settings_are_plain_lines_sorted_by_key()
{
    QCOMPARE(iniText({{u"XMoveL"_s, -3}, {u"CC_10"_s, 176U}, {u"KeyboardUpL"_s, 0xffffffffU},
                 {u"ControlModeLeft"_s, u"MIDI"_s}}),
        QByteArray("[General]\nCC_10=176\nControlModeLeft=MIDI\nKeyboardUpL=4294967295\n"
                   "XMoveL=-3\n"));
}

void tst_IniText::groups_follow_the_settings_without_one()
{
    QCOMPARE(iniText({{u"B/Width"_s, 1}, {u"A"_s, 2}, {u"B/Deep/Height"_s, 3}, {u"C/D"_s, 4},
                 {u"Z"_s, 5}}),
        QByteArray("[General]\nA=2\nZ=5\n\n[B]\nDeep\\Height=3\nWidth=1\n\n[C]\nD=4\n"));
}

void tst_IniText::qsettings_reads_back_every_text_data()
{
    QTest::addColumn<QVariant>("value");
    const auto add = [](const char *name, const QVariant &value) {
        QTest::addRow("%s", name) << value;
    };
    add("empty", u""_s);
    add("spaces around", u"  a b "_s);
    add("only a space", u" "_s);
    add("tabs and line ends", u"\ta\nb\r\n"_s);
    add("separators", u"a;b,c=d"_s);
    add("quotes", u"\"a\" 'b' \"\""_s);
    add("backslashes", u"C:\\show\\x41\\"_s);
    add("an at sign", u"@home"_s);
    add("two at signs", u"@@Rect(1 2 3 4)"_s);
    add("like a typed value", u"@Rect(1 2 3 4)"_s);
    add("like a group", u"[General]"_s);
    add("a comment", u";no"_s);
    add("a zero, then a digit", u"a"_s + QChar(0) + u"1f"_s);
    add("accents", u"größe 漢字"_s);
    add("beyond 16 bits", u"🎾 a"_s);
    add("half a character", QString(QChar(0xd800)) + u"a"_s);
    add("a byte order mark", QString(QChar(0xfeff)) + u"a"_s);
    add("a list", QStringList{u"a"_s, u"b c"_s, u""_s, u"d,e"_s});
    add("a list with at signs", QStringList{u"@a"_s, u"@Size(1 2)"_s});
    add("a list of nothing", QStringList{u""_s, u""_s});
}

void tst_IniText::qsettings_reads_back_every_text()
{
    QFETCH(QVariant, value);
    const IniValues values = {{u"A"_s, value}, {u"B"_s, u"after"_s}, {u"Group/A"_s, value}};
    QSettings::Status status = {};
    QCOMPARE(valuesIn(iniText(values), status), values);
    QCOMPARE(status, QSettings::NoError);
}

void tst_IniText::qsettings_reads_back_every_key_data()
{
    QTest::addColumn<QString>("key");
    for (const QString &key : {u"a b"_s, u"a=b"_s, u"[a]"_s, u";a"_s, u"\"a\""_s, u"a%41"_s,
             u"a\\b"_s, u"größe"_s, u"漢"_s, u"🎾"_s, u"General"_s, u"General/a"_s, u"general/a"_s,
             u"GENERAL/a"_s, u"a]b/c=d/e"_s, u"%General/a"_s})
        QTest::addRow("%s", qPrintable(key)) << key;
}

void tst_IniText::qsettings_reads_back_every_key()
{
    QFETCH(QString, key);
    const IniValues values = {{key, u"value"_s}, {u"Other"_s, u"1"_s}};
    QSettings::Status status = {};
    QCOMPARE(valuesIn(iniText(values), status), values);
    QCOMPARE(status, QSettings::NoError);
}

void tst_IniText::every_character_is_read_back()
{
    IniValues values;
    for (int c = 0; c < 0x10000; ++c)
        values.insert(u"k%1"_s.arg(c), QString(QChar(c)) + u'a' + QChar(c));
    QSettings::Status status = {};
    QCOMPARE(valuesIn(iniText(values), status), values);
    QCOMPARE(status, QSettings::NoError);
}

QTEST_GUILESS_MAIN(tst_IniText)
#include "tst_initext.moc"
