// Every change of a byte and every truncation of small archives: a listed cause, or the right
// bytes, and never anything else.
#include <gtest/gtest.h>

#include <set>

#include "zip/archives.h"

namespace {

using namespace zol_test;

bool is_listed(std::int32_t cause) {
  static const std::set<std::int32_t> k_errors = {1,  2,  4,  5,  6,  9,  12, 13, 14, 17, 18,
                                                  19, 20, 21, 22, 23, 24, 27, 28, 29, 30};
  return k_errors.count(cause) != 0 || (cause >= 100 && cause <= 122) ||
         (cause >= 500 && cause <= 507) || (cause >= 600 && cause <= 609);
}

const std::string k_document = "<Zol><Colour R=\"1\"/><Colour R=\"2\"/></Zol>";

std::vector<RawArchive> small_archives() {
  RawEntry streamed = deflated(k_document);
  streamed.flags = 8;
  RawEntry extra = stored(k_document);
  extra.extra = le16(0x5A4C) + le16(8) + "\x01\x03" + le32(65001) + "nm";
  extra.comment = "why";
  return {{{stored(k_document)}, {}, "", ""},
          {{deflated(k_document)}, {}, "a comment", ""},
          {{bzipped(k_document)}, {}, "", ""},
          {{streamed, stored("another")}, {1, 0}, "", "in front"},
          {{extra}, {}, "", ""}};
}

class Damage : public testing::Test {
 protected:
  // Reads as far as it goes, by the steps of a whole document and then in pieces.
  void Try(const std::string& bytes, const std::string& what) {
    ++tried_;
    MemoryFile file(bytes);
    CZipArchive archive;
    const std::int32_t cause = cause_of([&] {
      archive.Open(file, CZipArchive::modeReadOnly);
      const ReadResult result = read_entry(archive);
      if (result.ok()) {
        ++sound_;
        // A checksum of 32 bits stands behind every entry but an empty one.
        EXPECT_TRUE(result.data == k_document || result.data == "another" || result.data.empty())
            << what;
        return;
      }
      if (result.cause != 0) throw CZipException(result.cause);
    });
    EXPECT_TRUE(cause == 0 || is_listed(cause)) << what << " gives cause " << cause;
    archive.Close(CZipArchive::closeAfterException);
    ReadInPieces(bytes, what);
    ReadInBothWays(bytes, what);
  }

  // What can be read whole comes to what it comes to by steps, for which a file too short to hold
  // the entry is taken.
  void ReadInBothWays(const std::string& bytes, const std::string& what) {
    struct File : MemoryFile {
      using MemoryFile::MemoryFile;
      std::uint64_t GetLength() const override { return seems_empty ? 0 : bytes.size(); }
      bool seems_empty = false;
    };
    const auto read = [&bytes](bool is_by_steps) {
      File file(bytes);
      CZipArchive archive;
      ReadResult result;
      result.cause = cause_of([&] {
        archive.Open(file, CZipArchive::modeReadOnly);
        const CZipFileHeader* const entry = archive.EntryAt(0);
        if (entry == nullptr || !archive.CanHold(*entry)) return;
        result.opened = archive.OpenEntry(0);
        file.seems_empty = is_by_steps;
        result.data.resize(entry->uncompressed_size);
        const std::uint32_t got = archive.ReadEntry(result.data.data(), entry->uncompressed_size);
        char more = 0;
        result.whole = got == result.data.size() && archive.ReadEntry(&more, 1) == 0;
        result.data.resize(got);
        result.closed = archive.CloseEntry();
      });
      return result;
    };
    const ReadResult whole = read(false);
    const ReadResult by_steps = read(true);
    EXPECT_EQ(whole.cause, by_steps.cause) << what;
    EXPECT_EQ(whole.whole, by_steps.whole) << what;
    EXPECT_EQ(whole.closed, by_steps.closed) << what;
    if (whole.cause == 0) {
      EXPECT_EQ(whole.data, by_steps.data) << what;
    }
  }

  // Without a look at the size that the header claims.
  void ReadInPieces(const std::string& bytes, const std::string& what) {
    MemoryFile file(bytes);
    CZipArchive archive;
    archive.SetIgnoredChecks(0x1F);
    std::size_t delivered = 0;
    const std::int32_t cause = cause_of([&] {
      archive.Open(file, CZipArchive::modeReadOnly);
      if (!archive.OpenEntry(0)) return;
      char block[50];
      while (const std::uint32_t got = archive.ReadEntry(block, sizeof block)) delivered += got;
      archive.CloseEntry();
    });
    EXPECT_TRUE(cause == 0 || is_listed(cause)) << what << " gives cause " << cause;
    EXPECT_LE(delivered, bytes.size() * 1032) << what;
  }

  unsigned tried_ = 0;
  unsigned sound_ = 0;
};

TEST_F(Damage, EveryByteChanged) {
  for (const RawArchive& raw : small_archives()) {
    const std::string good = raw.bytes();
    // All values for the first two; for the others, which take long, those that matter most.
    const bool takes_all = raw.entries[0].method != 12 && raw.entries.size() == 1;
    for (std::size_t i = 0; i < good.size(); ++i) {
      for (unsigned value = 0; value < 256; ++value) {
        const unsigned old = static_cast<unsigned char>(good[i]);
        const unsigned difference = old ^ value;
        const bool is_telling = (difference & (difference - 1)) == 0 || value == 0 || value == 255;
        if (value == old || !(takes_all || is_telling)) continue;
        std::string bad = good;
        bad[i] = static_cast<char>(value);
        Try(bad, "method " + std::to_string(raw.entries[0].method) + ", byte " + std::to_string(i) +
                     " as " + std::to_string(value));
      }
    }
  }
  EXPECT_GT(tried_, 100'000u);
  // Names, times, versions and the like may change without harm.
  EXPECT_GT(sound_, tried_ / 10);
  EXPECT_LT(sound_, tried_ / 2);
}

TEST_F(Damage, EveryTruncation) {
  for (const RawArchive& raw : small_archives()) {
    const std::string good = raw.bytes();
    for (std::size_t size = 0; size < good.size(); ++size) {
      Try(good.substr(0, size), "cut at " + std::to_string(size));
      if (size != 0) Try(good.substr(size), "begun at " + std::to_string(size));
    }
  }
}

// Pairs of fields at their extremes, where sums wrap around.
TEST_F(Damage, ExtremeFields) {
  const std::string good = RawArchive{{deflated(k_document)}, {}, "", "in front"}.bytes();
  const std::size_t local = 8;
  const std::size_t central = good.find("PK\x01\x02");
  const std::size_t end = good.size() - 22;
  std::vector<std::size_t> fields;
  for (const std::size_t offset : {14, 18, 22}) fields.push_back(local + offset);
  for (const std::size_t offset : {16, 20, 24, 42}) fields.push_back(central + offset);
  for (const std::size_t offset : {4, 8, 12, 16}) fields.push_back(end + offset);
  const std::uint32_t values[] = {0,          1,          0x7FFFFFFF, 0x80000000,
                                  0xFFFF0000, 0xFFFFFFF0, 0xFFFFFFFE, 0xFFFFFFFF};
  for (const std::size_t first : fields) {
    for (const std::size_t second : fields) {
      for (const std::uint32_t a : values) {
        for (const std::uint32_t b : values) {
          Try(patched32(patched32(good, first, a), second, b),
              std::to_string(first) + " and " + std::to_string(second));
        }
      }
    }
  }
}

}  // namespace
