#pragma once

/// The number of memory allocations of this thread so far, as far as this build can count them.
long allocations();
