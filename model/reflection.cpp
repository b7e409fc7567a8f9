#include "model/reflection.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/runs.h"
#include "model/internal/values.h"
#include "model/internal/walkers.h"

namespace zol_v2::reflection {

using internal::Class;
using internal::Head;
using internal::PointerList;
using internal::Slot;
using lmx::elmx_error;

namespace {

template <class T>
const T& at(const void* field) {
  return *static_cast<const T*>(field);
}

// Where the slot of a choice keeps the value of a row.
const void* place_in(const Slot& slot, Kind kind) {
  switch (kind) {
    case Kind::text:
      return slot.text;
    case Kind::enumerated:
      return slot.enumerated;
    case Kind::object:
      return slot.object;
    default:
      return &slot;
  }
}

// Where a single row that is no alternative keeps its value.
const void* place_in(const Object& object, const internal::Row& row) {
  switch (row.kind) {
    case Kind::enumerated:
      return &internal::text_of(row.field<const std::wstring*>(object));
    case Kind::object:
    case Kind::member:
    case Kind::group: {
      if (row.is_in_place()) return &row.field<Object>(object);
      const Object* const child = row.field<Object*>(object);
      return child != nullptr ? child : &row.type->empty();
    }
    default:
      return &row.field<char>(object);
  }
}

// UTF-16 to UTF-8, which ends where the writer's does: at a high surrogate without its partner.
void append_utf8(std::string* out, const std::wstring& text) {
  const auto is_surrogate = [&](std::size_t i, unsigned first) {
    return i < text.size() && (static_cast<unsigned>(text[i]) & ~0x3FFu) == first;
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!is_surrogate(i, 0xD800)) continue;
    if (!is_surrogate(++i, 0xDC00)) return lmx::internal::append_narrow(out, text.substr(0, i - 1));
  }
  lmx::internal::append_narrow(out, text);
}

}  // namespace

// --- Types and rows ------------------------------------------------------------------------------

TypeRange all_types() { return {internal::k_classes, internal::k_class_count}; }

Type find_type(std::string_view name) {
  for (const Type type : all_types()) {
    if (type.name() == name) return type;
  }
  return {};
}

Row Type::row(std::string_view name) const {
  for (const Row row : rows()) {
    if (row.name() == name) return row;
  }
  return {};
}

Row Type::content() const {
  const Class& type = table_->content_class();
  return type.shape == Shape::simple ? Row(type.content()) : Row();
}

std::unique_ptr<Object> Type::make() const {
  return std::unique_ptr<Object>(table_->make(nullptr));
}

void RowRange::Iterator::advance() {
  while (at_ == end_) {
    if (level_ != type_) {
      const Class* below = type_;
      while (below->base != level_) below = below->base;
      enter(below);
    } else if (part_ != last_) {
      part_ = static_cast<Part>(part_ + 1);
      enter(root());
    } else {
      *this = Iterator();
      return;
    }
  }
}

std::string_view Row::name() const {
  std::string_view name = table_->name();
  if (place() == Place::content) name.remove_prefix(name.find(':') + 1);
  return name;
}

bool Row::collapses() const {
  return is_simple() && internal::whitespace_of(*table_) == lmx::elmx_collapse;
}

// --- Values --------------------------------------------------------------------------------------

double Value::number() const {
  return row_ != nullptr && row_->kind == Kind::real ? at<double>(at_)
                                                     : static_cast<double>(integer());
}

std::int64_t Value::integer() const {
  if (row_ == nullptr) return 0;
  switch (row_->kind) {
    case Kind::int32:
      return at<int>(at_);
    case Kind::uint32:
      return at<unsigned>(at_);
    case Kind::uint8:
      return at<unsigned char>(at_);
    default:
      return 0;
  }
}

bool Value::truth() const { return row_ != nullptr && row_->kind == Kind::truth && at<bool>(at_); }

const internal::Text* Value::text_field() const {
  const bool is_field = row_ != nullptr && row_->kind == Kind::text && !row_->is_list &&
                        row_->place != Place::alternative;
  return is_field ? static_cast<const internal::Text*>(at_) : nullptr;
}

const std::wstring& Value::text() const {
  if (const internal::Text* const field = text_field()) return field->get();
  const bool is_text =
      row_ != nullptr && (row_->kind == Kind::text || row_->kind == Kind::enumerated);
  return is_text ? at<std::wstring>(at_) : internal::empty_value<std::wstring>();
}

bool Value::narrow_text(std::string_view* utf8) const {
  const internal::Text* const field = text_field();
  return field != nullptr && field->get_narrow(utf8);
}

int Value::number_in_enumeration() const {
  return row_ != nullptr && row_->kind == Kind::enumerated
             ? row_->enumeration->number_at(static_cast<const std::wstring*>(at_))
             : 0;
}

const lmx::c_datetime& Value::date() const {
  return row_ != nullptr && row_->kind == Kind::datetime ? at<lmx::c_datetime>(at_)
                                                         : internal::empty_value<lmx::c_datetime>();
}

const lmx::c_binary& Value::bytes() const {
  return row_ != nullptr && row_->kind == Kind::binary ? at<lmx::c_binary>(at_)
                                                       : internal::empty_value<lmx::c_binary>();
}

const AnyElement& Value::foreign() const {
  return row_ != nullptr && row_->kind == Kind::foreign ? at<AnyElement>(at_)
                                                        : internal::empty_value<AnyElement>();
}

const Object* Value::object() const {
  return row_ != nullptr && row_->type != nullptr ? static_cast<const Object*>(at_) : nullptr;
}

void Value::append_text(std::string* out) const {
  if (row_ == nullptr) return;
  char buffer[lmx::internal::k_max_datetime_text];
  const char* end = buffer;
  switch (row_->kind) {
    case Kind::text:
    case Kind::enumerated: {
      std::string_view utf8;
      if (!narrow_text(&utf8)) return append_utf8(out, text());
      out->append(utf8);
      return;
    }
    case Kind::real:
      end = lmx::internal::format_double(number(), buffer);
      break;
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      end = std::to_chars(buffer, buffer + sizeof buffer, integer()).ptr;
      break;
    case Kind::truth:
      out->append(truth() ? "true" : "false");
      return;
    case Kind::datetime:
      end = lmx::internal::format_datetime(date(), buffer);
      break;
    case Kind::binary:
      return lmx::internal::append_base64(out, bytes());
    default:
      return;
  }
  out->append(buffer, static_cast<std::size_t>(end - buffer));
}

void Value::append_exact_text(std::string* out) const {
  if (row_ == nullptr) return;
  char buffer[lmx::internal::k_max_datetime_text];
  const char* end = buffer;
  if (row_->kind == Kind::real) {
    end = lmx::internal::format_exact_double(number(), buffer);
  } else if (row_->kind == Kind::datetime) {
    end = lmx::internal::format_exact_datetime(date(), buffer);
  } else {
    return append_text(out);
  }
  out->append(buffer, static_cast<std::size_t>(end - buffer));
}

// --- Looking at objects --------------------------------------------------------------------------

unsigned ConstRef::count(Row row) const {
  const internal::Row& table = row.table();
  if (table.is_list) return table.field<PointerList>(*object_).size();
  if (table.place == Place::alternative) return chosen() == row ? 1 : 0;
  // A mark is always written, and nothing is known of it.
  return table.kind == Kind::mark || Head::has(*object_, table.bit) ? 1 : 0;
}

Value ConstRef::value(Row row, unsigned index) const {
  const internal::Row& table = row.table();
  if (table.is_list) {
    const PointerList& list = table.field<PointerList>(*object_);
    return index < list.size() ? Value(table, list[index]) : Value();
  }
  if (index != 0) return {};
  if (table.place != Place::alternative) return {table, place_in(*object_, table)};
  if (chosen() != row) return {};
  const void* const held = place_in(table.field<Slot>(*object_), table.kind);
  return held != nullptr ? Value(table, held) : Value();
}

Row ConstRef::chosen() const {
  const Class& type = type_of(*object_).table().content_class();
  if (!type.is_choice()) return {};
  const internal::Rows rows = type.alternatives();
  const int chosen = Head::chosen(*object_);
  return chosen >= 0 && chosen < rows.last - rows.first ? Row(rows.first[chosen]) : Row();
}

// --- Changing objects ----------------------------------------------------------------------------

namespace {

// A zero and what is no UTF-8 stand in no document.
bool is_text_of_documents(std::string_view text) {
  constexpr std::string_view k_next_line = "\xC2\x85";
  constexpr std::string_view k_line_separator = "\xE2\x80\xA8";
  const char* const end = text.data() + text.size();
  const char* p = text.data();
  while (p != end) {
    const std::string_view rest(p, static_cast<std::size_t>(end - p));
    std::size_t length = 1;
    if (rest.substr(0, 2) == k_next_line) {
      length = 2;
    } else if (rest.substr(0, 3) == k_line_separator) {
      length = 3;
    } else if (*p == '\0') {
      return false;
    } else if (lmx::internal::byte_at(p) >= 0x80) {
      length = static_cast<std::size_t>(lmx::internal::plain_sequence_length(p, end));
    }
    if (length == 0) return false;
    p += length;
  }
  return true;
}

constexpr std::string_view k_white_space = " \t\n\r";

std::string collapsed(std::string_view text) {
  std::string result;
  std::size_t begin = text.find_first_not_of(k_white_space);
  while (begin != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(k_white_space, begin), text.size());
    if (!result.empty()) result += ' ';
    result.append(text.substr(begin, end - begin));
    begin = text.find_first_not_of(k_white_space, end);
  }
  return result;
}

// A text as it stands in the document, for a row.
template <class Store>
elmx_error with_text(Row row, std::string_view text, const Store& store) {
  if (!row.is_simple()) return lmx::elmx_undefined;
  if (!is_text_of_documents(text)) return lmx::elmx_bad_char_encoding;
  internal::RefuseFaults faults;
  if (!row.collapses()) return store(text, faults);
  const std::string treated = collapsed(text);
  return store(std::string_view(treated), faults);
}

}  // namespace

elmx_error Ref::set_text(Row row, std::string_view text) const {
  return with_text(row, text, [&](std::string_view treated, internal::Faults& faults) {
    const internal::Row& table = row.table();
    if (table.place == Place::alternative) {
      return internal::parse_alternative(*object_, table, treated, nullptr, faults);
    }
    if (!table.is_list) return internal::parse_into(*object_, table, treated, nullptr, faults);
    PointerList& list = table.field<PointerList>(*object_);
    list.reserve(list.size() + 1);
    elmx_error error = lmx::elmx_ok;
    void* const entry = internal::parse_new(table, treated, nullptr, faults, &error);
    if (error == lmx::elmx_ok) list.push_back(entry);
    return error;
  });
}

elmx_error Ref::set_text(Row row, unsigned index, std::string_view text) const {
  if (!row.is_list() || index >= ConstRef(*this).count(row)) return lmx::elmx_undefined;
  return with_text(row, text, [&](std::string_view treated, internal::Faults& faults) {
    const internal::Row& table = row.table();
    return internal::parse(table, treated, table.field<PointerList>(*object_)[index], nullptr,
                           faults);
  });
}

Ref Ref::child(Row row, unsigned index) const {
  const internal::Row& table = row.table();
  if (table.type == nullptr) return {};
  if (table.is_list) {
    const PointerList& list = table.field<PointerList>(*object_);
    return index < list.size() ? Ref(*static_cast<Object*>(list[index])) : Ref();
  }
  if (index != 0) return {};
  if (table.place == Place::alternative) return choose(row);
  if (!table.is_in_place()) {
    Object*& held = table.field<Object*>(*object_);
    if (held == nullptr) internal::make_child(held, *table.type);
    Head::touch(*object_, table.bit);
    return *held;
  }
  Head::touch(*object_, table.bit);
  return table.field<Object>(*object_);
}

Ref Ref::append(Row row) const {
  const internal::Row& table = row.table();
  if (!table.is_list || table.type == nullptr) return {};
  return internal::append_object(table.field<PointerList>(*object_), *table.type);
}

Ref Ref::choose(Row alternative) const {
  const internal::Row& table = alternative.table();
  if (table.place != Place::alternative || table.type == nullptr) return {};
  return internal::choose(*object_, table);
}

Ref Ref::choose(Row alternative, Type type) const {
  if (type == alternative.type()) return choose(alternative);
  if (alternative.named_type() == NamedType::no) return {};
  for (const Type named : alternative.type().named_types()) {
    if (named != type) continue;
    Slot slot;
    slot.object = type.table().make(nullptr);
    internal::select(*object_, alternative.table(), slot);
    return *slot.object;
  }
  return {};
}

bool Ref::unset(Row row) const {
  const internal::Row& table = row.table();
  if (table.is_list) {
    while (remove(row, ConstRef(*this).count(row) - 1)) continue;
    return true;
  }
  if (table.place == Place::alternative) {
    if (!ConstRef(*this).has(row)) return true;
    internal::deselect(*object_);
    return true;
  }
  if (table.is_required || table.kind == Kind::mark) return false;
  Head::flags(*object_) &= ~(std::uint32_t{1} << table.bit);
  return true;
}

bool Ref::remove(Row row, unsigned index) const {
  const internal::Row& table = row.table();
  if (!table.is_list) return false;
  PointerList& list = table.field<PointerList>(*object_);
  if (index >= list.size()) return false;
  void* const gone = list[index];
  list.erase(index);
  internal::delete_entry(table, gone);
  return true;
}

bool Ref::set_nil(bool is_nil) const {
  const Class& type = type_of(*object_).table();
  if (!type.is_nillable()) return false;
  const std::uint32_t flag = std::uint32_t{1} << type.nil_bit;
  std::uint32_t& flags = Head::flags(*object_);
  flags = is_nil ? flags | flag : flags & ~flag;
  return true;
}

elmx_error Ref::read(lmx::c_xml_reader& reader, const std::string& name) const {
  return internal::read_element(*object_, type().table(), reader, name);
}

bool Ref::read_member(lmx::c_xml_reader& reader, std::string* name, elmx_error* error) const {
  *error = lmx::elmx_ok;
  const Class& table = type().table();
  return internal::is_member(table, reader) &&
         internal::read_member(*object_, table, reader, name, error);
}

// --- Children ------------------------------------------------------------------------------------

void Items::Iterator::settle() {
  while (!is_at_end()) {
    const Row row = *rows_;
    for (; item_.entry < count_; ++item_.entry) {
      item_.way = row;
      if (!row.is_transparent()) {
        item_.owner = item_.parent;
        item_.row = row;
        item_.index = item_.entry;
        // A holder that was given no object has nothing to show.
        if (row.place() != Place::alternative || item_.value()) return;
        continue;
      }
      item_.owner = item_.parent.value(row, item_.entry).child();
      item_.row = item_.owner.chosen();
      item_.index = 0;
      if (item_.row && item_.value()) return;
    }
    ++rows_;
    item_.entry = 0;
    count_ = is_at_end() ? 0 : item_.parent.count(*rows_);
  }
}

unsigned Item::number() const {
  if (!way) return 1;
  if (!way.is_transparent()) return entry + 1;
  unsigned number = 1;
  for (unsigned i = 0; i < entry; ++i) {
    if (parent.value(way, i).child().chosen() == row) ++number;
  }
  return number;
}

void Item::append_step(std::string* out) const {
  if (row) out->push_back('/');
  if (row && row.place() == Place::content) {
    out->append("text()");
    return;
  }
  if (row && row.is_attribute()) out->push_back('@');
  out->append(name());
  if (!way || !way.is_list()) return;
  const unsigned which = number();
  if (which > 1 || !way.is_transparent()) {
    out->append("[").append(std::to_string(which)).append("]");
  }
}

// --- Paths ---------------------------------------------------------------------------------------

namespace {

Item item_in(ConstRef parent, Row row, unsigned entry) {
  return {parent, row, entry, parent, row, entry};
}

// The item that a row of the parent has there, if the step means it.
PathError find_in_row(ConstRef parent, Row row, const Step& step, Item* item) {
  const bool is_hidden = parent.is_nil();
  if (!row.is_transparent()) {
    if (row.name() != step.name) return PathError::no_such_row;
    *item = item_in(parent, row, step.number - 1);
    return !is_hidden && step.number <= parent.count(row) ? PathError::none : PathError::not_there;
  }
  const Row alternative = row.type().row(step.name);
  if (!alternative) return PathError::no_such_row;
  unsigned number = 0;
  for (unsigned i = 0; !is_hidden && i < parent.count(row); ++i) {
    const ConstRef holder = parent.value(row, i).child();
    if (holder.chosen() != alternative || !holder.value(alternative)) continue;
    *item = {holder, alternative, 0, parent, row, i};
    if (++number == step.number) return PathError::none;
  }
  return PathError::not_there;
}

PathError find_in(ConstRef parent, const Step& step, Item* item) {
  if (step.is_content) {
    const Row row = parent.type().content();
    if (!row) return PathError::no_such_row;
    *item = item_in(parent, row, 0);
    return parent.has(row) && !parent.is_nil() ? PathError::none : PathError::not_there;
  }
  if (step.is_attribute) {
    for (const Row row : parent.type().attributes()) {
      if (row.name() != step.name) continue;
      *item = item_in(parent, row, 0);
      return parent.has(row) ? PathError::none : PathError::not_there;
    }
    return PathError::no_such_row;
  }
  for (const Row row : parent.type().elements()) {
    if (row.place() == Place::content) continue;
    const PathError error = find_in_row(parent, row, step, item);
    if (error != PathError::no_such_row) return error;
  }
  return PathError::no_such_row;
}

Item root_item(ConstRef root) {
  Item item;
  item.owner = root;
  item.parent = root;
  return item;
}

// The way down from a root to an object, in the order of documents.
class Search {
 public:
  explicit Search(ConstRef root) : root_(root) {}

  bool run(ConstRef object) {
    if (root_ == object) return true;
    way_.push_back(root_.children().begin());
    while (!way_.empty()) {
      Items::Iterator& at = way_.back();
      if (at.is_at_end()) {
        way_.pop_back();
        if (!way_.empty()) ++way_.back();
        continue;
      }
      if (at->owner == object && at->owner != at->parent) {
        held_ = *at;
        way_.pop_back();  // a holder or group: its parent is meant
        return true;
      }
      const ConstRef child = at->object();
      if (child == object) return true;
      if (child) {
        way_.push_back(child.children().begin());
      } else {
        ++at;
      }
    }
    return false;
  }

  void append_path(std::string* out) const {
    root_item(root_).append_step(out);
    for (const Items::Iterator& at : way_) at->append_step(out);
  }
  // What the object holds, if it is a holder or group.
  const Item& held() const { return held_; }

 private:
  ConstRef root_;
  std::vector<Items::Iterator> way_;
  Item held_;
};

}  // namespace

bool parse_step(std::string_view text, Step* step) {
  *step = Step();
  step->is_content = text == "text()";
  if (step->is_content) return true;
  step->is_attribute = text.substr(0, 1) == "@";
  if (step->is_attribute) text.remove_prefix(1);
  const std::size_t bracket = text.find('[');
  step->name = text.substr(0, bracket);
  if (step->name.empty() || step->name.find_first_of("]()@") != std::string_view::npos) {
    return false;
  }
  if (bracket == std::string_view::npos) return true;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data() + bracket + 1, end, step->number);
  step->is_numbered = true;
  return error == std::errc() && step->number != 0 && end - rest == 1 && *rest == ']' &&
         !step->is_attribute;
}

Found find(ConstRef root, std::string_view path) {
  Found found;
  found.item = root_item(root);
  bool is_first = true;
  for (std::size_t begin = 0; begin <= path.size(); is_first = false) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    found.at = begin;
    Step step;
    if (!parse_step(path.substr(begin, end - begin), &step)) {
      found.error = PathError::malformed;
    } else if (is_first) {
      const bool is_root = step.name == root.type().name() && !step.is_attribute &&
                           !step.is_content && step.number == 1;
      if (!is_root) found.error = PathError::other_root;
    } else {
      const ConstRef parent = found.item.object();
      found.error = parent ? find_in(parent, step, &found.item) : PathError::no_such_row;
    }
    if (!found) return found;
    begin = end + 1;
  }
  return found;
}

Ref find_object(Ref root, std::string_view path) {
  const Found found = find(root, path);
  const ConstRef object = found ? found.item.object() : ConstRef();
  // Whatever a tree holds may be changed by whoever may change its root.
  return object ? Ref(const_cast<Object&>(object.object())) : Ref();
}

bool append_path(ConstRef root, ConstRef object, std::string* out) {
  Search search(root);
  if (!search.run(object)) return false;
  search.append_path(out);
  return true;
}

bool append_path(ConstRef root, ConstRef object, Row row, unsigned index, std::string* out) {
  Search search(root);
  if (!search.run(object)) return false;
  search.append_path(out);
  if (row == search.held().row) {
    search.held().append_step(out);
  } else if (!row.is_transparent()) {
    item_in(object, row, index).append_step(out);
  }
  return true;
}

}  // namespace zol_v2::reflection
