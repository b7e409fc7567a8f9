// What holds of every sample document, and of any document that is in order.
#include <algorithm>
#include <functional>

#include "model/documents.h"

namespace zol_test {
namespace {

using zol_v2::Zol;

class Sample : public testing::TestWithParam<std::string> {
 protected:
  const std::string bytes_ = sample_bytes(GetParam());
  Zol document_ = loaded<Zol>(bytes_);
  const std::string text_ = saved(document_);
};

INSTANTIATE_TEST_SUITE_P(All, Sample, testing::ValuesIn(sample_names()), [](const auto& info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

TEST_P(Sample, IsTheSameWhenReadAgain) { EXPECT_EQ(saved(loaded<Zol>(text_)), text_); }

TEST_P(Sample, LoadsFromItsFile) {
  lmx::elmx_error error = lmx::elmx_ok;
  const Zol from_file(sample_path(GetParam()).c_str(), &error);
  EXPECT_EQ(error, lmx::elmx_ok);
  EXPECT_EQ(saved(from_file), text_);
}

TEST_P(Sample, IsCopiedWhole) {
  const Zol copy(document_);
  EXPECT_EQ(saved(copy), text_);
  Zol assigned;
  assigned = document_;
  document_.reset();
  EXPECT_EQ(saved(assigned), text_) << "a copy shares nothing";
  assigned = *&assigned;
  EXPECT_EQ(saved(assigned), text_);
}

TEST_P(Sample, ComesBackFromTwoSwaps) {
  Zol other;
  other.swap(document_);
  EXPECT_EQ(saved(other), text_);
  other.swap(document_);
  EXPECT_EQ(saved(document_), text_);
}

TEST_P(Sample, IsEmptyAfterReset) {
  document_.reset();
  const Zol& fresh = document_;
  EXPECT_EQ(fresh.size_Color() + fresh.size_Palette() + fresh.size_ColorQualityControl(), 0u);
  EXPECT_EQ(fresh.get_Preamble().get_Header().get_Creator(), L"");
  EXPECT_EQ(fresh.get_Preamble().get_Header().get_ReadSDKInformation().get_SDKName(),
            L"Zol2-LMX-3.8");
  std::string untouched = "untouched";
  EXPECT_EQ(fresh.marshal(&untouched), lmx::elmx_occurs_on_marshal);
  EXPECT_EQ(untouched, "untouched");
}

TEST_P(Sample, GrowsItsListsWhenReadTwice) {
  const unsigned before =
      document_.size_Color() + document_.size_Palette() + document_.size_ColorQualityControl();
  EXPECT_EQ(document_.unmarshal(bytes_), lmx::elmx_ok);
  EXPECT_EQ(
      document_.size_Color() + document_.size_Palette() + document_.size_ColorQualityControl(),
      2 * before);
}

// Two of the samples are in the writer's own form.
TEST(Samples, ComeBackByteForByte) {
  for (const char* name : {"named-colours", "coverage-spaces"}) {
    EXPECT_EQ(saved(loaded<Zol>(sample_bytes(name))), sample_bytes(name)) << name;
  }
}

// Encodings. Each gives other bytes for the same document.

void append_utf16(std::string& out, char32_t c, bool big) {
  const auto unit = [&](char32_t u) {
    const char high = static_cast<char>(u >> 8), low = static_cast<char>(u & 0xFF);
    out += big ? high : low;
    out += big ? low : high;
  };
  if (c < 0x10000) return unit(c);
  unit(0xD800 + ((c - 0x10000) >> 10));
  unit(0xDC00 + ((c - 0x10000) & 0x3FF));
}

template <class Append>
std::string each_character(const std::string& utf8, Append append) {
  std::string out;
  for (std::size_t i = 0; i < utf8.size();) {
    const unsigned char lead = static_cast<unsigned char>(utf8[i++]);
    const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t c = more == 0 ? lead : lead & (0x3F >> more);
    for (int n = 0; n < more; ++n) c = c << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
    append(out, c);
  }
  return out;
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
    text.replace(at, what.size(), with);
  }
  return text;
}

std::string declared(const std::string& text, const std::string& encoding) {
  return replaced(text, "encoding=\"UTF-8\"", "encoding=\"" + encoding + "\"");
}

// Characters above the limit become references.
std::string narrowed(const std::string& text, char32_t limit) {
  return each_character(text, [&](std::string& out, char32_t c) {
    if (c <= limit) {
      out += static_cast<char>(c);
    } else {
      out += "&#" + std::to_string(static_cast<unsigned>(c)) + ";";
    }
  });
}

std::string utf16(const std::string& text, bool big, bool mark) {
  return each_character((mark ? "\xEF\xBB\xBF" : "") + declared(text, "UTF-16"),
                        [&](std::string& out, char32_t c) { append_utf16(out, c, big); });
}

const struct {
  const char* name;
  std::function<std::string(const std::string&)> encode;
} k_encodings[] = {
    {"UTF-8 with a mark", [](const std::string& t) { return "\xEF\xBB\xBF" + t; }},
    {"UTF-8 without a declaration",
     [](const std::string& t) { return t.substr(t.find('\n') + 1); }},
    {"UTF-16, big end first", [](const std::string& t) { return utf16(t, true, true); }},
    {"UTF-16, little end first", [](const std::string& t) { return utf16(t, false, true); }},
    {"UTF-16, big end first, no mark", [](const std::string& t) { return utf16(t, true, false); }},
    {"UTF-16, little end first, no mark",
     [](const std::string& t) { return utf16(t, false, false); }},
    {"ISO-8859-1", [](const std::string& t) { return narrowed(declared(t, "ISO-8859-1"), 0xFF); }},
    {"US-ASCII", [](const std::string& t) { return narrowed(declared(t, "US-ASCII"), 0x7F); }},
    {"CR LF", [](const std::string& t) { return replaced(t, "\n", "\r\n"); }},
    {"CR", [](const std::string& t) { return replaced(t, "\n", "\r"); }},
    {"UTF-16 with CR LF",
     [](const std::string& t) { return utf16(replaced(t, "\n", "\r\n"), false, true); }},
};

// Foreign elements keep their references as they were spelled; elsewhere they are the character.
TEST_P(Sample, IsTheSameInEveryEncoding) {
  const std::string expected = narrowed(text_, 0x7F);
  for (const auto& row : k_encodings) {
    SCOPED_TRACE(row.name);
    EXPECT_TRUE(narrowed(saved(loaded<Zol>(row.encode(text_))), 0x7F) == expected);
  }
}

// Prefixes are the document's own business.
TEST_P(Sample, IsTheSameUnderAnotherPrefix) {
  std::string text = replaced(text_, "Zol:", "other:");
  text = replaced(text, "xmlns:Zol=", "xmlns:other=");
  EXPECT_EQ(saved(loaded<Zol>(text)), text_);
}

}  // namespace
}  // namespace zol_test
