#pragma once

/// Blue, green and red light, linear, and a fourth part that is always 0. The compiler computes
/// with the four at once.
using Light = float __attribute__((vector_size(16)));
