#include "model/internal/walkers.h"

#include <utility>

#include "lmx/internal/pool.h"
#include "lmx/internal/reader_state.h"
#include "lmx/reader.h"
#include "model/internal/document_namespace.h"
#include "model/internal/object.h"
#include "model/internal/values.h"

namespace zol_v2::internal {

using lmx::c_xml_reader;
using lmx::elmx_error;

namespace {

constexpr lmx::s_event_map k_no_rows[] = {{0, nullptr, 0, lmx::elxp_unknown}};

// Gives the name at hand the event of the first of these rows that bears it.
void tokenise(c_xml_reader& reader, Rows rows, lmx::elxp_attr_elem kind) {
  // Names of the instance namespace have events of their own; any other gets 1.
  reader.tokenise(k_no_rows, kind);
  if (reader.get_current_event() != lmx::elxp_unknown) return;
  const bool is_ours = kind == lmx::elxp_attribute
                           ? !reader.get_has_ns_prefix()
                           : reader.get_element_ns_id() == k_document_namespace_id;
  if (!is_ours) return;
  const std::string_view name = reader.get_local_view();
  for (const Row& row : rows) {
    if (row.is_named() && row.name() == name) return reader.restore_event(row.event);
  }
}

// Where something is read, for whoever finds fault with it: the item is an element or attribute,
// the line that of its row.
class Site final : public Faults {
 public:
  Site(c_xml_reader& reader, const std::string& item, int line)
      : reader_(reader), item_(item), line_(line) {}

  // The verdict of the reader's handler.
  elmx_error judge(elmx_error code) override {
    return reader_.handle_error(code, item_, k_model_source, line_);
  }

 private:
  c_xml_reader& reader_;
  const std::string& item_;
  int line_;
};

// Moves to what follows an element, which is looked for among these rows.
elmx_error next_event(c_xml_reader& reader, Rows rows, std::string& name, int line) {
  elmx_error error = lmx::elmx_ok;
  reader.get_element_event(nullptr, &error, &name);
  if (reader.get_current_event() == lmx::elxp_name) tokenise(reader, rows, lmx::elxp_element);
  return error == lmx::elmx_ok ? error : Site(reader, name, line).judge(error);
}

// The rows of one class, each asked for in turn.
class BodyReader {
 public:
  BodyReader(Object& self, const Class& type, c_xml_reader& reader, std::string& name)
      : self_(self), rows_(type.elements()), reader_(reader), name_(name) {}

  elmx_error run() {
    tokenise_from(rows_.first);
    for (const Row& row : rows_) {
      if (const elmx_error error = read(row)) return error;
    }
    return lmx::elmx_ok;
  }

 private:
  elmx_error read(const Row& row) {
    switch (row.kind) {
      case Kind::object:
        return row.is_list ? read_children(row) : read_child(row);
      case Kind::member:
        return row.is_list ? read_holders(row) : read_holder(row);
      case Kind::group:
        return read_group(row);
      case Kind::foreign:
        return read_foreign(row);
      case Kind::mark:
        return read_mark(row);
      default:
        return row.is_list ? read_values(row) : read_value(row);
    }
  }

  elmx_error read_value(const Row& row) {
    if (!is_at(row)) return absent(row);
    Site site(reader_, name_, row.line);
    if (const elmx_error error = fetch(row, site)) return error;
    if (const elmx_error error = parse_into(self_, row, reader_.value, &reader_.pool(), site)) {
      return error;
    }
    return next(row, &row + 1);
  }

  elmx_error read_values(const Row& row) {
    if (!is_at(row)) return absent(row);
    Site site(reader_, name_, row.line);
    PointerList& list = row.field<PointerList>(self_);
    while (is_at(row)) {
      if (const elmx_error error = fetch(row, site)) return error;
      list.reserve(list.size() + 1);
      elmx_error error = lmx::elmx_ok;
      void* const value = parse_new(row, reader_.value, &reader_.pool(), site, &error);
      if (error != lmx::elmx_ok) return error;
      list.push_back(value);
      if ((error = next(row, &row)) != lmx::elmx_ok) return error;
    }
    return lmx::elmx_ok;
  }

  elmx_error read_child(const Row& row) {
    if (!is_at(row)) return absent(row);
    Object& child = row.is_in_place() ? row.field<Object>(self_) : made_child(row);
    if (const elmx_error error = read_element(child, *row.type, reader_, name_)) return error;
    Head::touch(self_, row.bit);
    return next(row, &row + 1);
  }

  elmx_error read_children(const Row& row) {
    if (!is_at(row)) return absent(row);
    while (is_at(row)) {
      if (const elmx_error error = read_element(appended(row), *row.type, reader_, name_)) {
        return error;
      }
      if (const elmx_error error = next(row, &row)) return error;
    }
    return lmx::elmx_ok;
  }

  // Members of substitution groups. Their names stand in the holder's table and not in this one. A
  // missing one is never reported, not even where it is required.
  elmx_error read_holder(const Row& row) {
    return internal::is_member(*row.type, reader_) ? read_member_of(row, made_child(row))
                                                   : lmx::elmx_ok;
  }
  elmx_error read_holders(const Row& row) {
    while (internal::is_member(*row.type, reader_)) {
      elmx_error error = lmx::elmx_ok;
      if (!internal::read_member(appended(row), *row.type, reader_, &name_, &error)) return error;
    }
    tokenise_from(&row + 1);
    return lmx::elmx_ok;
  }
  // An anonymous group is required: 21 without an item if none of its values is at hand.
  elmx_error read_group(const Row& row) {
    if (!internal::is_member(*row.type, reader_)) {
      return Site(reader_, std::string(), row.line).judge(lmx::elmx_mandatory_element_missing);
    }
    return read_member_of(row, row.field<Object>(self_));
  }
  elmx_error read_member_of(const Row& row, Object& holder) {
    elmx_error error = lmx::elmx_ok;
    if (!internal::read_member(holder, *row.type, reader_, &name_, &error)) return error;
    Head::touch(self_, row.bit);
    tokenise_from(&row + 1);
    return lmx::elmx_ok;
  }

  // An empty element that nobody asks for.
  elmx_error read_mark(const Row& row) {
    if (!is_at(row)) return lmx::elmx_ok;
    if (!reader_.skip_rest_of_empty_element(name_)) {
      const elmx_error error = Site(reader_, name_, row.line).judge(lmx::elmx_bad_end_of_element);
      if (error != lmx::elmx_ok) return error;
    }
    return next(row, &row + 1);
  }

  // Every element that is still there, as text.
  elmx_error read_foreign(const Row& row) {
    PointerList& list = row.field<PointerList>(self_);
    while (reader_.is_current_event_tokenisable()) {
      auto element = make_owned_in<AnyElement>(&reader_.pool());
      element->full_name = name_;
      reader_.get_namespace(name_, &element->namespace_uri);
      if (!reader_.get_any_element(*reader_.get_reader_local(), name_, &element->text)) {
        const elmx_error error = Site(reader_, name_, row.line).judge(lmx::elmx_bad_element_value);
        if (error != lmx::elmx_ok) return error;
      }
      list.reserve(list.size() + 1);
      list.push_back(element.release());
      if (const elmx_error error = next(row, &row)) return error;
    }
    return lmx::elmx_ok;
  }

  Object& made_child(const Row& row) {
    Object*& child = row.field<Object*>(self_);
    if (child == nullptr) child = row.type->make(&reader_.pool());
    return *child;
  }
  Object& appended(const Row& row) {
    PointerList& list = row.field<PointerList>(self_);
    list.reserve(list.size() + 1);
    Object* const object = row.type->make(&reader_.pool());
    list.push_back(object);
    return *object;
  }

  bool is_at(const Row& row) const { return reader_.get_current_event() == row.event; }

  void tokenise_from(const Row* row) {
    if (reader_.is_current_event_tokenisable()) {
      tokenise(reader_, {row, rows_.last}, lmx::elxp_element);
    }
  }
  // Moves to what follows, which is looked for from the given row on.
  elmx_error next(const Row& row, const Row* from) {
    return next_event(reader_, {from, rows_.last}, name_, row.line);
  }
  elmx_error absent(const Row& row) {
    if (!row.is_required) return lmx::elmx_ok;
    return Site(reader_, row.tag, row.line).judge(lmx::elmx_mandatory_element_missing);
  }
  // The text of a simple row goes to the work string.
  elmx_error fetch(const Row& row, Site& site) {
    bool was_empty = false;
    elmx_error error = lmx::elmx_ok;
    if (reader_.get_simple_type_value(name_, whitespace_of(row), &reader_.value, &error,
                                      &was_empty)) {
      return lmx::elmx_ok;
    }
    return site.judge(row.is_list ? lmx::elmx_bad_element_value : error);
  }

  Object& self_;
  const Rows rows_;
  c_xml_reader& reader_;
  std::string& name_;
};

// The rows of the bases come first.
elmx_error read_body(Object& self, const Class& type, c_xml_reader& reader, std::string& name) {
  if (type.base != nullptr) {
    if (const elmx_error error = read_body(self, *type.base, reader, name)) return error;
    if (type.elements().empty()) return lmx::elmx_ok;
  }
  return BodyReader(self, type, reader, name).run();
}

// Reads the one alternative that is at hand, and what follows it.
elmx_error read_choice(Object& self, const Class& type, c_xml_reader& reader, std::string& name,
                       int line) {
  if (reader.is_current_event_tokenisable()) {
    tokenise(reader, type.alternatives(), lmx::elxp_element);
  }
  for (const Row& row : type.alternatives()) {
    if (reader.get_current_event() != row.event) continue;
    Site site(reader, name, row.line);
    elmx_error error = lmx::elmx_ok;
    if (row.kind == Kind::object) {
      Slot slot;
      slot.object = row.type->make(&reader.pool());
      select(self, row, slot);
      error = read_element(*slot.object, *row.type, reader, name);
    } else {
      bool was_empty = false;
      if (!reader.get_simple_type_value(name, whitespace_of(row), &reader.value, &error,
                                        &was_empty)) {
        if ((error = site.judge(error)) != lmx::elmx_ok) return error;
      }
      error = parse_alternative(self, row, reader.value, &reader.pool(), site);
    }
    return error == lmx::elmx_ok ? next_event(reader, type.alternatives(), name, row.line) : error;
  }
  return Site(reader, name, line).judge(lmx::elmx_unknown_element_in_complex_content);
}

// One element from its start tag on. The name stands on the reader's stack while it is open, since
// the work strings of the reader are overwritten by whatever is read inside.
class ElementReader {
 public:
  ElementReader(Object& self, const Class& type, c_xml_reader& reader, const std::string& name)
      : self_(self),
        type_(type),
        reader_(reader),
        depth_(reader),
        node_(reader.get_element_name_stack(), name) {}

  elmx_error run() {
    if (!depth_.ok()) {
      if (const elmx_error error = judge(lmx::elmx_not_well_formed)) return error;
    }
    // An object that was nilled before is so no longer, unless this element says it again.
    if (type_.is_nillable()) set_nil(false);
    if (const elmx_error error = read_attributes()) return error;
    if (const elmx_error error = check_attributes(type_)) return error;
    lmx::c_xml_reader_local children(reader_);
    if (Head::is_nil(self_, type_)) {
      const elmx_error error = next_event();
      return error != lmx::elmx_ok ? error : check_end();
    }
    return type_.content_class().shape == Shape::simple ? read_content() : read_children();
  }

 private:
  elmx_error judge(elmx_error code) {
    return reader_.handle_error(code, node_.get_str(), k_model_source, first_line());
  }
  int first_line() const {
    const Row* const rows = type_.content_class().rows;
    return rows == nullptr ? 0 : rows->line;
  }
  bool is_at_end_tag() const { return reader_.get_current_event() == lmx::elxp_end_tag; }

  elmx_error read_attributes() {
    elmx_error error = lmx::elmx_ok;
    while (reader_.get_attribute_event(nullptr, &error, &reader_.attribute_name)) {
      // Past a fault in the tag, or the end of the input, no attribute follows.
      if (error != lmx::elmx_ok) return judge(error);
      bool is_claimed = false;
      if ((error = read_attribute(&is_claimed)) != lmx::elmx_ok) return error;
      if (is_claimed) continue;
      if (!reader_.is_xsi_attribute(reader_.attribute_name)) {
        error = reader_.handle_error(lmx::elmx_unexpected_attribute, reader_.name, k_model_source,
                                     first_line());
        if (error != lmx::elmx_ok) return error;
      }
      reader_.skip_attribute_value();
    }
    return lmx::elmx_ok;
  }

  // Of the class first, and then of its bases.
  elmx_error read_attribute(bool* is_claimed) {
    for (const Class* level = &type_; level != nullptr; level = level->base) {
      tokenise(reader_, level->attributes(), lmx::elxp_attribute);
      const int event = reader_.get_current_event();
      if (event == lmx::elxp_xsi_nil && type_.is_nillable()) {
        *is_claimed = true;
        return read_nil();
      }
      for (const Row& row : level->attributes()) {
        if (row.event != event) continue;
        *is_claimed = true;
        return read_attribute(row);
      }
    }
    return lmx::elmx_ok;
  }
  elmx_error read_attribute(const Row& row) {
    Site site(reader_, reader_.attribute_name, row.line);
    if (Head::has(self_, row.bit)) {
      if (const elmx_error error = site.judge(lmx::elmx_attribute_already_read)) return error;
    }
    if (const elmx_error error = fetch_attribute(whitespace_of(row), site)) return error;
    return parse_into(self_, row, reader_.value, &reader_.pool(), site);
  }
  // Whatever is neither "true" nor "1" counts as false.
  elmx_error read_nil() {
    Site site(reader_, reader_.attribute_name, first_line());
    if (const elmx_error error = fetch_attribute(lmx::elmx_collapse, site)) return error;
    set_nil(reader_.value == "true" || reader_.value == "1");
    return lmx::elmx_ok;
  }
  void set_nil(bool is_nil) {
    const std::uint32_t flag = std::uint32_t{1} << type_.nil_bit;
    std::uint32_t& flags = Head::flags(self_);
    flags = is_nil ? flags | flag : flags & ~flag;
  }
  elmx_error fetch_attribute(lmx::elmx_whitespace mode, Site& site) {
    return reader_.get_attribute_value(&reader_.value, mode)
               ? lmx::elmx_ok
               : site.judge(lmx::elmx_bad_attribute_value);
  }

  // 25 with the class as item for each required attribute that is not there, the bases first.
  elmx_error check_attributes(const Class& type) {
    if (type.base != nullptr) {
      if (const elmx_error error = check_attributes(*type.base)) return error;
    }
    for (const Row& row : type.attributes()) {
      if (!row.is_required || Head::has(self_, row.bit)) continue;
      const elmx_error error =
          Site(reader_, type.name, row.line).judge(lmx::elmx_required_attributes_missing);
      if (error != lmx::elmx_ok) return error;
    }
    return lmx::elmx_ok;
  }

  // Moves to the first content, unless the tag ended in "/>".
  elmx_error next_event() {
    if (is_at_end_tag()) return lmx::elmx_ok;
    elmx_error error = lmx::elmx_ok;
    reader_.get_element_event(nullptr, &error, &reader_.name);
    return error == lmx::elmx_ok ? error : judge(error);
  }

  elmx_error read_children() {
    if (const elmx_error error = next_event()) return error;
    if (is_at_end_tag()) {
      if (type_.is(Class::k_wants_content)) {
        if (const elmx_error error = judge(lmx::elmx_unexpected_empty_element)) return error;
      }
      return check_end();
    }
    const elmx_error error =
        type_.content_class().shape == Shape::choice
            ? read_choice(self_, type_.content_class(), reader_, reader_.name, first_line())
            : read_body(self_, type_.content_class(), reader_, reader_.name);
    return error != lmx::elmx_ok ? error : check_end();
  }

  // The value is taken where the tag ends; the work string must hold the element's own name for the
  // check of the end, also where the tag was its own end.
  elmx_error read_content() {
    const Row& row = type_.content_class().content();
    Site site(reader_, reader_.name, row.line);
    reader_.value.clear();
    if (!is_at_end_tag() && !reader_.get_element_value(&reader_.value, whitespace_of(row), true)) {
      if (const elmx_error error = site.judge(lmx::elmx_bad_element_value)) return error;
    }
    if (const elmx_error error = parse_into(self_, row, reader_.value, &reader_.pool(), site)) {
      return error;
    }
    if (is_at_end_tag()) return lmx::elmx_ok;
    const elmx_error error = next_event();
    return error != lmx::elmx_ok ? error : check_end();
  }

  elmx_error check_end() {
    if (is_at_end_tag() && node_ == reader_.name) return lmx::elmx_ok;
    return judge(lmx::elmx_bad_end_of_element);
  }

  Object& self_;
  const Class& type_;
  c_xml_reader& reader_;
  lmx::internal::ElementDepthGuard depth_;
  lmx::c_string_stack_node node_;
};

// The type that the element of an alternative asks for; null where it must name one that the
// factory knows, and does not.
Object* made_member(const Row& row, c_xml_reader& reader) {
  if (row.named_type == NamedType::no) return row.type->make(&reader.pool());
  int ns_id = 0;
  if (reader.get_xsi_type(&ns_id, &reader.value)) {
    return make_named(*row.type, ns_id, reader.value, &reader.pool());
  }
  return row.named_type == NamedType::required ? nullptr : row.type->make(&reader.pool());
}

}  // namespace

elmx_error read_element(Object& self, const Class& type, c_xml_reader& reader,
                        const std::string& name) {
  Pool::disturb(&self);
  // An element that adds nothing to its type reads as that.
  const Class& read_as = type.is_nillable() ? type : type.content_class();
  return ElementReader(self, read_as, reader, name).run();
}

bool is_member(const Class& type, c_xml_reader& reader) {
  if (!reader.is_current_event_tokenisable()) return false;
  const int event = reader.get_current_event();
  tokenise(reader, type.alternatives(), lmx::elxp_element);
  for (const Row& row : type.alternatives()) {
    if (reader.get_current_event() == row.event) return true;
  }
  reader.restore_event(event);
  return false;
}

bool read_member(Object& self, const Class& type, c_xml_reader& reader, std::string* name,
                 elmx_error* error) {
  const int line = type.rows->line;
  if (type.shape == Shape::anonymous) {
    *error = read_choice(self, type, reader, *name, line);
    return *error == lmx::elmx_ok;
  }
  const Rows rows = type.alternatives();
  tokenise(reader, rows, lmx::elxp_element);
  const Row* row = rows.first;
  while (row != rows.last && row->event != reader.get_current_event()) ++row;
  *error = lmx::elmx_ok;
  if (row != rows.last) {
    Slot slot;
    slot.object = made_member(*row, reader);
    // No handler is asked about a type that nobody knows.
    if (slot.object == nullptr) {
      *error = lmx::elmx_unknown_xsi_type;
      return false;
    }
    select(self, *row, slot);
    *error = type.family->unmarshal(*slot.object, reader, *name);
  } else if (!reader.skip_rest_of_element(*name)) {
    *error = Site(reader, *name, line).judge(lmx::elmx_bad_end_of_element);
  }
  if (*error != lmx::elmx_ok) return false;
  *error = next_event(reader, rows, *name, line);
  return *error == lmx::elmx_ok;
}

}  // namespace zol_v2::internal
