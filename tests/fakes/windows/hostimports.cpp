#include "imports.h"
#include "windowsapi.h"

IMPORT_FAKE(LoadLibraryW)
IMPORT_FAKE(GetProcAddress)
IMPORT_FAKE(FreeLibrary)
