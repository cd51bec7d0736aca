#pragma once

/// How often this thread has asked for memory since it started, in what way ever this build can
/// count it.
long allocations();
