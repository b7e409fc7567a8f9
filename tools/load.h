// Loads a document for a command that shows or converts it.
#pragma once

#include <string>

#include "tools/exit_status.h"

namespace zol_v2 {
class Zol;
}

class DocumentText;

// From a file, or from standard input for "-". What is wrong with it goes to standard error.
ExitStatus load_document(const std::string& path, zol_v2::Zol& document);
// The same for a caller that wants the text as well.
ExitStatus load_document(const std::string& path, zol_v2::Zol& document, DocumentText* text);
