#include "facade/internal/packed_document.h"

#include <algorithm>
#include <utility>

#include "port/wide_text.h"

namespace zol_v2::internal {

namespace {

// The methods that other programs use.
std::string method_text(std::uint16_t method) {
  struct Row {
    std::uint16_t method;
    const char* name;
  };
  constexpr Row k_rows[] = {{1, "Shrink"},     {6, "Implode"}, {9, "Deflate64"}, {14, "LZMA"},
                            {93, "Zstandard"}, {95, "XZ"},     {98, "PPMd"},     {99, "AES"}};
  std::string text = "method " + std::to_string(method);
  for (const Row& row : k_rows) {
    if (row.method == method) text += std::string(", ") + row.name;
  }
  return text;
}

bool is_called_document(std::string_view name) {
  constexpr std::string_view k_suffix = ".zol";
  return name.size() > k_suffix.size() &&
         std::equal(k_suffix.begin(), k_suffix.end(), name.end() - k_suffix.size(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

}  // namespace

bool PackedDocument::open(const std::wstring& path, std::uint64_t limit) {
  archive_.Open(path, CZipArchive::modeReadOnly, 0);
  return open_entry(limit);
}

bool PackedDocument::open(CZipAbstractFile& file, std::uint64_t limit) {
  archive_.Open(file, CZipArchive::modeReadOnly);
  return open_entry(limit);
}

void PackedDocument::note_names() {
  for (std::uint16_t i = 0; i < archive_.GetCount(); ++i) {
    std::string name = zol::port::to_utf8(archive_.EntryAt(i)->GetFileName());
    if (i == 0) {
      entry_name_ = std::move(name);
    } else if (is_called_document(name)) {
      other_name_ = std::move(name);
      return;
    }
  }
}

bool PackedDocument::open_entry(std::uint64_t limit) {
  const bool is_open = archive_.OpenEntry(0);
  const CZipFileHeader* const entry = archive_.EntryAt(0);
  note_names();
  if (entry == nullptr) {
    complaint_ = "The archive holds no document.";
  } else if (!is_open) {
    complaint_ = "The document in the archive is compressed in a way that is not read here (" +
                 method_text(entry->method) + ").";
  } else if (entry->uncompressed_size > limit) {
    complaint_ = "The document in the archive has " + std::to_string(entry->uncompressed_size) +
                 " bytes, more than the limit of " + std::to_string(limit) + ".";
  } else if (!archive_.CanHold(*entry)) {
    complaint_ = "The archive is too short for the size that its document claims.";
  } else {
    text_.Allocate(entry->uncompressed_size, false);
    return true;
  }
  return false;
}

bool PackedDocument::read() {
  char more = 0;
  const bool is_whole = archive_.ReadEntry(text_, text_.GetSize()) == text_.GetSize() &&
                        archive_.ReadEntry(&more, 1) == 0 &&
                        archive_.CloseEntry(nullptr, false) == 1;
  if (!is_whole) {
    complaint_ = "The document in the archive has not the size that it claims.";
    return false;
  }
  archive_.Close(CZipArchive::closeNormal, false);
  return true;
}

}  // namespace zol_v2::internal
