#include "typedvalues.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class tst_TypedValues : public QObject
{
    Q_OBJECT

private slots:
    void an_at_sign_that_begins_a_type_is_doubled_data();
    void an_at_sign_that_begins_a_type_is_doubled();
    void other_text_is_unchanged_byte_for_byte_data();
    void other_text_is_unchanged_byte_for_byte();
};

namespace {

/// The types of the values that QSettings reads.
QList<int> typesIn(const QByteArray &iniText)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"settings"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(iniText) != iniText.size())
        return {};
    file.close();
    const QSettings store(name, QSettings::IniFormat);
    QList<int> types;
    for (const QString &key : store.allKeys())
        types.append(store.value(key).typeId());
    return types;
}

bool isText(int type)
{
    return type == QMetaType::QString || type == QMetaType::QStringList;
}

} // namespace

void tst_TypedValues::an_at_sign_that_begins_a_type_is_doubled_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto add = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::addRow("%s", name) << before << after;
    };
    add("plain", "a=@Rect(1 2 3 4)", "a=@@Rect(1 2 3 4)");
    add("a value of its own size", R"(a=@Variant(\0\0\0\x2\0\0\0\x19))",
        R"(a=@@Variant(\0\0\0\x2\0\0\0\x19))");
    add("with spaces around", "a = \t@Size(1 2) \t", "a = \t@@Size(1 2) \t");
    add("in quotes", "a=\"@Size(1 2)\"", "a=@\"@Size(1 2)\"");
    add("behind empty quotes", "a=\"\" @Size(1 2)", "a=@\"\" @Size(1 2)");
    add("in a list", "a=1, @Size(1 2),@Point(1 2)", "a=1, @@Size(1 2),@@Point(1 2)");
    add("as a hexadecimal escape", "a=\\x40Size(1 2)", "a=@\\x40Size(1 2)");
    add("as one that wraps", "a=\\x10040Size(1 2)", "a=@\\x10040Size(1 2)");
    add("as an octal escape", "a=\\100Size(1 2)", "a=@\\100Size(1 2)");
    add("its name escaped", "a=@\\x53ize(1 2)", "a=@@\\x53ize(1 2)");
    add("its end escaped", "a=@Size(1 2\\x29", "a=@@Size(1 2\\x29");
    add("behind an unknown escape", "a=\\q@Size(1 2)", "a=@\\q@Size(1 2)");
    add("behind an escape without digits", "a=\\x@Size(1 2)", "a=@\\x@Size(1 2)");
    add("on a continued line", "a=\\\r\n@Size(1 2)", "a=@\\\r\n@Size(1 2)");
    add("behind a byte order mark", "a=\xef\xbb\xbf@Size(1 2)", "a=@\xef\xbb\xbf@Size(1 2)");
    add("behind a cut character", "a=\xc3\\x40\\x53\\x69\\x7a\\x65\\x28\\x31\\x20\\x32\\x29",
        "a=@\xc3\\x40\\x53\\x69\\x7a\\x65\\x28\\x31\\x20\\x32\\x29");
    add("under a quoted key", "\"a=b\"=@Size(1 2)", "\"a=b\"=@@Size(1 2)");
    add("under a key with an escape", "a\\=b=@Size(1 2)", "a\\=b=@@Size(1 2)");
    add("behind a byte order mark of the file", "\xef\xbb\xbf;\n a=@Size(1 2)",
        "\xef\xbb\xbf;\n a=@@Size(1 2)");
    add("before a comment", "a=@Size(1 2); b", "a=@@Size(1 2); b");
    add("behind comments", "; b\n;c\r\na=@Size(1 2)", "; b\n;c\r\na=@@Size(1 2)");
    add("in any group", "[x]\na=@Size(1 2)\n[y]\nb=1\n[x]\nc=@Size(1 2)\n",
        "[x]\na=@@Size(1 2)\n[y]\nb=1\n[x]\nc=@@Size(1 2)\n");
}

void tst_TypedValues::an_at_sign_that_begins_a_type_is_doubled()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QList<int> types = typesIn(before);
    QVERIFY2(!std::all_of(types.begin(), types.end(), isText), "QSettings sees only text here");
    QCOMPARE(withoutTypedValues(before), after);
    QCOMPARE(withoutTypedValues(after), after);
    const QList<int> typesAfter = typesIn(after);
    QCOMPARE(typesAfter.size(), types.size());
    QVERIFY(std::all_of(typesAfter.begin(), typesAfter.end(), isText));
}

void tst_TypedValues::other_text_is_unchanged_byte_for_byte_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto add = [](const char *name, const QByteArray &text) {
        QTest::addRow("%s", name) << text;
    };
    add("nothing", "");
    add("what the program writes", "[General]\nBallSpeed=25\nControlModeLeft=MIDI\n");
    add("an at sign within", "a=me@Example(x)");
    add("an at sign in front", "a=@home");
    add("a doubled one", "a=@@Size(1 2)");
    add("a doubled one, escaped", "a=\\x40\\x40Size(1 2)");
    add("text that QSettings wrote with a zero in it", "a=@String(@Size(1 2)\\0)");
    add("a path", R"(a=C:\\show\\@Size(1 2))");
    add("a comma in quotes", "a=\"b, @Size(1 2)\"");
    add("a comment", ";a=@Size(1 2)\n");
    add("a comment behind a value", "a=1;b=@Size(1 2)\n");
    add("a comment behind a group", "[x];b=@Size(1 2)\n");
    add("the name of a group", "[a=@Size(1 2)]\n");
    add("a line without a value", "@Size(1 2)\n");
    add("an open quote", "a=\"\nb=@Size(1 2)\n");
    add("an escape at the end", "a=\\");
    add("an escape without digits at the end", "a=\\x");
}

void tst_TypedValues::other_text_is_unchanged_byte_for_byte()
{
    QFETCH(QByteArray, text);
    const QList<int> types = typesIn(text);
    QVERIFY(std::all_of(types.begin(), types.end(), isText));
    QCOMPARE(withoutTypedValues(text), text);
}

QTEST_GUILESS_MAIN(tst_TypedValues)
#include "tst_typedvalues.moc"
