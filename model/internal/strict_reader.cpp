#include "model/internal/strict_reader.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "lmx/entities.h"
#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/runs.h"
#include "lmx/names.h"
#include "lmx/reader.h"
#include "model/internal/document_namespace.h"
#include "model/internal/walkers.h"

namespace zol_v2::internal {

using lmx::c_get_as_utf8;
using lmx::internal::byte_at;
using lmx::internal::has_mask;
using lmx::internal::is_equal_short;
using lmx::internal::is_plain_utf8;
using lmx::internal::load_word;
using lmx::internal::pass_class;
using lmx::internal::pass_plain_run;
using lmx::internal::plain_sequence_length;

namespace {

constexpr std::string_view k_xmlns = "xmlns";
constexpr int k_other_namespace = k_document_namespace_id + 1;

// Every element that is open ends with at least "</", a letter and ">", so that a start tag which
// is nearer to the end than a word cannot be whole.
constexpr std::size_t k_word = sizeof(std::uint64_t);

bool is_space(char c) { return has_mask(c, lmx::internal::k_space); }

const char* skip_more_space(const char* p, const char* end) {
  while (p != end && is_space(*p)) ++p;
  return p;
}

// Mostly there is none, or one line end and an indentation by tabs.
inline const char* skip_space(const char* p, const char* end) {
  if (p == end || byte_at(p) > ' ') return p;
  if (*p == '\r') ++p;
  if (end - p > static_cast<std::ptrdiff_t>(k_word) && *p == '\n') {
    const std::uint64_t others = load_word(p + 1) ^ (lmx::internal::k_ones * '\t');
    if (others != 0) {
      const char* const stop = p + 1 + lmx::internal::lowest_byte(others);
      if (byte_at(stop) > ' ') return stop;
    }
  }
  p = lmx::internal::pass_indentation(p, end);
  return p != end && byte_at(p) > ' ' ? p : skip_more_space(p, end);
}

// The start tag of the name stands before the end tag, so that as much can be read behind it.
inline bool is_same_name(const char* a, const char* b, std::size_t size, const char* end) {
#if ZOL_LANES
  using lmx::internal::Lanes;
  if (size <= 2 * Lanes::k_size && end - a >= 2 * Lanes::k_size) {
    const unsigned low = Lanes(a).equal(Lanes(b));
    const unsigned high = Lanes(a + Lanes::k_size).equal(Lanes(b + Lanes::k_size));
    return (~(low | high << Lanes::k_size) & ((std::uint64_t{1} << size) - 1)) == 0;
  }
#endif
  static_cast<void>(end);
  return is_equal_short(a, b, size);
}

std::string_view view(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

// Values of the types that collapse white space mostly have none.
bool has_blank(std::string_view text) { return text.find(' ') != std::string_view::npos; }

}  // namespace

// Takes back what an element declared, and counts how deep it stands.
class StrictReader::Scope {
 public:
  explicit Scope(StrictReader& reader) : reader_(reader), bindings_(reader.bindings_.size()) {
    ++reader.depth_;
  }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  ~Scope() {
    --reader_.depth_;
    if (reader_.bindings_.size() != bindings_) reader_.forget_bindings(bindings_);
  }

  bool is_too_deep() const { return reader_.depth_ > StrictReader::k_max_depth; }

 private:
  StrictReader& reader_;
  std::size_t bindings_;
};

// The entries of one list, until the list takes them over.
class StrictReader::Entries {
 public:
  Entries(StrictReader& reader, const Row& row)
      : reader_(reader), row_(row), first_(reader.entries_.size()) {}
  Entries(const Entries&) = delete;
  Entries& operator=(const Entries&) = delete;
  ~Entries() {
    for (; reader_.entries_.size() > first_; reader_.entries_.pop_back()) {
      delete_entry(row_, reader_.entries_.back());
    }
  }

  // Room first, so that what is made is never lost.
  void make_room() {
    reader_.entries_.push_back(nullptr);
    reader_.entries_.pop_back();
  }
  void add(void* entry) { reader_.entries_.push_back(entry); }
  void drop_last() {
    delete_entry(row_, reader_.entries_.back());
    reader_.entries_.pop_back();
  }
  void move_to(PointerList& list) {
    list.fill(reader_.entries_.data() + first_,
              static_cast<unsigned>(reader_.entries_.size() - first_), reader_.pool_);
    reader_.entries_.resize(first_);
  }

 private:
  StrictReader& reader_;
  const Row& row_;
  std::size_t first_;
};

inline bool StrictReader::take_end_tag(std::string_view name) {
  const char* const at = at_;
  if (static_cast<std::size_t>(end_ - at) < name.size() + 3 || at[0] != '<' || at[1] != '/' ||
      !is_same_name(at + 2, name.data(), name.size(), end_)) {
    return false;
  }
  at_ = at + name.size() + 3;
  return at_[-1] == '>' || take_late_end();
}

inline bool StrictReader::is_at(const Row& row) const {
  if (!begins_like(row)) return false;
  const std::size_t length = row.name_length;
  if (length > k_word) {
    if (static_cast<std::size_t>(end_ - local_) <= length ||
        load_word(local_ + length - k_word) != row.tail ||
        (length > 2 * k_word && std::memcmp(local_, row.name().data(), length) != 0)) {
      return false;
    }
  }
  return !has_mask(local_[length], lmx::internal::k_name);
}

// The two kinds that most values are of besides, with nothing between.
inline bool StrictReader::store(Object& self, const Row& row, std::string_view text) {
  if (row.kind == Kind::enumerated) {
    if (const int number = row.enumeration->number_of(text)) {
      row.field<const std::wstring*>(self) = &(*row.enumeration)[number];
      Head::touch(self, row.bit);
      return true;
    }
  } else if (row.kind == Kind::text && row.length == 0) {
    row.field<Text>(self).set_narrow(text, &pool_);
    Head::touch(self, row.bit);
    return true;
  }
  return parse_into(self, row, text, &pool_, refuse_) == lmx::elmx_ok;
}

// The row of an attribute whose name and '="' stand here.
inline const Row* StrictReader::attribute_at(const Class& type, const char* name) const {
  const std::uint64_t head = load_word(name);
  for (const Class* level = &type; level != nullptr; level = level->base) {
    for (const Row& row : level->attributes()) {
      const std::size_t length = row.name_length;
      if (((head ^ row.head) & row.filled) == 0 &&
          static_cast<std::size_t>(end_ - name) > length + 1 && name[length] == '=' &&
          name[length + 1] == '"' && (length <= k_word || is_equal_short(name, row.tag, length))) {
        return &row;
      }
    }
  }
  return nullptr;
}

// The rest of a start tag as most are: a blank before each attribute of the class, double quotes,
// and values that stand as they are. False where it is not so, before the first that is otherwise
// or that nothing follows.
inline bool StrictReader::take_plain_attributes(Object& self, const Class& type,
                                                std::uint32_t* seen) {
  while (*at_ == ' ' && !is_near_end(4 * k_word)) {
    const Row* const row = attribute_at(type, at_ + 1);
    if (row == nullptr) return false;
    const std::uint32_t flag = std::uint32_t{1} << row->bit;
    const char* const name = at_ + 1;
    const char* const value = name + row->name_length + 2;
    double number = 0;
    const char* stop = nullptr;
    if ((*seen & flag) != 0) return false;
    if (row->kind == Kind::real &&
        (stop = lmx::internal::read_plain_double(value, end_, &number)) != nullptr &&
        end_ - stop > 1 && *stop == '"') {
      if (check(*row, number) != lmx::elmx_ok) return false;
      row->field<double>(self) = number;
      Head::touch(self, row->bit);
    } else {
      stop = lmx::internal::pass_plain_value(value, end_);
      if (end_ - stop <= 1 || *stop != '"') return false;
      const std::string_view text = view(value, stop);
      if (whitespace_of(*row) != lmx::elmx_preserve && has_blank(text)) return false;
      if (!store(self, *row, text)) return false;
    }
    *seen |= flag;
    last_mode_ = whitespace_of(*row);
    last_value_ = view(value, stop);
    last_name_ = {name, row->name_length};
    last_name_ns_id_ = default_ns_id_;
    at_ = stop + 1;
  }
  if (*at_ != '>') return false;
  ++at_;
  return true;
}

// The text up to the next tag, as the white-space mode has it.
inline bool StrictReader::take_content(lmx::elmx_whitespace mode, std::string_view* text) {
  last_mode_ = mode;
  const char* const stop = pass_plain_run(at_, end_);
  const std::string_view plain = view(at_, stop);
  if (end_ - stop >= 2 && stop[0] == '<' && stop[1] == '/' &&
      (mode == lmx::elmx_preserve || !has_blank(plain))) {
    at_ = stop;
    *text = last_value_ = plain;
    return true;
  }
  return take_treated_content(mode, text);
}

// The content of an element that holds a number, up to the end tag.
inline bool StrictReader::read_real(const Row& row, double* out) {
  double value = 0;
  const char* const number_end = lmx::internal::read_plain_double(at_, end_, &value);
  if (number_end == nullptr || number_end == end_ || *number_end != '<' || number_end + 1 == end_ ||
      number_end[1] != '/') {
    std::string_view text;
    return take_content(lmx::elmx_collapse, &text) &&
           parse(row, text, out, &pool_, refuse_) == lmx::elmx_ok;
  }
  last_value_ = view(at_, number_end);
  last_mode_ = lmx::elmx_collapse;
  at_ = number_end;
  if (check(row, value) != lmx::elmx_ok) return false;
  *out = value;
  return true;
}

inline bool StrictReader::read_content(Object& self, const Row& row, Tag tag) {
  if (row.kind == Kind::real) {
    if (!read_real(row, &row.field<double>(self))) return false;
    Head::touch(self, row.bit);
  } else {
    std::string_view text;
    if (!take_content(whitespace_of(row), &text) || !store(self, row, text)) return false;
  }
  return take_end_tag(tag.view());
}

// --- The document -----------------------------------------------------------------------------

bool StrictReader::read(Object& self, const Class& type) {
  // Which number a foreign namespace has is told by the order of all that were declared.
  return open() && (*at_ == '<' || is_space(*at_)) && read_declaration() && read_root(self, type) &&
         last_name_ns_id_ <= k_document_namespace_id;
}

// Finds the encoding by the first bytes, as the getter does.
bool StrictReader::open() {
  using lmx::internal::SourceEncoding;
  at_ = bytes_.data();
  end_ = at_ + bytes_.size();
  const auto begins_with = [this](std::string_view mark) {
    return bytes_.substr(0, mark.size()) == mark;
  };
  if (bytes_.size() < 4) return false;
  if (begins_with("\xFF\xFE") || begins_with("\xFE\xFF")) {
    at_ += 2;
    return go_on_in(begins_with("\xFF") ? SourceEncoding::utf16_le : SourceEncoding::utf16_be);
  }
  if (begins_with("\xEF\xBB\xBF")) at_ += 3;
  if (bytes_[0] == '\0') return go_on_in(SourceEncoding::utf16_be);
  if (bytes_[1] == '\0') return go_on_in(SourceEncoding::utf16_le);
  return true;
}

// The rest of the text is turned into UTF-8.
bool StrictReader::go_on_in(lmx::internal::SourceEncoding encoding) {
  using lmx::internal::SourceEncoding;
  transcoded_at_ = static_cast<std::size_t>(at_ - bytes_.data());
  if (!lmx::internal::transcode(view(at_, end_), encoding, &transcoded_)) return false;
  encoding_ = encoding == SourceEncoding::latin1     ? c_get_as_utf8::k_latin1
              : encoding == SourceEncoding::utf16_be ? c_get_as_utf8::k_utf16_be
                                                     : c_get_as_utf8::k_utf16_le;
  at_ = transcoded_.data();
  end_ = at_ + transcoded_.size();
  return at_ != end_;
}

lmx::internal::SourceBytes StrictReader::bytes_read() const {
  if (encoding_ == c_get_as_utf8::k_utf8) {
    return {static_cast<std::size_t>(at_ - bytes_.data()), encoding_, extra_lines_};
  }
  const char* const begin = bytes_.data();
  const std::size_t units = lmx::internal::count_units(transcoded_.data(), at_);
  return {transcoded_at_ + units * (encoding_ == c_get_as_utf8::k_latin1 ? 1 : 2), encoding_,
          extra_lines_ + lmx::internal::count_line_ends(begin, begin + transcoded_at_) +
              lmx::internal::count_line_ends(transcoded_.data(), at_)};
}

// The XML declaration, if the document begins with one.
bool StrictReader::read_declaration() {
  constexpr std::string_view k_open = "<?xml";
  if (view(at_, end_).substr(0, k_open.size()) != k_open) return true;
  const std::size_t length = view(at_, end_).find("?>");
  if (length == std::string_view::npos) return false;
  std::string_view rest = view(at_, at_ + length).substr(k_open.size());
  const auto skip = [&rest] {
    while (!rest.empty() && is_space(rest.front())) rest.remove_prefix(1);
  };
  // The value of the part with this name, if it is next.
  const auto take = [&](std::string_view name, std::string_view* value) {
    skip();
    if (rest.substr(0, name.size()) != name) return true;
    rest.remove_prefix(name.size());
    skip();
    if (rest.empty() || rest.front() != '=') return false;
    rest.remove_prefix(1);
    skip();
    if (rest.empty() || (rest.front() != '"' && rest.front() != '\'')) return false;
    const std::size_t close = rest.find(rest.front(), 1);
    if (close == std::string_view::npos) return false;
    *value = rest.substr(1, close - 1);
    rest.remove_prefix(close + 1);
    return true;
  };
  std::string_view version, encoding, standalone;
  if (!take("version", &version) || !take("encoding", &encoding) ||
      !take("standalone", &standalone)) {
    return false;
  }
  skip();
  if (!rest.empty() || (version != "1.0" && version != "1.1") || standalone == "no") return false;
  at_ += length + 2;
  if (encoding.data() == nullptr) return true;
  const auto is_named = [encoding](std::string_view name) {
    return lmx::internal::is_same_encoding_name(encoding, name);
  };
  if (transcoded_.size() != 0) return is_named("UTF-16");
  if (is_named("ISO-8859-1") || is_named("US-ASCII")) {
    return go_on_in(lmx::internal::SourceEncoding::latin1);
  }
  return is_named("UTF-8");
}

bool StrictReader::read_root(Object& self, const Class& type) {
  // Without a prefix, until the root has told it.
  if (!find_tag() || next_ != Next::start_tag) return false;
  const char* const name = at_ + 1;
  const char* const name_end = pass_class(name, end_, lmx::internal::k_ascii_name);
  if (name_end == end_) return false;
  const Tag tag{name, static_cast<std::size_t>(name_end - name)};
  const std::size_t local_at = tag.view().find(':') + 1;
  if (tag.view().substr(local_at) != type.name) return false;
  root_name_ = tag.view();

  const Scope scope(*this);
  at_ = name_end;
  bool is_empty = false;
  count_pushed_back();
  if (!scan_tag(&is_empty) || !set_prefix(tag.view().substr(0, local_at))) return false;
  note_name(tag);
  std::uint32_t seen = 0;
  return apply_attributes(self, type, &seen) && read_opened(self, type, tag, seen, is_empty);
}

// --- Objects ----------------------------------------------------------------------------------

bool StrictReader::read_object(Object& self, const Class& type, Tag tag) {
  note_name(tag);
  at_ = tag.name + tag.size;
  std::uint32_t seen = 0;
  bool is_tag_taken = true;
  if (*at_ == '>') {
    ++at_;
  } else {
    count_pushed_back();
    is_tag_taken = take_plain_attributes(self, type, &seen);
  }
  const Class& content = type.content_class();
  if (is_tag_taken && content.shape == Shape::simple && !is_full()) {
    return (seen & type.required_attributes) == type.required_attributes &&
           read_content(self, content.content(), tag);
  }
  const Scope scope(*this);
  bool is_empty = false;
  if (scope.is_too_deep() || (!is_tag_taken && !scan_tag(&is_empty))) return false;
  if (!is_tag_taken) {
    // A declaration holds for the attributes before it as well.
    if (seen != 0) last_name_ns_id_ = default_ns_id_;
    if (!apply_attributes(self, type, &seen)) return false;
  }
  return read_opened(self, type, tag, seen, is_empty);
}

bool StrictReader::read_opened(Object& self, const Class& type, Tag tag, std::uint32_t seen,
                               bool is_empty) {
  if ((seen & type.required_attributes) != type.required_attributes) return false;
  if (Head::is_nil(self, type)) {
    return is_empty || (find_tag() && next_ == Next::end_tag && take_end_tag(tag.view()));
  }
  const Class& content = type.content_class();
  if (content.shape == Shape::simple) {
    if (!is_empty) return read_content(self, content.content(), tag);
    last_value_ = {};
    return parse_into(self, content.content(), {}, &pool_, refuse_) == lmx::elmx_ok;
  }
  if (is_empty) return !type.is(Class::k_wants_content);
  if (!find_tag()) return false;
  if (next_ == Next::start_tag) {
    return read_children(self, content, seen) && take_end_tag(tag.view());
  }
  return !type.is(Class::k_wants_content) && take_end_tag(tag.view());
}

bool StrictReader::read_children(Object& self, const Class& type, std::uint32_t seen) {
  if (type.shape == Shape::choice) return read_choice(self, type) && next_ == Next::end_tag;
  if (!read_rows(self, type, &seen) || next_ != Next::end_tag) return false;
  return (seen & type.required_to_read) == type.required_to_read;
}

bool StrictReader::read_rows(Object& self, const Class& type, std::uint32_t* seen) {
  if (type.base != nullptr && !read_rows(self, *type.base, seen)) return false;
  for (const Row& row : type.elements()) {
    if (!begins_like(row)) continue;
    if (next_ == Next::end_tag) return true;
    if (row.is_named() ? !is_at(row)
                       : row.kind != Kind::foreign && alternative_at(*row.type) == nullptr) {
      continue;
    }
    if (!read_row(self, row)) return false;
    *seen |= std::uint32_t{1} << row.bit;
  }
  return true;
}

// The row is at hand. Whatever it is, the tag behind it is found.
bool StrictReader::read_row(Object& self, const Row& row) {
  if (row.kind == Kind::foreign) return read_foreign(self, row);
  if (row.is_list) return read_list(self, row);
  bool is_good = false;
  switch (row.kind) {
    case Kind::object:
    case Kind::member:
    case Kind::group:
      is_good = read_child(self, row);
      Head::touch(self, row.bit);
      break;
    case Kind::mark:
      is_good = read_mark(row);
      break;
    default:
      is_good = read_value(self, row);
      break;
  }
  // A group's value has found the tag behind it already.
  return is_good && (row.kind == Kind::group || find_tag());
}

bool StrictReader::read_list(Object& self, const Row& row) {
  Entries entries(*this, row);
  const Row* alternative = nullptr;
  do {
    entries.make_room();
    if (row.is_simple()) {
      std::string_view text;
      lmx::elmx_error error = lmx::elmx_ok;
      if (!take_text(row, &text)) return false;
      void* const value = parse_new(row, text, &pool_, refuse_, &error);
      if (error != lmx::elmx_ok) return false;
      entries.add(value);
    } else {
      Object* const object = row.type->make(&pool_);
      entries.add(object);
      const bool is_good = row.kind == Kind::object
                               ? read_object(*object, *row.type, tag_of(row))
                               : read_holder(*object, *alternative_at(*row.type));
      if (!is_good) return false;
      if (take_ != nullptr && !row.is_required) {
        const bool is_taken = take_(*object);
        entries.drop_last();
        if (!is_taken) return false;
      }
    }
    if (!find_tag()) return false;
    if (next_ == Next::end_tag) break;
    if (row.kind == Kind::member) alternative = alternative_at(*row.type);
  } while (row.kind == Kind::member ? alternative != nullptr : is_at(row));
  entries.move_to(row.field<PointerList>(self));
  return true;
}

bool StrictReader::read_child(Object& self, const Row& row) {
  if (row.kind == Kind::group) return read_choice(row.field<Object>(self), *row.type);
  if (row.is_in_place()) return read_object(row.field<Object>(self), *row.type, tag_of(row));
  Object*& child = row.field<Object*>(self);
  if (child == nullptr) child = row.type->make(&pool_);
  return row.kind == Kind::member ? read_holder(*child, *alternative_at(*row.type))
                                  : read_object(*child, *row.type, tag_of(row));
}

bool StrictReader::read_holder(Object& self, const Row& alternative) {
  const Tag tag = tag_of(alternative);
  Slot slot;
  if (alternative.named_type == NamedType::no) {
    slot.object = alternative.type->make(&pool_);
    put(self, alternative, slot);
    return read_object(*slot.object, *alternative.type, tag);
  }
  const Scope scope(*this);
  if (scope.is_too_deep()) return false;
  note_name(tag);
  at_ = tag.name + tag.size;
  bool is_empty = false;
  int ns_id = 0;
  std::string name;
  count_pushed_back();
  if (!scan_tag(&is_empty) || !find_named_type(&ns_id, &name)) return false;
  if (!name.empty() || ns_id != 0) {
    slot.object = make_named(*alternative.type, ns_id, name, &pool_);
  } else if (alternative.named_type == NamedType::optional) {
    slot.object = alternative.type->make(&pool_);
  }
  if (slot.object == nullptr) return false;
  put(self, alternative, slot);
  const Class& type = Head::class_of(*slot.object);
  std::uint32_t seen = 0;
  return apply_attributes(*slot.object, type, &seen) &&
         read_opened(*slot.object, type, tag, seen, is_empty);
}

// The alternative that is at hand, and the tag behind it.
bool StrictReader::read_choice(Object& self, const Class& type) {
  const Row* const row = alternative_at(type);
  if (row == nullptr) return false;
  if (row->kind == Kind::object) {
    Slot slot;
    slot.object = row->type->make(&pool_);
    put(self, *row, slot);
    return read_object(*slot.object, *row->type, tag_of(*row)) && find_tag();
  }
  std::string_view text;
  return take_text(*row, &text) &&
         parse_alternative(self, *row, text, &pool_, refuse_) == lmx::elmx_ok && find_tag();
}

// An entry is copied by the functions that know every oddity of it. A reader of its own begins at
// the entry and knows the prefixes in force.
bool StrictReader::read_foreign(Object& self, const Row& row) {
  Entries entries(*this, row);
  while (next_ == Next::start_tag) {
    lmx::c_xml_reader_memory reader(at_, static_cast<std::size_t>(end_ - at_));
    for (const Binding& binding : bindings_) {
      // A mapping cannot take the default back.
      if (binding.prefix.empty() && binding.uri.empty()) return false;
      reader.add_namespace_mapping(std::string(binding.prefix), std::string(binding.uri));
    }
    reader.set_ns_map(document_ns_map());
    lmx::c_xml_reader_local scope(reader);
    lmx::elmx_error error = lmx::elmx_ok;
    reader.get_element_event(nullptr, &error, &reader.name);
    if (reader.get_current_event() != lmx::elxp_name) return false;
    auto element = make_owned_in<AnyElement>(&pool_);
    element->full_name = reader.name;
    reader.get_namespace(reader.name, &element->namespace_uri);
    if (!reader.get_any_element(*reader.get_reader_local(), reader.name, &element->text) ||
        reader.get_error() != lmx::elmx_ok) {
      return false;
    }
    const auto size = static_cast<std::size_t>(reader.bytes_read());
    extra_lines_ += reader.get_line_no() - 1 - lmx::internal::count_line_ends(at_, at_ + size);
    for (int id = k_document_namespace_id + 1; reader.find_namespace_from_id(id) != nullptr; ++id) {
      declared_.emplace_back(reader.find_namespace_from_id(id));
    }
    last_name_ = {at_ + 1, element->full_name.size()};
    last_name_ns_id_ = reader.get_ns_id();
    at_ += size;
    entries.make_room();
    entries.add(element.release());
    if (!find_tag()) return false;
  }
  entries.move_to(row.field<PointerList>(self));
  return true;
}

bool StrictReader::read_mark(const Row& row) {
  const Tag tag = tag_of(row);
  note_name(tag);
  at_ = tag.name + tag.size;
  if (*at_ != '>') return take_end_of_empty_tag();
  // Not even a comment may stand in it.
  at_ = skip_space(at_ + 1, end_);
  return take_end_tag(tag.view());
}

// --- Values -----------------------------------------------------------------------------------

bool StrictReader::read_value(Object& self, const Row& row) {
  if (row.kind == Kind::real) {
    const Tag tag = tag_of(row);
    if (tag.name[tag.size] == '>') {
      note_name(tag);
      at_ = tag.name + tag.size + 1;
      if (!read_real(row, &row.field<double>(self)) || !take_end_tag(tag.view())) return false;
      Head::touch(self, row.bit);
      return true;
    }
  }
  std::string_view text;
  return take_text(row, &text) && store(self, row, text);
}

bool StrictReader::take_text(const Row& row, std::string_view* text) {
  const Tag tag = tag_of(row);
  note_name(tag);
  at_ = tag.name + tag.size;
  if (*at_ != '>') {
    count_pushed_back();
    at_ = skip_space(at_, end_);
    if (is_near_end(1)) return false;
    if (*at_ == '/') {
      *text = last_value_ = {};
      return take_end_of_empty_tag();
    }
    // Attributes here are passed over unseen, which no honest document asks for.
    if (*at_ != '>') return false;
  }
  ++at_;
  return take_content(whitespace_of(row), text) && take_end_tag(tag.view());
}

// A text that does not stand in the document as it is read.
bool StrictReader::take_treated_content(lmx::elmx_whitespace mode, std::string_view* text) {
  treated_.clear();
  pending_space_ = false;
  const char* at = at_;
  while (at != end_) {
    if (*at == '<') {
      if (end_ - at < 2) return false;
      if (at[1] != '!' && at[1] != '?') break;
      if (!treat_markup(&at)) return false;
      continue;
    }
    const char* const next = std::find(at, end_, '<');
    if (!treat(view(at, next), mode)) return false;
    at = next;
  }
  if (at == end_ || end_ - at < 2 || at[1] != '/') return false;
  at_ = at;
  *text = last_value_ = treated_;
  return true;
}

// A comment, an instruction or a CDATA section within a text.
bool StrictReader::treat_markup(const char** at) {
  constexpr std::string_view k_cdata = "<![CDATA[";
  if (view(*at, end_).substr(0, k_cdata.size()) != k_cdata) {
    at_ = *at;
    if (!(at_[1] == '?' ? skip_instruction() : skip_comment())) return false;
    *at = at_;
    return true;
  }
  const std::string_view rest = view(*at + k_cdata.size(), end_);
  const std::size_t size = rest.find("]]>");
  if (size == std::string_view::npos) return false;
  // The section is taken as it is, but for its line ends.
  const char* p = rest.data();
  const char* const stop = p + size;
  if (!is_plain_utf8(p, stop)) return false;
  for (; p != stop; ++p) {
    if (*p != '\r') {
      treated_.push_back(*p);
    } else if (p + 1 == stop || p[1] != '\n') {
      treated_.push_back('\n');
    }
  }
  *at = stop + 3;
  return true;
}

// A stretch of source text without markup, added to the treated one.
bool StrictReader::treat(std::string_view source, lmx::elmx_whitespace mode) {
  const char* at = source.data();
  const char* const end = at + source.size();
  while (at != end) {
    const char c = *at;
    if (c == '&') {
      if (!treat_reference(&at, end, mode)) return false;
    } else if (c == '\r') {
      ++at;
      if (at == end || *at != '\n') treat_character('\n', mode);
    } else if (c == '\0') {
      return false;
    } else if (byte_at(at) < 0x80) {
      treat_character(c, mode);
      ++at;
    } else {
      int length = plain_sequence_length(at, end);
      if (length == 0) return false;
      for (; length != 0; --length) treat_character(*at++, mode);
    }
  }
  return true;
}

void StrictReader::treat_character(char c, lmx::elmx_whitespace mode) {
  if (mode == lmx::elmx_collapse) {
    if (is_space(c)) {
      pending_space_ = true;
      return;
    }
    if (pending_space_ && !treated_.empty()) treated_.push_back(' ');
    pending_space_ = false;
  }
  treated_.push_back(c);
}

// "&" and what it refers to: a character by its number, or one of the five. As on the other road,
// the five and what lies beyond ASCII do not end a run of white space that is being collapsed.
bool StrictReader::treat_reference(const char** at, const char* end, lmx::elmx_whitespace mode) {
  constexpr std::size_t k_longest = 12;
  const std::string_view rest = view(*at + 1, end).substr(0, k_longest);
  const std::size_t length = rest.find(';');
  if (length == std::string_view::npos || length == 0) return false;
  const std::string_view name = rest.substr(0, length);
  *at += length + 2;
  if (name[0] == '#') {
    const bool is_hex = name.size() > 1 && name[1] == 'x';
    const std::string_view digits = name.substr(is_hex ? 2 : 1);
    unsigned value = 0;
    const auto result =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, is_hex ? 16 : 10);
    const bool is_whole = result.ec == std::errc() && result.ptr == digits.data() + digits.size();
    constexpr unsigned k_last = 0x100000;
    if (!is_whole || value == 0 || value > k_last || (value >= 0xD800 && value < 0xE000)) {
      return false;
    }
    if (value == 0x85 || value == 0x2028) value = '\n';
    if (value < 0x80) {
      treat_character(static_cast<char>(value), mode);
    } else {
      char sequence[5];
      treated_ += lmx::unicode_char_to_utf8(static_cast<int>(value), sequence);
    }
    return true;
  }
  const char character = lmx::internal::predefined_entity(name);
  if (character == '\0') return false;
  treated_.push_back(character);
  return true;
}

// --- Tags -------------------------------------------------------------------------------------

bool StrictReader::find_tag() {
  const char* const p = skip_space(at_, end_);
  at_ = p;
  if (is_near_end(2 * k_word + prefix_.size())) return find_other_tag();
  const std::uint64_t word = load_word(p);
  if ((word & prefix_mask_) == prefix_word_ && has_short_prefix_) {
    next_ = Next::start_tag;
    local_ = p + 1 + prefix_.size();
    local_head_ = load_word(local_);
    return true;
  }
  if ((word & 0xFFFF) == ('<' | '/' << 8)) {
    next_ = Next::end_tag;
    forget_name();
    return true;
  }
  return find_other_tag();
}

// Whatever else may come: comments and instructions, a start tag with another prefix or a long one
// or none, and tags so near to the end that no whole words can be looked at.
bool StrictReader::find_other_tag() {
  while (true) {
    if (end_ - at_ < 4 || *at_ != '<') return false;
    if (at_[1] == '!') {
      if (!skip_comment()) return false;
    } else if (at_[1] == '?') {
      // What begins like a declaration is taken for one.
      if (view(at_ + 2, end_).substr(0, 3) == "xml" || !skip_instruction()) return false;
    } else {
      break;
    }
    at_ = skip_space(at_, end_);
  }
  next_ = at_[1] == '/' ? Next::end_tag : Next::start_tag;
  forget_name();
  if (next_ == Next::end_tag) return true;
  // Of start tags only the root of a document of a few bytes stands so near to the end.
  if (is_near_end(2 * k_word + prefix_.size())) return depth_ == 0;
  if (view(at_ + 1, end_).substr(0, prefix_.size()) == prefix_) {
    local_ = at_ + 1 + prefix_.size();
    local_head_ = load_word(local_);
  }
  return true;
}

// Documents repeat themselves: what followed an alternative the last time is a good guess.
const Row* StrictReader::alternative_at(const Class& type) {
  const Rows rows = type.alternatives();
  const auto is_one = [rows](const Row* row) { return row >= rows.first && row < rows.last; };
  if (local_ == matched_at_ && is_one(matched_)) return matched_;
  const Row* found = matched_ == nullptr ? nullptr : followers_[matched_->bit];
  if (!is_one(found) || !is_at(*found)) {
    found = std::find_if(rows.first, rows.last, [this](const Row& row) { return is_at(row); });
    if (found == rows.last) return nullptr;
  }
  if (matched_ != nullptr) followers_[matched_->bit] = found;
  matched_ = found;
  matched_at_ = local_;
  return found;
}

bool StrictReader::scan_tag(bool* is_empty) {
  attributes_.clear();
  while (true) {
    at_ = skip_space(at_, end_);
    if (is_near_end(2)) return false;
    if (*at_ == '>') {
      ++at_;
      return true;
    }
    if (*at_ == '/') {
      *is_empty = true;
      return take_end_of_empty_tag();
    }
    if (!scan_attribute()) return false;
  }
}

bool StrictReader::scan_attribute() {
  const char* const name = at_;
  if (!has_mask(*name, lmx::internal::k_name_start) || byte_at(name) >= 0x80) return false;
  at_ = pass_class(name, end_, lmx::internal::k_ascii_name);
  if (is_near_end(3)) return false;
  Attribute attribute{view(name, at_), {}};
  count_pushed_back();
  at_ = skip_space(at_, end_);
  if (is_near_end(3) || *at_ != '=') return false;
  at_ = skip_space(at_ + 1, end_);
  if (is_near_end(2) || (*at_ != '"' && *at_ != '\'')) return false;
  const char quote = *at_++;
  const auto* const close =
      static_cast<const char*>(std::memchr(at_, quote, static_cast<std::size_t>(end_ - at_)));
  if (close == nullptr || !is_plain_utf8(at_, close)) return false;
  attribute.value = view(at_, close);
  at_ = close + 1;
  if (attribute.name.substr(0, k_xmlns.size()) == k_xmlns &&
      (attribute.name.size() == k_xmlns.size() || attribute.name[k_xmlns.size()] == ':')) {
    return declare(attribute);
  }
  attributes_.push_back(attribute);
  return true;
}

bool StrictReader::declare(const Attribute& attribute) {
  const std::string_view prefix =
      attribute.name.substr(std::min(attribute.name.size(), k_xmlns.size() + 1));
  // References and line ends in it, a prefix of the format with a new meaning, and more of them
  // than are looked through one by one, are rare enough.
  constexpr std::size_t k_most = 32;
  if (bindings_.size() == k_most ||
      attribute.value.find_first_of("&\r") != std::string_view::npos || prefix == "xml" ||
      prefix.find(':') != std::string_view::npos) {
    return false;
  }
  const bool is_ours = attribute.value == k_document_namespace;
  if (depth_ > 1 && !is_ours &&
      prefix == prefix_.substr(0, prefix_.empty() ? 0 : prefix_.size() - 1)) {
    return false;
  }
  bindings_.push_back({prefix, attribute.value});
  // Looked for only then, since a tag may declare very many.
  if (prefix.empty()) default_ns_id_ = ns_id_of({});
  const bool undeclares = prefix.empty() && attribute.value.empty();
  if (!undeclares) declared_.emplace_back(attribute.value);
  return true;
}

bool StrictReader::apply_attributes(Object& self, const Class& type, std::uint32_t* seen) {
  for (const Attribute& attribute : attributes_) {
    if (!apply_attribute(self, type, attribute, seen)) return false;
  }
  return true;
}

bool StrictReader::apply_attribute(Object& self, const Class& type, const Attribute& attribute,
                                   std::uint32_t* seen) {
  last_name_ = attribute.name;
  const std::size_t colon = attribute.name.find(':');
  if (colon != std::string_view::npos) {
    last_name_ns_id_ = ns_id_of(attribute.name.substr(0, colon));
    if (last_name_ns_id_ != lmx::k_ns_xsi) return false;
    if (attribute.name.substr(colon + 1) != "nil" || !type.is_nillable()) return true;
    std::string_view value;
    if (!read_tag_value(attribute, lmx::elmx_collapse, &value)) return false;
    if (value == "true" || value == "1") {
      Head::touch(self, type.nil_bit);
    } else if (Head::has(self, type.nil_bit)) {
      return false;  // said twice
    }
    return true;
  }
  last_name_ns_id_ = default_ns_id_;
  for (const Class* level = &type; level != nullptr; level = level->base) {
    for (const Row& row : level->attributes()) {
      if (row.name_length != attribute.name.size() ||
          !is_equal_short(row.tag, attribute.name.data(), row.name_length)) {
        continue;
      }
      const std::uint32_t flag = std::uint32_t{1} << row.bit;
      if ((*seen & flag) != 0) return false;
      *seen |= flag;
      std::string_view value;
      return read_tag_value(attribute, whitespace_of(row), &value) &&
             parse_into(self, row, value, &pool_, refuse_) == lmx::elmx_ok;
    }
  }
  return false;
}

bool StrictReader::read_tag_value(const Attribute& attribute, lmx::elmx_whitespace mode,
                                  std::string_view* value) {
  last_mode_ = mode;
  const std::string_view source = attribute.value;
  const bool needs_treatment = std::any_of(source.begin(), source.end(), [mode](char c) {
    return c == '&' || c == '\r' || (mode == lmx::elmx_collapse && is_space(c));
  });
  if (!needs_treatment) {
    *value = last_value_ = source;
    return true;
  }
  treated_.clear();
  pending_space_ = false;
  if (!treat(source, mode)) return false;
  *value = last_value_ = treated_;
  return true;
}

bool StrictReader::find_named_type(int* ns_id, std::string* name) {
  for (const Attribute& attribute : attributes_) {
    const std::size_t colon = attribute.name.find(':');
    if (colon == std::string_view::npos || attribute.name.substr(colon + 1) != "type" ||
        ns_id_of(attribute.name.substr(0, colon)) != lmx::k_ns_xsi) {
      continue;
    }
    std::string_view value;
    if (!read_tag_value(attribute, lmx::elmx_preserve, &value)) return false;
    const std::size_t split = value.find(':');
    const std::size_t local_at = split == std::string_view::npos ? 0 : split + 1;
    *ns_id = ns_id_of(value.substr(0, local_at == 0 ? 0 : local_at - 1));
    if (*ns_id == 0 && local_at == 0) *ns_id = lmx::k_ns_none;
    name->assign(value.substr(local_at));
    // The work string holds the local name now.
    treated_ = *name;
    last_value_ = treated_;
    return *ns_id != 0;
  }
  return true;
}

// Behind the byte that should have ended an end tag.
bool StrictReader::take_late_end() {
  at_ = skip_more_space(at_ - 1, end_);
  if (at_ == end_ || *at_ != '>') return false;
  ++at_;
  return true;
}

bool StrictReader::take_end_of_empty_tag() {
  count_pushed_back();
  at_ = skip_space(at_, end_);
  if (at_ == end_ || *at_ != '/') return false;
  at_ = skip_space(at_ + 1, end_);
  if (at_ == end_ || *at_ != '>') return false;
  ++at_;
  return true;
}

// --- What is passed over ----------------------------------------------------------------------

bool StrictReader::skip_comment() {
  constexpr std::string_view k_open = "<!--";
  if (view(at_, end_).substr(0, k_open.size()) != k_open) return false;
  const char* const begin = at_ + k_open.size();
  const std::size_t size = view(begin, end_).find("-->");
  if (size == std::string_view::npos) return false;
  // A third dash at the end is reported by the other road.
  if (size != 0 && begin[size - 1] == '-') return false;
  if (!is_plain_utf8(begin, begin + size)) return false;
  at_ = begin + size + 3;
  return true;
}

bool StrictReader::skip_instruction() {
  const char* const begin = at_ + 2;
  const std::size_t size = view(begin, end_).find("?>");
  if (size == std::string_view::npos || !is_plain_utf8(begin, begin + size)) return false;
  // The other road looks for "xml" first, and counts a line end that it pushes back again.
  const char* target = begin;
  for (const char c : {'x', 'm', 'l'}) target += *target == c ? 1 : 0;
  if (*target == '\n' || *target == '\r') return false;
  at_ = begin + size + 2;
  return true;
}

// --- Namespaces -------------------------------------------------------------------------------

bool StrictReader::set_prefix(std::string_view prefix) {
  if (ns_id_of(prefix.substr(0, prefix.empty() ? 0 : prefix.size() - 1)) !=
      k_document_namespace_id) {
    return false;
  }
  prefix_ = prefix;
  has_short_prefix_ = !prefix.empty() && prefix.size() < k_word;
  for (std::size_t i = 0; i < prefix.size() && i + 1 < k_word; ++i) {
    prefix_word_ |= std::uint64_t{byte_at(&prefix[i])} << (8 * (i + 1));
    prefix_mask_ = prefix_mask_ << 8 | 0xFF;
  }
  return true;
}

void StrictReader::forget_bindings(std::size_t left) {
  bindings_.resize(left);
  default_ns_id_ = ns_id_of({});
}

// Namespaces that nobody looks for have no number of their own here.
int StrictReader::ns_id_of(std::string_view prefix) const {
  if (prefix == "xml") return lmx::k_ns_xml;
  const auto binding = std::find_if(bindings_.rbegin(), bindings_.rend(),
                                    [&](const Binding& b) { return b.prefix == prefix; });
  if (binding == bindings_.rend()) return lmx::k_ns_not_found;
  if (binding->uri == k_document_namespace) return k_document_namespace_id;
  if (binding->uri == lmx::k_xsi_uri) return lmx::k_ns_xsi;
  return prefix.empty() && binding->uri.empty() ? lmx::k_ns_none : k_other_namespace;
}

}  // namespace zol_v2::internal
