#include "zip/archives.h"

#include <bzlib.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace zol_test {

ReadResult read_entry(CZipArchive& archive, std::uint16_t index) {
  ReadResult result;
  result.cause = cause_of([&] {
    result.opened = archive.OpenEntry(index);
    const CZipFileHeader* const entry = archive.EntryAt(index);
    if (entry == nullptr || !archive.CanHold(*entry)) return;
    CZipAutoBuffer buffer(entry->uncompressed_size);
    const std::uint32_t got = archive.ReadEntry(buffer, buffer.GetSize());
    char more = 0;
    result.whole = got == buffer.GetSize() && archive.ReadEntry(&more, 1) == 0;
    result.closed = archive.CloseEntry();
    result.data.assign(buffer.GetBuffer(), got);
  });
  return result;
}

ReadResult read_first(const std::wstring& path) {
  ReadResult result;
  const std::int32_t cause = cause_of([&] {
    CZipArchive archive;
    archive.Open(path, CZipArchive::modeReadOnly, 0);
    result = read_entry(archive);
    archive.Close(result.cause == 0 ? CZipArchive::closeNormal : CZipArchive::closeAfterException);
  });
  if (cause != 0) result.cause = cause;
  return result;
}

std::int32_t cause_of(const std::function<void()>& call) {
  try {
    call();
  } catch (const CZipException& exception) {
    return exception.GetCause();
  }
  return 0;
}

namespace {

std::uint32_t crc_of(const std::string& data) {
  return static_cast<std::uint32_t>(
      ::crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
}

}  // namespace

RawEntry stored(const std::string& data) {
  RawEntry entry;
  entry.data = data;
  entry.crc = crc_of(data);
  entry.size = static_cast<std::uint32_t>(data.size());
  return entry;
}

RawEntry deflated(const std::string& data) {
  RawEntry entry = stored(data);
  entry.method = 8;
  std::string out(::compressBound(static_cast<uLong>(data.size())), '\0');
  uLongf size = static_cast<uLongf>(out.size());
  ::compress(reinterpret_cast<Bytef*>(out.data()), &size,
             reinterpret_cast<const Bytef*>(data.data()), static_cast<uLong>(data.size()));
  entry.data = out.substr(2, size - 6);  // without zlib's own header and checksum
  return entry;
}

RawEntry bzipped(const std::string& data) {
  RawEntry entry = stored(data);
  entry.method = 12;
  std::string out(data.size() * 2 + 600, '\0');
  auto size = static_cast<unsigned>(out.size());
  ::BZ2_bzBuffToBuffCompress(out.data(), &size, const_cast<char*>(data.data()),
                             static_cast<unsigned>(data.size()), 1, 0, 0);
  entry.data = out.substr(0, size);
  return entry;
}

std::string le16(std::uint32_t value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>((value >> 8) & 0xFF)};
}
std::string le32(std::uint32_t value) { return le16(value & 0xFFFF) + le16(value >> 16); }

std::string patched16(std::string bytes, std::size_t offset, std::uint32_t value) {
  return bytes.replace(offset, 2, le16(value));
}
std::string patched32(std::string bytes, std::size_t offset, std::uint32_t value) {
  return bytes.replace(offset, 4, le32(value));
}

std::string RawArchive::bytes() const {
  std::string out = in_front;
  std::vector<std::string> central;
  for (const RawEntry& entry : entries) {
    const std::string stamp = le16(0x6000) + le16(0x5A21);
    const std::string sizes =
        le32(entry.crc) + le32(static_cast<std::uint32_t>(entry.data.size())) + le32(entry.size);
    const std::string common = le16(20) + le16(entry.flags) + le16(entry.method) + stamp + sizes +
                               le16(static_cast<std::uint32_t>(entry.name.size()));
    central.push_back("PK\x01\x02" + le16(entry.made_by) + common +
                      le16(static_cast<std::uint32_t>(entry.extra.size())) +
                      le16(static_cast<std::uint32_t>(entry.comment.size())) + le16(0) + le16(0) +
                      le32(entry.external_attributes) +
                      le32(static_cast<std::uint32_t>(out.size() - in_front.size())) + entry.name +
                      entry.extra + entry.comment);
    out += "PK\x03\x04" + common + le16(static_cast<std::uint32_t>(entry.local_extra.size())) +
           entry.name + entry.local_extra + entry.data;
  }
  const std::size_t start = out.size();
  for (std::size_t i = 0; i < central.size(); ++i) {
    out += central[central_order.empty() ? i : central_order[i]];
  }
  const auto count = static_cast<std::uint32_t>(central.size());
  return out + "PK\x05\x06" + le16(0) + le16(0) + le16(count) + le16(count) +
         le32(static_cast<std::uint32_t>(out.size() - start)) +
         le32(static_cast<std::uint32_t>(start - in_front.size())) +
         le16(static_cast<std::uint32_t>(comment.size())) + comment;
}

bool MemoryFile::count() {
  if (++calls != fail_at) return true;
  if (fails_short) return false;
  throw CZipException(EIO, GetFilePath());
}

std::uint64_t MemoryFile::Seek(std::int64_t offset, SeekOrigin origin) {
  count();
  const auto base = static_cast<std::int64_t>(origin == begin ? 0
                                              : origin == end ? bytes.size()
                                                              : position_);
  if (base + offset < 0) throw CZipException(EINVAL, GetFilePath());
  return position_ = static_cast<std::uint64_t>(base + offset);
}

void MemoryFile::SetLength(std::uint64_t length) {
  count();
  bytes.resize(length);
}

std::uint32_t MemoryFile::Read(void* buffer, std::uint32_t wanted) {
  if (!count()) return 0;
  const std::uint64_t left = position_ < bytes.size() ? bytes.size() - position_ : 0;
  const auto got = static_cast<std::uint32_t>(std::min<std::uint64_t>(wanted, left));
  if (got != 0) std::memcpy(buffer, bytes.data() + position_, got);
  position_ += got;
  return got;
}

void MemoryFile::Write(const void* buffer, std::uint32_t wanted) {
  count();
  if (position_ + wanted > bytes.size()) bytes.resize(position_ + wanted);
  if (wanted != 0) std::memcpy(bytes.data() + position_, buffer, wanted);
  position_ += wanted;
}

}  // namespace zol_test
