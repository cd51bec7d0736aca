#include <chrono>
#include <dlfcn.h>
#include <thread>

// Preloaded into a program, it makes every sync of a file take 50 ms longer, as on a slow or busy
// disk.

namespace {

int syncSlowly(const char *function, int file)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const auto sync = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, function));
    return sync ? sync(file) : -1;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int fsync(int file)
{
    return syncSlowly("fsync", file);
}

extern "C" __attribute__((visibility("default"))) int fdatasync(int file)
{
    return syncSlowly("fdatasync", file);
}
