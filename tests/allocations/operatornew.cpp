#include "allocations.h"

#include <cstdlib>
#include <new>

// Counts calls of operator new. Portable, but misses the malloc calls of Qt's containers.

namespace {

thread_local long count = 0;

} // namespace

long allocations()
{
    return count;
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): this is what manages memory
void *operator new(std::size_t size)
{
    ++count;
    if (void *memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc)
