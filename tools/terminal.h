// The one place of the command that asks the platform something.
#pragma once

#include <cstdio>
#include <string>

// A variable of the environment; empty where it is not set.
std::string environment(const char* name);
bool is_terminal(std::FILE* stream);
// Whether what goes there may have colours: a terminal that has them, and nobody who does not want
// them, as NO_COLOR in the environment says.
bool wants_colors(std::FILE* stream);
// Keeps the bytes of standard input and output as they are.
void use_binary_streams();

// A signal that ends the process takes the working files of an unfinished save with it.
void clean_up_on_signals();
// For a thread beside the main one, which alone is to be interrupted.
void leave_signals_to_others();
