// Archives made by hand and files in memory, for the tests of the archive.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "zip/abstract_file.h"
#include "zip/archive.h"

namespace zol_test {

// What reading an entry to its end came to, in the steps in which a whole document is read.
struct ReadResult {
  std::int32_t cause = 0;  // of the exception, if one came
  bool opened = false;
  bool whole = false;  // the entry ended exactly at its size
  int closed = 0;
  std::string data;

  bool ok() const { return cause == 0 && opened && whole && closed == 1; }
};
ReadResult read_entry(CZipArchive& archive, std::uint16_t index = 0);
ReadResult read_first(const std::wstring& path);

// The cause of the exception that the call throws; 0 if it throws none.
std::int32_t cause_of(const std::function<void()>& call);

// Fields that are written as given, whether they make sense or not.
struct RawEntry {
  std::string name = "a.zol";
  std::string data;  // as stored
  std::uint16_t method = 0;
  std::uint32_t crc = 0;
  std::uint32_t size = 0;  // uncompressed
  std::uint16_t flags = 0;
  std::uint16_t made_by = 46;
  std::uint32_t external_attributes = 0;
  std::string extra;  // central
  std::string local_extra;
  std::string comment;
};
RawEntry stored(const std::string& data);
RawEntry deflated(const std::string& data);
RawEntry bzipped(const std::string& data);

struct RawArchive {
  std::vector<RawEntry> entries;
  std::vector<std::size_t> central_order;  // empty: as they lie in the file
  std::string comment;
  std::string in_front;

  std::string bytes() const;
};

std::string le16(std::uint32_t value);
std::string le32(std::uint32_t value);
// The bytes with a little-endian number written over them.
std::string patched16(std::string bytes, std::size_t offset, std::uint32_t value);
std::string patched32(std::string bytes, std::size_t offset, std::uint32_t value);

// A file whose n-th operation fails, once `fail_at` is set.
class MemoryFile : public CZipAbstractFile {
 public:
  explicit MemoryFile(std::string bytes = {}) : bytes(std::move(bytes)) {}

  bool Open(const std::wstring&, std::uint32_t, bool) override { return true; }
  void Close() override { is_open = false; }
  void Flush() override { count(); }
  std::uint64_t GetPosition() const override { return position_; }
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override;
  std::uint64_t GetLength() const override { return bytes.size(); }
  void SetLength(std::uint64_t length) override;
  void SeekToBegin() override { Seek(0, begin); }
  void SeekToEnd() override { Seek(0, end); }
  std::wstring GetFilePath() const override { return L"memory"; }
  std::uint32_t Read(void* buffer, std::uint32_t count) override;
  void Write(const void* buffer, std::uint32_t count) override;
  bool IsClosed() const override { return !is_open; }

  std::string bytes;
  bool is_open = true;
  unsigned fail_at = 0;      // 0: never
  bool fails_short = false;  // a read gives less instead of throwing
  unsigned calls = 0;

 private:
  bool count();

  std::uint64_t position_ = 0;
};

}  // namespace zol_test
