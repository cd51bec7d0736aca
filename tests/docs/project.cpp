#include "project.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int helpTimeoutMs = 60000;

/// Folders that have no sources of the project, or data of its tests.
constexpr std::array foreignFolders = {"build"_L1, ".git"_L1, "tests/fuzz/corpus"_L1};

/// The files below a folder, relative to `top`.
QStringList filesBelow(const QDir &folder, const QDir &top)
{
    QStringList files;
    for (const QFileInfo &entry : folder.entryInfoList(
             QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString path = top.relativeFilePath(entry.filePath());
        if (!entry.isDir())
            files.append(path);
        else if (std::ranges::find(foreignFolders, path) == foreignFolders.end())
            files += filesBelow(QDir(entry.filePath()), top);
    }
    return files;
}

QSet<QString> presetsIn(const QByteArray &json)
{
    QSet<QString> names;
    const QJsonArray presets = QJsonDocument::fromJson(json)["configurePresets"_L1].toArray();
    for (const auto value : presets) {
        const QJsonObject preset = value.toObject();
        if (!preset["hidden"_L1].toBool())
            names.insert(preset["name"_L1].toString());
    }
    return names;
}

} // namespace

Project::Project(QString folder, QString programs, QStringList tests)
    : m_folder(std::move(folder))
    , m_programs(std::move(programs))
    , m_tests(std::move(tests))
    , m_files(filesBelow(QDir(m_folder), QDir(m_folder)))
    , m_presets(presetsIn(contentOf(u"CMakePresets.json"_s).toUtf8()))
{
    for (const QString &file : std::as_const(m_files)) {
        if (!file.endsWith(".md"_L1) && !file.endsWith(".png"_L1) && !file.endsWith(".match"_L1)
            && !file.startsWith("tests/docs/"_L1))
            m_sources += contentOf(file);
    }
}

QList<Document> Project::documents() const
{
    QList<Document> documents;
    for (const QString &file : filesIn(QString(), u"*.md"_s))
        documents.append(Document::parse(file, contentOf(file)));
    return documents;
}

QStringList Project::filesIn(const QString &beginning, const QString &pattern) const
{
    QStringList found;
    std::copy_if(
        m_files.begin(), m_files.end(), std::back_inserter(found), [&](const QString &file) {
            return file.startsWith(beginning) && QDir::match(pattern, file.section(u'/', -1));
        });
    return found;
}

QString Project::contentOf(const QString &file) const
{
    QFile opened(pathOf(file));
    return opened.open(QIODevice::ReadOnly) ? QString::fromUtf8(opened.readAll()) : QString();
}

bool Project::has(const QString &path, const QStringList &folders) const
{
    return std::any_of(folders.begin(), folders.end(),
        [&](const QString &folder) { return QFileInfo::exists(pathOf(folder + u'/' + path)); });
}

bool Project::builds(const QString &path) const
{
    const QString name = path.section(u'/', 1, 1);
    return path.startsWith("build/"_L1)
        && (m_presets.contains(name) || mentions("build/"_L1 + name));
}

QString Project::executableOf(const QString &command) const
{
    const QFileInfo script(pathOf(command));
    if (script.isFile() && script.isExecutable())
        return script.canonicalFilePath();
    const bool isProgram = !command.contains(u'/') || command.contains("/bin/"_L1);
    const QFileInfo program(m_programs + u'/' + command.section(u'/', -1));
    return isProgram && program.isFile() && program.isExecutable() ? program.filePath() : QString();
}

bool Project::explains(const QString &executable, const QString &option)
{
    if (!m_help.contains(executable)) {
        QProcess process;
        process.setWorkingDirectory(m_folder);
        process.start(executable, {u"--help"_s});
        process.waitForFinished(helpTimeoutMs);
        m_help[executable] = QString::fromUtf8(process.readAllStandardOutput());
    }
    if (option == "--help"_L1)
        return !m_help[executable].isEmpty();
    const QRegularExpression word(
        u"(?<![\\w-])%1(?![\\w-])"_s.arg(QRegularExpression::escape(option)));
    return word.match(m_help[executable]).hasMatch();
}
