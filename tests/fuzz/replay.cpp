#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// Feeds every file of a corpus to a fuzzing harness, as a regression test. Usage: replay CORPUS

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char *argv[])
try {
    if (argc != 2) {
        std::fputs("The folder of the corpus is missing.\n", stderr);
        return EXIT_FAILURE;
    }
    int files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(
            reinterpret_cast<const std::uint8_t *>(content.data()), content.size());
        ++files;
    }
    std::printf("%d files\n", files);
    return files > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
}
