#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Every folder of the drawing with those that it may use.
using Arrows = QMap<QString, QSet<QString>>;

constexpr auto project = QLatin1StringView(PROJECT_FOLDER);

QStringList linesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("Cannot read %s", qUtf8Printable(path));
    return QString::fromUtf8(file.readAll()).split(u'\n');
}

/// The arrows drawn in a file: lines such as "game -> base laser/binding", behind whatever marks a
/// comment there.
Arrows arrowsIn(const QString &file)
{
    static const QRegularExpression arrow(u"^#? *([a-z/]+) +->(( [a-z/]+)*)$"_s);
    Arrows arrows;
    for (const QString &line : linesOf(project + u'/' + file)) {
        const QRegularExpressionMatch match = arrow.match(line);
        if (!match.hasMatch())
            continue;
        const QStringList used = match.captured(2).split(u' ', Qt::SkipEmptyParts);
        arrows.insert(match.captured(1), {used.begin(), used.end()});
    }
    return arrows;
}

/// The pairs "from -> to" that the drawing of a document shows: lines such as "app --> game &
/// input", with underscores for slashes.
QSet<QString> shownArrows(const QString &file)
{
    static const QRegularExpression arrow(u"^ *([a-z_]+) --> ([a-z_]+( & [a-z_]+)*)$"_s);
    QSet<QString> pairs;
    for (const QString &line : linesOf(project + u'/' + file)) {
        const QRegularExpressionMatch match = arrow.match(line);
        if (!match.hasMatch())
            continue;
        for (const QString &to : match.captured(2).split(" & "_L1))
            pairs.insert(QString(match.captured(1) + " -> "_L1 + to).replace(u'_', u'/'));
    }
    return pairs;
}

/// The sources of the project below its folder, without those of `others`.
QStringList sources(const QStringList &patterns, const QStringList &others)
{
    // The folder of the builds can be large, so it is not entered.
    QStringList found;
    for (const QString &folder : QDir(project).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (others.contains(folder))
            continue;
        QDirIterator files(
            project + u'/' + folder, patterns, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            found.append(QDir(project).relativeFilePath(files.next()));
    }
    return found;
}

/// Headers may have any name that is generated; only those of the project count here.
QStringList includesOf(const QString &file)
{
    static const QRegularExpression include(u"^#include \"([^\"]+)\"$"_s);
    QStringList names;
    for (const QString &line : linesOf(project + u'/' + file)) {
        const QRegularExpressionMatch match = include.match(line);
        if (match.hasMatch())
            names.append(match.captured(1));
    }
    return names;
}

} // namespace

/// The dependencies between the folders are the ones that are drawn. Tests and benchmarks may use
/// every folder.
class tst_Folders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void the_drawing_is_the_same_in_both_places();
    void the_drawing_of_the_architecture_has_only_these_arrows();
    void every_folder_with_sources_is_drawn();
    void an_include_follows_an_arrow();
    void a_link_follows_an_arrow();
    void every_arrow_is_used();
    void the_arrows_form_no_circle();
    void no_two_headers_share_a_name();

private:
    /// The drawn folder that a file is in.
    QString folderOf(const QString &file) const;
    /// The pairs "from -> to" of all includes or links that cross folders.
    QSet<QString> includedFolders() const;
    QSet<QString> linkedFolders() const;
    QStringList notDrawn(const QSet<QString> &used) const;

    Arrows m_arrows;
    QStringList m_sources;
};

void tst_Folders::initTestCase()
{
    m_arrows = arrowsIn(u"CONTRIBUTING.md"_s);
    QVERIFY(m_arrows.size() > 10);
    m_sources = sources({u"*.cpp"_s, u"*.h"_s}, {u"build"_s, u"tests"_s, u"bench"_s, u"tools"_s});
    QVERIFY(m_sources.size() > 50);
}

void tst_Folders::the_drawing_is_the_same_in_both_places()
{
    QCOMPARE(arrowsIn(u"CMakeLists.txt"_s), m_arrows);
}

void tst_Folders::the_drawing_of_the_architecture_has_only_these_arrows()
{
    const QSet<QString> shown = shownArrows(u"docs/architecture.md"_s);
    QVERIFY(shown.size() > 15);
    QCOMPARE(notDrawn(shown).join(u", "_s), QString());
}

void tst_Folders::every_folder_with_sources_is_drawn()
{
    for (const QString &file : std::as_const(m_sources))
        QVERIFY2(!folderOf(file).isEmpty(), qPrintable(file));
}

void tst_Folders::an_include_follows_an_arrow()
{
    QCOMPARE(notDrawn(includedFolders()).join(u", "_s), QString());
}

void tst_Folders::a_link_follows_an_arrow()
{
    QCOMPARE(notDrawn(linkedFolders()).join(u", "_s), QString());
}

void tst_Folders::every_arrow_is_used()
{
    const QSet<QString> used = includedFolders() + linkedFolders();
    for (auto arrow = m_arrows.cbegin(); arrow != m_arrows.cend(); ++arrow) {
        for (const QString &to : arrow.value()) {
            const QString pair = arrow.key() + " -> "_L1 + to;
            QVERIFY2(used.contains(pair), qPrintable(pair));
        }
    }
}

void tst_Folders::the_arrows_form_no_circle()
{
    Arrows left = m_arrows;
    while (!left.isEmpty()) {
        const QString end = [&left] {
            for (auto arrow = left.cbegin(); arrow != left.cend(); ++arrow) {
                if (arrow.value().isEmpty())
                    return arrow.key();
            }
            return QString();
        }();
        QVERIFY2(!end.isEmpty(), qPrintable(left.firstKey()));
        left.remove(end);
        for (QSet<QString> &used : left)
            used.remove(end);
    }
}

void tst_Folders::no_two_headers_share_a_name()
{
    QMap<QString, QString> seen;
    for (const QString &file : sources({u"*.h"_s}, {u"build"_s})) {
        const QString name = file.section(u'/', -1);
        QVERIFY2(!seen.contains(name), qPrintable(file + " and "_L1 + seen[name]));
        seen.insert(name, file);
    }
}

QString tst_Folders::folderOf(const QString &file) const
{
    QString folder = file;
    do
        folder = folder.section(u'/', 0, -2);
    while (!folder.isEmpty() && !m_arrows.contains(folder));
    return folder;
}

QSet<QString> tst_Folders::includedFolders() const
{
    QMap<QString, QString> folderOfHeader;
    for (const QString &file : m_sources)
        folderOfHeader.insert(file.section(u'/', -1), folderOf(file));
    QSet<QString> used;
    for (const QString &file : m_sources) {
        for (const QString &name : includesOf(file)) {
            const QString to = folderOfHeader.value(name.section(u'/', -1));
            if (!to.isEmpty() && to != folderOf(file))
                used.insert(folderOf(file) + " -> "_L1 + to);
        }
    }
    return used;
}

QSet<QString> tst_Folders::linkedFolders() const
{
    QSet<QString> used;
    for (const QString &line : linesOf(QStringLiteral(LINKS_FILE))) {
        const QString from = line.section(u' ', 0, 0);
        const QString to = line.section(u' ', 1);
        if (m_arrows.contains(from) && from != to)
            used.insert(from + " -> "_L1 + to);
    }
    return used;
}

QStringList tst_Folders::notDrawn(const QSet<QString> &used) const
{
    QStringList wrong;
    for (const QString &pair : used) {
        const QStringList ends = pair.split(" -> "_L1);
        if (!m_arrows.value(ends.constFirst()).contains(ends.constLast()))
            wrong.append(pair);
    }
    wrong.sort();
    return wrong;
}

QTEST_GUILESS_MAIN(tst_Folders)

#include "tst_folders.moc"
