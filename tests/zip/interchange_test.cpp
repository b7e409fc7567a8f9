// Archives of other programs, and ours in their hands.
#include <gtest/gtest.h>

#include "support/files.h"
#include "zip/archives.h"

namespace {

using namespace zol_test;

std::string document() {
  std::string text = "<?xml version=\"1.0\"?>\n<colours>\n";
  for (int i = 0; i < 20'000; ++i) {
    text += "\t<colour number=\"" + std::to_string(i * 7919 % 65521) + "\"/>\n";
  }
  return text + "</colours>\n";
}

struct Maker {
  const char* what;
  const char* command;  // run where doc.zol lies; makes a.zip
};

class MadeElsewhere : public testing::TestWithParam<Maker> {};

TEST_P(MadeElsewhere, Opens) {
  TempDir dir;
  for (const std::string& data : {document(), std::string("tiny"), std::string()}) {
    write_file(dir.file("doc.zol"), data);
    const ProgramResult made =
        run_shell(std::string("rm -f a.zip; ") + GetParam().command, dir.path());
    ASSERT_EQ(made.status, 0) << made.output;
    // Every check that can be told to look away finds nothing either.
    for (const bool checks_all : {false, true}) {
      CZipArchive archive;
      if (checks_all) archive.SetIgnoredChecks(0);
      archive.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly);
      const ReadResult result = read_entry(archive);
      EXPECT_TRUE(result.ok()) << "cause " << result.cause << ", " << data.size() << " bytes";
      EXPECT_TRUE(result.data == data);
    }
  }
}

constexpr Maker k_makers[] = {
    {"Zip0", "zip -q -0 a.zip doc.zol"},
    {"Zip1", "zip -q -1 a.zip doc.zol"},
    {"Zip2", "zip -q -2 a.zip doc.zol"},
    {"Zip3", "zip -q -3 a.zip doc.zol"},
    {"Zip4", "zip -q -4 a.zip doc.zol"},
    {"Zip5", "zip -q -5 a.zip doc.zol"},
    {"Zip6", "zip -q -6 a.zip doc.zol"},
    {"Zip7", "zip -q -7 a.zip doc.zol"},
    {"Zip8", "zip -q -8 a.zip doc.zol"},
    {"Zip9", "zip -q -9 a.zip doc.zol"},
    {"ZipBzip2", "zip -q -Z bzip2 a.zip doc.zol"},
    {"ZipStreamed", "zip -q - doc.zol | cat > a.zip"},
    {"ZipFromAPipe", "cat doc.zol | zip -q > a.zip"},
    {"PythonForcedZip64",
     "python3 -c 'import zipfile\n"
     "z = zipfile.ZipFile(\"a.zip\", \"w\", zipfile.ZIP_DEFLATED)\n"
     "f = z.open(\"doc.zol\", \"w\", force_zip64=True)\n"
     "f.write(open(\"doc.zol\", \"rb\").read()); f.close(); z.close()'"},
    {"ZipDescriptor", "zip -q -fd a.zip doc.zol"},
    {"ZipInFront", "zip -q b.zip doc.zol && (echo front; cat b.zip) > a.zip && rm b.zip"},
    {"PythonInFrontAdjusted",
     "echo front > a.zip && python3 -c 'import zipfile\n"
     "z = zipfile.ZipFile(\"a.zip\", \"a\", zipfile.ZIP_DEFLATED)\n"
     "z.write(\"doc.zol\"); z.close()'"},
    {"ZipComment",
     "zip -q b.zip doc.zol && head -c 32000 /dev/zero | tr '\\0' c | zip -q -z b.zip "
     "&& mv b.zip a.zip"},
    {"SevenZip", "7z a -bd -tzip a.zip doc.zol"},
    {"SevenZipBzip2", "7z a -bd -tzip -mm=BZip2 a.zip doc.zol"},
    {"SevenZipStored", "7z a -bd -tzip -mm=Copy a.zip doc.zol"},
    {"SevenZipUltra", "7z a -bd -tzip -mx=9 a.zip doc.zol"},
    {"Bsdtar", "bsdtar --format zip -cf a.zip doc.zol"},
    {"BsdtarStored", "bsdtar --format zip --options zip:compression=store -cf a.zip doc.zol"},
    {"BsdtarStreamed", "bsdtar --format zip -cf - doc.zol | cat > a.zip"},
    {"Python", "python3 -m zipfile -c a.zip doc.zol"},
    {"PythonStreamed",
     "python3 -c 'import sys, zipfile\n"
     "z = zipfile.ZipFile(sys.stdout.buffer, \"w\", zipfile.ZIP_DEFLATED)\n"
     "z.write(\"doc.zol\"); z.close()' | cat > a.zip"},
    {"PythonLongestComment",
     "python3 -c 'import zipfile\n"
     "z = zipfile.ZipFile(\"a.zip\", \"w\", zipfile.ZIP_BZIP2)\n"
     "z.comment = b\"c\" * 65535; z.write(\"doc.zol\"); z.close()'"},
    {"PythonOtherOrder",
     "python3 -c 'import zipfile\n"
     "z = zipfile.ZipFile(\"a.zip\", \"w\", zipfile.ZIP_DEFLATED)\n"
     "z.write(\"doc.zol\"); z.writestr(\"other\", \"other\"); z.filelist.reverse(); z.close()'"},
};

INSTANTIATE_TEST_SUITE_P(Makers, MadeElsewhere, testing::ValuesIn(k_makers),
                         [](const auto& info) { return std::string(info.param.what); });

// Each program tests the data, and gives the document back.
TEST(Interchange, OursOpensElsewhere) {
  TempDir dir;
  for (const std::string& data : {document(), noise(200'000), std::string("tiny"), std::string()}) {
    for (const std::uint16_t method : {8, 12}) {
      SCOPED_TRACE(testing::Message() << data.size() << " bytes by method " << method);
      write_file(dir.file("doc.zol"), data);
      CZipArchive archive;
      archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
      archive.SetCompressionMethod(method);
      ASSERT_TRUE(archive.AddFile(dir.wide("doc.zol"), -1, false, 7, 65536));
      archive.Close();

      const std::string zip = dir.file("a.zip");
      const ProgramResult tested = run({"unzip", "-t", zip});
      EXPECT_EQ(tested.status, 0) << tested.output;
      const ProgramResult seven = run({"7z", "t", "-bd", zip});
      EXPECT_EQ(seven.status, 0) << seven.output;
      EXPECT_EQ(seven.output.find("arning"), std::string::npos) << seven.output;
      EXPECT_TRUE(run({"bsdtar", "-xOf", zip}).output == data);
      EXPECT_TRUE(run({"unzip", "-p", zip}).output == data);
      const ProgramResult python = run_python(
          "import sys, zipfile\n"
          "z = zipfile.ZipFile(sys.argv[1])\n"
          "assert z.testzip() is None\n"
          "sys.stdout.buffer.write(z.read(z.namelist()[0]))\n",
          {zip});
      EXPECT_TRUE(python.status == 0 && python.output == data);
    }
  }
}

TEST(Interchange, OursIsDescribedAsMeant) {
  TempDir dir;
  write_file(dir.file("doc.zol"), document());
  ASSERT_EQ(run({"touch", "-d", "2026-11-21 10:20:30", dir.file("doc.zol")}).status, 0);
  CZipArchive archive;
  archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
  archive.AddFile(dir.wide("doc.zol"), -1, false, 7, 65536);
  archive.Close();

  const ProgramResult python = run_python(
      "import sys, zipfile\n"
      "z = zipfile.ZipFile(sys.argv[1])\n"
      "e, = z.infolist()\n"
      "print(e.filename, e.compress_type, e.create_version, e.create_system, e.extract_version,\n"
      "      e.flag_bits, hex(e.external_attr), e.date_time, e.file_size, e.header_offset,\n"
      "      e.internal_attr, e.volume, e.extra, e.comment, z.comment)\n",
      {dir.file("a.zip")});
  EXPECT_EQ(python.output, "doc.zol 8 46 0 20 0 0x81b40020 (2026, 11, 21, 10, 20, 30) " +
                               std::to_string(document().size()) + " 0 0 0 b'' b'' b''\n");

  const std::string listing = run({"zipinfo", "-v", dir.file("a.zip")}).output;
  for (const char* line : {"minimum software version required to extract:   2.0",
                           "compression sub-type (deflation):               normal",
                           "file security status:                           not encrypted",
                           "extended local header:                          no",
                           "file last modified on (DOS date/time):          2026 Nov 21 10:20:30",
                           "MS-DOS file attributes (20 hex):                arc"}) {
    EXPECT_NE(listing.find(line), std::string::npos) << line << "\n" << listing;
  }
}

// Names that the usual code page has come out right where a program goes by it; others as UTF-8, as
// a program shows them that goes by that.
TEST(Interchange, NamesReadElsewhere) {
  struct Case {
    const char* name;
    const char* encoding;  // in which Python finds it
  };
  for (const Case& each : {Case{"plain.zol", "cp437"}, Case{"Gr\u00f6\u00dfe.zol", "cp437"},
                           Case{"\u8272\U0001F3A8.zol", "utf-8"}}) {
    TempDir dir;
    write_file(dir.file(each.name), "colours");
    CZipArchive archive;
    archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
    ASSERT_TRUE(archive.AddFile(dir.wide(each.name)));
    archive.Close();
    const ProgramResult python = run_python(
        "import sys, zipfile\n"
        "name = zipfile.ZipFile(sys.argv[1]).namelist()[0]\n"
        "sys.stdout.buffer.write(name.encode('cp437').decode(sys.argv[2]).encode())\n",
        {dir.file("a.zip"), each.encoding});
    EXPECT_EQ(python.output, each.name);
  }
}

}  // namespace
