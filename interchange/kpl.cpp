// Palettes of Krita: an archive with colorset.xml, whose groups hold named entries.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include <libxml/xmlreader.h>

#include "interchange/internal/palettes.h"
#include "interchange/internal/values.h"
#include "zip/archive.h"

namespace zol_v2::interchange::internal {

namespace {

constexpr wchar_t k_colors_name[] = L"colorset.xml";
constexpr std::uint32_t k_largest = 1U << 28;  // of the colours, unpacked

// An archive in memory.
class MemoryFile : public CZipAbstractFile {
 public:
  explicit MemoryFile(std::string bytes = {}) : bytes_(std::move(bytes)) {}
  const std::string& bytes() const { return bytes_; }

  bool Open(const std::wstring&, std::uint32_t, bool) override { return true; }
  void Close() override {}
  void Flush() override {}
  std::uint64_t GetPosition() const override { return at_; }
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override {
    const std::uint64_t from = origin == begin ? 0 : origin == current ? at_ : bytes_.size();
    const std::int64_t to = static_cast<std::int64_t>(from) + offset;
    if (to < 0) throw CZipException(EINVAL);
    at_ = static_cast<std::uint64_t>(to);
    return at_;
  }
  std::uint64_t GetLength() const override { return bytes_.size(); }
  void SetLength(std::uint64_t length) override { bytes_.resize(length); }
  void SeekToBegin() override { at_ = 0; }
  void SeekToEnd() override { at_ = bytes_.size(); }
  std::wstring GetFilePath() const override { return L"palette.kpl"; }
  std::uint32_t Read(void* buffer, std::uint32_t count) override {
    const std::uint64_t left = at_ < bytes_.size() ? bytes_.size() - at_ : 0;
    const std::uint32_t taken = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, count));
    if (taken != 0) std::memcpy(buffer, bytes_.data() + at_, taken);
    at_ += taken;
    return taken;
  }
  void Write(const void* buffer, std::uint32_t count) override {
    if (bytes_.size() < at_ + count) bytes_.resize(at_ + count);
    std::memcpy(&bytes_[at_], buffer, count);
    at_ += count;
  }
  bool IsClosed() const override { return false; }

 private:
  std::string bytes_;
  std::uint64_t at_ = 0;
};

// --- Writing -------------------------------------------------------------------------------------

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      // A parser takes them for blanks where they stand as they are.
      case '\t':
        result += "&#9;";
        break;
      case '\n':
        result += "&#10;";
        break;
      case '\r':
        result += "&#13;";
        break;
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        // XML has no other control characters.
        result += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
  return result;
}

class KplWriter : public PaletteWriter {
 protected:
  void print(const std::vector<Swatch>& swatches, std::string* bytes) override {
    MemoryFile file;
    CZipArchive archive;
    (void)archive.Open(file, CZipArchive::modeCreate);
    add(&archive, L"mimetype", "krita/x-colorset", 0);
    add(&archive, k_colors_name, colors(swatches), -1);
    add(&archive, L"profiles.xml", "<Profiles/>\n", -1);
    archive.Close();
    *bytes += file.bytes();
  }

 private:
  static constexpr std::size_t k_columns = 16;
  // The first day that an archive knows, of 1980: the same palette is the same bytes at any time.
  static constexpr std::uint16_t k_first_day = 1 << 5 | 1;

  static void add(CZipArchive* archive, const wchar_t* name, const std::string& content,
                  int level) {
    auto header = std::make_unique<CZipFileHeader>();
    header->SetFileName(name);
    header->date = k_first_day;
    (void)archive->OpenNewEntry(std::move(header), level);
    (void)archive->WriteNewEntry(content.data(), static_cast<std::uint32_t>(content.size()));
    (void)archive->CloseNewEntry();
  }

  static std::size_t rows_of(std::size_t count) { return (count + k_columns - 1) / k_columns; }

  std::string colors(const std::vector<Swatch>& swatches) const {
    // Those of the palette itself stand first, and in no group.
    std::vector<std::string> groups = {title()};
    for (const Swatch& swatch : swatches) {
      const bool is_new = std::find(groups.begin(), groups.end(), swatch.group) == groups.end();
      if (is_new && !swatch.group.empty()) groups.push_back(swatch.group);
    }
    std::string text;
    std::size_t own_rows = 0;
    for (const std::string& group : groups) {
      const bool is_own = group == groups.front();
      std::string entries;
      std::size_t count = 0;
      for (const Swatch& swatch : swatches) {
        const bool is_in = swatch.group == group || (is_own && swatch.group.empty());
        if (is_in) entries += entry(swatch, count++);
      }
      if (is_own) {
        own_rows = rows_of(count);
        text += entries;
      } else {
        text += "  <Group name=\"" + escaped(group) + "\" rows=\"" +
                std::to_string(rows_of(count)) + "\">\n" + entries + "  </Group>\n";
      }
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ColorSet version=\"2.0\" name=\"" +
           escaped(title()) + "\" comment=\"\" columns=\"" + std::to_string(k_columns) +
           "\" rows=\"" + std::to_string(own_rows) + "\" readonly=\"false\">\n" + text +
           "</ColorSet>\n";
  }

  static std::string entry(const Swatch& swatch, std::size_t number) {
    std::string text = "    <ColorSetEntry name=\"" + escaped(swatch.name) +
                       "\" id=\"\" spot=\"false\" bitdepth=\"F32\"><sRGB";
    constexpr const char* k_channels[] = {" r=\"", " g=\"", " b=\""};
    for (std::size_t i = 0; i < swatch.rgb.size(); ++i) {
      text += k_channels[i] + number_text(swatch.rgb[i]) + '"';
    }
    return text + "/><Position row=\"" + std::to_string(number / k_columns) + "\" column=\"" +
           std::to_string(number % k_columns) + "\"/></ColorSetEntry>\n";
  }
};

// --- Reading -------------------------------------------------------------------------------------

struct ReaderDeleter {
  void operator()(xmlTextReader* reader) const { xmlFreeTextReader(reader); }
};

struct Element {
  std::string_view name;
  std::string_view space;
  std::vector<std::pair<const char*, std::string_view>> axes;  // attribute and axis
  double divisor;
};

const std::vector<Element>& known_elements() {
  static const std::vector<Element> table = {
      {"sRGB", "SRGB", {{"r", "Red"}, {"g", "Green"}, {"b", "Blue"}}, 1},
      {"RGB", "SRGB", {{"r", "Red"}, {"g", "Green"}, {"b", "Blue"}}, 1},
      {"CMYK", "CMYK", {{"c", "Cyan"}, {"m", "Magenta"}, {"y", "Yellow"}, {"k", "Black"}}, 0.01},
      {"Lab", "CIELab", {{"L", "L"}, {"a", "A"}, {"b", "B"}}, 1},
      {"XYZ", "CIEXYZ", {{"x", "X"}, {"y", "Y"}, {"z", "Z"}}, 1},
      {"Gray", "SRGB", {{"g", "Red"}}, 1},
  };
  return table;
}

class KplReader {
 public:
  KplReader(std::string_view xml, const ReadOptions& options, Zol* document, Report* report)
      : xml_(xml), report_(*report), builder_(document, building(options), xml, report) {}

  void read() {
    reader_.reset(xmlReaderForMemory(xml_.data(), static_cast<int>(xml_.size()), nullptr, nullptr,
                                     XML_PARSE_NONET));
    if (!reader_) return fail("There is not enough memory");
    xmlTextReaderSetStructuredErrorHandler(reader_.get(), &KplReader::note_error, this);
    int outcome = 0;
    while (report_ && (outcome = xmlTextReaderRead(reader_.get())) == 1) take_node();
    if (report_ && outcome < 0) fail("colorset.xml is no XML: " + error_);
    if (report_ && count_ == 0) fail("The palette has no colours");
  }

 private:
  static DocumentBuilder::Options building(const ReadOptions& options) {
    DocumentBuilder::Options building = building_options(options);
    building.is_tolerant = true;
    return building;
  }

  static void note_error(void* self, xmlErrorPtr error) {
    std::string message = error != nullptr && error->message != nullptr ? error->message : "";
    while (!message.empty() && message.back() == '\n') message.pop_back();
    static_cast<KplReader*>(self)->error_ = std::move(message);
  }

  void fail(std::string sentence) {
    SourcePlace place;
    if (reader_) {
      place.line =
          static_cast<std::uint64_t>(std::max(1, xmlTextReaderGetParserLineNumber(reader_.get())));
      place.column = static_cast<std::uint64_t>(
          std::max(1, xmlTextReaderGetParserColumnNumber(reader_.get())));
    }
    report_.fail("bad-palette", std::move(sentence), place);
    report_.faults.back().entry = "colorset.xml";
  }

  std::string name() const {
    return reinterpret_cast<const char*>(xmlTextReaderConstLocalName(reader_.get()));
  }
  // Empty where there is none.
  std::string attribute(const char* name) const {
    xmlChar* const value =
        xmlTextReaderGetAttribute(reader_.get(), reinterpret_cast<const xmlChar*>(name));
    if (value == nullptr) return {};
    std::string text = reinterpret_cast<const char*>(value);
    xmlFree(value);
    return text;
  }

  void take_node() {
    const int type = xmlTextReaderNodeType(reader_.get());
    const std::string element = name();
    const bool is_end = type == XML_READER_TYPE_END_ELEMENT;
    if (!is_end && type != XML_READER_TYPE_ELEMENT) return;
    const bool is_empty = !is_end && xmlTextReaderIsEmptyElement(reader_.get()) == 1;
    if (xmlTextReaderDepth(reader_.get()) == 0 && element != "ColorSet") {
      return fail("The root is " + element.substr(0, 40) + ", ColorSet is expected");
    }
    if (element == "ColorSet" && !is_end) palette_ = group_ = attribute("name");
    if (element == "Group") group_ = is_end || is_empty ? palette_ : attribute("name");
    if (element != "ColorSetEntry") {
      if (!is_end && is_open_) take_values(element);
      return;
    }
    if (!is_end) begin_entry();
    if (is_end || is_empty) end_entry();
  }

  void begin_entry() {
    is_open_ = true;
    record_ = ColorRecord();
    record_.name = attribute("name");
    record_.id = attribute("id");
    set_group(group_, &record_);
  }

  void end_entry() {
    is_open_ = false;
    if (record_.name.empty()) record_.name = "Untitled";
    if (record_.renderings.empty()) return report_.losses.add("entry without a known colour");
    ++count_;
    (void)builder_.add(record_);
  }

  void take_values(const std::string& element) {
    if (element == "Position") return;
    const auto known =
        std::find_if(known_elements().begin(), known_elements().end(),
                     [&](const Element& candidate) { return candidate.name == element; });
    if (known == known_elements().end()) {
      return report_.losses.add("value of the kind " + element.substr(0, 40));
    }
    Rendering rendering;
    rendering.space = known->space;
    for (const auto& [source, axis] : known->axes) {
      const std::string text = attribute(source);
      double number = 0;
      if (!is_number(text, &number)) {
        return fail(element + " has " + source + " '" + text.substr(0, 40) +
                    "', a number is expected");
      }
      rendering.add(std::string(axis), divided(text, known->divisor));
    }
    if (element == "Gray") {
      const double grey = rendering.coordinates.front().number;
      rendering.add("Green", grey);
      rendering.add("Blue", grey);
    }
    if (element == "RGB" || element == "Gray") report_.assume("RGB and greys are sRGB");
    if (known->space == "CIELab" || known->space == "CIEXYZ") {
      rendering.conditions[Condition::illuminant] = "D50";
      rendering.conditions[Condition::observer] = "2";
    }
    record_.renderings.push_back(std::move(rendering));
  }

  std::string_view xml_;
  Report& report_;
  DocumentBuilder builder_;
  std::unique_ptr<xmlTextReader, ReaderDeleter> reader_;
  std::string error_;
  std::string palette_, group_;
  ColorRecord record_;
  bool is_open_ = false;  // an entry
  std::size_t count_ = 0;
};

// The unpacked colours; false with a sentence.
bool unpack(std::string_view bytes, std::string* xml, std::string* fault) {
  MemoryFile file{std::string(bytes)};
  try {
    CZipArchive archive;
    (void)archive.Open(file, CZipArchive::modeReadOnly);
    for (std::uint16_t i = 0; i < archive.GetCount(); ++i) {
      const CZipFileHeader& entry = *archive.EntryAt(i);
      if (entry.GetFileName() != k_colors_name) continue;
      const std::uint32_t size = entry.uncompressed_size;
      if (size > k_largest || !archive.CanHold(entry) || !archive.OpenEntry(i)) {
        *fault = "colorset.xml in the archive can't be read";
        return false;
      }
      xml->resize(size);
      if (archive.ReadEntry(xml->data(), size) != size || archive.CloseEntry() != 1) {
        *fault = "colorset.xml in the archive is cut";
        return false;
      }
      archive.Close();
      return true;
    }
    *fault = "The archive has no colorset.xml";
  } catch (const CZipException&) {
    *fault = "The file is no archive, or a damaged one";
  }
  return false;
}

}  // namespace

std::unique_ptr<Writer> make_kpl_writer() { return std::make_unique<KplWriter>(); }

Report read_kpl(std::string_view bytes, const ReadOptions& options, Zol* document) {
  Report report;
  std::string xml, fault;
  if (unpack(bytes, &xml, &fault)) {
    KplReader(xml, options, document, &report).read();
  } else {
    report.fail("bad-palette", std::move(fault));
  }
  return report;
}

}  // namespace zol_v2::interchange::internal
