// What every function of the flat interface shares: texts, and file operations that do not throw.

#include <cstring>
#include <cwchar>

#include "bridge/smoke.h"
#include "support/files.h"

namespace {

using smoke::text;
using zol_test::TempDir;

class Bridge : public smoke::Smoke {
 protected:
  // Paths in these tests are ASCII.
  static std::u16string wide(const std::string& ascii) {
    return std::u16string(ascii.begin(), ascii.end());
  }
  static std::string document() {
    return zol_test::read_file(ZOL_SOURCE_DIR "/examples/documents/named-colours.zol");
  }
};

TEST_F(Bridge, TextComesBackAsItWent) {
  const std::u16string cases[] = {u"",
                                  u"plain",
                                  u"\u00E9\u20AC\uFFFD",
                                  u"\U00010000\U0001F308\U0010FFFF",
                                  std::u16string(1, 0xD800) + u"x",
                                  u"x" + std::u16string(1, 0xDC00),
                                  std::u16string(100000, u'\u65E5')};
  void* const header = _CSharp_new_Header__SWIG_0();
  for (const std::u16string& value : cases) {
    EXPECT_EQ(_CSharp_Header_set_Name(header, value.c_str()), 0);
    EXPECT_EQ(text(_CSharp_Header_get_Name(header)), value);
  }
  EXPECT_EQ(_CSharp_Header_set_Name(header, nullptr), 0);
  EXPECT_EQ(text(_CSharp_Header_get_Name(header)), u"");
  _CSharp_delete_Header(header);
}

TEST_F(Bridge, TextIsABstr) {
  zol_v2::Header header;
  header.set_Name(L"\u65E5x");
  char16_t* const name = _CSharp_Header_get_Name(&header);
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(name) - 4, sizeof bytes);
  EXPECT_EQ(bytes, 4u);
  EXPECT_EQ(std::u16string(name), u"\u65E5x");
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(name) % sizeof(void*), 0u);
  zol_text_free(name);

  char* const narrow = _CSharp_convert_to_narrow__SWIG_0(u"\U0001F308");
  EXPECT_EQ(zol_text_bytes(narrow), 4u);
  EXPECT_STREQ(narrow, "\xF0\x9F\x8C\x88");
  zol_text_free(narrow);

  EXPECT_EQ(zol_text_bytes(nullptr), 0u);
  zol_text_free(nullptr);
}

#if WCHAR_MAX > 0xFFFF
TEST_F(Bridge, AUnitThatIsACodePointLeavesAsTwo) {
  zol_v2::Header header;
  header.set_Name(std::wstring(1, static_cast<wchar_t>(0x1F308)));
  EXPECT_EQ(text(_CSharp_Header_get_Name(&header)), u"\U0001F308");
  // One that is negative where it has a sign is none.
  header.set_Name(std::wstring(1, static_cast<wchar_t>(0x80000041)));
  EXPECT_EQ(text(_CSharp_Header_get_Name(&header)), u"A");
}
#endif

TEST_F(Bridge, DescribesCodes) {
  EXPECT_EQ(text(_CSharp_get_error_description(36)), "Value greater than specified maximum");
  EXPECT_EQ(text(_CSharp_get_error_description(1009)), "");
}

TEST_F(Bridge, ValueClassesTakeWhatTheirNamesSay) {
  void* const scaled = _CSharp_new_c_decimal__SWIG_4(1234, 2);
  EXPECT_EQ(text(_CSharp_c_decimal_get_as_string(scaled)), "12.34");
  _CSharp_c_decimal_set__SWIG_0(scaled, 2.0 / 3.0, 4);
  EXPECT_EQ(text(_CSharp_c_decimal_get_as_string(scaled)), ".6667");
  EXPECT_EQ(_CSharp_c_decimal_get_fractional(scaled, 2), 66u);
  _CSharp_delete_c_decimal(scaled);

  void* const any = _CSharp_new_c_any_info__SWIG_1("space", "name", "value");
  EXPECT_EQ(text(_CSharp_c_any_info_get_namespace(any)), "space");
  EXPECT_EQ(text(_CSharp_c_any_info_get_name(any)), "name");
  EXPECT_EQ(text(_CSharp_c_any_info_get_value(any)), "value");
  _CSharp_delete_c_any_info(any);

  void* const bytes = _CSharp_new_c_binary__SWIG_2(nullptr, 5);
  EXPECT_EQ(_CSharp_c_binary_size(bytes), 0u);
  EXPECT_EQ(_CSharp_c_binary_equal(bytes, nullptr, 5), 1u);
  _CSharp_delete_c_binary(bytes);

  void* const time = _CSharp_new_c_time__SWIG_1("08:09:10.5");
  _CSharp_c_time_set_offset(time, -5, 30);
  EXPECT_EQ(_CSharp_c_time_get_secs(time), 10.5f);
  EXPECT_EQ(text(_CSharp_c_time_get_as_string(time)), "08:09:10.5-05:30");
  _CSharp_delete_c_time(time);

  EXPECT_EQ(_CSharp_stringncompare("xab", "ab", 1, 2), 0);
  EXPECT_EQ(_CSharp_stringncompare("ab", nullptr, 2, 1), 0);
  EXPECT_THROW(_CSharp_stringncompare("ab", "b", 3, 1), std::out_of_range);
}

TEST_F(Bridge, GuardedFilesTellCodeLineItemAndMessage) {
  const TempDir dir;
  std::string unclosed = document();
  unclosed.erase(unclosed.rfind("</"));
  std::string stray = document();
  stray.replace(stray.find("<Zol:Header>"), 12, "<Zol:Header surprise=\"1\">");
  zol_test::write_file(dir.file("good.zol"), document());
  zol_test::write_file(dir.file("unclosed.zol"), unclosed);
  zol_test::write_file(dir.file("stray.zol"), stray);
  zol_test::write_file(dir.file("no-archive.zolz"), "this is no archive");

  const struct {
    const char* name;
    int code;
    bool has_line;
    bool has_item;
  } cases[] = {
      {"good.zol", 0, false, false},           {"absent.zol", 1, false, false},
      {"unclosed.zol", 34, true, false},       {"stray.zol", 39, true, true},
      {"no-archive.zolz", 1000, false, false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    void* const zol = _CSharp_new_Zol__SWIG_0();
    zol_report report;
    EXPECT_EQ(zol_open_file(zol, wide(dir.file(row.name)).c_str(), &report), row.code);
    EXPECT_EQ(report.code, row.code);
    EXPECT_EQ(report.message != nullptr, row.code != 0);
    EXPECT_EQ(report.line > 0, row.has_line);
    EXPECT_EQ(report.item != nullptr, row.has_item);
    EXPECT_EQ(_CSharp_Zol_size_Palette(zol) > 0, row.code == 0);
    zol_report_clear(&report);

    EXPECT_EQ(zol_load_file(zol, wide(dir.file(row.name)).c_str(), &report), row.code);
    EXPECT_EQ(report.message != nullptr, row.code != 0);
    zol_report_clear(&report);
    EXPECT_EQ(zol_open_file(zol, wide(dir.file(row.name)).c_str(), nullptr), row.code);
    _CSharp_delete_Zol(zol);
  }
}

TEST_F(Bridge, GuardedFilesWriteAndSave) {
  const TempDir dir;
  void* const zol = _CSharp_new_Zol__SWIG_0();
  zol_report report;
  EXPECT_EQ(zol_save_file(zol, wide(dir.file("bare.zol")).c_str(), &report), 46);
  EXPECT_EQ(text(report.message),
            u"Zol/Preamble/Header/Creator: Creator is missing in Header: it is required");
  report.message = nullptr;
  zol_report_clear(&report);

  zol_test::write_file(dir.file("good.zol"), document());
  ASSERT_EQ(zol_open_file(zol, wide(dir.file("good.zol")).c_str(), nullptr), 0);
  for (const std::string suffix : {".zol", ".zolz"}) {
    const std::string saved = dir.file("saved" + suffix), wrote = dir.file("wrote" + suffix);
    EXPECT_EQ(zol_save_file(zol, wide(saved).c_str(), nullptr), 0);
    EXPECT_EQ(zol_write_file(zol, wide(wrote).c_str(), nullptr), 0);
    EXPECT_EQ(zol_test::read_file(saved).size(), zol_test::read_file(wrote).size());
    EXPECT_EQ(zol_open_file(zol, wide(wrote).c_str(), nullptr), 0);
  }
  EXPECT_EQ(zol_write_file(zol, u"x.xml", nullptr), 1001);
  EXPECT_EQ(zol_save_file(zol, u"x.xml", nullptr), 1001);
  // Where the unguarded function throws.
  EXPECT_EQ(zol_write_file(zol, wide(dir.file("absent/x.zolz")).c_str(), &report), 1000);
  EXPECT_NE(report.message, nullptr);
  zol_report_clear(&report);
  _CSharp_delete_Zol(zol);
}

}  // namespace
