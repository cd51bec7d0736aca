#include "builtfiles.h"

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

/// The headers of a 64-bit Windows program or library.
std::optional<IMAGE_NT_HEADERS64> headersOf(const QString &file)
{
    const QByteArray content = contentOf(file);
    const auto start = structureAt<IMAGE_DOS_HEADER>(content, 0);
    if (!start || start->e_magic != IMAGE_DOS_SIGNATURE)
        return std::nullopt;
    const auto headers = structureAt<IMAGE_NT_HEADERS64>(content, quint64(start->e_lfanew));
    const bool isValid = headers && headers->Signature == IMAGE_NT_SIGNATURE
        && headers->OptionalHeader.Magic == IMAGE_NT_OPTIONAL_HDR64_MAGIC;
    return isValid ? headers : std::nullopt;
}

} // namespace

/// Our programs and libraries are built with the protections that Windows offers.
class tst_WindowsFiles : public QObject
{
    Q_OBJECT

private slots:
    void every_program_and_library_is_tested();
    void a_file_is_loaded_at_a_random_address_data() { addBuiltFiles(); }
    void a_file_is_loaded_at_a_random_address();
    void data_is_not_executable_data() { addBuiltFiles(); }
    void data_is_not_executable();
};

void tst_WindowsFiles::every_program_and_library_is_tested()
{
    QStringList names;
    for (const QString &file : builtFiles())
        names.append(QFileInfo(file).fileName());
    for (const QString &name : {u"rallyvane.exe"_s, u"rehearsalhost.exe"_s, u"rehearse.exe"_s,
             u"publish.exe"_s, u"BEYONDIOx64.dll"_s})
        QVERIFY2(names.contains(name), qPrintable(name));
}

void tst_WindowsFiles::a_file_is_loaded_at_a_random_address()
{
    QFETCH(QString, file);
    const auto headers = headersOf(file);
    QVERIFY(headers);
    const IMAGE_OPTIONAL_HEADER64 &header = headers->OptionalHeader;
    QVERIFY(header.DllCharacteristics & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
    QVERIFY(header.DllCharacteristics & IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA);
    // Both have no effect on a file that cannot be moved, or only within the lowest 4 GiB.
    QVERIFY(!(headers->FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED));
    QVERIFY(header.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size > 0);
    QVERIFY(headers->FileHeader.Characteristics & IMAGE_FILE_LARGE_ADDRESS_AWARE);
    QVERIFY(header.ImageBase > 0xffff'ffffU);
}

void tst_WindowsFiles::data_is_not_executable()
{
    QFETCH(QString, file);
    const auto headers = headersOf(file);
    QVERIFY(headers);
    QVERIFY(headers->OptionalHeader.DllCharacteristics & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
}

QTEST_GUILESS_MAIN(tst_WindowsFiles)
#include "tst_windowsfiles.moc"
