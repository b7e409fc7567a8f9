// Palettes of GIMP, variables of style sheets, and what all palettes have in common.
#include "interchange/internal/palettes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <set>
#include <utility>

#include "interchange/internal/values.h"
#include "port/wide_text.h"

namespace zol_v2::interchange::internal {

namespace {

constexpr std::string_view k_between = " / ";
constexpr double k_most = 255;

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

// --- GIMP ----------------------------------------------------------------------------------------

constexpr std::string_view k_gimp = "GIMP Palette";
constexpr std::string_view k_untitled = "Untitled";  // as that program names what has no name

class GplWriter : public PaletteWriter {
 protected:
  void print(const std::vector<Swatch>& swatches, std::string* bytes) override {
    *bytes += std::string(k_gimp) + "\nName: " + in_line(title()) + "\nColumns: 0\n#\n";
    std::set<std::string_view> groups;
    for (const Swatch& swatch : swatches) {
      const std::array<unsigned, 3> rgb = bytes_of(swatch);
      char line[32];
      std::snprintf(line, sizeof line, "%3u %3u %3u\t", rgb[0], rgb[1], rgb[2]);
      const std::string name = in_line(swatch.name);
      *bytes += line + (name.empty() ? std::string(k_untitled) : name) + '\n';
      groups.insert(swatch.group);
    }
    if (groups.size() > 1) losses().add("group of colours", groups.size());
  }
};

class GplReader {
 public:
  GplReader(std::string_view text, const ReadOptions& options, Zol* document, Report* report)
      : text_(text),
        report_(*report),
        builder_(document, building_options(options), text, report) {}

  void read() {
    std::size_t at = text_.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
    if (trimmed(next_line(&at)) != k_gimp) {
      return fail("The file does not begin with '" + std::string(k_gimp) + "'", 0);
    }
    report_.assume("RGB is sRGB");
    while (at < text_.size() && report_) {
      const std::size_t begin = at;
      take_line(next_line(&at), begin);
    }
    if (report_ && count_ == 0) fail("The palette has no colours", text_.size());
  }

 private:
  void fail(std::string sentence, std::size_t offset) {
    report_.fail("bad-palette", std::move(sentence), place_of(text_, offset));
  }

  std::string_view next_line(std::size_t* at) const {
    const std::size_t end = std::min(text_.find('\n', *at), text_.size());
    const std::string_view line = text_.substr(*at, end - *at);
    *at = std::min(end + 1, text_.size());
    return line;
  }

  void take_line(std::string_view line, std::size_t offset) {
    constexpr std::string_view k_name = "Name:", k_columns = "Columns:";
    if (!zol::port::is_utf8(line.data(), line.size())) return fail("The line is no UTF-8", offset);
    if (trimmed(line).empty() || line.front() == '#') return;
    if (count_ == 0 && line.substr(0, k_name.size()) == k_name) {
      name_ = trimmed(line.substr(k_name.size()));
      return;
    }
    if (count_ == 0 && line.substr(0, k_columns.size()) == k_columns) return;
    std::array<unsigned, 3> rgb = {};
    std::string_view rest = line;
    for (unsigned& channel : rgb) {
      rest = rest.substr(std::min(rest.find_first_not_of(" \t"), rest.size()));
      const auto parsed = std::from_chars(rest.data(), rest.data() + rest.size(), channel);
      if (parsed.ec != std::errc() || channel > k_most) {
        return fail("Three numbers from 0 to 255 are expected, and a name",
                    offset + static_cast<std::size_t>(rest.data() - line.data()));
      }
      rest.remove_prefix(static_cast<std::size_t>(parsed.ptr - rest.data()));
    }
    ColorRecord record;
    set_group(name_, &record);
    record.name = trimmed(rest);
    if (record.name.empty()) record.name = k_untitled;
    record.offset = offset;
    record.renderings.emplace_back();
    record.renderings.back().space = "SRGB";
    set_bytes(rgb, '.', &record.renderings.back());
    ++count_;
    (void)builder_.add(record);
  }

  std::string_view text_;
  Report& report_;
  DocumentBuilder builder_;
  std::string name_;
  std::size_t count_ = 0;
};

// --- Style sheets --------------------------------------------------------------------------------

class CssWriter : public PaletteWriter {
 protected:
  void print(const std::vector<Swatch>& swatches, std::string* bytes) override {
    *bytes += ":root {\n";
    std::string group;
    std::set<std::string> names;
    for (const Swatch& swatch : swatches) {
      if (swatch.group != group) *bytes += "  /* " + comment(swatch.group) + " */\n";
      group = swatch.group;
      const std::array<unsigned, 3> rgb = bytes_of(swatch);
      char hex[8];
      std::snprintf(hex, sizeof hex, "#%02x%02x%02x", rgb[0], rgb[1], rgb[2]);
      *bytes += "  --" + unique(identifier(swatch.name), &names) + ": " + hex + ";\n";
    }
    *bytes += "}\n";
  }

 private:
  static std::string comment(std::string_view text) {
    std::string result = flat(text);
    for (std::size_t at; (at = result.find("*/")) != std::string::npos;) result.insert(at + 1, " ");
    return result;
  }
  // Small letters, digits and what is not ASCII, with hyphens between.
  static std::string identifier(const std::string& name) {
    std::string result;
    for (const char c : name) {
      const bool is_kept = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c & 0x80) != 0;
      if (c >= 'A' && c <= 'Z') {
        result += static_cast<char>(c + ('a' - 'A'));
      } else if (is_kept) {
        result += c;
      } else if (!result.empty() && result.back() != '-') {
        result += '-';
      }
    }
    if (!result.empty() && result.back() == '-') result.pop_back();
    return result.empty() ? "color" : result;
  }
  static std::string unique(const std::string& name, std::set<std::string>* names) {
    std::string result = name;
    for (unsigned number = 2; !names->insert(result).second; ++number) {
      result = name + '-' + std::to_string(number);
    }
    return result;
  }
};

}  // namespace

// --- What all have in common ---------------------------------------------------------------------

void PaletteWriter::add_document(const Zol&, std::string_view) { display_.forget_document(); }

void PaletteWriter::add_record(const ColorRecord& record, std::string_view) {
  const auto rgb = display_.rgb_of(record, &report());
  if (!rgb) return losses().add("colour without sRGB");
  for (const Rendering& rendering : record.renderings) {
    if (rendering.space != "SRGB") losses().add("rendering in " + rendering.space);
  }
  if (!record.number.empty()) losses().add("ColorNumber");
  if (!record.id.empty()) losses().add("UniqueID");
  if (!record.comments.empty()) losses().add("Comments");
  swatches_.push_back({group_name(record), record.name, *rgb});
}

void PaletteWriter::finish_records(std::string* bytes) {
  if (swatches_.empty()) {
    report().fail("no-colours", "No colour is known to look like anything");
  } else {
    print(swatches_, bytes);
  }
}

std::array<unsigned, 3> PaletteWriter::bytes_of(const Swatch& swatch) {
  constexpr double k_close = 1e-6;
  std::array<unsigned, 3> bytes = {};
  bool is_rounded = false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const double exact = std::clamp(swatch.rgb[i], 0.0, 1.0) * k_most;
    bytes[i] = static_cast<unsigned>(std::lround(exact));
    is_rounded |= std::abs(exact - bytes[i]) > k_close;
  }
  if (is_rounded) losses().add("colour with more than eight bits");
  return bytes;
}

std::string PaletteWriter::title() const {
  const std::string& group = swatches_.front().group;
  return group.empty() ? "Colours" : group;
}

std::string PaletteWriter::in_line(std::string_view name) {
  const std::string line = flat(name);
  if (line != name) losses().add("line break or tab in a name");
  const std::string_view inner = trimmed(line);
  if (inner.size() != line.size()) losses().add("blank around a name");
  return std::string(inner);
}

std::string group_name(const ColorRecord& record) {
  if (record.part.empty() || record.part == record.group) return record.group;
  if (record.group.empty()) return record.part;
  return record.group + std::string(k_between) + record.part;
}

void set_group(std::string_view name, ColorRecord* record) {
  if (name.empty()) return;
  const std::size_t between = name.find(k_between);
  record->kind = PlaceKind::palette;
  record->group = name.substr(0, between);
  record->part = between == std::string_view::npos ? name : name.substr(between + k_between.size());
}

std::string flat(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return result;
}

DocumentBuilder::Options building_options(const ReadOptions& options) {
  DocumentBuilder::Options building;
  building.time = options.time;
  building.source = options.source;
  building.default_conditions = options.conditions;
  return building;
}

std::unique_ptr<Writer> make_gpl_writer() { return std::make_unique<GplWriter>(); }
std::unique_ptr<Writer> make_css_writer() { return std::make_unique<CssWriter>(); }

Report read_gpl(std::string_view text, const ReadOptions& options, Zol* document) {
  Report report;
  GplReader(text, options, document, &report).read();
  return report;
}

}  // namespace zol_v2::interchange::internal
