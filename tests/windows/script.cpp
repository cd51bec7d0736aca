#include "script.h"

#include <windows.h>

#include <fstream>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

namespace {

constexpr DWORD pollInterval = 5;

std::string fileName()
{
    const char *const name = std::getenv("RALLYVANE_SCRIPT"); // NOLINT(concurrency-mt-unsafe)
    return name ? name : "";
}

void playLine(const std::string &line, const std::string &word, const Script::Play &play)
{
    std::istringstream words(line);
    std::string first;
    words >> first;
    if (first != word)
        return;
    std::vector<int> numbers;
    for (int number = 0; words >> std::hex >> number;)
        numbers.push_back(number);
    play(numbers);
}

} // namespace

void Script::follow(const std::string &word, const Play &play)
{
    std::thread([word, play] {
        std::ifstream file;
        std::string line;
        for (;; Sleep(pollInterval)) {
            if (!file.is_open())
                file.open(fileName(), std::ios::binary);
            // An incomplete line is read again once it is complete.
            for (auto begin = file.tellg(); file.is_open(); begin = file.tellg()) {
                if (!std::getline(file, line) || file.eof()) {
                    file.clear();
                    file.seekg(begin);
                    break;
                }
                playLine(line, word, play);
            }
        }
    }).detach();
}

void Script::note(const std::string &call)
{
    static std::mutex mutex;
    static std::set<std::string> noted;
    const std::lock_guard lock(mutex);
    if (noted.insert(call).second)
        std::ofstream(fileName() + ".calls", std::ios::app | std::ios::binary) << call << std::endl;
}
