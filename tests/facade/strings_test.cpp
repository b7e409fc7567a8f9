// Whole documents from and to UTF-16 text, and the stamps that they get on the way.
#include "model/documents.h"

#include <cwchar>

namespace zol_test {
namespace {

using namespace zol_v2;

std::wstring wide(const std::string& utf8) {
  std::wstring text;
  lmx::convert(&text, utf8);
  return text;
}

void fill(Header& header) {
  (void)header.set_Creator(L"c");
  (void)header.set_CreatorVersion(L"1");
  (void)header.append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00Z"));
  (void)header.set_Purpose(L"p");
}

std::wstring stamp_of(const SDKType& stamp) {
  return stamp.get_SDKName() + L" " + stamp.get_SDKVersion().get_SDKVersion();
}

constexpr wchar_t k_stamp[] = L"Zol2-LMX-3.8 2.1";

TEST(Strings, HoldBothStampsOfANewDocument) {
  Zol document;
  fill(document.get_Preamble().get_Header());
  const XMLDocumentResult result = document.writeString();
  EXPECT_EQ(result.getElmxError(), lmx::elmx_ok);
  const std::wstring block =
      L"SDKInformation>\n\t\t\t\t<Zol:SDKName>Zol2-LMX-3.8</Zol:SDKName>\n"
      L"\t\t\t\t<Zol:SDKVersion>2.1</Zol:SDKVersion>\n\t\t\t</Zol:";
  EXPECT_EQ(result.getXmlDocument(),
            L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            L"<Zol:Zol xmlns:Zol=\"http://example.org/zol/v2\""
            L" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n\t<Zol:Preamble>\n"
            L"\t\t<Zol:Header>\n\t\t\t<Zol:Creator>c</Zol:Creator>\n"
            L"\t\t\t<Zol:CreatorVersion>1</Zol:CreatorVersion>\n"
            L"\t\t\t<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>\n"
            L"\t\t\t<Zol:Purpose>p</Zol:Purpose>\n\t\t\t<Zol:Read" +
                block + L"ReadSDKInformation>\n\t\t\t<Zol:Write" + block +
                L"WriteSDKInformation>\n\t\t</Zol:Header>\n\t</Zol:Preamble>\n</Zol:Zol>\n");
  Zol again;
  EXPECT_EQ(again.loadString(result.getXmlDocument()), lmx::elmx_ok);
  EXPECT_EQ(saved(again), saved(document));
}

TEST(Strings, StampADocumentThatCannotBeWritten) {
  const Zol document;
  EXPECT_TRUE(document.is_occurs_ok()) << "every object has a preamble from its first moment";
  const Header& header = document.get_Preamble().get_Header();
  EXPECT_EQ(stamp_of(header.get_ReadSDKInformation()), k_stamp);
  EXPECT_FALSE(header.isset_WriteSDKInformation());
  const XMLDocumentResult result = document.writeString();
  EXPECT_EQ(result.getElmxError(), 46);
  EXPECT_EQ(result.getXmlDocument(), L"");
  EXPECT_TRUE(header.isset_WriteSDKInformation());
  EXPECT_EQ(stamp_of(header.get_WriteSDKInformation()), k_stamp);
}

TEST(Strings, KeepTheStampsThatTheyRead) {
  const std::string other =
      "SDKInformation><Zol:SDKName>other</Zol:SDKName><Zol:SDKVersion>9"
      "</Zol:SDKVersion></Zol:";
  std::string text = document("");
  text.insert(text.find("</Zol:Header>"), "<Zol:Read" + other + "ReadSDKInformation><Zol:Write" +
                                              other + "WriteSDKInformation>");
  Zol document;
  ASSERT_EQ(document.loadString(wide(text)), lmx::elmx_ok);
  const Header& header = document.get_Preamble().get_Header();
  EXPECT_EQ(stamp_of(header.get_ReadSDKInformation()), L"other 9");
  EXPECT_EQ(stamp_of(header.get_WriteSDKInformation()), L"other 9");
  ASSERT_EQ(document.writeString().getElmxError(), lmx::elmx_ok);
  EXPECT_EQ(stamp_of(header.get_ReadSDKInformation()), L"other 9");
  EXPECT_EQ(stamp_of(header.get_WriteSDKInformation()), k_stamp);

  document.reset();
  EXPECT_EQ(stamp_of(document.get_Preamble().get_Header().get_ReadSDKInformation()), k_stamp);
  Zol unstamped;
  ASSERT_EQ(unstamped.loadString(wide(zol_test::document(""))), lmx::elmx_ok);
  EXPECT_EQ(stamp_of(unstamped.get_Preamble().get_Header().get_ReadSDKInformation()), k_stamp)
      << "that of construction";
}

// The text is UTF-8 by the time its declaration is looked at.
TEST(Strings, ActOnTheDeclaredEncoding) {
  const std::wstring body =
      wide(document("<Zol:Color ColorName='\xC3\xA9'>"
                    "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory></Zol:Color>"));
  const struct {
    const wchar_t* declaration;
    int code;
    std::wstring name;
  } rows[] = {
      {L"", 0, L"\u00E9"},
      {L"<?xml version='1.0'?>", 0, L"\u00E9"},
      {L"<?xml version='1.0' encoding='utf-8'?>", 0, L"\u00E9"},
      {L"\uFEFF<?xml version='1.0' encoding='UTF-8'?>", 0, L"\u00E9"},
      {L"<?xml version='1.0' encoding='ISO-8859-1'?>", 0, L"\u00C3\u00A9"},
      {L"<?xml version='1.0' encoding='UTF-16'?>", 15, L""},
      {L"<?xml version='1.0' encoding='EBCDIC'?>", 6, L""},
  };
  for (const auto& [declaration, code, name] : rows) {
    Zol document;
    EXPECT_EQ(document.loadString(declaration + body), code) << code;
    EXPECT_EQ(document.size_Color() == 0 ? L"" : document.get_Color(0).get_ColorName(), name);
  }
}

TEST(Strings, CarryEveryCharacter) {
  Zol document;
  fill(document.get_Preamble().get_Header());
  const std::wstring text = {L'a',   0x7F,   0x80,   0x7FF,  0x800,  0xD7FF, 0xE000,
                             0xFFFD, 0xD800, 0xDC00, 0xDBFF, 0xDFFF, L'z'};
  (void)document.get_Preamble().get_Header().set_Comments(text);
  const XMLDocumentResult result = document.writeString();
  EXPECT_NE(result.getXmlDocument().find(text), std::wstring::npos);
  Zol again;
  ASSERT_EQ(again.loadString(result.getXmlDocument()), lmx::elmx_ok);
  EXPECT_EQ(again.get_Preamble().get_Header().get_Comments(), text);

#if WCHAR_MAX > 0xFFFF
  // Units that hold a whole character are taken for what they are.
  std::wstring units = result.getXmlDocument();
  units.replace(units.find(std::wstring{0xD800, 0xDC00}), 2, 1, static_cast<wchar_t>(0x10000));
  ASSERT_EQ(again.loadString(units), lmx::elmx_ok);
  EXPECT_EQ(again.get_Preamble().get_Header().get_Comments(), text);
#endif
}

TEST(Strings, AppendToWhatIsThere) {
  const std::wstring text =
      wide(document("<Zol:Palette PaletteName='p'><Zol:ChangeHistory>"
                    "2020-01-01T10:00:00Z</Zol:ChangeHistory></Zol:Palette>"));
  Zol document;
  EXPECT_EQ(document.loadString(text), lmx::elmx_ok);
  EXPECT_EQ(document.loadString(text), lmx::elmx_ok);
  EXPECT_EQ(document.size_Palette(), 2u);
  EXPECT_EQ(document.get_Preamble().get_Header().size_ChangeHistory(), 2u);
  EXPECT_EQ(document.loadString(text.substr(0, text.size() - 10)), 34);
  EXPECT_EQ(document.size_Palette(), 3u) << "what came before the fault stays";
  EXPECT_EQ(document.loadString(L""), 34);
}

}  // namespace
}  // namespace zol_test
