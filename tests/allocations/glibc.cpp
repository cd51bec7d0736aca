#include "allocations.h"

#include <cstddef>

// Counts calls of malloc itself, which operator new and Qt's containers end in. glibc exports its
// own implementation under these names for programs that replace it.

namespace {

thread_local long count = 0;

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t number, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)

void *malloc(std::size_t size)
{
    ++count;
    return __libc_malloc(size);
}

void *calloc(std::size_t number, std::size_t size)
{
    ++count;
    return __libc_calloc(number, size);
}

void *realloc(void *memory, std::size_t size)
{
    ++count;
    return __libc_realloc(memory, size);
}

} // extern "C"

long allocations()
{
    return count;
}
