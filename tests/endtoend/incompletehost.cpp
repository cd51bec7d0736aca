#include "ldb.h"

// A host library with the right name but only one of the 34 functions: too old, or not the host's.

extern "C" __attribute__((visibility("default"))) std::int32_t ldbCreate()
{
    return 0;
}
