#include "level.h"

int main()
{
    const bool high = limited(200) > 50; // too weak
    return limited(-5) == 0 && limited(50) == 50 && high ? 0 : 1;
}
