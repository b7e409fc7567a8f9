// Adobe Swatch Exchange. A file is "ASEF", a version, a number of blocks, and the blocks, all
// numbers with their greatest byte first. A block is its type, its length and its content; groups
// begin and end with blocks of their own. Names are UTF-16 with a zero behind them, and their
// length counts that.
#include <cstring>
#include <utility>

#include "interchange/internal/palettes.h"
#include "interchange/internal/values.h"
#include "port/wide_text.h"

namespace zol_v2::interchange::internal {

namespace {

constexpr std::string_view k_magic = "ASEF";
constexpr std::uint16_t k_group_start = 0xC001;
constexpr std::uint16_t k_group_end = 0xC002;
constexpr std::uint16_t k_color = 0x0001;
constexpr std::uint16_t k_normal = 2;  // a swatch that is neither global nor a spot colour

// --- Writing -------------------------------------------------------------------------------------

template <class Number>
void put(Number number, std::string* bytes) {
  for (int shift = 8 * (sizeof number - 1); shift >= 0; shift -= 8) {
    *bytes += static_cast<char>((number >> shift) & 0xFF);
  }
}

void put_float(double value, std::string* bytes) {
  const float single = static_cast<float>(value);
  std::uint32_t bits = 0;
  std::memcpy(&bits, &single, sizeof bits);
  put(bits, bytes);
}

std::string name_bytes(const std::string& name) {
  constexpr std::size_t k_longest = 0xFFFE;
  std::wstring wide = zol::port::from_utf8(name.data(), name.size());
  if (wide.size() > k_longest) wide.resize(k_longest);
  std::string bytes;
  put(static_cast<std::uint16_t>(wide.size() + 1), &bytes);
  for (const wchar_t unit : wide) put(static_cast<std::uint16_t>(unit), &bytes);
  put(std::uint16_t{0}, &bytes);
  return bytes;
}

class AseWriter : public PaletteWriter {
 protected:
  void print(const std::vector<Swatch>& swatches, std::string* bytes) override {
    std::string group;
    for (const Swatch& swatch : swatches) {
      if (swatch.group != group) {
        if (!group.empty()) add_block(k_group_end, {});
        group = swatch.group;
        if (!group.empty()) add_block(k_group_start, name_bytes(group));
      }
      std::string content = name_bytes(swatch.name) + "RGB ";
      for (const double channel : swatch.rgb) put_float(channel, &content);
      put(k_normal, &content);
      add_block(k_color, content);
    }
    if (!group.empty()) add_block(k_group_end, {});
    *bytes += k_magic;
    put(std::uint16_t{1}, bytes);
    put(std::uint16_t{0}, bytes);
    put(count_, bytes);
    *bytes += blocks_;
  }

 private:
  void add_block(std::uint16_t type, const std::string& content) {
    put(type, &blocks_);
    put(static_cast<std::uint32_t>(content.size()), &blocks_);
    blocks_ += content;
    ++count_;
  }

  std::string blocks_;
  std::uint32_t count_ = 0;
};

// --- Reading -------------------------------------------------------------------------------------

// Remembers that it went past the end, and gives zeros from there.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::size_t at() const { return at_; }
  std::size_t left() const { return bytes_.size() - at_; }
  bool is_good() const { return is_good_; }

  std::string_view take(std::size_t count) {
    if (count > left()) {
      is_good_ = false;
      return {};
    }
    at_ += count;
    return bytes_.substr(at_ - count, count);
  }
  template <class Number>
  Number number() {
    Number result = 0;
    for (const char byte : take(sizeof result)) {
      result = static_cast<Number>((result << 8) | static_cast<unsigned char>(byte));
    }
    return result;
  }
  float real() {
    const std::uint32_t bits = number<std::uint32_t>();
    float result = 0;
    std::memcpy(&result, &bits, sizeof result);
    return result;
  }
  std::string name() {
    const std::size_t count = number<std::uint16_t>();
    std::wstring wide;
    for (std::size_t i = 0; i < count && is_good_; ++i) {
      const wchar_t unit = static_cast<wchar_t>(number<std::uint16_t>());
      if (unit != 0) wide += unit;
    }
    return narrow_text(wide);
  }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
  bool is_good_ = true;
};

struct Model {
  std::string_view name;
  std::string_view space;
  std::vector<std::pair<std::string_view, double>> axes;  // with what stands for 1
};

const Model* find_model(std::string_view name) {
  static const std::vector<Model> models = {
      {"RGB ", "SRGB", {{"Red", 1}, {"Green", 1}, {"Blue", 1}}},
      {"Gray", "SRGB", {{"Red", 1}}},
      {"CMYK", "CMYK", {{"Cyan", 0.01}, {"Magenta", 0.01}, {"Yellow", 0.01}, {"Black", 0.01}}},
      {"LAB ", "CIELab", {{"L", 0.01}, {"A", 1}, {"B", 1}}},
  };
  for (const Model& model : models) {
    if (model.name == name) return &model;
  }
  return nullptr;
}

class AseReader {
 public:
  AseReader(std::string_view bytes, const ReadOptions& options, Zol* document, Report* report)
      : file_(bytes), report_(*report), builder_(document, building(options), bytes, report) {}

  void read() {
    if (file_.take(k_magic.size()) != k_magic) return fail("The file does not begin with ASEF", 0);
    (void)file_.take(4);
    const std::uint32_t blocks = file_.number<std::uint32_t>();
    for (std::uint32_t i = 0; i < blocks && report_; ++i) read_block();
    if (report_ && count_ == 0) fail("The file has no colours", file_.at());
  }

 private:
  static DocumentBuilder::Options building(const ReadOptions& options) {
    DocumentBuilder::Options building = building_options(options);
    building.is_tolerant = true;
    return building;
  }

  // A file of bytes has neither lines nor columns.
  void fail(const std::string& sentence, std::size_t offset) {
    report_.fail("bad-palette", sentence + ", at byte " + std::to_string(offset),
                 {1, offset + 1, offset});
  }

  void read_block() {
    const std::size_t begin = file_.at();
    const std::uint16_t type = file_.number<std::uint16_t>();
    const std::uint32_t length = file_.number<std::uint32_t>();
    if (!file_.is_good() || length > file_.left()) {
      return fail("The file ends within a block", begin);
    }
    Bytes block(file_.take(length));
    if (type == k_group_start) {
      group_ = block.name();
    } else if (type == k_group_end) {
      group_.clear();
    } else if (type == k_color) {
      read_color(&block, begin);
    } else {
      report_.losses.add("block of an unknown type");
    }
    if (!block.is_good()) fail("The block is too short for what it holds", begin);
  }

  void read_color(Bytes* block, std::size_t offset) {
    ColorRecord record;
    record.name = block->name();
    record.offset = offset;
    set_group(group_, &record);
    const std::string_view name = block->take(4);
    const Model* const model = find_model(name);
    if (!block->is_good()) return;
    ++count_;
    if (model == nullptr) {
      return report_.losses.add("colour of the model " + flat(name.substr(0, 4)));
    }
    Rendering rendering;
    rendering.space = model->space;
    rendering.offset = offset;
    for (const auto& [axis, divisor] : model->axes) {
      // Its own digits, and not those of the number of twice its size that is nearest.
      const std::string digits = number_text(block->real());
      rendering.add(std::string(axis), divided(digits, divisor));
    }
    if (name == "Gray") {
      const double grey = rendering.coordinates.front().number;
      rendering.add("Green", grey);
      rendering.add("Blue", grey);
      report_.assume("greys are sRGB");
    }
    if (rendering.space == "SRGB") report_.assume("RGB is sRGB");
    if (rendering.space == "CIELab") {
      rendering.conditions[Condition::illuminant] = "D50";
      rendering.conditions[Condition::observer] = "2";
      report_.assume("Lab is of D50 and 2 degrees");
    }
    record.renderings.push_back(std::move(rendering));
    (void)block->number<std::uint16_t>();
    if (block->is_good()) (void)builder_.add(record);
  }

  Bytes file_;
  Report& report_;
  DocumentBuilder builder_;
  std::string group_;
  std::size_t count_ = 0;
};

}  // namespace

std::unique_ptr<Writer> make_ase_writer() { return std::make_unique<AseWriter>(); }

Report read_ase(std::string_view bytes, const ReadOptions& options, Zol* document) {
  Report report;
  AseReader(bytes, options, document, &report).read();
  return report;
}

}  // namespace zol_v2::interchange::internal
