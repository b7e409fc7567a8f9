// What keeps a document that loads from being written again.
#pragma once

#include <vector>

#include "tools/document_text.h"
#include "tools/faults.h"

namespace zol_v2 {
class Zol;
}

// A fault for each colour, colour set, palette and record, and for the frame around them, that
// can't be written: the first in it, with the path of the object as the item. Takes the document
// apart; the text is the one that it was loaded from.
std::vector<Fault> find_unwritable(zol_v2::Zol& document, const DocumentText& text);
