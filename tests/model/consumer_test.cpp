// What a client does with the library besides loading and saving: sources, readers and writers of
// its own, value classes, exceptions across the library's edge.
#include <memory>

#include "model/documents.h"

namespace zol_test {
namespace {

using namespace zol_v2;

// A source that makes its document as it goes.
class Countdown : public lmx::c_read {
 public:
  explicit Countdown(int companies) : companies_(companies) { rewind(); }
  int read() override {
    if (at_ == piece_.size()) next_piece();
    return at_ < piece_.size() ? static_cast<unsigned char>(piece_[at_++]) : -1;
  }
  void rewind() override {
    left_ = companies_;
    at_ = 0;
    piece_ = std::string("<z:Owner xmlns:z='") + k_uri + "'>\n";
  }
  const char* get_source_id() override { return "countdown"; }

 private:
  void next_piece() {
    at_ = 0;
    if (left_ > 0) {
      piece_ = "<z:Company>" + std::to_string(left_--) + "</z:Company>\n";
    } else {
      piece_ = left_-- == 0 ? "</z:Owner>" : "";
    }
  }

  int companies_;
  int left_ = 0;
  std::string piece_;
  std::size_t at_ = 0;
};

TEST(Consumer, ReadsFromASourceOfItsOwn) {
  Countdown source(1000);
  lmx::c_xml_reader reader(source);
  std::string uri;
  EXPECT_TRUE(lmx::get_instance_namespace(reader, &uri)) << "a look at the root first";
  EXPECT_EQ(uri, k_uri);
  OwnerType owner;
  EXPECT_EQ(read_element(reader, owner), lmx::elmx_ok);
  EXPECT_EQ(owner.size_Company(), 1000u);
  EXPECT_EQ(owner.get_Company(999), L"1");
  EXPECT_STREQ(reader.get_source_id(), "countdown");
  EXPECT_EQ(reader.get_line_no(), 1002);
}

TEST(Consumer, WritesItsOwnWay) {
  struct Writer : lmx::c_xml_writer {
    using c_xml_writer::c_xml_writer;
    const char* endl() override { return "\r\n"; }
    void nest() override { levels += 1; }
    int levels = 0;
  };
  std::ostringstream out;
  Writer writer(out, lmx::c_xml_writer::include_xml_decl | lmx::c_xml_writer::include_standalone,
                "  ", "\n");
  writer.add_schema_location(k_uri, "zol.xsd");
  SubstratePaper paper;
  (void)paper.set_PaperType(L"news");
  EXPECT_EQ(paper.marshal(writer, "Zol:SubstratePaper"), lmx::elmx_ok);
  EXPECT_EQ(out.str(),
            std::string("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                        "<Zol:SubstratePaper xmlns:Zol=\"") +
                k_uri + "\" xmlns:xsi=\"" + k_xsi_uri + "\" xsi:schemaLocation=\"" + k_uri +
                " zol.xsd\">\r\n<Zol:PaperType>news</Zol:PaperType>\r\n</Zol:SubstratePaper>\r\n");
  EXPECT_EQ(writer.levels, 1);
  EXPECT_EQ(paper.marshal(writer, "Zol:SubstratePaper"), lmx::elmx_ok);
  EXPECT_EQ(out.str().find(k_uri, 300), std::string::npos) << "the namespaces are named once";
}

// The classes of values, their texts and checks, as far as a client meets them beside the model.
TEST(Consumer, UsesTheValueClasses) {
  EXPECT_STREQ(lmx::get_error_description(lmx::elmx_occurs_on_marshal),
               "min/max occurs error on marshaling");
  EXPECT_TRUE(lmx::c_datetime::is_valid("2020-01-01T10:00:00Z"));
  EXPECT_TRUE(lmx::c_big_int("99999999999999999999") > lmx::c_big_int("7"));
  EXPECT_TRUE(lmx::c_decimal("1.50") == lmx::c_decimal("1.5"));
  EXPECT_TRUE(lmx::c_duration("P1Y") > lmx::c_duration("P1M"));
  EXPECT_TRUE(lmx::is_valid_float("1e5"));
  EXPECT_TRUE(lmx::c_pattern("[a-z]+").is_match("abc"));

  ProfileFile file;
  lmx::c_binary bytes;
  bytes.from_base64("AAEC");
  (void)file.set_ProfileFile(bytes);
  EXPECT_EQ(written(file, "p"), "<p>AAEC</p>\n");
}

TEST(Consumer, SeesTypesAcrossTheLibrarysEdge) {
  const std::unique_ptr<ColorSpaceType> space(ColorSpaceType::factory(1000, "ColorSpaceRGBType"));
  auto* rgb = dynamic_cast<ColorSpaceRGBType*>(space.get());
  ASSERT_NE(rgb, nullptr);
  EXPECT_EQ(rgb->set_Red(1), lmx::elmx_ok);
  EXPECT_EQ(dynamic_cast<ColorSpaceSRGBType*>(space.get()), nullptr);
  EXPECT_THROW(throw lmx::c_lmx_reader_exception(lmx::elmx_unexpected_end, 7),
               lmx::c_lmx_exception);
}

}  // namespace
}  // namespace zol_test
