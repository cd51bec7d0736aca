#pragma once

/// Linear blue, green and red light, and an unused fourth component that is always 0. A SIMD
/// vector.
using Light = float __attribute__((vector_size(16)));
