// A whole document from another encoding to UTF-8, for readers that want it in one piece.
#pragma once

#include <cstddef>
#include <string_view>

#include "lmx/internal/byte_buffer.h"

namespace lmx::internal {

enum class SourceEncoding { latin1, utf16_be, utf16_le, ucs2_be, ucs2_le };

// Appends what c_get_as_utf8 delivers for these bytes, which begin behind the byte-order mark, but
// leaves carriage returns as they are. False, with nothing appended, for what needs the getter: a
// character that is a line end only there (U+0085, U+2028), a surrogate without its partner or in
// an encoding that knows no pairs, half a unit at the end.
bool transcode(std::string_view bytes, SourceEncoding encoding, ByteBuffer* out);

// The same for as much as is there and fits, up to what needs the getter; a pair or a unit that is
// cut is such a thing too. Moves `*bytes` behind what it took and returns what it wrote. There is
// room for at least k_transcode_room.
inline constexpr std::size_t k_transcode_room = 64;
std::size_t transcode_some(std::string_view* bytes, SourceEncoding encoding, char* out,
                           std::size_t room);

// How many units of the source became these whole sequences: one each, two those of four bytes.
inline std::size_t count_units(const char* begin, const char* end) {
  std::size_t units = 0;
  for (; begin != end; ++begin) {
    const auto byte = static_cast<unsigned char>(*begin);
    units +=
        static_cast<std::size_t>((byte & 0xC0) != 0x80) + static_cast<std::size_t>(byte >= 0xF0);
  }
  return units;
}

// Names of encodings are one in any case.
bool is_same_encoding_name(std::string_view a, std::string_view b);

}  // namespace lmx::internal
