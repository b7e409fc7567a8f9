// The one place of the command that asks the platform something.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

// The command: takes its arguments, in UTF-8, and gives the status of the process.
int run_command(std::vector<std::string> arguments);

// A variable of the environment; empty where it is not set.
std::string environment(const char* name);
bool is_terminal(std::FILE* stream);
// Whether what goes there may have colours: a terminal that has them, and nobody who does not want
// them, as NO_COLOR in the environment says.
bool wants_colors(std::FILE* stream);
// For a thread beside the main one, which alone is to be interrupted.
void leave_signals_to_others();
