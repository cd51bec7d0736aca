#include "installerfile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const InstallerFile file = readInstaller(QByteArrayView(data, qsizetype(size)));
    if (file.version.size() + file.updateHost.size() > qsizetype(size))
        std::abort();
    return 0;
}
