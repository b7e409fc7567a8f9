// Loads documents for the commands that show or convert them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/exit_status.h"
#include "tools/verdict.h"

namespace zol_v2 {
class Zol;
}

class DocumentSource;

// From a file, or from standard input for "-". What is wrong with it goes to standard error.
ExitStatus load_document(const std::string& path, zol_v2::Zol& document);
// The same for a caller that wants the text as well.
ExitStatus load_document(const std::string& path, zol_v2::Zol& document, DocumentSource& source);

// The same without a word, for a thread: what is wrong stands in the verdict.
Verdict try_load(DocumentSource& source, zol_v2::Zol& document);
// Tells what is wrong, if anything is.
void complain_of(const Verdict& verdict);

// Shows each of several documents, in order; those that do not load are told and passed over. What
// is shown is printed at once.
ExitStatus for_each_document(
    const std::vector<std::string>& files, bool is_recursive,
    const std::function<void(const std::string& path, const zol_v2::Zol& document)>& show);
