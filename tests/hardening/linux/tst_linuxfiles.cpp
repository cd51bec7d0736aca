#include "builtfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <elf.h>

using namespace Qt::StringLiterals;

namespace {

/// The parts of an ELF file that show its protections.
struct ElfFile
{
    explicit ElfFile(const QString &name)
        : content(contentOf(name))
    {
        header = structureAt<Elf64_Ehdr>(content, 0);
        if (!header)
            return;
        for (unsigned i = 0; i < header->e_phnum; ++i) {
            if (const auto found =
                    structureAt<Elf64_Phdr>(content, header->e_phoff + i * sizeof(Elf64_Phdr)))
                segments.append(*found);
        }
        readDynamic();
    }

    std::optional<Elf64_Phdr> segment(Elf64_Word type) const
    {
        for (const Elf64_Phdr &found : segments) {
            if (found.p_type == type)
                return found;
        }
        return std::nullopt;
    }
    quint64 dynamicValue(Elf64_Sxword tag) const { return dynamic.value(tag); }

    QByteArray content;
    std::optional<Elf64_Ehdr> header;
    QList<Elf64_Phdr> segments;
    QHash<Elf64_Sxword, quint64> dynamic; ///< by tag
    QByteArrayList symbols; ///< names, imported and exported

private:
    void readDynamic()
    {
        const auto table = segment(PT_DYNAMIC);
        if (!table)
            return;
        for (quint64 offset = 0; offset < table->p_filesz; offset += sizeof(Elf64_Dyn)) {
            if (const auto entry = structureAt<Elf64_Dyn>(content, table->p_offset + offset))
                dynamic.insert(entry->d_tag, entry->d_un.d_val);
        }
        const auto names = qsizetype(offsetOf(dynamicValue(DT_STRTAB)));
        symbols = content.mid(names, qsizetype(dynamicValue(DT_STRSZ))).split('\0');
    }
    /// The offset in the file of an address in memory.
    quint64 offsetOf(quint64 address) const
    {
        for (const Elf64_Phdr &found : segments) {
            if (found.p_type == PT_LOAD && address >= found.p_vaddr
                && address - found.p_vaddr < found.p_filesz)
                return address - found.p_vaddr + found.p_offset;
        }
        return 0;
    }
};

/// The command that compiles each source, by its path relative to the project.
QHash<QString, QString> compileCommands()
{
    QHash<QString, QString> commands;
    const QDir project(QStringLiteral(SOURCE_FOLDER));
    const QJsonArray entries =
        QJsonDocument::fromJson(contentOf(QStringLiteral(COMPILE_COMMANDS))).array();
    for (const auto entry : entries) {
        commands.insert(
            project.relativeFilePath(entry["file"_L1].toString()), entry["command"_L1].toString());
    }
    return commands;
}

} // namespace

/// Our programs and libraries are built with the protections of compiler, linker and C library.
class tst_LinuxFiles : public QObject
{
    Q_OBJECT

private slots:
    void every_program_and_library_is_tested();
    void a_file_is_loaded_at_a_random_address_data() { addBuiltFiles(); }
    void a_file_is_loaded_at_a_random_address();
    void function_pointers_are_read_only_once_a_file_is_loaded_data() { addBuiltFiles(); }
    void function_pointers_are_read_only_once_a_file_is_loaded();
    void no_memory_is_writable_and_executable_data() { addBuiltFiles(); }
    void no_memory_is_writable_and_executable();
    void a_file_can_detect_an_overflow_of_its_stack_data() { addBuiltFiles(); }
    void a_file_can_detect_an_overflow_of_its_stack();
    void every_source_is_compiled_with_the_protections();
    void an_overflow_ends_the_program_data();
    void an_overflow_ends_the_program();
};

void tst_LinuxFiles::every_program_and_library_is_tested()
{
    QStringList names;
    for (const QString &file : builtFiles())
        names.append(QFileInfo(file).fileName());
    for (const QString &name : {u"rallyvane"_s, u"rehearsalhost"_s, u"rehearse"_s, u"publish"_s,
             u"BEYONDIOx64.so"_s, u"winmm.so"_s, u"xinput9_1_0.so"_s})
        QVERIFY2(names.contains(name), qPrintable(name));
}

void tst_LinuxFiles::a_file_is_loaded_at_a_random_address()
{
    QFETCH(QString, file);
    const ElfFile elf(file);
    QVERIFY(elf.header);
    QCOMPARE(int(elf.header->e_type), ET_DYN);
    if (elf.segment(PT_INTERP)) // a program
        QVERIFY(elf.dynamicValue(DT_FLAGS_1) & DF_1_PIE);
}

void tst_LinuxFiles::function_pointers_are_read_only_once_a_file_is_loaded()
{
    QFETCH(QString, file);
    const ElfFile elf(file);
    QVERIFY(elf.segment(PT_GNU_RELRO));
    QVERIFY(elf.dynamicValue(DT_FLAGS_1) & DF_1_NOW);
}

void tst_LinuxFiles::no_memory_is_writable_and_executable()
{
    QFETCH(QString, file);
    const ElfFile elf(file);
    QVERIFY(elf.segment(PT_GNU_STACK));
    for (const Elf64_Phdr &segment : elf.segments)
        QVERIFY((segment.p_flags & PF_W) == 0 || (segment.p_flags & PF_X) == 0);
}

void tst_LinuxFiles::a_file_can_detect_an_overflow_of_its_stack()
{
    QFETCH(QString, file);
    QVERIFY(ElfFile(file).symbols.contains("__stack_chk_fail"));
}

void tst_LinuxFiles::every_source_is_compiled_with_the_protections()
{
    const QHash<QString, QString> commands = compileCommands();
    QVERIFY(commands.contains(u"app/main.cpp"_s));
    for (auto command = commands.begin(); command != commands.end(); ++command) {
        QVERIFY2(
            command.value().contains(u" -fstack-protector-strong "_s), qPrintable(command.key()));
        if (FORTIFIED)
            QVERIFY2(
                command.value().contains(u" -D_FORTIFY_SOURCE=2 "_s), qPrintable(command.key()));
    }
}

void tst_LinuxFiles::an_overflow_ends_the_program_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("reason");
    QTest::addRow("on the stack, none") << u"stack"_s << 8 << QByteArray();
    QTest::addRow("on the stack") << u"stack"_s << 40 << QByteArray("stack smashing detected");
    QTest::addRow("in the C library, none") << u"library"_s << 8 << QByteArray();
    if (FORTIFIED) {
        QTest::addRow("in the C library")
            << u"library"_s << 9 << QByteArray("buffer overflow detected");
    }
}

void tst_LinuxFiles::an_overflow_ends_the_program()
{
    QFETCH(QString, where);
    QFETCH(int, count);
    QFETCH(QByteArray, reason);
    QProcess overflow;
    overflow.start(
        QCoreApplication::applicationDirPath() + "/overflow"_L1, {where, QString::number(count)});
    QVERIFY(overflow.waitForFinished());
    QCOMPARE(overflow.exitStatus() == QProcess::CrashExit, !reason.isEmpty());
    QVERIFY(overflow.readAllStandardError().contains(reason));
    QCOMPARE(overflow.readAllStandardOutput().contains("unharmed"), reason.isEmpty());
}

QTEST_GUILESS_MAIN(tst_LinuxFiles)
#include "tst_linuxfiles.moc"
