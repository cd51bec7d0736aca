#pragma once

#include "programstage.h"

#include <vector>

/// One way to break the program. `happens` starts it and lets the fault happen; afterwards the
/// program must still run.
struct Fault
{
    const char *name;
    void (*happens)(ProgramStage &stage);
};

std::vector<Fault> hostFaults();
std::vector<Fault> deviceFaults();
std::vector<Fault> settingsFaults();
std::vector<Fault> systemFaults();

/// Whether the long forms run: longer hangs, more restarts, larger files. See
/// tests/endtoend/faults.
bool isLong();
