// Standard output and standard error, as every sub-command uses them.
#pragma once

#include <string_view>

#include "tools/exit_status.h"

// Appends to standard output.
void print(std::string_view text);
// Hands over what was appended; false if standard output has not taken everything so far.
bool flush_output();
bool has_output_failed();
// Must end every run: `status`, or trouble if standard output did not take everything. A reader
// that went away is no news to anybody, so that case is silent.
ExitStatus finish_output(ExitStatus status);

// "zol: SUBJECT: MESSAGE" on standard error.
void complain(std::string_view subject, std::string_view message);
