// Downloaded and started by the tests in place of an installer; writes a file that records how it
// was started.

#include <cstdio>

int main(int argc, char *argv[])
{
    std::FILE *const file = std::fopen("installed.part", "wb");
    if (!file)
        return 1;
    std::fprintf(file, "%d arguments\n%s\n", argc - 1, argv[0]);
    return std::fclose(file) == 0 && std::rename("installed.part", "installed") == 0 ? 0 : 1;
}
