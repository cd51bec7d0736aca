#include <rtmidi/RtMidi.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

// A MIDI device that sends messages from standard input, one per line in hexadecimal bytes:
// "B2 07 64". Prints "ready" when its port exists and "sent" after each message. Exits at the end
// of its input.
//
//     midisender alsa|jack NAME

int main(int argc, char *argv[])
try {
    if (argc != 3)
        return EXIT_FAILURE;
    const std::string name = argv[2];
    RtMidiOut port(RtMidi::getCompiledApiByName(argv[1]), name);
    port.openVirtualPort(name);
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        words >> std::hex;
        std::vector<unsigned char> message;
        for (unsigned byte = 0; words >> byte;)
            message.push_back(static_cast<unsigned char>(byte));
        port.sendMessage(&message);
        std::cout << "sent" << std::endl;
    }
    return EXIT_SUCCESS;
} catch (const RtMidiError &error) {
    std::cerr << error.getMessage() << '\n';
    return EXIT_FAILURE;
}
