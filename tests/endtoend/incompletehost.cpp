#include "ldb.h"

// A library of the host with the right name and one function of the 34: too old, or not the host's.

extern "C" __attribute__((visibility("default"))) std::int32_t ldbCreate()
{
    return 0;
}
