// Loads a document for a command that shows or converts it.
#pragma once

#include <string>

#include "tools/exit_status.h"

namespace zol_v2 {
class Zol;
}

// From a file, or from standard input for "-". What is wrong with it goes to standard error.
ExitStatus load_document(const std::string& path, zol_v2::Zol& document);
