#include "references.h"

#include <QImage>
#include <QProcess>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

QStringList registeredTests()
{
    QProcess ctest;
    ctest.setWorkingDirectory(QStringLiteral(BUILD_FOLDER));
    ctest.start(QStringLiteral(CTEST_COMMAND), {u"-N"_s});
    ctest.waitForFinished();
    QStringList names;
    for (const QByteArray &line : ctest.readAllStandardOutput().split('\n')) {
        if (line.trimmed().startsWith("Test "))
            names.append(QString::fromUtf8(line).section(u": "_s, 1).trimmed());
    }
    return names;
}

} // namespace

/// Everything that the documents refer to exists.
class tst_Documents : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everything_that_a_document_refers_to_exists_data();
    void everything_that_a_document_refers_to_exists();
    void the_table_of_presets_is_complete();
    void every_picture_is_shown_in_a_document_and_made_by_the_command();
    void a_fault_is_reported_with_its_place_data();
    void a_fault_is_reported_with_its_place();
    void right_references_are_not_faults();

private:
    std::optional<Project> m_project;
};

void tst_Documents::initTestCase()
{
    const QStringList tests = registeredTests();
    QVERIFY(tests.size() > 50);
    m_project.emplace(QStringLiteral(PROJECT_FOLDER), QStringLiteral(PROGRAMS_FOLDER), tests);
}

void tst_Documents::everything_that_a_document_refers_to_exists_data()
{
    QTest::addColumn<QString>("file");
    const QList<Document> documents = m_project->documents();
    QVERIFY(documents.size() > 8);
    for (const Document &document : documents)
        QTest::newRow(qPrintable(document.path)) << document.path;
}

void tst_Documents::everything_that_a_document_refers_to_exists()
{
    QFETCH(QString, file);
    const Document document = Document::parse(file, m_project->contentOf(file));
    const QString faults = References(*m_project, document).faults().join(u'\n');
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
}

void tst_Documents::the_table_of_presets_is_complete()
{
    const Document document =
        Document::parse(u"CONTRIBUTING.md"_s, m_project->contentOf(u"CONTRIBUTING.md"_s));
    QSet<QString> listed;
    bool inTable = false;
    for (const Document::Paragraph &paragraph : document.paragraphs) {
        inTable = paragraph.isTableRow() && (inTable || paragraph.text.startsWith("| preset |"_L1));
        if (inTable && !paragraph.codeSpans().isEmpty())
            listed.insert(paragraph.codeSpans().constFirst());
    }
    QCOMPARE(listed, m_project->presets());
}

void tst_Documents::every_picture_is_shown_in_a_document_and_made_by_the_command()
{
    const QStringList pictures = m_project->filesIn(u"docs/"_s, u"*.png"_s);
    QVERIFY(!pictures.isEmpty());
    QStringList shown;
    for (const Document &document : m_project->documents()) {
        for (const Document::Link &link : document.links) {
            if (link.isPicture)
                shown.append(link.target.section(u'/', -1));
        }
    }
    const QStringList made =
        m_project->contentOf(u"docs/pictures"_s).split(QRegularExpression(u"[^\\w-]+"_s));
    for (const QString &picture : pictures) {
        const QString name = picture.section(u'/', -1);
        QVERIFY2(shown.contains(name), qPrintable(picture));
        QVERIFY2(made.contains(name.chopped(4)), qPrintable(picture));
        constexpr qint64 small = 50000;
        QVERIFY2(QFileInfo(m_project->pathOf(picture)).size() < small, qPrintable(picture));
    }
}

void tst_Documents::a_fault_is_reported_with_its_place_data()
{
    QTest::addColumn<QString>("markdown");
    QTest::addColumn<QString>("fault");
    const auto fault = [](const char *name, const QString &markdown, const QString &reported) {
        QTest::newRow(name) << markdown << reported;
    };
    fault("a link to no file", u"[a](none.md)"_s, u"1: the link's file is missing: none.md"_s);
    fault("a link across lines", u"See [a\nb](none.md)"_s,
        u"1: the link's file is missing: none.md"_s);
    fault("an anchor", u"# One\n\n[a](#two)"_s, u"3: no heading has the link's anchor: #two"_s);
    fault("an anchor elsewhere", u"[a](../README.md#nowhere)"_s,
        u"1: no heading has the link's anchor: ../README.md#nowhere"_s);
    fault("a picture that is missing", u"![a](images/none.png)"_s,
        u"1: the link's file is missing: images/none.png"_s);
    fault("a picture that is none", u"![a](rehearsal.md)"_s, u"1: not a picture: rehearsal.md"_s);
    fault("a path", u"text\nin `game/none.cpp`"_s, u"1: no such path: game/none.cpp"_s);
    fault("a file", u"`none.bash`"_s, u"1: no such path: none.bash"_s);
    fault("a folder", u"| `game/` | `none/` |"_s, u"1: no such path: none/"_s);
    fault("a path below build", u"`build/none/window.png`"_s,
        u"1: no such path: build/none/window.png"_s);
    fault("a command", u"```sh\n./chek\n```"_s, u"2: no such command: ./chek"_s);
    fault("a command in the text", u"`./chek`"_s, u"1: no such command: ./chek"_s);
    fault("a second command", u"```sh\n./check && make all\n```"_s, u"2: no such command: make"_s);
    fault("an option", u"```sh\n\n./play --headles  # a try\n```"_s,
        u"3: the help of ./play does not have --headles"_s);
    fault("an option in the text", u"`./play --head`"_s,
        u"1: the help of ./play does not have --head"_s);
    fault("an option of a program", u"`rehearsalhost --opens FILE`"_s,
        u"1: the help of rehearsalhost does not have --opens"_s);
    fault("an option alone", u"`./play`, with `--lint`"_s,
        u"1: no command named before has --lint"_s);
    fault("a preset to build", u"```sh\ncmake --preset none\n```"_s, u"2: no such preset: none"_s);
    fault("a preset to test", u"```sh\nctest --preset none\n```"_s, u"2: no such preset: none"_s);
    fault("a preset to check", u"`./check --preset none`"_s, u"1: no such preset: none"_s);
    fault("a pattern of tests", u"```sh\nctest --preset dev -R 'tst_none'\n```"_s,
        u"2: no test matches: tst_none"_s);
    fault("a test", u"`tst_none`"_s, u"1: no such test: tst_none"_s);
    fault("a setting", u"```sh\ncmake --preset dev -DRALLYVANE_NONE=1\n```"_s,
        u"2: no such setting: RALLYVANE_NONE"_s);
    fault("a variable", u"`RALLYVANE_NONE`"_s, u"1: no such variable: RALLYVANE_NONE"_s);
    fault("a function", u"`Pong::moveMountains()`"_s, u"1: no such function: moveMountains()"_s);
    fault("a command in a block without a language", u"```\nany text\nA=1 docs/picturs\n```"_s,
        u"3: no such command: docs/picturs"_s);
    fault("a language", u"```basic\n```"_s, u"1: the code block has an unknown language: basic"_s);
    fault("a file in a drawing", u"```mermaid\na[\"game/none.cpp\"]\n```"_s,
        u"2: no such path: game/none.cpp"_s);
    fault("a function in a drawing", u"```mermaid\na[\"moveMountains()\"]\n```"_s,
        u"2: no such function: moveMountains()"_s);
}

void tst_Documents::a_fault_is_reported_with_its_place()
{
    QFETCH(QString, markdown);
    QFETCH(QString, fault);
    const Document document = Document::parse(u"docs/page.md"_s, markdown);
    QCOMPARE(References(*m_project, document).faults(), QStringList("docs/page.md:"_L1 + fault));
}

void tst_Documents::right_references_are_not_faults()
{
    const Document document = Document::parse(u"docs/page.md"_s,
        u"# A `path`, and more\n"
        "[a](#a-path-and-more) [b](../README.md#two-commands) [c](https://example.org)\n"
        "`game/` `pong.cpp` `rehearsal.md` `build/dev/x` `build/play/window.png`\n"
        "`./check --preset NAME` `--lint` `tst_folders` `Pong::FirstLoad()` `docs/pictures`\n"
        "```sh\n"
        "A=1 ./play --headless --zones 4 # comment\n"
        "cmake --preset release -DRALLYVANE_BENCH=ON && ctest --preset dev -R '^tst_f'\n"
        "```\n"_s);
    QCOMPARE(References(*m_project, document).faults().join(u'\n'), QString());
}

QTEST_GUILESS_MAIN(tst_Documents)

#include "tst_documents.moc"
