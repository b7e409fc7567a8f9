#include "facade/internal/file_kind.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "lmx/internal/char_table.h"

namespace zol_v2::internal {

namespace {

using namespace std::string_view_literals;

struct Kind {
  std::size_t at;
  std::string_view bytes;
  const char* words;
};

// The longer beginnings come before those that they begin with.
constexpr Kind k_kinds[] = {
    {0, "\x89PNG\r\n\x1A\n"sv, "a PNG picture"},
    {0, "\xFF\xD8\xFF"sv, "a JPEG picture"},
    {0, "GIF8"sv, "a GIF picture"},
    {0, "II*\0"sv, "a TIFF picture"},
    {0, "MM\0*"sv, "a TIFF picture"},
    {0, "8BPS"sv, "a layered picture (PSD)"},
    {8, "WEBP"sv, "a WebP picture"},
    {4, "ftypheic"sv, "a HEIC picture"},
    {4, "ftypavif"sv, "an AVIF picture"},
    {0, "BM"sv, "a bitmap picture"},
    {0, "%PDF-"sv, "a PDF document"},
    {0, "%!PS"sv, "a PostScript document"},
    {0, "{\\rtf"sv, "a text document (RTF)"},
    {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "an office document or spreadsheet"},
    {36, "acsp"sv, "an ICC profile"},
    {0, "ASEF"sv, "a swatch exchange file (ASE)"},
    {0, "CGATS"sv, "a CGATS table"},
    {0, "ISO28178"sv, "a CGATS table"},
    {0, "SQLite format 3\0"sv, "an SQLite database"},
    {0, "PK\x03\x04"sv, "a ZIP archive"},
    {0, "PK\x05\x06"sv, "a ZIP archive without entries"},
    {0, "PK\x07\x08"sv, "a ZIP archive in several parts"},
    {0, "\x1F\x8B"sv, "a gzip file, which must be unpacked first"},
    {0, "BZh"sv, "a bzip2 file, which must be unpacked first"},
    {0,
     "\xFD"
     "7zXZ\0"sv,
     "an XZ file, which must be unpacked first"},
    {0, "\x28\xB5\x2F\xFD"sv, "a Zstandard file, which must be unpacked first"},
    {0, "7z\xBC\xAF\x27\x1C"sv, "a 7z archive, which must be unpacked first"},
    {0, "Rar!\x1A\x07"sv, "a RAR archive, which must be unpacked first"},
    {257, "ustar"sv, "a tar archive, which must be unpacked first"},
    {0,
     "\x7F"
     "ELF"sv,
     "a program"},
    {0, "MZ"sv, "a program"},
    {0, "\xFF\xFE\0\0"sv, "a text in UTF-32, which must be saved as UTF-8"},
    {0, "\0\0\xFE\xFF"sv, "a text in UTF-32, which must be saved as UTF-8"},
    {0, "{"sv, "a JSON text"},
    {0, "["sv, "a JSON text"},
};

}  // namespace

bool begins_archive(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, 4);
  return head == "PK\x03\x04"sv || head == "PK\x05\x06"sv || head == "PK\x07\x08"sv;
}

bool begins_document(std::string_view bytes) {
  if (bytes.empty()) return false;
  const char first = bytes.front();
  if (first == '<' || lmx::internal::has_mask(first, lmx::internal::k_space)) return true;
  return bytes.substr(0, 3) == "\xEF\xBB\xBF"sv || bytes.substr(0, 2) == "\xFE\xFF"sv ||
         bytes.substr(0, 2) == "\xFF\xFE"sv || bytes.substr(0, 2) == "\0<"sv;
}

std::string_view kind_of(std::string_view bytes) {
  const auto* const found =
      std::find_if(std::begin(k_kinds), std::end(k_kinds), [bytes](const Kind& kind) {
        return bytes.size() >= kind.at + kind.bytes.size() &&
               bytes.substr(kind.at, kind.bytes.size()) == kind.bytes;
      });
  return found != std::end(k_kinds) ? found->words : std::string_view();
}

}  // namespace zol_v2::internal
