// The forms in which a path or a text may be given: the wide ones that were there first mean what
// they did, and beside them stand narrow ones in UTF-8 and std::filesystem::path.
#include <gtest/gtest.h>

#include <filesystem>

#include "facade/check.h"
#include "facade/files.h"
#include "facade/version.h"
#include "lmx/lmxtypes.h"
#include "model/Zol.h"
#include "support/files.h"

namespace {

using namespace zol_test;
using zol_v2::Zol;

void fill(Zol& document) {
  zol_v2::Header& header = document.get_Preamble().get_Header();
  (void)header.set_Creator(L"c");
  (void)header.set_CreatorVersion(L"1");
  (void)header.append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00Z"));
  (void)header.set_Purpose(L"p");
}

// A name beyond ASCII, so that a wrong encoding finds another file or none.
const std::string k_name = "gr\xC3\xBCn.zol";

TEST(Paths, OfEachFormLeadToTheSameFile) {
  const TempDir directory;
  const std::wstring wide = directory.wide(k_name);
  const std::string narrow = directory.file(k_name);
  const std::filesystem::path path = std::filesystem::u8path(narrow);
  Zol document;
  fill(document);
  EXPECT_EQ(zol_v2::saveFile(document, path), lmx::elmx_ok);
  EXPECT_TRUE(file_exists(narrow));

  std::string text;
  EXPECT_EQ(zol_v2::openFile(document, wide), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, wide.c_str()), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, {wide.begin(), wide.end()}), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, {wide.data(), wide.size()}), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, narrow), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, narrow.c_str()), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, std::string_view(narrow)), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::openFile(document, path), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::readText(text, path), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::readText(text, narrow), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::judgeFile(path, nullptr), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::judgeFile(narrow, nullptr), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::saveText(text, narrow), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::saveText(text, path), lmx::elmx_ok);
  EXPECT_EQ(zol_v2::saveFile(document, narrow), lmx::elmx_ok);

  EXPECT_EQ(document.writeFile(path), lmx::elmx_ok);
  EXPECT_EQ(document.writeFile(narrow), lmx::elmx_ok);
  EXPECT_EQ(Zol().loadFile(wide.c_str()), lmx::elmx_ok);
  EXPECT_EQ(Zol().loadFile({wide.begin(), wide.end()}), lmx::elmx_ok);
  EXPECT_EQ(Zol().loadFile(narrow), lmx::elmx_ok);
  EXPECT_EQ(Zol().loadFile(path), lmx::elmx_ok);
}

TEST(Paths, AsLiteralsNeedNoCast) {
  Zol document;
  EXPECT_EQ(zol_v2::openFile(document, L"missing.zol"), lmx::elmx_no_file);
  EXPECT_EQ(zol_v2::openFile(document, "missing.zol"), lmx::elmx_no_file);
  EXPECT_EQ(zol_v2::openFile(document, {}), lmx::elmx_no_file);
  EXPECT_EQ(document.loadFile(L"missing.zol"), lmx::elmx_no_file);
  EXPECT_EQ(document.loadFile("missing.zol"), lmx::elmx_no_file);
  EXPECT_EQ(document.loadFile({}), lmx::elmx_no_file);
  EXPECT_EQ(document.writeFile(L"nothing"), lmx::elmx_user_defined_2);
  EXPECT_EQ(document.writeFile("nothing"), lmx::elmx_user_defined_2);
  EXPECT_EQ(document.loadString(L""), lmx::elmx_unexpected_end);
  EXPECT_EQ(document.loadString(""), lmx::elmx_unexpected_end);
  EXPECT_EQ(document.loadString({}), lmx::elmx_unexpected_end);
#if defined(__cpp_lib_char8_t)
  EXPECT_EQ(document.loadFile(u8"missing.zol"), lmx::elmx_no_file);
#endif
}

TEST(Paths, ThatAreNoUtf8NameNoFile) {
  const TempDir directory;
  const std::string path = directory.file("gr\xFCn.zol");
  Zol document;
  fill(document);
  zol_v2::SaveReport report;
  EXPECT_EQ(zol_v2::saveFile(document, path, &report), lmx::elmx_no_file);
  EXPECT_NE(report.message, "");
  EXPECT_EQ(directory.names(), std::vector<std::string>());
}

TEST(Paths, OfMarshalMayBePaths) {
  const TempDir directory;
  const std::filesystem::path path = std::filesystem::u8path(directory.file("plain.zol"));
  Zol document;
  fill(document);
  std::string text;
  EXPECT_EQ(document.marshal(&text), lmx::elmx_ok);
  EXPECT_EQ(document.marshal(path), lmx::elmx_ok);
  EXPECT_EQ(document.marshal(directory.file("other.zol").c_str()), lmx::elmx_ok);
  EXPECT_EQ(read_file(directory.file("plain.zol")), text);

  EXPECT_EQ(Zol().unmarshal(path), lmx::elmx_ok);
  EXPECT_EQ(Zol().unmarshal("missing.zol"), lmx::elmx_no_file);
  EXPECT_EQ(Zol().unmarshal(text), lmx::elmx_ok);
  EXPECT_EQ(Zol().unmarshal(std::string_view(text)), lmx::elmx_ok);
  EXPECT_EQ(Zol().unmarshal({text.data(), text.size()}), lmx::elmx_ok);
  EXPECT_EQ(Zol().unmarshal(text.data(), text.size()), lmx::elmx_ok);
  EXPECT_EQ(Zol().loadString(text), lmx::elmx_ok);
  EXPECT_EQ(Zol().loadString(std::string_view(text)), lmx::elmx_ok);
}

TEST(Version, IsThatOfTheHeaders) {
  EXPECT_EQ(zol_v2::version(), unsigned{ZOL_VERSION});
  EXPECT_EQ(zol_v2::versionText(), std::to_string(ZOL_VERSION_MAJOR) + "." +
                                       std::to_string(ZOL_VERSION_MINOR) + "." +
                                       std::to_string(ZOL_VERSION_PATCH));
  EXPECT_TRUE(zol_v2::isCompatible());
}

}  // namespace
