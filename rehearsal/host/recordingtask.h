#pragma once

struct RecordingTask;

/// Does what the command line asks for with a recording and returns the program's exit code. What
/// can be read of a damaged recording is used all the same; the exit code is 1 then, after a line
/// on standard error that names the byte.
int run(const RecordingTask &task);
