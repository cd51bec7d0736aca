// Writes the files that the maker uploads to publish a version: the version file and the installer,
// with the names and in the folder that the update check expects.

#include "installerfile.h"
#include "ownversion.h"
#include "versionfile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextStream>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Reports why nothing is published.
std::nullopt_t refuse(const QString &why)
{
    QTextStream(stderr) << "Nothing is published: " << why << Qt::endl;
    return std::nullopt;
}

std::optional<QByteArray> contents(const QString &path, QIODevice::OpenMode mode = {})
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | mode))
        return refuse(u"%1 cannot be read: %2"_s.arg(path, file.errorString()));
    return file.readAll();
}

bool save(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    refuse(u"%1 cannot be written: %2"_s.arg(path, file.errorString()));
    return false;
}

/// A version's entry in the changelog.
struct Entry
{
    QString version;
    QString heading; ///< the version and its date
    QString notes;
};

/// The newest entry, the first one: "## 1.02 - 2027-03-01" and the lines below it.
std::optional<Entry> newestEntry(const QString &changelog)
{
    static const QRegularExpression anyHeading(u"^## .*$"_s, QRegularExpression::MultilineOption);
    static const QRegularExpression heading(uR"(^## ((\d+\.\d\d) - \d{4}-\d\d-\d\d)$)"_s);
    const QRegularExpressionMatch newest = anyHeading.match(changelog);
    if (!newest.hasMatch())
        return refuse(u"the changelog has no entry"_s);
    const QRegularExpressionMatch parts = heading.match(newest.captured());
    if (!parts.hasMatch())
        return refuse(
            u"\"%1\" is not a heading like \"## 1.02 - 2027-03-01\""_s.arg(newest.captured()));
    const qsizetype begin = newest.capturedEnd();
    const QRegularExpressionMatch next = anyHeading.match(changelog, begin);
    const qsizetype end = next.hasMatch() ? next.capturedStart() : changelog.size();
    return Entry{.version = parts.captured(2),
        .heading = parts.captured(1),
        .notes = changelog.sliced(begin, end - begin).trimmed()};
}

/// The version file of `entry`.
std::optional<QByteArray> versionFileOf(const Entry &entry)
{
    if (entry.notes.isEmpty())
        return refuse(u"the newest entry of the changelog is empty"_s);
    if (entry.notes.contains(u'='))
        return refuse(u"the notes contain an equals sign, where the program would cut them"_s);
    for (const QChar character : entry.notes) {
        if (character.unicode() > 0xFF)
            return refuse(u"the notes contain \"%1\", which is not of Latin-1"_s.arg(character));
    }
    const QString text = "Laser Rallyvane\n%1\nV%2\n%3\n%1\n"_L1.arg(
        QLatin1StringView(versionFileSeparator), entry.heading, entry.notes);
    return text.toLatin1();
}

/// Whether the program reads `bytes` as the version and the notes of `entry`.
bool readsAs(const QByteArray &bytes, const Entry &entry)
{
    const VersionFile file = readVersionFile(bytes);
    return bytes.size() <= largestVersionFile && file.state == VersionFile::Readable
        && file.version == entry.version && file.notes == entry.notes + u'\n'
        && versionInHundredths(file.version) > 0;
}

/// The installer of `version` in the file `path`.
std::optional<QByteArray> installerOf(const QString &version, const QString &path)
{
    if (QFileInfo(path).size() > largestInstaller)
        return refuse(u"%1 is larger than the program downloads"_s.arg(path));
    std::optional<QByteArray> bytes = contents(path);
    if (!bytes)
        return {};
    if (bytes->isEmpty())
        return refuse(u"%1 is empty"_s.arg(path));
    const InstallerFile installer = readInstaller(*bytes);
    if (!installer.fault.isEmpty())
        return refuse(
            u"%1 is not an installer of Laser Rallyvane: %2"_s.arg(path, installer.fault));
    if (installer.version != version)
        return refuse(u"%1 installs version \"%2\", the version to publish is %3"_s.arg(
            path, installer.version, version));
    if (!isUpdateHost(installer.updateHost))
        return refuse(
            u"%1 installs a program without an update host, which would never find "
            "another update; build it with packaging/windows/build --update-host HOST"_s.arg(path));
    return bytes;
}

/// Writes both files below `root`, the version file last, and reads them back.
bool write(const QString &root, const Entry &entry, const QByteArray &versionFile,
    const QByteArray &installer)
{
    const QDir folder(root + QLatin1StringView(updateFolder));
    const QString installerPath = folder.filePath(installerName(entry.version));
    const QString versionPath = folder.filePath(QLatin1StringView(versionFileName));
    if (!folder.mkpath(u"."_s)) {
        refuse(u"%1 cannot be made"_s.arg(folder.path()));
        return false;
    }
    if (!save(installerPath, installer) || !save(versionPath, versionFile))
        return false;
    const std::optional<QByteArray> writtenInstaller = contents(installerPath);
    const std::optional<QByteArray> writtenVersion = contents(versionPath);
    if (writtenInstaller != installer || !writtenVersion || !readsAs(*writtenVersion, entry)) {
        refuse(u"what was written does not read back"_s);
        return false;
    }
    QTextStream(stdout) << "Upload in this order:\n"
                        << installerPath << '\n'
                        << versionPath << Qt::endl;
    return true;
}

bool publish(const QString &version, const QString &changelogPath, const QString &installerPath,
    const QString &root)
{
    const std::optional<QByteArray> changelog = contents(changelogPath, QIODevice::Text);
    if (!changelog)
        return false;
    const std::optional<Entry> entry = newestEntry(QString::fromUtf8(*changelog));
    if (!entry)
        return false;
    if (entry->version != version) {
        refuse(u"the newest entry of the changelog is %1, the version to publish is %2"_s.arg(
            entry->version, version));
        return false;
    }
    const std::optional<QByteArray> versionFile = versionFileOf(*entry);
    if (!versionFile)
        return false;
    if (!readsAs(*versionFile, *entry)) {
        refuse(u"the program could not read the version file"_s);
        return false;
    }
    const std::optional<QByteArray> installer = installerOf(version, installerPath);
    return installer && write(root, *entry, *versionFile, *installer);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QLatin1StringView(ownVersionText));
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Writes what is to be uploaded for a new version."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption release(u"release"_s,
        u"The version to publish; the project's (%1) unless given."_s.arg(
            QLatin1StringView(ownVersionText)),
        u"version"_s, QLatin1StringView(ownVersionText));
    const QCommandLineOption changelog(u"changelog"_s,
        u"The changelog, whose newest entry becomes the notes; CHANGELOG.md unless given."_s,
        u"file"_s, u"CHANGELOG.md"_s);
    parser.addOptions({release, changelog});
    parser.addPositionalArgument(u"installer"_s, u"The installer of that version."_s);
    parser.addPositionalArgument(u"folder"_s, u"Where to write what is to be uploaded."_s);
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 2)
        parser.showHelp(2);
    return publish(parser.value(release), parser.value(changelog), arguments[0], arguments[1])
        ? EXIT_SUCCESS
        : EXIT_FAILURE;
}
