#pragma once

/// A level between 0 and 100, the nearest to the given one.
int limited(int level);
