// Documents of every element that one may begin with: from and to files, buffers, streams.
#include <filesystem>
#include <locale>

#include "model/documents.h"
#include "support/files.h"

namespace zol_test {
namespace {

using namespace zol_v2;

template <class T>
class Documents : public testing::Test {
 protected:
  const TempDir directory_;
  const std::string path_ = directory_.file("document.zol");

  static std::string root(const std::string& tag) {
    return "<" + tag + " xmlns:Zol='" + k_uri + "' xmlns:xsi='" + k_xsi_uri + "'";
  }
};

using Roots =
    testing::Types<Zol, Measurement, Standard, CollectionColorSpaceSpecification, FunctionTolerance,
                   ColorSpaceRecipe, ColorSpaceOMBRELL, ColorSpaceGeneric,
                   ColorSpaceEmissiveGeneric, ColorSpaceDensity, ColorSpaceRGB, ColorSpaceSRGB,
                   ColorSpaceAdobeRGB, ColorSpaceCMYKPlusN, ColorSpaceAdobeWideGamutRGB,
                   ColorSpaceSpectral, ColorSpaceEmissiveSpectral, ColorSpaceCIELab,
                   ColorSpaceCIELCh, ColorSpaceCIEXYZ, ColorSpaceEmissiveCIEXYZ, ColorSpaceCIExyY,
                   ColorSpaceEmissiveCIExyY, ColorSpaceCIELuv, ColorSpaceHSL, ColorSpaceHSV,
                   ColorSpaceCMYK, ColorSpaceOMBRELLVantiline, ColorSpaceYUV, ColorSpaceYIQ,
                   ColorSpaceYBR, ColorSpaceNCS, ColorSpaceMunsell>;
using MoreRoots = testing::Types<
    ColorSpaceSpecificationSpectrum, ColorSpaceSpecificationSpectrumGeneric,
    ColorSpaceSpecificationSpectrumTristimulus, ColorSpaceSpecificationSpectrumSpectral,
    ColorSpaceSpecificationEmissive, ColorSpaceSpecificationEmissiveGeneric,
    ColorSpaceSpecificationEmissiveTristimulus, ColorSpaceSpecificationEmissiveSpectral,
    SubstratePaper, SubstrateGeneric, SubstrateMetal, SubstratePlastic, SubstrateWood,
    SubstrateVinyl, SubstrateTile, SubstrateFilm, SubstrateTextile, SampleSpot, SampleTarget,
    Function, FunctionGeneric, FunctionDE, FunctionMeanDE, FunctionDE94, FunctionDE2000,
    FunctionDECMC, FunctionStdDevX, FunctionStdDevY, FunctionStdDevZ, FunctionStdDevL,
    FunctionStdDevA, FunctionStdDevB, FunctionStdDevC, FunctionStdDevH, FunctionAverageStdDevL,
    FunctionAverageStdDevA, FunctionAverageStdDevB>;

TYPED_TEST_SUITE_P(Documents);

TYPED_TEST_P(Documents, AreReadUnderTheirOwnName) {
  const std::string name = TypeParam::k_element_name;
  TypeParam object;
  EXPECT_EQ(object.unmarshal(this->root("Zol:Other") + "/>"), 16);
  EXPECT_EQ(object.unmarshal("<" + name.substr(4) + "/>"), 16) << "no namespace";
  // The name is right: an unknown attribute is noticed next.
  EXPECT_EQ(object.unmarshal(this->root(name) + " nonsense=''/>"), 39);
  EXPECT_EQ(object.unmarshal("<o:" + name.substr(4) + " xmlns:o='" + k_uri + "' nonsense=''/>"),
            39);

  const std::string text = this->root("Zol:Other") + "/>";
  lmx::elmx_error error = lmx::elmx_ok;
  const TypeParam from_text(text, &error);
  EXPECT_EQ(error, 16);
  error = lmx::elmx_ok;
  const TypeParam from_buffer(text.data(), text.size(), &error);
  EXPECT_EQ(error, 16);
  const TypeParam from_file("/no/such/file.zol", &error);
  EXPECT_EQ(error, 1);
  EXPECT_EQ(TypeParam::ns_map(), Zol::ns_map()) << "there is one table";
}

// Whether it can be written as it comes depends on its required rows.
TYPED_TEST_P(Documents, AreWrittenWholeOrNotAtAll) {
  const TypeParam fresh;
  const std::string untouched = "untouched";
  std::string text = untouched;
  const lmx::elmx_error error = fresh.marshal(&text);
  EXPECT_EQ(fresh.marshal(this->path_.c_str()), error);
  if (error != lmx::elmx_ok) {
    EXPECT_EQ(error, 46);
    EXPECT_EQ(text, untouched);
    EXPECT_FALSE(std::filesystem::exists(this->path_));
    return;
  }
  EXPECT_EQ(text.substr(0, 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_NE(text.find(std::string(" xmlns:Zol=\"") + k_uri + "\" xmlns:xsi=\"" + k_xsi_uri + "\""),
            std::string::npos);
  std::ostringstream stream;
  EXPECT_EQ(fresh.marshal(stream), lmx::elmx_ok);
  EXPECT_EQ(stream.str(), text);
  TypeParam again;
  EXPECT_EQ(again.unmarshal(this->path_.c_str()), lmx::elmx_ok);
  EXPECT_EQ(saved(again), text);
  EXPECT_EQ(fresh.marshal("/no/such/directory/file.zol"), 1);
}

REGISTER_TYPED_TEST_SUITE_P(Documents, AreReadUnderTheirOwnName, AreWrittenWholeOrNotAtAll);

struct ElementName {
  template <class T>
  static std::string GetName(int) {
    return T::k_element_name + sizeof("Zol:") - 1;
  }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Spaces, Documents, Roots, ElementName);
INSTANTIATE_TYPED_TEST_SUITE_P(Others, Documents, MoreRoots, ElementName);

TEST(Document, KeepsThePartialTextOnAStream) {
  auto object =
      loaded<Zol>(document("<Zol:Color ColorName='c'>"
                           "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>"
                           "</Zol:Color>"));
  std::ostringstream stream;
  EXPECT_EQ(object.marshal(stream), 46) << "a colour without a colour space loads all the same";
  const std::string text = stream.str();
  const std::string end = "\t</Zol:Preamble>\n";
  ASSERT_GT(text.size(), end.size());
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

// Streams take their form of numbers from the global locale of C++; documents do not.
TEST(Document, KnowsNothingOfTheGlobalLocale) {
  struct Commas : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::string bytes = sample_bytes("coverage-spaces");
  const TempDir directory;
  const std::string path = directory.file("document.zol");
  const std::locale before = std::locale::global(std::locale(std::locale(), new Commas));
  const auto document = loaded<Zol>(bytes);
  const std::string text = saved(document);
  std::ostringstream stream;
  EXPECT_EQ(document.marshal(stream), lmx::elmx_ok);
  EXPECT_EQ(document.marshal(path.c_str()), lmx::elmx_ok);
  lmx::elmx_error error = lmx::elmx_ok;
  const Zol again(path.c_str(), &error);
  std::locale::global(before);
  EXPECT_TRUE(text == bytes);
  EXPECT_TRUE(stream.str() == bytes);
  EXPECT_EQ(error, lmx::elmx_ok);
  EXPECT_TRUE(saved(again) == bytes);
}

template <class T>
std::string first_line(const T& object) {
  std::ostringstream out;
  lmx::c_xml_writer writer(out, "\t", "\n");
  (void)object.marshal(writer, "Zol:X");
  return out.str().substr(0, out.str().find('\n'));
}

// Which classes carry the namespaces when they come first.
TEST(Document, NamesNamespacesAtTypesAndElements) {
  const std::string with =
      std::string("<Zol:X xmlns:Zol=\"") + k_uri + "\" xmlns:xsi=\"" + k_xsi_uri + "\"";
  EXPECT_EQ(first_line(OwnerType()), with + ">");
  EXPECT_EQ(first_line(FunctionDEType()), with + ">");
  EXPECT_EQ(first_line(FunctionDE()), with + ">");
  EXPECT_EQ(first_line(Revision()), "<Zol:X>");
  EXPECT_EQ(first_line(TagCategory()), "<Zol:X/>");
  GeometryChoiceType geometry;
  geometry.get_BSDFAngle();
  EXPECT_EQ(first_line(geometry), with + ">");
  DensityType density;
  EXPECT_EQ(first_line(density), "");
  Person person;
  (void)person.set_Name(L"n");
  EXPECT_EQ(first_line(person), "<Zol:X>");
  auto specification = made<ColorSpaceSpecificationSpectrumGeneric>(
      "<Zol:X Comments='c' UniqueID='u' xsi:nil='true'/>");
  EXPECT_EQ(first_line(specification), with + " Comments=\"c\" UniqueID=\"u\" xsi:nil=\"true\"/>");
}

TEST(Document, OfAnAbstractHeadIsReadAsItsType) {
  const std::string text = std::string("<Zol:Substrate xmlns:Zol='") + k_uri +
                           "'><Zol:PartNumber>7</Zol:PartNumber></Zol:Substrate>";
  lmx::c_xml_reader_memory reader(text.data(), text.size());
  Substrate head;
  EXPECT_EQ(head.unmarshal(reader), lmx::elmx_ok);
  EXPECT_EQ(head.get_PartNumber(), L"7");
  lmx::c_xml_reader_memory other(text.data(), text.size());
  EXPECT_EQ(Sample().unmarshal(other), 16);
  EXPECT_EQ(other.get_error_item_name(), "Zol:Substrate");
}

// The root's own faults, with the text of the message.
TEST(Document, SaysWhatIsWrongAtItsRoot) {
  const std::string uri = k_uri;
  const struct {
    std::string text;
    int code;
    const char* message;
  } rows[] = {
      {"", 34, "line:1-''-Unexpected end of message"},
      {"\n\n<Zol:Zol/>", 16, "line:3-'Zol:Zol'-Element not found"},
      {"<Zol/>", 16, "line:1-'Zol'-Element not found"},
      {"<a:Zol xmlns:a='" + uri + "/'/>", 16, "line:1-'a:Zol'-Element not found"},
      {"<a:zol xmlns:a='" + uri + "'/>", 16, "line:1-'a:zol'-Element not found"},
      {"<a:Zol xmlns:a='" + uri + "'/>", 32, "line:1-'a:Zol'-Unexpected empty element"},
      {"<Zol xmlns='" + uri + "'>\n</Zol>", 32, "line:2-'Zol'-Unexpected empty element"},
      {"<Zol xmlns='" + uri + "'><Preamble/></Zol>", 32,
       "line:1-'Preamble'-Unexpected empty element"},
      {"<Zol xmlns='" + uri + "'><Preamble><Owner/></Preamble></Zol>", 21,
       "line:1-'Zol:Header'-Mandatory element missing"},
  };
  for (const auto& row : rows) {
    lmx::c_xml_reader_memory reader(row.text.data(), row.text.size());
    Zol object;
    EXPECT_EQ(object.unmarshal(reader), row.code) << row.text;
    std::string message;
    EXPECT_EQ(reader.get_error_message(&message), row.message) << row.text;
  }
}

}  // namespace
}  // namespace zol_test
