// Reading and writing archives: round trips, and the shapes in which an archive may come.
#include <gtest/gtest.h>

#include <ctime>

#include "support/files.h"
#include "zip/archives.h"
#include "zip/bzip2_compressor.h"
#include "zip/deflate_compressor.h"

namespace {

using namespace zol_test;

constexpr std::size_t k_local_header = 30;
constexpr std::size_t k_central_header = 46;
constexpr std::size_t k_end_record = 22;

ReadResult read_bytes(const std::string& bytes) {
  MemoryFile file(bytes);
  ReadResult result;
  const std::int32_t cause = cause_of([&] {
    CZipArchive archive;
    archive.Open(file, CZipArchive::modeReadOnly);
    result = read_entry(archive);
    archive.Close(CZipArchive::closeAfterException);
  });
  if (cause != 0) result.cause = cause;
  return result;
}

std::string text_of(std::size_t size) {
  std::string text;
  for (unsigned i = 0; text.size() < size; ++i) text += std::to_string(i * i) + "\n";
  return text.substr(0, size);
}

struct SizeCase {
  std::size_t size;
  bool noisy;
};

class RoundTrip : public testing::TestWithParam<SizeCase> {};

TEST_P(RoundTrip, GivesTheBytesBackAtEveryLevelAndMethod) {
  const std::string data = GetParam().noisy ? noise(GetParam().size) : text_of(GetParam().size);
  TempDir dir;
  write_file(dir.file("in.zol"), data);
  for (const std::uint16_t method : {8, 12}) {
    for (int level = -1; level <= 9; ++level) {
      SCOPED_TRACE(testing::Message() << "method " << method << " level " << level);
      CZipArchive archive;
      ASSERT_TRUE(archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate));
      ASSERT_TRUE(archive.SetCompressionMethod(method));
      ASSERT_TRUE(archive.AddFile(dir.wide("in.zol"), level));
      archive.Close();

      ASSERT_TRUE(archive.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly));
      ASSERT_EQ(archive.GetCount(), 1);
      const CZipFileHeader& entry = *archive.EntryAt(0);
      EXPECT_EQ(entry.method, level == 0 || data.size() < 5 ? 0 : method);
      EXPECT_EQ(entry.version_needed, entry.method == 12 ? 46 : 20);
      EXPECT_EQ(entry.GetFileName(), L"in.zol");
      const ReadResult result = read_entry(archive);
      EXPECT_TRUE(result.ok()) << result.cause;
      EXPECT_TRUE(result.data == data);
    }
  }
}

// Around the limit of storing, the 64 KiB of the write and read buffers and the 128 KiB of the work
// buffer.
INSTANTIATE_TEST_SUITE_P(Sizes, RoundTrip,
                         testing::Values(SizeCase{0, false}, SizeCase{1, false}, SizeCase{4, false},
                                         SizeCase{5, false}, SizeCase{65535, true},
                                         SizeCase{65536, true}, SizeCase{65537, true},
                                         SizeCase{131072, true}, SizeCase{131073, true},
                                         SizeCase{500000, false}, SizeCase{500000, true}),
                         [](const auto& info) {
                           return std::to_string(info.param.size) +
                                  (info.param.noisy ? "Noisy" : "Text");
                         });

TEST(Archive, DeliversInPiecesOfAnySize) {
  const std::string data = text_of(300000);
  for (const RawEntry& entry : {stored(data), deflated(data), bzipped(data)}) {
    MemoryFile file(RawArchive{{entry}, {}, "", ""}.bytes());
    CZipArchive archive;
    archive.Open(file, CZipArchive::modeReadOnly);
    for (const std::uint32_t piece : {1u, 7u, 4096u, 400000u}) {
      ASSERT_TRUE(archive.OpenEntry(0));
      EXPECT_FALSE(archive.OpenEntry(0));
      std::string got;
      std::string block(piece, '\0');
      while (const std::uint32_t size = archive.ReadEntry(block.data(), piece)) {
        got.append(block, 0, size);
      }
      EXPECT_EQ(archive.CloseEntry(), 1);
      EXPECT_EQ(archive.CloseEntry(), 0);
      EXPECT_TRUE(got == data) << "method " << entry.method << " by " << piece;
    }
  }
}

TEST(Archive, ReadsInFileOrder) {
  const RawArchive raw = {{stored("first"), stored("second"), stored("third")}, {2, 0, 1}, "", ""};
  EXPECT_EQ(read_bytes(raw.bytes()).data, "first");
  MemoryFile file(raw.bytes());
  CZipArchive archive;
  archive.Open(file, CZipArchive::modeReadOnly);
  EXPECT_EQ(read_entry(archive, 2).data, "third");
  EXPECT_EQ(archive.EntryAt(3), nullptr);
  EXPECT_FALSE(archive.OpenEntry(3));
}

TEST(Archive, FindsTheEndRecordBehindAnyComment) {
  for (const std::size_t size : {0, 1, 32'742, 32'743, 32'744, 32'745, 32'746, 65'534, 65'535}) {
    const RawArchive raw = {{deflated("colours")}, {}, std::string(size, 'c'), ""};
    EXPECT_EQ(read_bytes(raw.bytes()).data, "colours") << size;
  }
  // One byte more, and it is out of reach.
  const RawArchive raw = {{deflated("colours")}, {}, std::string(65'535, 'c'), ""};
  EXPECT_FALSE(read_bytes(raw.bytes() + "c").ok());
}

TEST(Archive, TakesTheLastOfTwoEndRecords) {
  RawArchive inner = {{stored("inner")}, {}, "", ""};
  const RawArchive outer = {{stored("outer")}, {}, inner.bytes(), ""};
  EXPECT_EQ(read_bytes(outer.bytes()).data, "inner");
  // A signature in parts is none.
  const RawArchive broken = {{stored("outer")}, {}, "PK\x05PK\x05", ""};
  EXPECT_EQ(read_bytes(broken.bytes()).data, "outer");
}

TEST(Archive, AcceptsDataInFront) {
  RawArchive raw = {{stored("one"), deflated("two")}, {}, "", "#!/bin/sh\nexit\n"};
  EXPECT_EQ(read_bytes(raw.bytes()).data, "one");
  raw.in_front = noise(100'000);
  EXPECT_EQ(read_bytes(raw.bytes()).data, "one");
}

TEST(Archive, FindsItsEndAcrossBlocks) {
  constexpr std::size_t k_block = 0x8000;
  for (std::size_t size = k_block - k_end_record - 5; size < k_block + 5; ++size) {
    RawArchive raw = {{stored("one")}, {}, std::string(size, 'P'), ""};
    EXPECT_EQ(read_bytes(raw.bytes()).data, "one") << size;
  }
}

TEST(Archive, ReadsADescriptorEntry) {
  RawEntry entry = deflated("colours");
  entry.flags = 8;
  std::string bytes = RawArchive{{entry}, {}, "", ""}.bytes();
  // The local header of a streamed entry knows neither checksum nor sizes.
  for (const std::size_t offset : {14, 18, 22}) bytes = patched32(bytes, offset, 0);
  EXPECT_EQ(read_bytes(bytes).data, "colours");

  // Told to compare the descriptor, it misses it.
  MemoryFile file(bytes);
  CZipArchive archive;
  archive.SetIgnoredChecks(0);
  archive.Open(file, CZipArchive::modeReadOnly);
  EXPECT_EQ(read_entry(archive).cause, 101);
  archive.Close(CZipArchive::closeAfterException);

  const std::string descriptor =
      le32(entry.crc) + le32(static_cast<std::uint32_t>(entry.data.size())) + le32(entry.size);
  for (const std::string& signature : {std::string(), std::string("PK\x07\x08")}) {
    entry.name = "b.zol";
    RawEntry second = stored("behind");
    // The descriptor counts as data of nobody: the second entry's offset follows from the first's
    // size.
    RawEntry first = entry;
    first.data += signature + descriptor;
    std::string both = RawArchive{{first, second}, {}, "", ""}.bytes();
    const std::size_t central = both.find("PK\x01\x02");
    for (const std::size_t offset : {14, 18, 22}) both = patched32(both, offset, 0);
    both = patched32(both, central + 20, static_cast<std::uint32_t>(entry.data.size()));
    MemoryFile streamed(both);
    CZipArchive reader;
    reader.SetIgnoredChecks(0);
    reader.Open(streamed, CZipArchive::modeReadOnly);
    EXPECT_EQ(read_entry(reader).data, "colours");
  }
}

struct FaultCase {
  const char* what;
  std::string bytes;
  std::int32_t cause;  // 0: no exception, but the entry can't be read
};

std::vector<FaultCase> fault_cases() {
  const RawArchive good = {{deflated("colours of all kinds")}, {}, "", ""};
  const std::string bytes = good.bytes();
  const std::size_t end = bytes.size() - k_end_record;
  const std::size_t central = bytes.find("PK\x01\x02");
  const auto with = [](RawEntry entry, auto change) {
    change(entry);
    return RawArchive{{entry}, {}, "", ""}.bytes();
  };
  RawArchive twins = {{stored("one"), stored("two")}, {}, "", ""};
  const std::string twin_bytes = twins.bytes();
  const std::size_t second = twin_bytes.find("PK\x01\x02", twin_bytes.find("PK\x01\x02") + 1);
  // Room for large sizes in the local header, and small ones in the directory.
  const auto wide = [](std::uint32_t extra_size, std::uint32_t extra_high) {
    RawEntry entry = deflated("colours of all kinds");
    const auto packed = static_cast<std::uint32_t>(entry.data.size());
    entry.local_extra =
        le16(1) + le16(16) + le32(extra_size) + le32(extra_high) + le32(packed) + le32(0);
    const std::string raw = RawArchive{{entry}, {}, "", ""}.bytes();
    return patched32(patched32(raw, 18, 0xFFFFFFFF), 22, 0xFFFFFFFF);
  };
  RawArchive full = {{stored("one")}, {}, std::string(65'535, 'c'), "PK\x06\x07 in front"};

  return {
      {"empty file", "", 101},
      {"too short for anything", "PK\x05\x06", 101},
      {"text", "<?xml version=\"1.0\"?>\n<Zol/>\n", 101},
      {"cut end record", bytes.substr(0, bytes.size() - 1), 101},
      {"comment longer than the file", patched16(bytes, end + 20, 1), 101},
      {"directory size too large", patched32(bytes, end + 12, 1000), 101},
      {"directory offset too large", patched32(bytes, end + 16, 0x7FFFFFFF), 101},
      {"directory that wraps around",
       patched32(patched32(bytes, end + 12, 0xFFFFFFF0), end + 16, 0x20), 101},
      {"no entries in a directory", patched16(bytes, end + 10, 0), 101},
      {"entries without a directory", patched32(bytes, end + 12, 0), 101},
      {"one entry too many", patched16(bytes, end + 10, 2), 101},
      {"segmented", patched16(bytes, end + 4, 1), 2},
      {"entry on another volume", patched16(bytes, central + 34, 1), 101},
      {"two entries at one place", patched32(twin_bytes, second + 42, 0), 101},
      {"full field and a Zip64 locator", full.bytes(), 120},
      {"full field without a locator", patched16(bytes, end + 8, 0xFFFF), -1},
      {"central signature", patched16(bytes, central, 0), 101},
      {"offset behind the end", patched32(bytes, central + 42, 0xFFFFFF00), 101},
      {"local signature", patched16(bytes, 0, 0), 101},
      {"local flags", patched16(bytes, 6, 4), 101},
      {"local flag above the four", patched16(bytes, 6, 0x10), -1},
      {"local method", patched16(bytes, 8, 0), 101},
      {"local checksum", patched32(bytes, 14, 1), 101},
      {"local compressed size", patched32(bytes, 18, 1), 101},
      {"local compressed size of 0", patched32(bytes, 18, 0), -1},
      {"local size", patched32(bytes, 22, 1), 101},
      {"local sizes in a Zip64 record", wide(20, 0), -1},
      {"another size in a Zip64 record", wide(21, 0), 101},
      {"a size above 4 GiB in a Zip64 record", wide(20, 1), 101},
      {"local sizes in no record", patched16(wide(20, 0), 35, 2), 101},
      {"local name over the end", patched16(bytes, 26, 0xFFFF), 101},
      {"encrypted", with(stored("secret"), [](RawEntry& e) { e.flags = 1; }), 112},
      {"unknown method", with(stored("shrunk"), [](RawEntry& e) { e.method = 14; }), 0},
      {"AES without its record", with(stored("s"), [](RawEntry& e) { e.flags = 1, e.method = 99; }),
       0},
      {"AES with its record",
       with(stored("secret"),
            [](RawEntry& e) {
              e.flags = 1, e.method = 99;
              e.extra = le16(0x9901) + le16(7) + le16(2) + "AE\x03" + le16(8);
              e.local_extra = e.extra;
            }),
       112},
      {"extra record cut", with(stored("s"), [](RawEntry& e) { e.extra = "abc"; }), 101},
      {"extra record too long",
       with(stored("s"), [](RawEntry& e) { e.extra = le16(1) + le16(5) + "four"; }), 101},
      {"empty text record",
       with(stored("s"), [](RawEntry& e) { e.extra = le16(0x5A4C) + le16(0); }), 101},
      {"text record without its page",
       with(stored("s"),
            [](RawEntry& e) { e.extra = le16(0x5A4C) + le16(5) + "\x01\x01" + "abc"; }),
       101},
      {"text record of a later version",
       with(stored("s"), [](RawEntry& e) { e.extra = le16(0x5A4C) + le16(1) + "\x02"; }), -1},
      {"wrong checksum", with(stored("seven"), [](RawEntry& e) { ++e.crc; }), 102},
      {"size of 4 GiB", with(deflated("ten bytes."), [](RawEntry& e) { e.size = 0xFFFFFFFE; }), 0},
      {"stored size too large", with(stored("ten bytes."), [](RawEntry& e) { e.size = 0x1000; }),
       0},
      {"size too small", with(deflated("ten bytes."), [](RawEntry& e) { e.size = 5; }), 101},
      {"size a little too large", with(deflated("ten bytes."), [](RawEntry& e) { e.size = 11; }),
       0},
      {"size of 0", with(deflated("ten bytes."), [](RawEntry& e) { e.size = 0; }), 101},
  };
}

TEST(Archive, NamesEachFault) {
  for (const FaultCase& each : fault_cases()) {
    const ReadResult result = read_bytes(each.bytes);
    if (each.cause == -1) {
      EXPECT_TRUE(result.ok()) << each.what << ": " << result.cause;
    } else {
      EXPECT_FALSE(result.ok()) << each.what;
      EXPECT_EQ(result.cause, each.cause) << each.what;
    }
  }
}

TEST(Archive, EndsALoopWithoutProgress) {
  // More compressed bytes than a work buffer holds, and no room for what they give: each method
  // gets nowhere at once.
  const std::string data = noise(400'000);
  struct Case {
    RawEntry entry;
    std::int32_t cause;
  };
  for (Case each : {Case{stored(data), 506}, {deflated(data), 506}, {bzipped(data), 607}}) {
    each.entry.size = 10;
    const ReadResult result = read_bytes(RawArchive{{each.entry}, {}, "", ""}.bytes());
    EXPECT_EQ(result.cause, each.cause) << each.entry.method;
  }
}

TEST(Archive, StopsAtDataThatEndsEarly) {
  for (const RawEntry& whole : {deflated(noise(1000)), bzipped(noise(1000))}) {
    for (std::size_t size = 0; size < whole.data.size(); size += 37) {
      RawEntry entry = whole;
      entry.data.resize(size);
      const ReadResult result = read_bytes(RawArchive{{entry}, {}, "", ""}.bytes());
      EXPECT_FALSE(result.ok()) << "method " << whole.method << " cut at " << size;
    }
  }
}

TEST(Archive, ReadsAnEmptyArchive) {
  MemoryFile file(RawArchive().bytes());
  CZipArchive archive;
  ASSERT_TRUE(archive.Open(file, CZipArchive::modeReadOnly));
  EXPECT_EQ(archive.EntryAt(0), nullptr);
  EXPECT_FALSE(archive.OpenEntry(0));
}

TEST(Archive, ReadsPastTheCountWhenTold) {
  RawArchive raw = {{stored("one"), stored("two")}, {}, "", ""};
  const std::string bytes = raw.bytes();
  const std::string lying = patched16(bytes, bytes.size() - k_end_record + 10, 1);
  for (const bool exhaustive : {false, true}) {
    MemoryFile file(lying);
    CZipArchive archive;
    archive.SetExhaustiveRead(exhaustive);
    archive.Open(file, CZipArchive::modeReadOnly);
    EXPECT_EQ(archive.GetCount(), exhaustive ? 2 : 1);
  }
}

TEST(Archive, NamesCausesWithoutReadingOn) {
  CZipArchive archive;
  EXPECT_EQ(cause_of([&] { archive.Open(L"/nowhere/at/all.zip", CZipArchive::modeReadOnly); }), 2);
  EXPECT_EQ(cause_of([&] { archive.Open(L"/tmp", CZipArchive::modeReadOnly); }), 21);
  EXPECT_EQ(cause_of([&] { archive.Open(L"", CZipArchive::modeReadOnly); }), 2);
  EXPECT_EQ(cause_of([&] { archive.Open(L"x.zip", CZipArchive::modeSegmented); }), 103);
  EXPECT_EQ(cause_of([&] { archive.Open(L"x.zip", 77); }), 22);
  EXPECT_TRUE(archive.IsClosed());
  archive.Close();
  archive.Close(CZipArchive::closeAfterException);
}

TEST(Archive, RefusesMisuse) {
  TempDir dir;
  write_file(dir.file("a.zol"), "colours");
  CZipArchive archive;
  EXPECT_FALSE(archive.AddFile(dir.wide("a.zol")));
  ASSERT_TRUE(archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate));
  EXPECT_FALSE(archive.Open(dir.wide("b.zip"), CZipArchive::modeCreate));
  for (const std::uint16_t method : {0, 1, 9, 14, 99})
    EXPECT_FALSE(archive.SetCompressionMethod(method));
  EXPECT_FALSE(archive.AddFile(dir.wide("missing")));
  EXPECT_FALSE(archive.AddFile(L""));
  EXPECT_FALSE(archive.AddFile(L"//"));
  EXPECT_FALSE(archive.AddFile(dir.wide("a.zol"), -1, false, 7, 0));
  EXPECT_FALSE(archive.WriteNewEntry("x", 1));
  EXPECT_FALSE(archive.CloseNewEntry());

  ASSERT_TRUE(archive.OpenNewEntry(std::make_unique<CZipFileHeader>()));
  EXPECT_FALSE(archive.SetCompressionMethod(8));
  EXPECT_FALSE(archive.OpenNewEntry(std::make_unique<CZipFileHeader>()));
  EXPECT_FALSE(archive.OpenEntry(0));
  EXPECT_TRUE(archive.WriteNewEntry("unnamed", 7));
  EXPECT_TRUE(archive.CloseNewEntry());
  archive.Close();
  EXPECT_EQ(dir.names(), (std::vector<std::string>{"a.zip", "a.zol"}));

  archive.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly);
  EXPECT_EQ(archive.EntryAt(0)->GetFileName(), L"file0");
  EXPECT_FALSE(archive.AddFile(dir.wide("a.zol")));
}

TEST(Archive, RefusesALongName) {
  MemoryFile file;
  CZipArchive archive;
  archive.Open(file, CZipArchive::modeCreate);
  const auto add = [&](std::size_t size) {
    auto header = std::make_unique<CZipFileHeader>();
    header->SetFileName(std::wstring(size, L'n'));
    return cause_of([&] { archive.OpenNewEntry(std::move(header)); });
  };
  EXPECT_EQ(add(65'536), 110);
  EXPECT_EQ(add(65'535), 0);
}

TEST(Archive, AddsToAnExistingOne) {
  TempDir dir;
  write_file(dir.file("a.zol"), "one colour");
  write_file(dir.file("b.zol"), "another colour");
  RawArchive raw = {{stored("first")}, {}, "a comment", "in front "};
  write_file(dir.file("a.zip"), raw.bytes());
  CZipArchive archive;
  ASSERT_TRUE(archive.Open(dir.wide("a.zip"), CZipArchive::modeOpen));
  EXPECT_TRUE(archive.AddFile(dir.wide("a.zol")));
  EXPECT_TRUE(archive.AddFile(dir.wide("b.zol")));
  EXPECT_TRUE(archive.AddFile(dir.wide("b.zol")));
  archive.Close();

  archive.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly);
  ASSERT_EQ(archive.GetCount(), 4);
  EXPECT_EQ(archive.GetRawComment(), "a comment");
  EXPECT_EQ(read_entry(archive, 0).data, "first");
  EXPECT_EQ(read_entry(archive, 1).data, "one colour");
  EXPECT_EQ(read_entry(archive, 3).data, "another colour");
#if !defined(_WIN32)
  EXPECT_EQ(run({"unzip", "-tqq", dir.file("a.zip")}).status, 1);  // warns of what is in front
#endif

  // An archive behind a file that is none.
  write_file(dir.file("script"), "#!/bin/sh\n");
  archive.Close();
  ASSERT_TRUE(archive.Open(dir.wide("script"), CZipArchive::modeAppend));
  EXPECT_TRUE(archive.AddFile(dir.wide("a.zol")));
  archive.Close();
  EXPECT_EQ(read_file(dir.file("script")).substr(0, 10), "#!/bin/sh\n");
  EXPECT_EQ(read_first(dir.wide("script")).data, "one colour");
}

TEST(Archive, LeavesNoDirectoryAfterAnException) {
  TempDir dir;
  write_file(dir.file("a.zol"), "colours");
  const auto write = [&](int mode) {
    CZipArchive archive;
    archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
    archive.AddFile(dir.wide("a.zol"));
    if (mode >= 0) archive.Close(mode);
    return read_file(dir.file("a.zip")).find("PK\x05\x06") != std::string::npos;
  };
  EXPECT_TRUE(write(CZipArchive::closeNormal));
  EXPECT_TRUE(write(CZipArchive::closeAndWrite));
  EXPECT_FALSE(write(CZipArchive::closeAfterException));
  EXPECT_FALSE(write(-1));  // destroyed
}

TEST(Archive, StoresWhatDoesNotShrink) {
  TempDir dir;
  write_file(dir.file("noise"), noise(100'000));
  write_file(dir.file("text"), text_of(100'000));
  CZipArchive archive;
  archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
  constexpr std::uint32_t k_smart = CZipArchive::smartDefault | CZipArchive::smartStoreIfLarger;
  EXPECT_TRUE(archive.AddFile(dir.wide("noise"), 9, false, k_smart));
  EXPECT_TRUE(archive.AddFile(dir.wide("text"), 9, false, k_smart));
  EXPECT_EQ(archive.EntryAt(0)->method, 0);
  EXPECT_EQ(archive.EntryAt(1)->method, 8);
  archive.Close();
  EXPECT_TRUE(read_first(dir.wide("a.zip")).data == noise(100'000));
#if !defined(_WIN32)
  EXPECT_EQ(run({"unzip", "-tqq", dir.file("a.zip")}).status, 0);
#endif
}

TEST(Archive, ClosesIntoAFile) {
  TempDir dir;
  write_file(dir.file("a.zol"), "colours");
  set_file_time(dir.file("a.zol"), "2001-02-03 04:05:06");
  CZipArchive archive;
  archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
  archive.AddFile(dir.wide("a.zol"));
  archive.Close(CZipArchive::closeNormal, true);
  const std::string stamp = "2001-02-03 04:05:06";
  EXPECT_EQ(file_time(dir.file("a.zip")), stamp);

  write_file(dir.file("out"), "");
  archive.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly);
  char data[7];
  ASSERT_TRUE(archive.OpenEntry(0));
  EXPECT_EQ(archive.CloseEntry(dir.wide("out").c_str()), -1);
  EXPECT_EQ(file_time(dir.file("out")), stamp);
  ASSERT_TRUE(archive.OpenEntry(0));
  EXPECT_EQ(archive.ReadEntry(data, 7), 7u);
  EXPECT_EQ(archive.CloseEntry(dir.wide("missing").c_str()), -2);
}

TEST(Archive, KeepsTwoWritersApart) {
  TempDir dir;
  write_file(dir.file("a.zip"), RawArchive{{stored("colours")}, {}, "", ""}.bytes());
  CZipArchive reader;
  CZipArchive other;
  reader.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly);
  EXPECT_EQ(cause_of([&] { other.Open(dir.wide("a.zip"), CZipArchive::modeOpen); }), 13);
  EXPECT_EQ(cause_of([&] { other.Open(dir.wide("a.zip"), CZipArchive::modeCreate); }), 13);
  EXPECT_EQ(read_entry(reader).data, "colours");  // nothing was cut off
  EXPECT_TRUE(other.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly));
  EXPECT_EQ(read_entry(other).data, "colours");
}

TEST(Archive, ReadsAttributesOfEachSystem) {
  struct Case {
    std::uint16_t made_by;
    std::uint32_t external;
    const char* name;
    std::uint32_t expected;
  };
  const Case cases[] = {
      {0x002E, 0x81B40020, "a", 0x20},  {0x002E, 0x10, "a", 0x10},
      {0x002E, 0, "a/", 0x10},          {0x002E, 0, "a", 0x20},
      {0x031E, 0x81A40000, "a", 0x20},  {0x031E, 0x81240000, "a", 0x21},
      {0x031E, 0x41ED0010, "a/", 0x10}, {0x031E, 0, "a\\", 0x10},
      {0x062E, 0x27, "a", 0x27},        {0x0A2E, 0x21, "a", 0x21},
      {0x072E, 0x31, "a", 0x11},        {0x132E, 0x10, "a", 0x20},
      {0x132E, 0x20, "a/", 0x10},
  };
  for (const Case& each : cases) {
    RawEntry entry = stored("x");
    entry.made_by = each.made_by;
    entry.external_attributes = each.external;
    entry.name = each.name;
    MemoryFile file(RawArchive{{entry}, {}, "", ""}.bytes());
    CZipArchive archive;
    archive.Open(file, CZipArchive::modeReadOnly);
    EXPECT_EQ(archive.EntryAt(0)->GetSystemAttributes(), each.expected)
        << std::hex << each.made_by << " " << each.external;
    EXPECT_EQ(archive.EntryAt(0)->IsDirectory(), (each.expected & 0x10) != 0);
  }
}

TEST(Archive, KeepsNamesAndTextRecords) {
  const std::wstring names[] = {L"plain.zol",    L"Gr\u00f6\u00dfe \u00e9.zol", L"\u8272.zol",
                                L"\u251c\u2310", L"\xD83C\xDFA8.zol",           L"dir\\sub\\a.zol"};
  EntryTextSettings other;
  other.store_name_in_extra = true;
  other.name_code_page = 65001;
  other.comment_code_page = 65001;
  for (const std::wstring& name : names) {
    for (const bool in_extra : {false, true}) {
      MemoryFile file;
      CZipArchive archive;
      archive.Open(file, CZipArchive::modeCreate);
      auto header = std::make_unique<CZipFileHeader>();
      if (in_extra) header->SetTextSettings(other);
      header->SetFileName(name);
      header->SetComment(name);
      archive.OpenNewEntry(std::move(header));
      archive.CloseNewEntry();
      archive.Close();

      // The second round rewrites the directory that the first one read.
      for (int round = 0; round < 2; ++round) {
        archive.Open(file, CZipArchive::modeOpen);
        const CZipFileHeader& entry = *archive.EntryAt(0);
        EXPECT_EQ(entry.GetFileName(), name);
        EXPECT_EQ(entry.GetComment(), name);
        EXPECT_EQ(entry.GetTextSettings() == other, in_extra);
        archive.OpenNewEntry(std::make_unique<CZipFileHeader>());
        archive.CloseNewEntry();
        archive.Close();
      }
    }
  }
}

TEST(Archive, StampsTimesInDosForm) {
  struct Case {
    const char* when;
    std::uint16_t date;
    std::uint16_t time;
  };
  for (const Case& each : {Case{"1979-05-06 07:08:09", 5 * 32 + 6, 7 * 2048 + 8 * 32 + 4},
                           Case{"1980-12-31 23:59:58", 12 * 32 + 31, 23 * 2048 + 59 * 32 + 29},
                           Case{"2026-11-21 00:00:01", 46 * 512 + 11 * 32 + 21, 0},
                           Case{"2200-01-01 12:00:00", 127 * 512 + 32 + 1, 12 * 2048}}) {
    TempDir dir;
    write_file(dir.file("a"), "colours");
    set_file_time(dir.file("a"), each.when);
    MemoryFile file;
    CZipArchive archive;
    archive.Open(file, CZipArchive::modeCreate);
    ASSERT_TRUE(archive.AddFile(dir.wide("a")));
    EXPECT_EQ(archive.EntryAt(0)->date, each.date) << each.when;
    EXPECT_EQ(archive.EntryAt(0)->time, each.time) << each.when;
  }
}

TEST(Archive, ReadsTimesInDosForm) {
  struct Case {
    const char* when;
    int year, month, day, hour, minute, second;
  };
  for (const Case& each :
       {Case{"midnight", 2026, 1, 1, 0, 0, 0}, Case{"a full hour", 2026, 11, 21, 8, 0, 0},
        Case{"the last full hour", 2026, 2, 28, 23, 0, 0},
        Case{"a full minute", 2000, 7, 31, 12, 59, 0},
        Case{"the first even second", 2000, 2, 29, 1, 1, 2},
        Case{"the last moment", 2099, 12, 31, 23, 59, 58}}) {
    std::tm fields = {};
    fields.tm_year = each.year - 1900;
    fields.tm_mon = each.month - 1;
    fields.tm_mday = each.day;
    fields.tm_hour = each.hour;
    fields.tm_min = each.minute;
    fields.tm_sec = each.second;
    fields.tm_isdst = -1;
    const std::time_t expected = std::mktime(&fields);
    CZipFileHeader header;
    header.date = static_cast<std::uint16_t>((each.year - 1980) << 9 | each.month << 5 | each.day);
    header.time = static_cast<std::uint16_t>(each.hour << 11 | each.minute << 5 | each.second / 2);
    EXPECT_EQ(header.GetTime(), expected) << each.when;
    CZipFileHeader again;
    again.SetTime(expected);
    EXPECT_EQ(again.date, header.date) << each.when;
    EXPECT_EQ(again.time, header.time) << each.when;
  }
}

// The whole file, byte by byte, as the format's published description has it.
TEST(Archive, WritesTheseBytes) {
  TempDir dir;
  write_file(dir.file("a.zol"), "aaaa");
  set_file_time(dir.file("a.zol"), "2026-11-21 10:20:30");
  CZipArchive archive;
  archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
  archive.AddFile(dir.wide("a.zol"));
  archive.Close();
  const std::string stamp = le16(10 * 2048 + 20 * 32 + 15) + le16(46 * 512 + 11 * 32 + 21);
  const std::string sizes = le32(0xAD98E545) + le32(4) + le32(4) + le16(5) + le16(0);
  const std::string common = le16(20) + le16(0) + le16(0) + stamp + sizes;
  const std::string local = "PK\x03\x04" + common + "a.zol" + "aaaa";
  const std::string central = "PK\x01\x02" + le16(0x2E) + common + le16(0) + le16(0) + le16(0) +
                              le32(0x81B40020) + le32(0) + "a.zol";
  ASSERT_EQ(local.size(), k_local_header + 9);
  ASSERT_EQ(central.size(), k_central_header + 5);
  const std::string end = "PK\x05\x06" + le32(0) + le16(1) + le16(1) +
                          le32(static_cast<std::uint32_t>(central.size())) +
                          le32(static_cast<std::uint32_t>(local.size())) + le16(0);
  EXPECT_EQ(read_file(dir.file("a.zip")), local + central + end);
}

std::string without_root(const std::string& path) { return path.substr(path.find('/') + 1); }

TEST(Archive, NamesEntriesByTheirLastComponent) {
  TempDir dir;
  make_directory(dir.file("sub/deep"));
  write_file(dir.file("sub/a.zol"), "colours");
  MemoryFile file;
  CZipArchive archive;
  archive.Open(file, CZipArchive::modeCreate);
  ASSERT_TRUE(archive.AddFile(dir.wide("sub/a.zol")));
  ASSERT_TRUE(archive.AddFile(dir.wide("sub/a.zol"), -1, true));
  ASSERT_TRUE(archive.AddFile(dir.wide("sub/deep//")));
  EXPECT_EQ(archive.EntryAt(0)->GetRawFileName(), "a.zol");
  EXPECT_EQ(archive.EntryAt(1)->GetRawFileName(), without_root(dir.file("sub/a.zol")));
  EXPECT_EQ(archive.EntryAt(2)->GetRawFileName(), "deep/");
  EXPECT_EQ(archive.EntryAt(2)->version_needed, 10);
  EXPECT_EQ(archive.EntryAt(2)->external_attributes & 0xFFFF, 0x10u);
}

TEST(Archive, SetsTheLevelBits) {
  TempDir dir;
  write_file(dir.file("a"), "colours");
  const std::uint16_t expected[] = {0, 6, 4, 0, 0, 0, 0, 0, 2, 2};
  for (int level = 0; level <= 9; ++level) {
    MemoryFile file;
    CZipArchive archive;
    archive.Open(file, CZipArchive::modeCreate);
    archive.AddFile(dir.wide("a"), level);
    EXPECT_EQ(archive.EntryAt(0)->flags, expected[level]) << level;
  }
}

TEST(Archive, AppliesCompressorOptions) {
  ZipArchiveLib::CBzip2Compressor::COptions bzip2;
  bzip2.small_decompress = true;
  bzip2.buffer_size = 10;
  ZipArchiveLib::CDeflateCompressor::COptions deflate;
  deflate.buffer_size = 1;
  deflate.detect_leaks = false;
  const std::string data = text_of(20'000);
  for (const RawEntry& entry : {stored(data), deflated(data), bzipped(data)}) {
    MemoryFile file(RawArchive{{entry}, {}, "", ""}.bytes());
    CZipArchive archive;
    archive.SetCompressorOptions(bzip2);
    archive.SetCompressorOptions(deflate);
    archive.Open(file, CZipArchive::modeReadOnly);
    EXPECT_TRUE(read_entry(archive).data == data) << entry.method;
    // Broken off in the middle, without the list of blocks.
    ASSERT_TRUE(archive.OpenEntry(0));
    char byte;
    archive.ReadEntry(&byte, 1);
    archive.Close(CZipArchive::closeAfterException);
  }
}

}  // namespace
