// overflow WHERE COUNT: writes COUNT bytes into a buffer of 8, with a function of the C library
// ("library") or byte by byte ("stack"). Prints "unharmed" if that did not end the program.

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

__attribute__((noinline)) void overflow(bool library, const char *source, std::size_t count)
{
    char buffer[8] = {};
    if (library) {
        std::memcpy(buffer, source, count);
    } else {
        volatile char *next = buffer;
        for (std::size_t i = 0; i < count; ++i)
            *next++ = source[i]; // NOLINT: the overflow is the purpose
    }
    std::printf("%c\n", buffer[0]);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        return EXIT_FAILURE;
    static const char source[64] = "a source longer than the buffer";
    overflow(std::strcmp(argv[1], "library") == 0, source,
        static_cast<std::size_t>(std::atoi(argv[2]))); // NOLINT(cert-err34-c): from the test
    std::puts("unharmed");
    return EXIT_SUCCESS;
}
