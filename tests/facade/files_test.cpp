// Document files, by both pairs of roads: what comes back, what stays on disk, and what is said.
#include "facade/files.h"

#include <gtest/gtest.h>

#include <clocale>
#include <thread>

#if !defined(_WIN32)
#include <fcntl.h>
#include <pthread.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <iomanip>
#include <sstream>
#endif

#include "model/Zol.h"
#include "model/reflection.h"
#include "support/files.h"
#include "zip/archives.h"
#if !defined(_WIN32)
#include "support/failing_calls.h"
#endif

namespace {

using namespace zol_test;
using zol_v2::LoadReport;
using zol_v2::openFile;
using zol_v2::openText;
using zol_v2::readText;
using zol_v2::saveFile;
using zol_v2::SaveOptions;
using zol_v2::SaveReport;
using zol_v2::saveStream;
using zol_v2::saveString;
using zol_v2::saveText;
using zol_v2::unpackText;
using zol_v2::Zol;
using Names = std::vector<std::string>;

// A document in order, with that many colours.
std::string document(unsigned colours) {
  std::string text =
      "<Zol:Zol xmlns:Zol=\"http://example.org/zol/v2\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><Zol:Preamble><Zol:Header>"
      "<Zol:Creator>c</Zol:Creator><Zol:CreatorVersion>1</Zol:CreatorVersion>"
      "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory><Zol:Purpose>p</Zol:Purpose>"
      "</Zol:Header></Zol:Preamble>";
  for (unsigned i = 0; i < colours; ++i) {
    text += "<Zol:Color ColorName=\"colour " + std::to_string(i) +
            "\"><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory><Zol:ColorSpaceNCS>"
            "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>"
            "<Zol:ColorSpaceSpecificationSpectrumGeneric xsi:nil=\"true\"/><Zol:ColorName>S " +
            std::to_string(1000 + i * 7919 % 9000) +
            "-Y90R</Zol:ColorName></Zol:ColorSpaceNCS></Zol:Color>";
  }
  return text + "</Zol:Zol>";
}

Zol made(unsigned colours) {
  Zol made;
  EXPECT_EQ(made.unmarshal(document(colours)), lmx::elmx_ok);
  return made;
}

std::string text_of(const Zol& document) {
  std::string text;
  EXPECT_EQ(document.marshal(&text), lmx::elmx_ok);
  return text;
}

unsigned colours_in(const std::wstring& path) {
  Zol loaded;
  EXPECT_EQ(openFile(loaded, path), lmx::elmx_ok);
  return loaded.size_Color();
}

RawArchive archive_of(const RawEntry& entry) { return {{entry}, {}, "", ""}; }

// Descriptors that a test leaves open are a failure of it.
class Files : public testing::Test {
 protected:
  ~Files() override { EXPECT_EQ(count_open_files(), open_files_); }

#if !defined(_WIN32)
  // A file system of that size in the directory, where that is allowed.
  bool mount_small(const char* size) {
    is_mounted_ = ::mount("zol-test", dir_.path().c_str(), "tmpfs", 0, size) == 0;
    return is_mounted_;
  }
  void TearDown() override { EXPECT_EQ(is_mounted_ ? ::umount(dir_.path().c_str()) : 0, 0); }
#endif

  const std::size_t open_files_ = count_open_files();
  TempDir dir_;

 private:
  [[maybe_unused]] bool is_mounted_ = false;
};

TEST_F(Files, GoByBothRoads) {
  const Zol document = made(300);
  for (const char* name : {"x.zol", "x.zolz", ".zol", ".zolz", "a.zol.zolz",
                           "gr\u00f6\u00dfe \u8272.zol", "\U0001F3A8.zolz"}) {
    for (const bool is_safe : {false, true}) {
      const std::wstring path = dir_.wide(name);
      ASSERT_EQ(is_safe ? saveFile(document, path) : document.writeFile(path), lmx::elmx_ok)
          << name;
      EXPECT_EQ(dir_.names(), Names{name});
      Zol loaded;
      EXPECT_EQ(loaded.loadFile(path), lmx::elmx_ok);
      EXPECT_EQ(text_of(loaded), text_of(document));
      EXPECT_EQ(loaded.get_Preamble().get_Header().get_WriteSDKInformation().get_SDKName(),
                L"Zol2-LMX-3.8");
      EXPECT_EQ(colours_in(path), 300u);
      remove_file(dir_.file(name));
    }
  }
}

TEST_F(Files, HoldEverySampleDocument) {
  for (const char* sample : {"coverage-frame", "coverage-functions", "coverage-spaces",
                             "named-colours", "quality-control", "spectra"}) {
    const std::string source = ZOL_SOURCE_DIR "/examples/documents/" + std::string(sample) + ".zol";
    Zol document;
    ASSERT_EQ(document.unmarshal(source.c_str()), lmx::elmx_ok) << sample;
    ASSERT_EQ(document.writeFile(dir_.wide("x.zolz")), lmx::elmx_ok);
    Zol loaded;
    ASSERT_EQ(loaded.loadFile(dir_.wide("x.zolz")), lmx::elmx_ok);
    EXPECT_EQ(text_of(loaded), text_of(document)) << sample;
  }
}

TEST_F(Files, ReachPathsInAnyLocale) {
  const Zol document = made(1);
  for (const char* locale : {"C", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_EQ(document.writeFile(dir_.wide("\u8272.zolz")), lmx::elmx_ok);
    EXPECT_EQ(Zol().writeFile(dir_.wide("\u8272.zol")), lmx::elmx_occurs_on_marshal);
    EXPECT_EQ(dir_.names(), Names{"\u8272.zolz"});
  }
  std::setlocale(LC_ALL, "C");
}

TEST_F(Files, NeedASuffix) {
  Zol document;
  document.get_Preamble().get_Header().unset_WriteSDKInformation();
  for (const char* name :
       {"x.xml", "x", "zol", "x.zolz.bak", "x.ZOL", "x.ZOLZ", "x.zol ", "x.zo"}) {
    EXPECT_EQ(document.writeFile(dir_.wide(name)), 1001) << name;
    EXPECT_EQ(saveFile(document, dir_.wide(name)), 1001) << name;
  }
  EXPECT_EQ(document.writeFile(L""), 1001);
  EXPECT_EQ(saveFile(document, L""), 1001);
  EXPECT_TRUE(dir_.names().empty());
  EXPECT_FALSE(document.get_Preamble().get_Header().isset_WriteSDKInformation());

  // To reading, any other suffix means XML.
  write_file(dir_.file("x.ZOLZ"), ::document(2));
  EXPECT_EQ(colours_in(dir_.wide("x.ZOLZ")), 2u);
  write_file(dir_.file("x.zolz"), ::document(2));
  Zol loaded;
  EXPECT_EQ(cause_of([&] { loaded.loadFile(dir_.wide("x.zolz")); }), 101);
}

#if !defined(_WIN32)

TEST_F(Files, OpenInOtherPrograms) {
  const Zol document = made(1000);
  ASSERT_EQ(document.writeFile(dir_.wide("x.zol")), lmx::elmx_ok);
  const std::string text = read_file(dir_.file("x.zol"));
  for (const bool is_safe : {false, true}) {
    TempDir other;
    const std::wstring path = other.wide("x.zolz");
    ASSERT_EQ(is_safe ? saveFile(document, path) : document.writeFile(path), lmx::elmx_ok);
    const std::string zip = other.file("x.zolz");
    EXPECT_EQ(run({"unzip", "-tqq", zip}).status, 0);
    EXPECT_EQ(run({"7z", "t", "-bd", zip}).status, 0);
    EXPECT_EQ(run({"unzip", "-p", zip}).output, text);
    EXPECT_EQ(run({"bsdtar", "-xOf", zip}).output, text);
    const ProgramResult python = run_python(
        "import sys, time, zipfile\n"
        "e, = zipfile.ZipFile(sys.argv[1]).infolist()\n"
        "now = time.mktime(e.date_time + (0, 0, -1))\n"
        "print(e.filename, e.compress_type, e.create_version, e.create_system, e.extract_version,\n"
        "      e.flag_bits, hex(e.external_attr), e.extra, e.comment, abs(time.time() - now) < "
        "60)\n",
        {zip});
    EXPECT_EQ(python.output, "x.zol 8 46 0 20 0 0x81b40020 b'' b'' True\n");
  }
}

#endif

TEST_F(Files, WriteTheSameBytesByBothRoads) {
  const Zol document = made(3000);
  ASSERT_EQ(document.writeFile(dir_.wide("a.zol")), lmx::elmx_ok);
  ASSERT_EQ(saveFile(document, dir_.wide("b.zol")), lmx::elmx_ok);
  EXPECT_TRUE(read_file(dir_.file("a.zol")) == read_file(dir_.file("b.zol")));
  TempDir other;
  ASSERT_EQ(document.writeFile(dir_.wide("a.zolz")), lmx::elmx_ok);
  ASSERT_EQ(saveFile(document, other.wide("a.zolz")), lmx::elmx_ok);
  const auto without_time = [](std::string bytes) {
    bytes = patched32(bytes, 10, 0);
    return patched32(bytes, bytes.find("PK\x01\x02") + 12, 0);
  };
  EXPECT_TRUE(without_time(read_file(dir_.file("a.zolz"))) ==
              without_time(read_file(other.file("a.zolz"))));
}

// --- Loading -----------------------------------------------------------------------------------

TEST_F(Files, AppendOrReplaceWhenLoaded) {
  ASSERT_EQ(made(3).writeFile(dir_.wide("x.zolz")), lmx::elmx_ok);
  Zol document;
  EXPECT_EQ(document.loadFile(dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(document.loadFile(dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(document.size_Color(), 6u);
  EXPECT_EQ(openFile(document, dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(document.size_Color(), 3u);
}

struct LoadCase {
  const char* what;
  std::string name;
  std::string bytes;
  int code;                // of openFile, and of loadFile if that throws nothing
  int cause;               // of the archive
  bool throws;             // out of loadFile
  const char* words = "";  // of the message of openFile
};

std::vector<LoadCase> load_cases() {
  const std::string text = document(3);
  const auto with = [](RawEntry entry, auto change) {
    change(entry);
    return archive_of(entry).bytes();
  };
  const std::string good = archive_of(deflated(text)).bytes();
  const std::string broken = text.substr(0, text.size() - 20);
  RawArchive more = {{deflated(text), stored("of another kind")}, {1, 0}, "comment", "in front"};
  std::string untyped = text;
  untyped.replace(text.find("<Zol:ColorSpaceNCS>"), 19,
                  "<Zol:ColorSpaceCMYK xsi:type=\"Zol:Nothing\">");
  // Of which time and size make an end that asks for another part.
  const std::string large = patched16(archive_of(stored(document(2000))).bytes(), 10, 0x7A43);
  const std::string of_several = patched16(good, good.size() - 18, 1);
  return {
      {"XML", "x.xml", text, 0, 0, false},
      {"stored", "x.zolz", archive_of(stored(text)).bytes(), 0, 0, false},
      {"deflated", "x.zolz", good, 0, 0, false},
      {"bzip2", "x.zolz", archive_of(bzipped(text)).bytes(), 0, 0, false},
      {"further entries", "x.zolz", more.bytes(), 0, 0, false},
      {"noise for an archive", "x.zolz", "noise", 1000, 101, true},
      {"empty file for an archive", "x.zolz", "", 1000, 101, true},
      {"encrypted", "x.zolz", with(deflated(text), [](RawEntry& e) { e.flags = 1; }), 1000, 112,
       true},
      {"no entry", "x.zolz", RawArchive().bytes(), 1000, 100, false, "holds no document"},
      {"unknown method", "x.zolz", with(stored(text), [](RawEntry& e) { e.method = 14; }), 1000,
       100, false, "method 14, LZMA"},
      {"unknown method, no bytes", "x.zolz", with(stored(""), [](RawEntry& e) { e.method = 14; }),
       1000, 100, false},
      {"size too large", "x.zolz", with(deflated(text), [](RawEntry& e) { ++e.size; }), 1000, 100,
       false, "has not the size"},
      {"size too small", "x.zolz", with(deflated(text), [](RawEntry& e) { --e.size; }), 1000, 101,
       false},
      {"size of 4 GiB", "x.zolz", with(deflated(text), [](RawEntry& e) { e.size = ~0u - 1; }), 1000,
       100, false},
      {"a part of several", "x.zolz", of_several, 1000, 2, true, "cut or damaged"},
      {"half of one", "x.zolz", large.substr(0, large.size() / 2), 1000, 2, true, "cut or damaged"},
      {"a type that nobody knows", "x.zol", untyped, 44, 0, false,
       "line:1-'Zol:ColorSpaceCMYK'-Unknown xsi:type"},
      {"wrong checksum", "x.zolz", with(deflated(text), [](RawEntry& e) { ++e.crc; }), 1000, 102,
       false},
      {"entry of 0 bytes", "x.zolz", archive_of(stored("")).bytes(), 34, 0, false},
      {"deflated entry of 0 bytes", "x.zolz", archive_of(deflated("")).bytes(), 34, 0, false},
      {"broken XML in an archive", "x.zolz", archive_of(deflated(broken)).bytes(), 10, 0, false},
      {"broken XML", "x.zol", broken, 10, 0, false},
      {"empty XML", "x.zol", "", 34, 0, false, "line:1-''-Unexpected end of message"},
      {"another root", "x.zol", "<a/>", 16, 0, false},
  };
}

TEST_F(Files, LoadAsTheyAre) {
  for (const LoadCase& each : load_cases()) {
    SCOPED_TRACE(each.what);
    write_file(dir_.file(each.name), each.bytes);
    Zol document;
    int code = -1;
    const int cause = cause_of([&] { code = document.loadFile(dir_.wide(each.name)); });
    EXPECT_EQ(cause, each.throws ? each.cause : 0);
    if (!each.throws) {
      EXPECT_EQ(code, each.code);
    }
    if (each.code == 0) {
      EXPECT_EQ(document.size_Color(), 3u);
    }

    Zol other = made(1);
    LoadReport report;
    report.line = 77;
    EXPECT_EQ(openFile(other, dir_.wide(each.name), &report), each.code);
    EXPECT_EQ(report.code, each.code);
    EXPECT_EQ(report.archive_cause, each.cause);
    EXPECT_EQ(report.message.empty(), each.code == 0);
    EXPECT_NE(report.message.find(each.words), std::string::npos) << report.message;
    EXPECT_EQ(report.line, each.code == 0 || each.code >= 1000 ? 0 : 1);
    EXPECT_EQ(other.size_Color(), each.code == 0 ? 3u : 1u);
    remove_file(dir_.file(each.name));
  }
}

TEST_F(Files, ReportWhereTheFaultIs) {
  std::string text = document(3);
  text.replace(text.find("<Zol:Color "), 1, "\n\n<");
  text.replace(text.find("<Zol:ColorName>S "), 17, "<Zol:Colour>");
  write_file(dir_.file("x.zolz"), archive_of(deflated(text)).bytes());
  Zol document;
  LoadReport report;
  EXPECT_EQ(openFile(document, dir_.wide("x.zolz"), &report), lmx::elmx_mandatory_element_missing);
  EXPECT_EQ(report.line, 3);
  EXPECT_EQ(report.item, "Zol:ColorName");
  EXPECT_NE(report.message.find("line:3-'Zol:ColorName'-"), std::string::npos) << report.message;
}

TEST_F(Files, ThatCannotBeOpened) {
  Zol document = made(1);
  LoadReport report;
  for (const std::string& path :
       {dir_.file("missing.zol"), dir_.path(), dir_.file("no/such.zol")}) {
    const std::wstring wide(path.begin(), path.end());
    EXPECT_EQ(document.loadFile(wide), lmx::elmx_no_file);
    EXPECT_EQ(openFile(document, wide, &report), lmx::elmx_no_file);
    EXPECT_FALSE(report.message.empty());
  }
  EXPECT_EQ(document.loadFile(L""), lmx::elmx_no_file);
  EXPECT_EQ(cause_of([&] { document.loadFile(dir_.wide("missing.zolz")); }), 2);
  EXPECT_EQ(openFile(document, dir_.wide("missing.zolz"), &report), lmx::elmx_no_file);
  EXPECT_EQ(report.archive_cause, 2);
  EXPECT_EQ(report.message, "No such file or directory.");
  EXPECT_EQ(openFile(document, dir_.wide("missing.zol"), nullptr), lmx::elmx_no_file);

  // A null character ends no path.
  write_file(dir_.file("x.zol"), ::document(2));
  const std::wstring longer = dir_.wide("x.zol") + std::wstring(L"\0.zol", 5);
  EXPECT_EQ(document.loadFile(longer), lmx::elmx_no_file);
  EXPECT_EQ(openFile(document, longer), lmx::elmx_no_file);
  EXPECT_EQ(saveFile(document, longer), lmx::elmx_no_file);
  EXPECT_EQ(document.writeFile(longer), lmx::elmx_ok);
  EXPECT_EQ(document.size_Color(), 1u);
  EXPECT_EQ(colours_in(dir_.wide("x.zol")), 2u);
}

#if !defined(_WIN32)

// What failed is told from what the text says.
TEST_F(Files, ReportAFailedRead) {
  write_file(dir_.file("x.zol"), ::document(2000));
  for (const unsigned number : {1u, 2u}) {
    Zol document;
    LoadReport report;
    std::string text = "kept";
    fail_call({number, true, EIO, "read"});
    EXPECT_EQ(openFile(document, dir_.wide("x.zol"), &report), lmx::elmx_no_file);
    EXPECT_EQ(report.message, "Input/output error");
    EXPECT_EQ(report.line, 0);
    EXPECT_EQ(readText(text, dir_.wide("x.zol")), lmx::elmx_no_file);
    end_failing_calls();
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(document.size_Color(), 0u);
  }
}

TEST_F(Files, LoadFromAPipeUnderSignals) {
  ASSERT_EQ(::mkfifo(dir_.file("x.zol").c_str(), 0600), 0);
  struct sigaction interrupts = {};
  struct sigaction before = {};
  interrupts.sa_handler = [](int) {};  // without SA_RESTART
  ASSERT_EQ(::sigaction(SIGUSR1, &interrupts, &before), 0);
  const pthread_t reader = ::pthread_self();
  std::thread writer([this, reader] {
    const std::string text = ::document(500);
    const int pipe = ::open(dir_.file("x.zol").c_str(), O_WRONLY);
    for (std::size_t at = 0; at < text.size(); at += 4096) {
      const std::string piece = text.substr(at, 4096);
      ::pthread_kill(reader, SIGUSR1);
      EXPECT_EQ(::write(pipe, piece.data(), piece.size()), static_cast<ssize_t>(piece.size()));
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ::close(pipe);
  });
  EXPECT_EQ(colours_in(dir_.wide("x.zol")), 500u);
  writer.join();
  ::sigaction(SIGUSR1, &before, nullptr);
}

#endif

TEST_F(Files, KeepToALimit) {
  const std::string text = ::document(100);
  write_file(dir_.file("x.zol"), text);
  write_file(dir_.file("x.zolz"), archive_of(deflated(text)).bytes());
  struct Case {
    std::uint64_t limit;
    int code;
  };
  for (const char* name : {"x.zol", "x.zolz"}) {
    for (const Case& each : {Case{text.size(), 0}, Case{text.size() - 1, 1000}, Case{0, 1000}}) {
      SCOPED_TRACE(testing::Message() << name << each.limit);
      zol_v2::LoadOptions options;
      options.largest_document = each.limit;
      Zol document;
      LoadReport report;
      EXPECT_EQ(openFile(document, dir_.wide(name), &report, options), each.code);
      EXPECT_EQ(report.message.find("limit") != std::string::npos, each.code != 0);
      EXPECT_EQ(document.size_Color(), each.code == 0 ? 100u : 0u);
      std::string bytes;
      EXPECT_EQ(readText(bytes, dir_.wide(name), nullptr, options), each.code);
      EXPECT_EQ(bytes, each.code == 0 ? text : "");
    }
  }
  // What fits into the machine is no reason to take it.
  write_file(dir_.file("x.zolz"), archive_of(bzipped(std::string(1 << 20, ' '))).bytes());
  zol_v2::LoadOptions options;
  options.largest_document = (1 << 20) - 1;
  Zol document;
  EXPECT_EQ(openFile(document, dir_.wide("x.zolz"), nullptr, options), 1000);
}

TEST_F(Files, GoAsTheyStand) {
  const std::string text = "<!-- no document, and \xFF no text -->" + noise(200'000);
  for (const char* name : {"x.zol", "x.zolz"}) {
    zol_v2::SaveReport saved;
    EXPECT_EQ(saveText(text, dir_.wide(name), &saved), lmx::elmx_ok) << saved.message;
    std::string read;
    EXPECT_EQ(readText(read, dir_.wide(name)), lmx::elmx_ok);
    EXPECT_TRUE(read == text) << name;
  }
  std::string unpacked;
  EXPECT_EQ(unpackText(unpacked, read_file(dir_.file("x.zolz"))), lmx::elmx_ok);
  EXPECT_TRUE(unpacked == text);
  LoadReport report;
  EXPECT_EQ(unpackText(unpacked, text, &report), 1000);
  EXPECT_NE(report.archive_cause, 0);
  EXPECT_TRUE(unpacked == text);
  Zol loaded;
  EXPECT_EQ(openText(loaded, ::document(3), &report), lmx::elmx_ok);
  EXPECT_EQ(openText(loaded, "<a/>", &report), lmx::elmx_element_not_found);
  EXPECT_EQ(report.line, 1);
  EXPECT_EQ(loaded.size_Color(), 3u);
  EXPECT_EQ(saveText(text, dir_.wide("x.xml")), 1001);
}

// --- Writing -----------------------------------------------------------------------------------

TEST_F(Files, UseAWorkingFile) {
  write_file(dir_.file("x.zol"), "an older file");
  ASSERT_EQ(made(2).writeFile(dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(dir_.names(), Names{"x.zolz"});

  write_file(dir_.file("x.zol"), "an older file");
  ASSERT_EQ(saveFile(made(3), dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(read_file(dir_.file("x.zol")), "an older file");
  EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz"}));
  EXPECT_EQ(colours_in(dir_.wide("x.zolz")), 3u);
}

TEST_F(Files, AreCutToTheirNewLength) {
  const Zol document = made(2);
  for (const char* name : {"x.zol", "x.zolz"}) {
    write_file(dir_.file("x.zol"), noise(100'000));
    write_file(dir_.file("x.zolz"), noise(100'000));
    ASSERT_EQ(document.writeFile(dir_.wide(name)), lmx::elmx_ok);
    EXPECT_LT(read_file(dir_.file(name)).size(), 10'000u);
    EXPECT_EQ(colours_in(dir_.wide(name)), 2u);
  }
}

#if !defined(_WIN32)

TEST_F(Files, UseAWorkingFileThatCannotBeWritten) {
  // Documented, and not mended: the archive gets whatever stands there.
  const Zol document = made(2);
  write_file(dir_.file("x.zol"), ::document(7));
  if (run({"chattr", "+i", dir_.file("x.zol")}).status == 0) {
    EXPECT_EQ(document.writeFile(dir_.wide("x.zolz")), lmx::elmx_ok);
    EXPECT_EQ(colours_in(dir_.wide("x.zolz")), 7u);
    ASSERT_EQ(run({"chattr", "-i", dir_.file("x.zol")}).status, 0);
  }
  ::unlink(dir_.file("x.zol").c_str());
  ASSERT_EQ(::mkdir(dir_.file("x.zol").c_str(), 0755), 0);
  EXPECT_EQ(document.writeFile(dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(run({"unzip", "-Z1", dir_.file("x.zolz")}).output, "x.zol/\n");
  EXPECT_EQ(saveFile(document, dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_EQ(colours_in(dir_.wide("x.zolz")), 2u);
}

TEST_F(Files, ThatAreMountsOfTheirOwn) {
  TempDir other;
  write_file(other.file("y"), std::string(100'000, 'o'));
  for (const char* name : {"x.zol", "x.zolz"}) {
    write_file(dir_.file(name), "under it");
    if (::mount(other.file("y").c_str(), dir_.file(name).c_str(), "", MS_BIND, "") != 0) {
      GTEST_SKIP() << "this needs the right to mount a file";
    }
    zol_v2::SaveReport report;
    EXPECT_EQ(saveFile(made(2), dir_.wide(name), &report), lmx::elmx_ok) << report.message;
    EXPECT_TRUE(report.is_overwritten);
    EXPECT_EQ(colours_in(dir_.wide(name)), 2u);
    ASSERT_EQ(::umount(dir_.file(name).c_str()), 0);
    EXPECT_EQ(read_file(dir_.file(name)), "under it");
  }
  EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz"}));
}

#endif

TEST_F(Files, OfADocumentThatCannotBeWritten) {
  for (const char* name : {"x.zol", "x.zolz"}) {
    write_file(dir_.file("x.zol"), "older");
    write_file(dir_.file("x.zolz"), "older");
    Zol incomplete;
    EXPECT_EQ(saveFile(incomplete, dir_.wide(name)), lmx::elmx_occurs_on_marshal);
    EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz"}));
    EXPECT_EQ(read_file(dir_.file("x.zol")) + read_file(dir_.file("x.zolz")), "olderolder");
    EXPECT_TRUE(incomplete.get_Preamble().get_Header().isset_WriteSDKInformation());

    EXPECT_EQ(incomplete.writeFile(dir_.wide(name)), lmx::elmx_occurs_on_marshal);
    EXPECT_EQ(dir_.names(), Names{"x.zolz"});
    EXPECT_EQ(read_file(dir_.file("x.zolz")), "older");
  }
}

TEST_F(Files, WithoutADirectory) {
  const Zol document = made(1);
  EXPECT_EQ(document.writeFile(dir_.wide("no/x.zol")), lmx::elmx_ok);
  EXPECT_EQ(cause_of([&] { document.writeFile(dir_.wide("no/x.zolz")); }), 2);
  EXPECT_EQ(saveFile(document, dir_.wide("no/x.zol")), lmx::elmx_no_file);
  EXPECT_EQ(saveFile(document, dir_.wide("no/x.zolz")), lmx::elmx_no_file);
  EXPECT_TRUE(dir_.names().empty());
}

#if !defined(_WIN32)

TEST_F(Files, WhereSomethingElseStands) {
  const Zol document = made(1);
  ASSERT_EQ(run({"mkdir", dir_.file("x.zolz"), dir_.file("y.zol")}).status, 0);
  ASSERT_EQ(run({"ln", "-s", "/dev/full", dir_.file("z.zol")}).status, 0);
  EXPECT_EQ(cause_of([&] { document.writeFile(dir_.wide("x.zolz")); }), 21);
  EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz", "y.zol", "z.zol"})) << "the working file stays";
  EXPECT_EQ(document.writeFile(dir_.wide("y.zol")), lmx::elmx_ok);
  EXPECT_EQ(document.writeFile(dir_.wide("z.zol")), lmx::elmx_ok);
  for (const char* name : {"x.zolz", "y.zol", "z.zol"}) {
    EXPECT_EQ(saveFile(document, dir_.wide(name)), lmx::elmx_no_file) << name;
  }
  EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz", "y.zol", "z.zol"}));
}

TEST_F(Files, OnAFullDisk) {
  const Zol document = made(3000);
  std::string text = text_of(document);
  const std::string room = "size=" + std::to_string(text.size() / 4096 * 4 + 8) + "k";
  if (!mount_small(room.c_str())) GTEST_SKIP() << "this needs the right to mount a file system";
  // Room for the working file, but not for the archive beside it.
  write_file(dir_.file("x.zolz"), "older");
  EXPECT_EQ(saveFile(document, dir_.wide("x.zol")), lmx::elmx_ok);
  EXPECT_EQ(saveFile(document, dir_.wide("x.zol")), lmx::elmx_no_file);
  EXPECT_EQ(saveFile(document, dir_.wide("x.zolz")), lmx::elmx_no_file);
  EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz"}));
  EXPECT_EQ(colours_in(dir_.wide("x.zol")), 3000u);
  EXPECT_EQ(read_file(dir_.file("x.zolz")), "older");

  EXPECT_EQ(document.writeFile(dir_.wide("x.zolz")), 1000);
  EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz"})) << "both stay";
  EXPECT_EQ(colours_in(dir_.wide("x.zol")), 3000u);
  EXPECT_EQ(document.writeFile(dir_.wide("y.zol")), lmx::elmx_ok) << "which nobody can see";
  EXPECT_LT(read_file(dir_.file("y.zol")).size(), text.size());

  ASSERT_EQ(::mount("zol-test", dir_.path().c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, ""), 0);
  EXPECT_EQ(saveFile(document, dir_.wide("x.zol")), lmx::elmx_no_file);
  EXPECT_EQ(document.writeFile(dir_.wide("z.zol")), lmx::elmx_ok);
  EXPECT_EQ(cause_of([&] { document.writeFile(dir_.wide("z.zolz")); }), 30);
}

TEST_F(Files, AtAFileSizeLimit) {
  const Zol document = made(3000);
  ASSERT_EQ(saveFile(made(2), dir_.wide("x.zol")), lmx::elmx_ok);
  ASSERT_EQ(saveFile(made(2), dir_.wide("x.zolz")), lmx::elmx_ok);
  const auto old_handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit old_limit = {};
  ::getrlimit(RLIMIT_FSIZE, &old_limit);
  for (const rlim_t limit : {0, 100, 10'000}) {
    rlimit small = old_limit;
    small.rlim_cur = limit;
    ::setrlimit(RLIMIT_FSIZE, &small);
    const int plain = saveFile(document, dir_.wide("x.zol"));
    const int zipped = saveFile(document, dir_.wide("x.zolz"));
    ::setrlimit(RLIMIT_FSIZE, &old_limit);
    EXPECT_EQ(plain, lmx::elmx_no_file);
    EXPECT_EQ(zipped, lmx::elmx_no_file);
    EXPECT_EQ(dir_.names(), (Names{"x.zol", "x.zolz"}));
    EXPECT_EQ(colours_in(dir_.wide("x.zol")) + colours_in(dir_.wide("x.zolz")), 4u);
  }
  std::signal(SIGXFSZ, old_handler);
}

TEST_F(Files, WithoutPermission) {
  const Zol document = made(3);
  ASSERT_EQ(run({"mkdir", dir_.file("closed")}).status, 0);
  for (const char* name : {"closed/x.zol", "closed/x.zolz", "own.zol"}) {
    ASSERT_EQ(saveFile(made(2), dir_.wide(name)), lmx::elmx_ok);
    ASSERT_EQ(run({"chmod", "0444", dir_.file(name)}).status, 0);
  }
  ASSERT_EQ(run({"chmod", "0555", dir_.file("closed")}).status, 0);
  ASSERT_EQ(run({"chmod", "0777", dir_.path()}).status, 0);
  // The superuser may do anything, so for a moment we are nobody.
  const bool is_root = ::geteuid() == 0;
  ASSERT_EQ(is_root ? ::seteuid(65534) : 0, 0);
  for (const char* name : {"closed/x.zol", "closed/x.zolz", "own.zol", "closed/new.zol"}) {
    EXPECT_EQ(saveFile(document, dir_.wide(name)), lmx::elmx_no_file) << name;
  }
  EXPECT_EQ(document.writeFile(dir_.wide("closed/x.zol")), lmx::elmx_ok);
  EXPECT_EQ(cause_of([&] { document.writeFile(dir_.wide("closed/x.zolz")); }), 13);
  ASSERT_EQ(is_root ? ::seteuid(0) : 0, 0);
  for (const char* name : {"closed/x.zol", "closed/x.zolz", "own.zol"}) {
    EXPECT_EQ(colours_in(dir_.wide(name)), 2u);
  }
  ASSERT_EQ(run({"chmod", "0755", dir_.file("closed")}).status, 0);
  EXPECT_EQ(dir_.names(), (Names{"closed", "own.zol"}));
}

TEST_F(Files, KeepPermissionsAndLinks) {
  ASSERT_EQ(saveFile(made(1), dir_.wide("real.zol")), lmx::elmx_ok);
  ASSERT_EQ(run({"chmod", "0640", dir_.file("real.zol")}).status, 0);
  ASSERT_EQ(run({"ln", "-s", "real.zol", dir_.file("x.zol")}).status, 0);
  ASSERT_EQ(saveFile(made(2), dir_.wide("x.zol")), lmx::elmx_ok);
  struct stat status = {};
  ASSERT_EQ(::lstat(dir_.file("x.zol").c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  ASSERT_EQ(::stat(dir_.file("real.zol").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(colours_in(dir_.wide("real.zol")), 2u);

  const mode_t old_mask = ::umask(0027);
  EXPECT_EQ(saveFile(made(1), dir_.wide("new.zolz")), lmx::elmx_ok);
  ::umask(old_mask);
  ASSERT_EQ(::stat(dir_.file("new.zolz").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(dir_.names(), (Names{"new.zolz", "real.zol", "x.zol"}));
}

#endif

// --- Many at once, and damaged ones -------------------------------------------------------------

TEST_F(Files, EachThreadHasItsOwn) {
  std::vector<std::thread> threads;
  std::vector<int> faults(8, 0);
  for (unsigned i = 0; i < faults.size(); ++i) {
    threads.emplace_back([this, i, &faults] {
      for (unsigned round = 0; round < 10; ++round) {
        const Zol document = made(20 + i);
        for (const char* suffix : {".zol", ".zolz"}) {
          const std::wstring path = dir_.wide("t" + std::to_string(i) + suffix);
          const int code = round % 2 == 0 ? saveFile(document, path) : document.writeFile(path);
          Zol loaded;
          if (code != 0 || loaded.loadFile(path) != 0 || loaded.size_Color() != 20 + i) ++faults[i];
          Zol opened;
          if (openFile(opened, path) != 0 || opened.size_Color() != 20 + i) ++faults[i];
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(faults, std::vector<int>(8, 0));
}

// A text that was read becomes wide when it is first asked for, by whomever.
TEST_F(Files, GiveTextsThatMayBeAskedForInAnyThread) {
  ASSERT_EQ(saveFile(made(200), dir_.wide("x.zol")), lmx::elmx_ok);
  const std::wstring name = made(200).get_Color(199).get_ColorName();
  Zol document;
  ASSERT_EQ(openFile(document, dir_.wide("x.zol")), lmx::elmx_ok);
  const Zol& shared = document;
  std::vector<std::thread> threads;
  std::vector<std::size_t> sums(4, 0);
  std::vector<std::string> written(sums.size());
  for (unsigned i = 0; i < sums.size(); ++i) {
    threads.emplace_back([&, i] {
      for (const zol_v2::ColorType& color : shared.each_Color())
        sums[i] += color.get_ColorName().size();
      if (shared.marshal(&written[i]) != lmx::elmx_ok) written[i].clear();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(shared.get_Color(199).get_ColorName(), name);
  EXPECT_NE(sums[0], 0u);
  EXPECT_EQ(sums, std::vector<std::size_t>(sums.size(), sums[0]));
  EXPECT_EQ(written, std::vector<std::string>(sums.size(), written[0]));
}

TEST_F(Files, SurviveEveryChangeAndCut) {
  ASSERT_EQ(made(2).writeFile(dir_.wide("good.zolz")), lmx::elmx_ok);
  const std::string good = read_file(dir_.file("good.zolz"));
  const std::wstring path = dir_.wide("x.zolz");
  unsigned sound = 0;
  const auto survives = [&](const std::string& bytes) {
    remove_file(dir_.file("x.zolz"));  // a new file costs less than one that is cut
    write_file(dir_.file("x.zolz"), bytes);
    Zol document;
    LoadReport report;
    const int code = openFile(document, path, &report);
    ASSERT_TRUE(code == 0 || code == 1000) << code << report.message;
    ASSERT_EQ(code == 0, document.size_Color() == 2);
    sound += code == 0;
    int loaded = -1;
    Zol other;
    const int cause = cause_of([&] { loaded = other.loadFile(path); });
    ASSERT_EQ(loaded == 0, code == 0);
    ASSERT_TRUE(cause == 0 || cause == report.archive_cause);
  };
  for (std::size_t i = 0; i < good.size(); ++i) {
    for (const int change : {0x01, 0x08, 0x80, 0xFF}) {
      std::string bad = good;
      bad[i] = static_cast<char>(bad[i] ^ change);
      survives(bad);
    }
    survives(good.substr(0, i));
    if (HasFatalFailure()) return;
  }
  // Only times, names and the like may change.
  EXPECT_LT(sound, good.size());
  EXPECT_GT(sound, 0u);
}

// --- Other roads out, and what they are told to do ----------------------------------------------

// A stream buffer that takes so many bytes.
class FullBuffer : public std::streambuf {
 public:
  explicit FullBuffer(std::size_t room) : room_(room) {}

 protected:
  std::streamsize xsputn(const char*, std::streamsize size) override {
    const auto taken = std::min(room_, static_cast<std::size_t>(size));
    room_ -= taken;
    return static_cast<std::streamsize>(taken);
  }
  int_type overflow(int_type byte) override {
    return room_ == 0 ? traits_type::eof() : (--room_, traits_type::not_eof(byte));
  }
  int sync() override { return room_ == 0 ? -1 : 0; }

 private:
  std::size_t room_;
};

TEST(SaveStream, SaysThatTheStreamFailed) {
  const Zol document = made(2000);
  std::ostringstream whole;
  whole << std::hex << std::setw(9);
  ASSERT_EQ(saveStream(document, whole), lmx::elmx_ok);
  EXPECT_EQ(whole.str().substr(0, 6), "<?xml ");
  const std::size_t size = whole.str().size();
  for (const std::size_t room : {std::size_t{0}, std::size_t{10}, size - 1, size}) {
    for (const bool throws : {false, true}) {
      FullBuffer buffer(room);
      std::ostream stream(&buffer);
      if (throws) stream.exceptions(std::ios_base::badbit | std::ios_base::failbit);
      SaveReport report;
      // Where there is no room left the flush fails.
      EXPECT_EQ(saveStream(document, stream, &report), lmx::elmx_no_file) << room;
      EXPECT_EQ(report.message, "The stream failed.");
    }
  }
  FullBuffer buffer(size + 1);
  std::ostream stream(&buffer);
  EXPECT_EQ(saveStream(document, stream), lmx::elmx_ok);
  stream.setstate(std::ios_base::failbit);
  EXPECT_EQ(saveStream(document, stream), lmx::elmx_no_file);
}

TEST_F(Files, OfEveryClassThatADocumentMayBeginWith) {
  for (const zol_v2::reflection::Type type : zol_v2::reflection::all_types()) {
    const auto object = type.make();
    SaveReport report;
    const std::wstring path = dir_.wide("x.zol");
    const lmx::elmx_error code = saveFile(*object, path, &report);
    if (!type.is_document()) {
      EXPECT_EQ(code, lmx::elmx_element_not_found) << type.name();
      EXPECT_EQ(report.message, "A document can't begin with " + std::string(type.name()) + ".");
    } else if (code != lmx::elmx_ok) {
      EXPECT_EQ(code, lmx::elmx_occurs_on_marshal) << type.name();
      ASSERT_FALSE(report.faults.empty());
      EXPECT_EQ(report.faults[0].path.substr(0, type.name().size()), type.name());
      EXPECT_EQ(report.message, report.faults[0].path + ": " + report.faults[0].text());
    }
    EXPECT_EQ(dir_.names(), code == lmx::elmx_ok ? Names{"x.zol"} : Names()) << type.name();
    if (code != lmx::elmx_ok) continue;
    const auto again = type.make();
    EXPECT_EQ(openFile(*again, path), lmx::elmx_ok) << type.name();
    LoadReport found;
    EXPECT_NE(openText(*again, document(1), &found), lmx::elmx_ok) << type.name();
    EXPECT_EQ(found.faults.at(0).rule, "wrong-root");
    ::unlink(dir_.file("x.zol").c_str());
  }
}

TEST(SaveOptions, SayHowToWrite) {
  zol_v2::ColorSpaceGeneric space;
  (void)space.set_Name(L"a\r\n\tb");
  (void)space.append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:12.3456789Z"));
  space.get_ColorSpaceSpecificationSpectrumGeneric()
      .setnil_ColorSpaceSpecificationSpectrumGeneric();
  for (const double value : {0.1 + 0.2, 1e22, -0.0, 5e-324}) {
    (void)space.append_Axis();
    (void)space.back_Axis().set_AxisName(L"]]>\r\n\t&");
    auto& number = space.back_Axis().get_AxisValueChoice().get_AxisFloatingPointValue();
    (void)number.set_FloatingPointValueType(value);
    (void)number.set_AxisNominalMin(0);
    (void)number.set_AxisNominalMax(1);
  }
  SaveOptions options;
  options.is_exact = true;
  options.is_indented = false;
  std::string text;
  ASSERT_EQ(saveString(space, text, nullptr, options), lmx::elmx_ok);
  EXPECT_EQ(text.find('\n'), text.find("\n\t&amp;"));
  for (const char* part : {"Name=\"a&#13;&#10;&#9;b\"", ">]]&gt;&#13;\n\t&amp;<",
                           ">0.30000000000000004<", ">1e+22<", ">-0.0<", ">5e-324<"}) {
    EXPECT_NE(text.find(part), text.npos) << part;
  }
  zol_v2::ColorSpaceGeneric again;
  ASSERT_EQ(again.unmarshal(text), lmx::elmx_ok);
  std::string same;
  ASSERT_EQ(saveString(again, same, nullptr, options), lmx::elmx_ok);
  EXPECT_EQ(same, text);

  // The described form, with and without its lines.
  options = {};
  std::string described;
  ASSERT_EQ(space.marshal(&described), lmx::elmx_ok);
  ASSERT_EQ(saveString(space, text, nullptr, options), lmx::elmx_ok);
  EXPECT_EQ(text, described);
  options.is_checked = true;
  SaveReport report;
  EXPECT_EQ(saveString(space, text, &report, options), lmx::elmx_bad_attribute_value);
  ASSERT_EQ(report.faults.size(), 5u);
  EXPECT_EQ(report.faults[0].path, "ColorSpaceGeneric/@Name");
  EXPECT_EQ(text, described);
}

TEST_F(Files, ExactDatesComeBack) {
  for (const std::string text : {"2020-01-01T10:00:00+00:00", "-0044-03-15T12:00:00Z",
                                 "-0044-03-15T12:00:05.1+00:00", "12345-01-01T00:00:00.1-14:00",
                                 "0000-01-01T00:00:00+00:00", "-2147483648-01-01T00:00:00Z"}) {
    Zol document = made(1);
    zol_v2::Header& header = document.get_Preamble().get_Header();
    ASSERT_EQ(header.append_ChangeHistory(lmx::c_datetime(text)), lmx::elmx_ok);
    SaveOptions options;
    options.is_exact = options.is_checked = true;
    std::string written;
    SaveReport report;
    EXPECT_EQ(saveString(document, written, &report, options), lmx::elmx_ok) << text;
    EXPECT_NE(written.find('>' + text + '<'), written.npos) << written;
    Zol again;
    ASSERT_EQ(zol_v2::openText(again, written), lmx::elmx_ok) << text;
    const unsigned last = header.size_ChangeHistory() - 1;
    EXPECT_EQ(again.get_Preamble().get_Header().get_ChangeHistory(last),
              header.get_ChangeHistory(last))
        << text;
  }
}

TEST_F(Files, AreStampedUnlessToldNotTo) {
  Zol document = made(1);
  SaveOptions options;
  options.is_stamped = false;
  ASSERT_EQ(saveFile(document, dir_.wide("x.zolz"), nullptr, options), lmx::elmx_ok);
  EXPECT_FALSE(document.get_Preamble().get_Header().isset_WriteSDKInformation());
  ASSERT_EQ(saveFile(document, dir_.wide("x.zolz")), lmx::elmx_ok);
  EXPECT_TRUE(document.get_Preamble().get_Header().isset_WriteSDKInformation());
}

}  // namespace
