#include <QString>

#include <dlfcn.h>
#include <netdb.h>
#include <unistd.h>

/// Overrides the system's function for every library of the process. The parameters have the names
/// that the system gives them.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(
    const char *name, const char *service, const addrinfo *req, addrinfo **pai)
{
    while (qEnvironmentVariable("ENDING_LOOKUP") == QLatin1StringView("hangs"))
        pause();
    static const auto system =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return system(name, service, req, pai);
}
