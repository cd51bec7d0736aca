#pragma once

#include <functional>
#include <string>
#include <vector>

/// Input of a stand-in: lines that a test appends to the file named by RALLYVANE_SCRIPT, each a
/// word and hexadecimal numbers without a prefix, which may be negative. A thread follows the file
/// and calls `play` with the numbers of each line that begins with `word`. Calls of the stand-in
/// are written to a file of the same name with ".calls" appended.
class Script
{
public:
    using Play = std::function<void(const std::vector<int> &)>;

    /// Follows the file from its beginning until the process ends.
    static void follow(const std::string &word, const Play &play);
    /// Records a call, once per text.
    static void note(const std::string &call);
};
