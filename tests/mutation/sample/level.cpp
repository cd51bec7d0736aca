#include "level.h"

namespace {

auto highest()
{
    return 100;
}

} // namespace

int limited(int level)
{
    if (level > highest())
        return highest();
    if (level < 0)
        level = 0;
    return level;
}
