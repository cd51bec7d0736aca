#pragma once

#include <functional>
#include <string>
#include <vector>

/// What a stand-in plays: lines that a test appends to the file that RALLYVANE_SCRIPT names, each a
/// word and numbers, hexadecimal without a prefix. A thread of its own follows the file and calls
/// `play` with the numbers of each line that begins with `word`, negative ones included. Calls of
/// the stand-in are told to the file with ".calls" after its name.
class Script
{
public:
    using Play = std::function<void(const std::vector<int> &)>;

    /// Follows the file from its beginning until the process ends.
    static void follow(const std::string &word, const Play &play);
    /// Notes a call, once per text.
    static void note(const std::string &call);
};
