#include "tools/unwritable.h"

#include <ostream>
#include <streambuf>
#include <string>
#include <utility>

#include "lmx/writer.h"
#include "model/Zol.h"
#include "tools/element_lines.h"

namespace {

// Takes written XML, keeps none of it, and knows which elements are open. A writer that fails stops
// where it is, so these are the way down to the object that it could not write.
class OpenElements : public std::streambuf {
 public:
  explicit OpenElements(std::string root) { levels_.push_back({std::move(root), {}}); }

  // The innermost open element, and the children that it has by now.
  const std::string& path() const { return levels_.back().path; }
  const std::map<std::string, unsigned>& counts() const { return levels_.back().counts; }

 protected:
  int_type overflow(int_type byte) override {
    if (byte != traits_type::eof()) take(traits_type::to_char_type(byte));
    return traits_type::not_eof(byte);
  }
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    for (std::streamsize i = 0; i < count; ++i) take(bytes[i]);
    return count;
  }

 private:
  enum class State { text, tag_begin, name, attributes, quoted, end_tag, aside };
  struct Level {
    std::string path;
    std::map<std::string, unsigned> counts;
  };

  void take(char c) {
    switch (state_) {
      case State::text:
        if (c == '<') state_ = State::tag_begin;
        break;
      case State::tag_begin:
        begin_tag(c);
        break;
      case State::name:
        if (c != ' ' && c != '>' && c != '/') {
          name_ += c;
          break;
        }
        levels_.push_back({child_path(path(), name_, ++levels_.back().counts[name_]), {}});
        state_ = State::attributes;
        [[fallthrough]];
      case State::attributes:
        take_in_tag(c);
        break;
      case State::quoted:
        if (c == quote_) state_ = State::attributes;
        break;
      case State::end_tag:
        if (c == '>') close();
        break;
      case State::aside:  // the declaration; a foreign element is copied without comments
        if (c == '>') state_ = State::text;
        break;
    }
    last_ = c;
  }

  void begin_tag(char c) {
    name_.clear();
    state_ = c == '/' ? State::end_tag : c == '!' || c == '?' ? State::aside : State::name;
    if (state_ == State::name) name_ += c;
  }

  void take_in_tag(char c) {
    if (c == '"' || c == '\'') {
      quote_ = c;
      state_ = State::quoted;
    } else if (c == '>') {
      last_ == '/' ? close() : static_cast<void>(state_ = State::text);
    }
  }

  void close() {
    state_ = State::text;
    if (levels_.size() > 1) levels_.pop_back();
  }

  State state_ = State::text;
  char last_ = '\0';
  char quote_ = '"';
  std::string name_;
  std::vector<Level> levels_;
};

// Tries the objects of one document. What was tried is taken out of its parent, so that the parent
// is tried for what else is in it.
class Trial {
 public:
  void run(zol_v2::Zol& document) {
    const std::string root = std::string("/") + zol_v2::Zol::k_element_name;
    for (unsigned i = 0; i < document.size_Color(); ++i) {
      attempt(document.get_Color(i), root, "Zol:Color", i);
    }
    for (unsigned i = 0; i < document.size_Palette(); ++i) {
      run(document.get_Palette(i), child_path(root, "Zol:Palette", i + 1));
      attempt(document.get_Palette(i), root, "Zol:Palette", i);
    }
    for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
      attempt(document.get_ColorQualityControl(i), root, "Zol:ColorQualityControl", i);
    }
    document.clear_Color();
    document.clear_Palette();
    document.clear_ColorQualityControl();
    attempt_frame(document, root);
  }

  std::vector<ElementPlace> places;
  std::vector<lmx::elmx_error> codes;

 private:
  void run(zol_v2::PaletteType& palette, const std::string& path) {
    for (unsigned i = 0; i < palette.size_ColorSet(); ++i) {
      zol_v2::ColorSetType& set = palette.get_ColorSet(i);
      const std::string set_path = child_path(path, "Zol:ColorSet", i + 1);
      for (unsigned j = 0; j < set.size_Color(); ++j) {
        attempt(set.get_Color(j), set_path, "Zol:Color", j);
      }
      set.clear_Color();
      attempt(set, path, "Zol:ColorSet", i);
    }
    palette.clear_ColorSet();
  }

  template <class T>
  void attempt(const T& object, const std::string& parent, const char* name, unsigned index) {
    OpenElements open(parent);
    std::ostream stream(&open);
    lmx::c_xml_writer writer(stream, "", "");
    const lmx::elmx_error code = object.marshal(writer, name);
    if (code == lmx::elmx_ok) return;
    if (open.path() == parent) {
      note(code, {child_path(parent, name, index + 1), false, {}, 0});
      return;
    }
    // Written alone, the object is the first of its name.
    std::string path = open.path();
    const std::string alone = child_path(parent, name, 1);
    path.replace(0, alone.size(), child_path(parent, name, index + 1));
    note(code, {std::move(path), true, open.counts(), 0});
  }

  void attempt_frame(const zol_v2::Zol& document, const std::string& root) {
    OpenElements open("");
    std::ostream stream(&open);
    lmx::c_xml_writer writer(stream, "", "");
    const lmx::elmx_error code = document.marshal(writer, zol_v2::Zol::k_element_name);
    if (code == lmx::elmx_ok) return;
    std::string path = open.path();
    const std::string first = child_path("", zol_v2::Zol::k_element_name, 1);
    path.replace(0, first.size(), root);
    note(code, {std::move(path), true, open.counts(), 0});
  }

  void note(lmx::elmx_error code, ElementPlace place) {
    codes.push_back(code);
    places.push_back(std::move(place));
  }
};

}  // namespace

std::vector<Fault> find_unwritable(zol_v2::Zol& document, const DocumentText& text) {
  Trial trial;
  trial.run(document);
  if (trial.places.empty()) return {};

  find_elements(text.data(), text.size(), &trial.places);
  std::vector<Fault> faults;
  for (std::size_t i = 0; i < trial.places.size(); ++i) {
    const ElementPlace& place = trial.places[i];
    faults.push_back(make_fault(place.line, trial.codes[i], place.path));
  }
  return faults;
}
