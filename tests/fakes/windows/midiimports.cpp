#include "imports.h"
#include "windowsapi.h"

IMPORT_FAKE(midiInGetNumDevs)
IMPORT_FAKE(midiInGetDevCapsA)
IMPORT_FAKE(midiInOpen)
IMPORT_FAKE(midiInStart)
IMPORT_FAKE(midiInStop)
IMPORT_FAKE(midiInClose)
IMPORT_FAKE(midiOutGetNumDevs)
IMPORT_FAKE(midiOutGetDevCapsA)
IMPORT_FAKE(midiOutOpen)
IMPORT_FAKE(midiOutClose)
IMPORT_FAKE(midiOutShortMsg)
