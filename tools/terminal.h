// The one place of the command that asks the platform something.
#pragma once

#include <cstdio>

bool is_terminal(std::FILE* stream);
// Keeps the bytes of standard input and output as they are.
void use_binary_streams();
