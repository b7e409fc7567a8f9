// What a file is by its first bytes.
#pragma once

#include <string_view>

namespace zol_v2::internal {

// Does an archive begin so?
bool begins_archive(std::string_view bytes);

// Would a reader go on: is there a mark, white space or a "<"?
bool begins_document(std::string_view bytes);

// "a PNG picture", for people; empty if the bytes are of no kind that is known here.
std::string_view kind_of(std::string_view bytes);

}  // namespace zol_v2::internal
