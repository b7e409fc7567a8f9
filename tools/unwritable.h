// What keeps a document that loads from being written again.
#pragma once

#include <vector>

#include "tools/document_text.h"
#include "tools/faults.h"

namespace zol_v2 {
class Zol;
}

// A fault for each object that lacks what is required, with its path as the item. The text is the
// one that the document was loaded from; without it the lines are 0.
std::vector<Fault> find_unwritable(const zol_v2::Zol& document, const DocumentText& text);
