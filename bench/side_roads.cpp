#include <zlib.h>

#include <cstdio>
#include <locale>
#include <memory>
#include <ostream>
#include <random>
#include <stdexcept>
#include <streambuf>

#include "bench/documents.h"
#include "bench/roads.h"
#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/transcode.h"
#include "lmx/internal/write_block.h"
#include "lmx/text.h"
#include "lmx/tokeniser.h"
#include "lmx/writer.h"
#include "zip/archive.h"

namespace bench {
namespace {

constexpr std::size_t k_text_size = 16384;

void require(bool is_true, const char* what) {
  if (!is_true) throw std::runtime_error(what);
}

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  while (text.size() < size) text += piece;
  return text;
}

std::vector<std::string> numbers(const char* format, double factor) {
  std::mt19937_64 random(17);
  std::vector<std::string> texts;
  for (int i = 0; i < 1000; ++i) {
    char text[64];
    std::snprintf(text, sizeof text, format, static_cast<double>(random() >> 11) * factor);
    texts.push_back(text);
  }
  return texts;
}

std::string deflated(const std::string& text) {
  std::string out(::compressBound(static_cast<uLong>(text.size())), '\0');
  auto size = static_cast<uLongf>(out.size());
  ::compress(reinterpret_cast<Bytef*>(out.data()), &size,
             reinterpret_cast<const Bytef*>(text.data()), static_cast<uLong>(text.size()));
  return out.substr(2, size - 6);  // without zlib's own header and checksum
}

SideInputs make_inputs() {
  SideInputs inputs;
  inputs.accented = repeated(
      "Größe der Ähnlichkeit für Übergänge à la forêt; l'élève préféré a été reçu. ", k_text_size);
  inputs.cjk = repeated("颜色空间测量条件与仪器的光谱数据，色调板", k_text_size);
  std::mt19937 random(1);
  for (std::size_t i = 0; i < 12288; ++i) inputs.bytes += static_cast<char>(random());
  lmx::internal::append_base64(&inputs.base64,
                               reinterpret_cast<const unsigned char*>(inputs.bytes.data()),
                               inputs.bytes.size());
  inputs.short_numbers = numbers("%.4f", 0x1p-53 * 100);
  inputs.long_numbers = numbers("%.17g", 0x1p-53);
  inputs.document = make_document(Profile::palettes, 100 * 1000);
  inputs.cdata = "<a>" +
                 repeated(
                     "<b><![CDATA[Some text with <markup> & ampersands in it, as long as a "
                     "line or two of a note would be.]]></b>\n",
                     inputs.document.size()) +
                 "</a>";
  inputs.comments = "<a>" +
                    repeated(
                        "<!-- A note for whoever reads the source: it says nothing to a "
                        "program, - whatever its length. -->\n",
                        inputs.document.size()) +
                    "</a>";
  inputs.deflated = deflated(inputs.document);
  return inputs;
}

// Which names another encoding.
std::string without_declaration(const std::string& document) {
  return document.substr(document.find("?>") + 2);
}

std::string in_utf16(const std::string& utf8) {
  std::string bytes;
  for (const char16_t unit : utf16_of(utf8)) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

std::string in_latin1(const std::string& utf8) {
  std::string bytes;
  for (const char16_t unit : utf16_of(utf8)) bytes += static_cast<char>(unit < 0x100 ? unit : '?');
  return bytes;
}

// Takes all and keeps the last of it.
class Sink : public std::streambuf {
 public:
  Sink() { setp(bytes_, bytes_ + sizeof bytes_); }

 protected:
  int_type overflow(int_type byte) override {
    setp(bytes_, bytes_ + sizeof bytes_);
    return sputc(traits_type::to_char_type(byte));
  }

 private:
  char bytes_[4096];
};

// Every event of a document by the described pipeline.
void walk(const std::string& bytes) {
  lmx::c_error error;
  lmx::c_read_string source(bytes);
  lmx::c_xml xml(source, error, true);
  std::string name;
  std::string value;
  std::size_t events = 0;
  while (true) {
    lmx::c_xml_local scope;
    const int event = xml.get_element_name(&scope, &name);
    if (event == lmx::elxp_end_of_input) break;
    require(event != lmx::elxp_error, "walk");
    ++events;
    if (event != lmx::elxp_name) continue;
    while (xml.get_attribute_name(&name, false) == lmx::elxp_name) {
      xml.get_attribute_value(&value, lmx::elmx_preserve);
    }
  }
  require(events >= 2, "walk");
}

// An archive with the one entry `a`, in memory.
class Archive : public CZipAbstractFile {
 public:
  Archive(const std::string& data, const std::string& text) {
    const auto le = [](std::uint32_t value, int bytes) {
      std::string out;
      for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> 8 * i & 0xFF);
      return out;
    };
    const auto crc = static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
    const std::string common = le(20, 2) + le(0, 2) + le(8, 2) + le(0x5A216000, 4) + le(crc, 4) +
                               le(static_cast<std::uint32_t>(data.size()), 4) +
                               le(static_cast<std::uint32_t>(text.size()), 4) + le(1, 2);
    bytes_ = "PK\x03\x04" + common + le(0, 2) + "a" + data;
    const auto directory = static_cast<std::uint32_t>(bytes_.size());
    bytes_ += "PK\x01\x02" + le(46, 2) + common + le(0, 2) + le(0, 10) + le(0, 2) + le(0, 4) + "a";
    const auto size = static_cast<std::uint32_t>(bytes_.size()) - directory;
    bytes_ +=
        "PK\x05\x06" + le(0, 4) + le(1, 2) + le(1, 2) + le(size, 4) + le(directory, 4) + le(0, 2);
  }

  bool Open(const std::wstring&, std::uint32_t, bool) override { return true; }
  void Close() override {}
  void Flush() override {}
  std::uint64_t GetPosition() const override { return position_; }
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override {
    const std::uint64_t base = origin == begin ? 0 : origin == end ? bytes_.size() : position_;
    return position_ = base + static_cast<std::uint64_t>(offset);
  }
  std::uint64_t GetLength() const override { return bytes_.size(); }
  void SetLength(std::uint64_t length) override { bytes_.resize(length); }
  void SeekToBegin() override { position_ = 0; }
  void SeekToEnd() override { position_ = bytes_.size(); }
  std::wstring GetFilePath() const override { return L"memory"; }
  std::uint32_t Read(void* buffer, std::uint32_t count) override {
    const auto got = static_cast<std::uint32_t>(
        bytes_.copy(static_cast<char*>(buffer), count, static_cast<std::size_t>(position_)));
    position_ += got;
    return got;
  }
  void Write(const void*, std::uint32_t) override {}
  bool IsClosed() const override { return false; }

 private:
  std::string bytes_;
  std::uint64_t position_ = 0;
};

void read_entry(Archive& file) {
  CZipArchive archive;
  archive.Open(file, CZipArchive::modeReadOnly);
  require(archive.OpenEntry(0), "OpenEntry");
  const std::uint32_t size = archive.EntryAt(0)->uncompressed_size;
  CZipAutoBuffer text(size);
  char more;
  require(archive.ReadEntry(text, size) == size && archive.ReadEntry(&more, 1) == 0 &&
              archive.CloseEntry() == 1,
          "ReadEntry");
  keep(text);
}

}  // namespace

const SideInputs& side_inputs() {
  static const SideInputs inputs = make_inputs();
  return inputs;
}

std::u16string utf16_of(const std::string& utf8) {
  const std::wstring wide = lmx::convert_to_wide(utf8);
  return std::u16string(wide.begin(), wide.end());
}

std::vector<Road> side_roads() {
  const SideInputs& in = side_inputs();
  std::vector<Road> roads;
  const auto add = [&roads](const std::string& name, const char* unit, std::size_t amount,
                            std::function<void()> run) {
    roads.push_back({name, unit, static_cast<double>(amount), std::move(run)});
  };

  const auto add_text = [&](const std::string& name, const std::string& utf8) {
    const std::wstring wide = lmx::convert_to_wide(utf8);
    add(name + " to wide", "byte", utf8.size(), [&utf8] {
      std::wstring out;
      keep(lmx::vtostring(out, utf8));
    });
    add(name + " from wide", "byte", utf8.size(), [wide] {
      std::string out;
      keep(lmx::convert(&out, wide));
    });
    add(name + " as XML", "byte", utf8.size(), [wide] {
      Sink sink;
      std::ostream os(&sink);
      os << lmx::c_as_xml<std::wstring>(wide);
      keep(os);
    });
  };
  add_text("accented text", in.accented);
  add_text("CJK text", in.cjk);
  add_text("ASCII text", in.document);
  const std::string name = "Größe der Fläche 12";
  const auto add_calls = [&add](const char* road, auto call) {
    constexpr int k_calls = 100;
    add(road, "call", k_calls, [call] {
      for (int i = 0; i < k_calls; ++i) call();
    });
  };
  add_calls("a name to wide", [name] {
    std::wstring out;
    keep(lmx::vtostring(out, name));
  });
  add_calls("a name from wide", [wide = lmx::convert_to_wide(name)] {
    std::string out;
    keep(lmx::convert(&out, wide));
  });

  add("base64 in", "byte", in.base64.size(), [&in] {
    lmx::c_binary value;
    require(lmx::internal::read_base64(in.base64, &value), "base64");
    keep(value);
  });
  add("base64 out", "byte", in.base64.size(), [&in] {
    std::string text;
    lmx::internal::append_base64(&text, reinterpret_cast<const unsigned char*>(in.bytes.data()),
                                 in.bytes.size());
    keep(text);
  });

  const auto add_numbers = [&](const char* road, const std::vector<std::string>& texts) {
    add(road, "call", texts.size(), [&texts] {
      double sum = 0;
      for (const std::string& text : texts) {
        double value = 0;
        lmx::internal::read_double(text, &value);
        sum += value;
      }
      keep(sum);
    });
  };
  add_numbers("double of 17 digits in", in.long_numbers);
  add_numbers("short double in", in.short_numbers);

  const auto add_output = [&](const char* road, auto write) {
    add(road, "call", 1000, [write] {
      Sink sink;
      std::ostream os(&sink);
      os.imbue(std::locale::classic());
      for (int i = 0; i < 1000; ++i) write(os, 0.25 + i);
      keep(os);
    });
  };
  add_output("double to a stream",
             [](std::ostream& os, double value) { os << lmx::c_as_xml<double>(value); });
  add("double to the block", "call", 1000, [] {
    Sink sink;
    std::ostream os(&sink);
    lmx::internal::WriteBlock block(os);
    for (int i = 0; i < 1000; ++i) block.append_number(0.25 + i);
    block.flush();
    keep(os);
  });
  const auto add_date = [&](const char* road, auto value) {
    add_calls(road, [value] { keep(value.get_as_string()); });
  };
  add_date("date and time as text", lmx::c_datetime("2005-06-07T08:09:10.5Z"));
  add_date("time as text", lmx::c_time("08:09:10.5Z"));
  add_date("duration as text", lmx::c_duration("P1Y2M3DT4H5M6.5S"));
  add_output("time to a stream",
             [time = lmx::c_time("08:09:10.5Z")](std::ostream& os, double) { os << time; });

  const auto add_transcoding = [&](const char* road, std::string bytes,
                                   lmx::internal::SourceEncoding encoding) {
    add(road, "byte", in.document.size(), [bytes = std::move(bytes), encoding] {
      lmx::internal::ByteBuffer out(0);
      require(lmx::internal::transcode(bytes, encoding, &out), "transcode");
      keep(out);
    });
  };
  add_transcoding("UTF-16 to UTF-8", in_utf16(in.document),
                  lmx::internal::SourceEncoding::utf16_le);
  add_transcoding("Latin-1 to UTF-8", in_latin1(in.document),
                  lmx::internal::SourceEncoding::latin1);

  add("events of UTF-8", "byte", in.document.size(), [&in] { walk(in.document); });
  add("events of UTF-16", "byte", in.document.size(),
      [bytes = in_utf16("\xEF\xBB\xBF" + without_declaration(in.document))] { walk(bytes); });
  add("events of CDATA", "byte", in.cdata.size(), [&in] { walk(in.cdata); });
  add("events of comments", "byte", in.comments.size(), [&in] { walk(in.comments); });

  add("archive entry in", "byte", in.document.size(),
      [file = std::make_shared<Archive>(in.deflated, in.document)] { read_entry(*file); });
  return roads;
}

}  // namespace bench
