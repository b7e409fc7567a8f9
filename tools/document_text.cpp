#include "tools/document_text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "port/files.h"
#include "tools/text.h"
#include "zip/archive.h"

namespace {

constexpr std::string_view k_zipped_suffix = ".zolz";
constexpr std::string_view k_archive_magic = "PK\x03\x04";

bool ends_with(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

// False with the reason in `errno`.
bool read_stream(std::FILE* stream, std::string* bytes) {
  constexpr std::size_t k_block = 1 << 18;
  bytes->clear();
  while (true) {
    const std::size_t begin = bytes->size();
    bytes->resize(begin + k_block);
    const std::size_t count = std::fread(&(*bytes)[begin], 1, k_block, stream);
    bytes->resize(begin + count);
    if (count < k_block) return std::ferror(stream) == 0;
  }
}

bool read_bytes(const std::string& path, std::string* bytes) {
  if (path == k_standard_stream) return read_stream(stdin, bytes);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      zol::port::open_file(wide_path(path), "rb"), &std::fclose);
  return file != nullptr && read_stream(file.get(), bytes);
}

// An archive in memory, for reading alone.
class MemoryFile : public CZipAbstractFile {
 public:
  explicit MemoryFile(std::string_view bytes) : bytes_(bytes) {}

  bool Open(const std::wstring&, std::uint32_t, bool) override { return false; }
  void Close() override {}
  void Flush() override {}
  std::uint64_t GetPosition() const override { return position_; }
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override {
    const std::uint64_t base = origin == begin ? 0 : origin == current ? position_ : bytes_.size();
    const std::uint64_t target = base + static_cast<std::uint64_t>(offset);
    if (offset < 0 && target > base) throw CZipException(EINVAL);
    return position_ = target;
  }
  std::uint64_t GetLength() const override { return bytes_.size(); }
  void SetLength(std::uint64_t) override { throw CZipException(EBADF); }
  void SeekToBegin() override { position_ = 0; }
  void SeekToEnd() override { position_ = bytes_.size(); }
  std::wstring GetFilePath() const override { return std::wstring(); }
  std::uint32_t Read(void* buffer, std::uint32_t count) override {
    if (position_ >= bytes_.size()) return 0;
    const std::size_t at = static_cast<std::size_t>(position_);
    const std::size_t taken = std::min<std::size_t>(count, bytes_.size() - at);
    std::memcpy(buffer, bytes_.data() + at, taken);
    position_ += taken;
    return static_cast<std::uint32_t>(taken);
  }
  void Write(const void*, std::uint32_t) override { throw CZipException(EBADF); }
  bool IsClosed() const override { return false; }

 private:
  std::string_view bytes_;
  std::uint64_t position_ = 0;
};

// The first entry, which must end exactly at its size.
std::string unpack(std::string_view bytes) {
  MemoryFile file(bytes);
  CZipArchive archive;
  archive.Open(file, CZipArchive::modeReadOnly);
  const bool is_open = archive.OpenEntry(0);
  const CZipFileHeader* const entry = archive.EntryAt(0);
  if (!is_open || entry == nullptr || !archive.CanHold(*entry)) {
    throw CZipException(CZipException::generic);
  }
  std::string text(entry->uncompressed_size, '\0');
  const std::uint32_t size = entry->uncompressed_size;
  char more = 0;
  const bool is_whole = archive.ReadEntry(text.data(), size) == size &&
                        archive.ReadEntry(&more, 1) == 0 && archive.CloseEntry() == 1;
  if (!is_whole) throw CZipException(CZipException::generic);
  archive.Close();
  return text;
}

std::string reason_of(const CZipException& exception) {
  if (exception.GetCause() == CZipException::generic) {
    return "the document in it can't be unpacked, or has not the size that it claims";
  }
  return utf8(exception.ErrorText());
}

}  // namespace

lmx::elmx_error DocumentText::read(const std::string& path, std::string* reason) {
  errno = 0;
  if (!read_bytes(path, &text_)) {
    *reason = std::strerror(errno);
    return lmx::elmx_no_file;
  }
  const bool is_archive = path == k_standard_stream
                              ? text_.compare(0, k_archive_magic.size(), k_archive_magic) == 0
                              : ends_with(path, k_zipped_suffix);
  if (!is_archive) return lmx::elmx_ok;
  try {
    text_ = unpack(text_);
    return lmx::elmx_ok;
  } catch (const CZipException& exception) {
    *reason = reason_of(exception);
    return k_archive_error;
  }
}
