// Generated from model/schema/tiny.rows by gen/model_source.py: edit those, not this.
#include <memory>
#include <ostream>

#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/Zol.h"
#include "model/internal/choosing.h"
#include "model/internal/copying.h"
#include "model/internal/document_namespace.h"
#include "model/internal/enumerations.h"
#include "model/internal/events.h"
#include "model/internal/steps.h"
#include "model/sdk_stamp.h"

namespace zol_v2 {

namespace event = internal::event;
using internal::IntegerRange;
using internal::Range;
using internal::Steps;
using lmx::c_xml_reader;
using lmx::c_xml_writer;
using lmx::elmx_error;
using lmx::s_event_map;

// Zol

constexpr IntegerRange k_Zol_Size_range{1, 9, 0};

constexpr s_event_map k_Zol_elements[] = {
  {internal::k_document_namespace_id, "Note", 4, event::Note},
  {internal::k_document_namespace_id, "Stamp", 5, event::Stamp},
  {internal::k_document_namespace_id, "Alias", 5, event::Alias},
  {internal::k_document_namespace_id, "Size", 4, event::Size},
  {internal::k_document_namespace_id, "Box", 3, event::Box},
  {internal::k_document_namespace_id, "Lid", 3, event::Lid},
  {internal::k_document_namespace_id, "Part", 4, event::Part},
  {0, nullptr, 0, lmx::elxp_unknown}};

Zol::Zol() { init(); }
Zol::~Zol() = default;

Zol::Zol(const Zol& other) {
  init();
  internal::copy_required(note_, other.note_);
  internal::copy_list(stamp_, other.stamp_);
  internal::copy_list(alias_, other.alias_);
  internal::copy_optional(size_, other.size_, k_Zol_Size_range);
  internal::copy_required(box_, other.box_);
  internal::copy_optional(lid_, other.lid_);
  internal::copy_list(part_, other.part_);
  internal::copy_list(shape_, other.shape_);
  internal::copy_required(outline_, other.outline_);
  internal::copy_required(anon_tag_, other.anon_tag_);
  internal::copy_list(any_, other.any_);
}

Zol& Zol::operator=(const Zol& other) {
  Zol copy(other);
  copy.swap(*this);
  return *this;
}

void Zol::swap(Zol& other) {
  note_.swap(other.note_);
  stamp_.swap(other.stamp_);
  alias_.swap(other.alias_);
  size_.swap(other.size_);
  box_.swap(other.box_);
  lid_.swap(other.lid_);
  part_.swap(other.part_);
  shape_.swap(other.shape_);
  outline_.swap(other.outline_);
  anon_tag_.swap(other.anon_tag_);
  any_.swap(other.any_);
}

void Zol::reset() {
  Zol fresh;
  fresh.swap(*this);
}

bool Zol::is_occurs_ok() const {
  return note_.set && !stamp_.empty() && box_.set && outline_.set && anon_tag_.set;
}

void Zol::init() {
  SdkStamp().stampRead(*this);
}

void Zol::marshal_attributes(c_xml_writer&) const {}

elmx_error Zol::marshal_child_elements(c_xml_writer& writer) const {
  internal::BodyWriter out(writer);
  out.required("Zol:Note", note_);
  out.values("Zol:Stamp", stamp_);
  out.values("Zol:Alias", alias_);
  out.optional("Zol:Size", size_);
  out.child("Zol:Box", box_);
  out.optional_child("Zol:Lid", lid_);
  out.children("Zol:Part", part_);
  out.children("Zol:Shape", shape_);
  out.child("Zol:Outline", outline_);
  out.child("Zol:anon_Tag", anon_tag_);
  out.foreign(any_);
  return out.error();
}

bool Zol::unmarshal_attributes(c_xml_reader&, const std::string&, elmx_error*) { return false; }

void Zol::unmarshal_plain_attributes(internal::PlainReader&) {}

elmx_error Zol::unmarshal_attributes_check(c_xml_reader&) {
  return lmx::elmx_ok;
}

bool Zol::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
  internal::BodyReader body(reader, *name, *err, k_Zol_elements, __LINE__);
  return body.required(0, note_) &&
         body.values_from_one(1, stamp_) &&
         body.values(2, alias_, internal::Collapsed{}) &&
         body.optional(3, size_, k_Zol_Size_range) &&
         body.required_child(4, box_) &&
         body.optional_child(5, lid_) &&
         body.children(6, part_) &&
         body.holders(7, shape_) &&
         body.holder(7, outline_) &&
         body.group(7, anon_tag_) &&
         body.foreign(any_);
}

using Zol_steps = Steps<Zol, internal::k_wants_content | internal::k_names_namespaces>;

elmx_error Zol::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, Zol_steps::k_writing, writer, name);
}

elmx_error Zol::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, Zol_steps::k_reading, reader, name);
}

const lmx::s_ns_map* Zol::ns_map() { return internal::document_ns_map(); }

Zol::Zol(const char* file, elmx_error* err) : Zol() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(file);
}
Zol::Zol(const char* buffer, std::size_t size, elmx_error* err) : Zol() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(buffer, size);
}
Zol::Zol(const std::string& text, elmx_error* err) : Zol() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(text);
}

elmx_error Zol::marshal(const char* file) const {
  return internal::marshal_to_file(internal::source_of(*this), file);
}
elmx_error Zol::marshal(std::string* out) const {
  return internal::marshal_to_string(internal::source_of(*this), out);
}
elmx_error Zol::marshal(std::ostream& stream) const {
  return internal::marshal_to_stream(internal::source_of(*this), stream);
}

elmx_error Zol::unmarshal(const char* file) {
  return internal::unmarshal_from_file(internal::target_of(*this), file);
}
elmx_error Zol::unmarshal(const char* buffer, std::size_t size) {
  return internal::unmarshal_from_memory(internal::target_of(*this), buffer, size);
}
elmx_error Zol::unmarshal(const std::string& text) {
  return unmarshal(text.data(), text.size());
}
elmx_error Zol::unmarshal(c_xml_reader& reader) {
  reader.set_ns_map(ns_map());
  lmx::c_xml_reader_local scope(reader);
  if (const elmx_error error = internal::read_root_tag(reader, "Zol", __LINE__)) return error;
  return unmarshal(reader, reader.name);
}

lmx::elmx_error Zol::set_Note(const std::wstring& value) {
  return internal::store(note_, value);
}

lmx::elmx_error Zol::set_Stamp(unsigned index, const lmx::c_datetime& value) {
  return internal::set_value(stamp_, index, value);
}

lmx::elmx_error Zol::append_Stamp(const lmx::c_datetime& value) {
  stamp_.append(value);
  return lmx::elmx_ok;
}

lmx::elmx_error Zol::insert_Stamp(unsigned index, const lmx::c_datetime& value) {
  stamp_.insert(index, value);
  return lmx::elmx_ok;
}

void Zol::delete_Stamp(unsigned index) { stamp_.remove(index); }
void Zol::clear_Stamp() { stamp_.clear(); }

lmx::elmx_error Zol::set_Alias(unsigned index, const std::wstring& value) {
  return internal::set_value(alias_, index, value);
}

lmx::elmx_error Zol::append_Alias(const std::wstring& value) {
  alias_.append(value);
  return lmx::elmx_ok;
}

lmx::elmx_error Zol::insert_Alias(unsigned index, const std::wstring& value) {
  alias_.insert(index, value);
  return lmx::elmx_ok;
}

void Zol::delete_Alias(unsigned index) { alias_.remove(index); }
void Zol::clear_Alias() { alias_.clear(); }

lmx::elmx_error Zol::set_Size(unsigned value) {
  return internal::store(size_, value, k_Zol_Size_range);
}

Box& Zol::get_Box() { return box_.touch(); }
Box& Zol::assign_Box(const Box& value) { return get_Box() = value; }

Box& Zol::get_Lid() { return lid_.touch(); }
Box& Zol::assign_Lid(const Box& value) { return get_Lid() = value; }

Part& Zol::get_Part(unsigned index) { return part_.grow_to(index); }

Part& Zol::assign_Part(unsigned index, const Part& value) {
  return get_Part(index) = value;
}

lmx::elmx_error Zol::append_Part() {
  part_.append();
  return lmx::elmx_ok;
}

lmx::elmx_error Zol::insert_Part(unsigned index) {
  part_.insert(index);
  return lmx::elmx_ok;
}

void Zol::delete_Part(unsigned index) { part_.remove(index); }
void Zol::clear_Part() { part_.clear(); }

sg_Shape& Zol::get_Shape(unsigned index) { return shape_.grow_to(index); }

sg_Shape& Zol::assign_Shape(unsigned index, const sg_Shape& value) {
  return get_Shape(index) = value;
}

lmx::elmx_error Zol::append_Shape() {
  shape_.append();
  return lmx::elmx_ok;
}

lmx::elmx_error Zol::insert_Shape(unsigned index) {
  shape_.insert(index);
  return lmx::elmx_ok;
}

void Zol::delete_Shape(unsigned index) { shape_.remove(index); }
void Zol::clear_Shape() { shape_.clear(); }

sg_Shape& Zol::get_Outline() { return outline_.touch(); }
sg_Shape& Zol::assign_Outline(const sg_Shape& value) { return get_Outline() = value; }

anon_Tag& Zol::get_anon_Tag() { return anon_tag_.touch(); }
anon_Tag& Zol::assign_anon_Tag(const anon_Tag& value) { return get_anon_Tag() = value; }

void Zol::get_any(unsigned index, std::string* full_name, std::string* namespace_uri,
                    std::string* text) const {
  internal::get_foreign(any_, index, full_name, namespace_uri, text);
}

lmx::elmx_error Zol::append_any(const std::string& text) {
  any_.append().text = text;
  return lmx::elmx_ok;
}

lmx::elmx_error Zol::insert_any(unsigned index, const std::string& text) {
  any_.insert(index).text = text;
  return lmx::elmx_ok;
}

void Zol::delete_any(unsigned index) { any_.remove(index); }
void Zol::clear_any() { any_.clear(); }

// Box

constexpr IntegerRange k_Box_Count_range{2, 99, 2};
constexpr Range k_Box_Weight_range{Range::strict, Range::inclusive, 0, 2.5};

constexpr s_event_map k_Box_attributes[] = {
  {lmx::k_ns_none, "Grade", 5, event::Grade},
  {lmx::k_ns_none, "Spare", 5, event::Spare},
  {lmx::k_ns_none, "Count", 5, event::Count},
  {0, nullptr, 0, lmx::elxp_unknown}};

constexpr s_event_map k_Box_elements[] = {
  {internal::k_document_namespace_id, "Code", 4, event::Code},
  {internal::k_document_namespace_id, "Weight", 6, event::Weight},
  {internal::k_document_namespace_id, "Seal", 4, event::Seal},
  {0, nullptr, 0, lmx::elxp_unknown}};

Box::Box() { init(); }
Box::~Box() = default;

Box::Box(const Box& other) {
  init();
  internal::copy_required(grade_, other.grade_, internal::k_Grade);
  internal::copy_optional(spare_, other.spare_, internal::k_Grade);
  internal::copy_required(count_, other.count_, k_Box_Count_range);
  internal::copy_required(code_, other.code_, internal::Length{1});
  internal::copy_required(weight_, other.weight_, k_Box_Weight_range);
  nil_ = other.nil_;
}

Box& Box::operator=(const Box& other) {
  Box copy(other);
  copy.swap(*this);
  return *this;
}

void Box::swap(Box& other) {
  grade_.swap(other.grade_);
  spare_.swap(other.spare_);
  count_.swap(other.count_);
  code_.swap(other.code_);
  weight_.swap(other.weight_);
  std::swap(nil_, other.nil_);
}

void Box::reset() {
  Box fresh;
  fresh.swap(*this);
}

bool Box::is_occurs_ok() const {
  return nil_ || (grade_.set && count_.set && code_.set && weight_.set);
}

void Box::init() {
  spare_.store(internal::k_Grade, 1);
}

void Box::marshal_attributes(c_xml_writer& writer) const {
  internal::AttributeWriter out(writer);
  out.required("Grade", grade_);
  out.optional("Spare", spare_);
  out.required("Count", count_);
}

elmx_error Box::marshal_child_elements(c_xml_writer& writer) const {
  internal::BodyWriter out(writer);
  out.required("Zol:Code", code_);
  out.required("Zol:Weight", weight_);
  out.mark("Zol:Seal");
  return out.error();
}

bool Box::unmarshal_attributes(c_xml_reader& reader, const std::string& name, elmx_error* err) {
  internal::AttributeReader attribute(reader, name, *err, k_Box_attributes, __LINE__);
  switch (attribute.event()) {
    case event::Grade: return attribute.read(grade_, internal::k_Grade);
    case event::Spare: return attribute.read(spare_, internal::k_Grade);
    case event::Count: return attribute.read(count_, k_Box_Count_range);
    case lmx::elxp_xsi_nil: return attribute.read_nil(nil_);
    default: return false;
  }
}

void Box::unmarshal_plain_attributes(internal::PlainReader& in) {
  in.required("Grade", grade_, internal::k_Grade);
  in.optional("Spare", spare_, internal::k_Grade);
  in.required("Count", count_, k_Box_Count_range);
}

elmx_error Box::unmarshal_attributes_check(c_xml_reader& reader) {
  return internal::check_attributes(reader, "Box", __LINE__, {grade_.set, count_.set});
}

bool Box::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
  internal::BodyReader body(reader, *name, *err, k_Box_elements, __LINE__);
  return body.required(0, code_, internal::Length{1}) &&
         body.required(1, weight_, k_Box_Weight_range) &&
         body.mark(2);
}

using Box_steps = Steps<Box, internal::k_nillable>;

elmx_error Box::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, Box_steps::k_writing, writer, name);
}

elmx_error Box::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, Box_steps::k_reading, reader, name);
}

lmx::elmx_error Box::set_Grade(const std::wstring& value) {
  return internal::store(grade_, value, internal::k_Grade);
}

Box::Eenum_Grade Box::getenum_Grade() const {
  return static_cast<Eenum_Grade>(grade_.number(internal::k_Grade));
}

bool Box::setenum_Grade(Eenum_Grade value) {
  return internal::store_number(grade_, value, internal::k_Grade);
}

lmx::elmx_error Box::set_Spare(const std::wstring& value) {
  return internal::store(spare_, value, internal::k_Grade);
}

Box::Eenum_Spare Box::getenum_Spare() const {
  return static_cast<Eenum_Spare>(spare_.number(internal::k_Grade));
}

bool Box::setenum_Spare(Eenum_Spare value) {
  return internal::store_number(spare_, value, internal::k_Grade);
}

lmx::elmx_error Box::set_Count(unsigned char value) {
  return internal::store(count_, value, k_Box_Count_range);
}

lmx::elmx_error Box::set_Code(const std::wstring& value) {
  return internal::store(code_, value, internal::Length{1});
}

lmx::elmx_error Box::set_Weight(double value) {
  return internal::store(weight_, value, k_Box_Weight_range);
}

// Seal

Seal::Seal() = default;
Seal::~Seal() = default;

Seal::Seal(const Seal& ) {}

Seal& Seal::operator=(const Seal& other) {
  Seal copy(other);
  copy.swap(*this);
  return *this;
}

void Seal::swap(Seal&) {}

void Seal::reset() {
  Seal fresh;
  fresh.swap(*this);
}

bool Seal::is_occurs_ok() const { return true; }

void Seal::marshal_attributes(c_xml_writer&) const {}

elmx_error Seal::marshal_child_elements(c_xml_writer&) const {
  return lmx::elmx_ok;
}

bool Seal::unmarshal_attributes(c_xml_reader&, const std::string&, elmx_error*) { return false; }

void Seal::unmarshal_plain_attributes(internal::PlainReader&) {}

elmx_error Seal::unmarshal_attributes_check(c_xml_reader&) {
  return lmx::elmx_ok;
}

bool Seal::unmarshal_body(c_xml_reader&, std::string*, elmx_error*) { return true; }

using Seal_steps = Steps<Seal, internal::k_blank>;

elmx_error Seal::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, Seal_steps::k_writing, writer, name);
}

elmx_error Seal::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, Seal_steps::k_reading, reader, name);
}

// Part

constexpr s_event_map k_Part_attributes[] = {
  {lmx::k_ns_none, "Unit", 4, event::Unit},
  {0, nullptr, 0, lmx::elxp_unknown}};

Part::Part() = default;
Part::~Part() = default;

Part::Part(const Part& other) {
  internal::copy_optional(unit_, other.unit_);
  internal::copy_required(part_, other.part_);
}

Part& Part::operator=(const Part& other) {
  Part copy(other);
  copy.swap(*this);
  return *this;
}

void Part::swap(Part& other) {
  unit_.swap(other.unit_);
  part_.swap(other.part_);
}

void Part::reset() {
  Part fresh;
  fresh.swap(*this);
}

bool Part::is_occurs_ok() const { return part_.set; }

void Part::marshal_attributes(c_xml_writer& writer) const {
  internal::AttributeWriter out(writer);
  out.optional("Unit", unit_);
}

elmx_error Part::marshal_child_elements(c_xml_writer& writer) const {
  internal::write_field(writer.block(), part_);
  return lmx::elmx_ok;
}

bool Part::unmarshal_attributes(c_xml_reader& reader, const std::string& name, elmx_error* err) {
  internal::AttributeReader attribute(reader, name, *err, k_Part_attributes, __LINE__);
  switch (attribute.event()) {
    case event::Unit: return attribute.read(unit_);
    default: return false;
  }
}

elmx_error Part::unmarshal_attributes_check(c_xml_reader&) {
  return lmx::elmx_ok;
}

bool Part::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err, bool has_text) {
  return internal::ContentReader(reader, *name, *err, has_text, __LINE__).read(part_);
}

void Part::unmarshal_plain(internal::PlainReader& in) {
  in.optional("Unit", unit_);
  in.content(part_);
}

using Part_steps = Steps<Part, internal::k_simple>;

elmx_error Part::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, Part_steps::k_writing, writer, name);
}

elmx_error Part::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, Part_steps::k_reading, reader, name);
}

lmx::elmx_error Part::set_Unit(const std::wstring& value) {
  return internal::store(unit_, value);
}

lmx::elmx_error Part::set_Part(const lmx::c_binary& value) {
  return internal::store(part_, value);
}

// PartChoice

constexpr Range k_PartChoice_Amount_range{Range::inclusive, Range::none, 0, 0};
constexpr IntegerRange k_PartChoice_Number_range{-2147483648, 2147483647, -2147483648};

constexpr s_event_map k_PartChoice_elements[] = {
  {internal::k_document_namespace_id, "Grade", 5, event::Grade},
  {internal::k_document_namespace_id, "Text", 4, event::Text},
  {internal::k_document_namespace_id, "Amount", 6, event::Amount},
  {internal::k_document_namespace_id, "Number", 6, event::Number},
  {internal::k_document_namespace_id, "Box", 3, event::Box},
  {0, nullptr, 0, lmx::elxp_unknown}};

PartChoice::PartChoice() = default;
PartChoice::~PartChoice() = default;

PartChoice::PartChoice(const PartChoice& other) {
  switch (other.chosen_) {
    case chosen_Grade:
      internal::copy_enumerated(slot_, chosen_, other.get_Grade(), chosen_Grade, internal::k_Grade);
      break;
    case chosen_Text:
      (void)set_Text(other.get_Text());
      break;
    case chosen_Amount:
      (void)set_Amount(other.get_Amount());
      break;
    case chosen_Number:
      (void)set_Number(other.get_Number());
      break;
    case chosen_Box:
      (void)assign_Box(other.get_Box());
      break;
  }
}

PartChoice& PartChoice::operator=(const PartChoice& other) {
  PartChoice copy(other);
  copy.swap(*this);
  return *this;
}

void PartChoice::swap(PartChoice& other) {
  slot_.swap(other.slot_);
  std::swap(chosen_, other.chosen_);
}

void PartChoice::reset() {
  PartChoice fresh;
  fresh.swap(*this);
}

bool PartChoice::is_occurs_ok() const { return chosen_ != chosen_none; }

void PartChoice::marshal_attributes(c_xml_writer&) const {}

elmx_error PartChoice::marshal_child_elements(c_xml_writer& writer) const {
  internal::BodyWriter out(writer);
  switch (chosen_) {
    case chosen_Grade: out.element("Zol:Grade", get_Grade()); break;
    case chosen_Text: out.element("Zol:Text", get_Text()); break;
    case chosen_Amount: out.element("Zol:Amount", get_Amount()); break;
    case chosen_Number: out.element("Zol:Number", get_Number()); break;
    case chosen_Box: out.object("Zol:Box", get_Box()); break;
    default: return internal::bad_choice(writer, "Zol:PartChoice", __LINE__);
  }
  return out.error();
}

bool PartChoice::unmarshal_attributes(c_xml_reader&, const std::string&, elmx_error*) {
  return false;
}

void PartChoice::unmarshal_plain_attributes(internal::PlainReader&) {}

elmx_error PartChoice::unmarshal_attributes_check(c_xml_reader&) {
  return lmx::elmx_ok;
}

bool PartChoice::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
  internal::ChoiceReader choice(reader, *name, *err, k_PartChoice_elements, __LINE__);
  switch (choice.event()) {
    case event::Grade: return choice.enumerated(slot_, chosen_, chosen_Grade, internal::k_Grade);
    case event::Text: return choice.text(slot_, chosen_, chosen_Text, internal::Collapsed{});
    case event::Amount: return choice.number(slot_, chosen_, chosen_Amount,
        k_PartChoice_Amount_range);
    case event::Number: return choice.integer<int>(slot_, chosen_, chosen_Number,
        k_PartChoice_Number_range);
    case event::Box: return choice.object<Box>(slot_, chosen_, chosen_Box);
    default: return choice.unknown();
  }
}

using PartChoice_steps = Steps<PartChoice, internal::k_wants_content>;

elmx_error PartChoice::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, PartChoice_steps::k_writing, writer, name);
}

elmx_error PartChoice::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, PartChoice_steps::k_reading, reader, name);
}

const std::wstring& PartChoice::get_Grade() const {
  return chosen_ == chosen_Grade ? slot_.object<std::wstring>() : internal::empty_text();
}

lmx::elmx_error PartChoice::set_Grade(const std::wstring& value) {
  const int number = internal::k_Grade.number_of(value);
  return setenum_Grade(static_cast<Eenum_Grade>(number))
             ? lmx::elmx_ok
             : lmx::elmx_value_not_enumerated;
}

PartChoice::Eenum_Grade PartChoice::getenum_Grade() const {
  return static_cast<Eenum_Grade>(internal::k_Grade.number_of(get_Grade()));
}

bool PartChoice::setenum_Grade(Eenum_Grade value) {
  return internal::choose_number(slot_, chosen_, chosen_Grade, value, internal::k_Grade);
}

const std::wstring& PartChoice::get_Text() const {
  return chosen_ == chosen_Text ? slot_.object<std::wstring>() : internal::empty_text();
}

lmx::elmx_error PartChoice::set_Text(const std::wstring& value) {
  internal::choose(slot_, chosen_, chosen_Text, internal::make_owned<std::wstring>(value));
  return lmx::elmx_ok;
}

double PartChoice::get_Amount() const { return chosen_ == chosen_Amount ? slot_.number() : 0.0; }

lmx::elmx_error PartChoice::set_Amount(double value) {
  if (const lmx::elmx_error error = k_PartChoice_Amount_range.check(value)) return error;
  slot_.store(value);
  chosen_ = chosen_Amount;
  return lmx::elmx_ok;
}

int PartChoice::get_Number() const {
  return chosen_ == chosen_Number ? static_cast<int>(slot_.integer()) : 0;
}

lmx::elmx_error PartChoice::set_Number(int value) {
  slot_.store(static_cast<std::int64_t>(value));
  chosen_ = chosen_Number;
  return lmx::elmx_ok;
}

const Box& PartChoice::get_Box() const {
  return chosen_ == chosen_Box ? slot_.object<Box>() : internal::empty_object<Box>();
}

Box& PartChoice::get_Box() {
  if (chosen_ == chosen_Box) return slot_.object<Box>();
  return internal::choose(slot_, chosen_, chosen_Box, internal::make_owned<Box>());
}

Box& PartChoice::assign_Box(const Box& value) {
  if (chosen_ == chosen_Box) return slot_.object<Box>() = value;
  // The value may live inside the alternative that goes.
  return internal::choose(slot_, chosen_, chosen_Box, internal::make_owned<Box>(value));
}

// anon_Tag

constexpr s_event_map k_anon_Tag_elements[] = {
  {internal::k_document_namespace_id, "TagText", 7, event::TagText},
  {internal::k_document_namespace_id, "TagNumber", 9, event::TagNumber},
  {0, nullptr, 0, lmx::elxp_unknown}};

anon_Tag::anon_Tag() = default;
anon_Tag::~anon_Tag() = default;

anon_Tag::anon_Tag(const anon_Tag& other) {
  switch (other.chosen_) {
    case chosen_TagText:
      (void)set_TagText(other.get_TagText());
      break;
    case chosen_TagNumber:
      (void)set_TagNumber(other.get_TagNumber());
      break;
  }
}

anon_Tag& anon_Tag::operator=(const anon_Tag& other) {
  anon_Tag copy(other);
  copy.swap(*this);
  return *this;
}

void anon_Tag::swap(anon_Tag& other) {
  slot_.swap(other.slot_);
  std::swap(chosen_, other.chosen_);
}

void anon_Tag::reset() {
  anon_Tag fresh;
  fresh.swap(*this);
}

bool anon_Tag::is_occurs_ok() const { return chosen_ != chosen_none; }

elmx_error anon_Tag::marshal_child_elements(c_xml_writer& writer) const {
  internal::BodyWriter out(writer);
  switch (chosen_) {
    case chosen_TagText: out.element("Zol:TagText", get_TagText()); break;
    case chosen_TagNumber: out.element("Zol:TagNumber", get_TagNumber()); break;
    default: return internal::bad_choice(writer, "", __LINE__);
  }
  return out.error();
}

bool anon_Tag::unmarshal(c_xml_reader& reader, std::string* name, elmx_error* err) {
  internal::ChoiceReader choice(reader, *name, *err, k_anon_Tag_elements, __LINE__);
  switch (choice.event()) {
    case event::TagText: return choice.text(slot_, chosen_, chosen_TagText);
    case event::TagNumber: return choice.number(slot_, chosen_, chosen_TagNumber);
    default: return choice.unknown();
  }
}

elmx_error anon_Tag::marshal(c_xml_writer& writer, const char*) const {
  if (!is_occurs_ok()) return lmx::elmx_occurs_on_marshal;
  lmx::internal::MarshalScope scope(writer);
  return marshal_child_elements(writer);
}

bool anon_Tag::is_member(c_xml_reader& reader, const std::string&) {
  return internal::is_in_table(reader, k_anon_Tag_elements);
}

const std::wstring& anon_Tag::get_TagText() const {
  return chosen_ == chosen_TagText ? slot_.object<std::wstring>() : internal::empty_text();
}

lmx::elmx_error anon_Tag::set_TagText(const std::wstring& value) {
  internal::choose(slot_, chosen_, chosen_TagText, internal::make_owned<std::wstring>(value));
  return lmx::elmx_ok;
}

double anon_Tag::get_TagNumber() const {
  return chosen_ == chosen_TagNumber ? slot_.number() : 0.0;
}

lmx::elmx_error anon_Tag::set_TagNumber(double value) {
  slot_.store(value);
  chosen_ = chosen_TagNumber;
  return lmx::elmx_ok;
}

// ShapeType

constexpr s_event_map k_ShapeType_attributes[] = {
  {lmx::k_ns_none, "Name", 4, event::Name},
  {0, nullptr, 0, lmx::elxp_unknown}};

constexpr s_event_map k_ShapeType_elements[] = {
  {internal::k_document_namespace_id, "Choice", 6, event::Choice},
  {0, nullptr, 0, lmx::elxp_unknown}};

ShapeType::ShapeType() = default;
ShapeType::~ShapeType() = default;

ShapeType::ShapeType(const ShapeType& other) {
  internal::copy_optional(name_, other.name_);
  internal::copy_optional(choice_, other.choice_);
}

ShapeType& ShapeType::operator=(const ShapeType& other) {
  ShapeType copy(other);
  copy.swap(*this);
  return *this;
}

void ShapeType::swap(ShapeType& other) {
  name_.swap(other.name_);
  choice_.swap(other.choice_);
}

void ShapeType::reset() {
  ShapeType fresh;
  fresh.swap(*this);
}

bool ShapeType::is_occurs_ok() const { return true; }

const char* ShapeType::id = "ShapeType";
ShapeType* ShapeType::clone() const { return new ShapeType(*this); }
const char* ShapeType::getid() const { return id; }
bool ShapeType::has_id(const char* identity) const { return identity == id; }

ShapeType* ShapeType::factory(int ns_id, const std::string& type_name) {
  static constexpr internal::FactoryRow<ShapeType> k_rows[] = {
    {"RoundType", internal::make_new<ShapeType, RoundType>},
    {"RingType", internal::make_new<ShapeType, RingType>},
  };
  return internal::make_from(k_rows, ns_id, type_name);
}

void ShapeType::marshal_attributes(c_xml_writer& writer) const {
  internal::AttributeWriter out(writer);
  out.optional("Name", name_);
}

elmx_error ShapeType::marshal_child_elements(c_xml_writer& writer) const {
  internal::BodyWriter out(writer);
  out.optional_child("Zol:Choice", choice_);
  return out.error();
}

bool ShapeType::unmarshal_attributes(c_xml_reader& reader, const std::string& name,
    elmx_error* err) {
  internal::AttributeReader attribute(reader, name, *err, k_ShapeType_attributes, __LINE__);
  switch (attribute.event()) {
    case event::Name: return attribute.read(name_);
    default: return false;
  }
}

void ShapeType::unmarshal_plain_attributes(internal::PlainReader& in) {
  in.optional("Name", name_);
}

elmx_error ShapeType::unmarshal_attributes_check(c_xml_reader&) {
  return lmx::elmx_ok;
}

bool ShapeType::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
  internal::BodyReader body(reader, *name, *err, k_ShapeType_elements, __LINE__);
  return body.optional_child(0, choice_);
}

using ShapeType_steps = Steps<ShapeType, internal::k_names_namespaces>;

elmx_error ShapeType::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, ShapeType_steps::k_writing, writer, name, "ShapeType",
      ShapeType::id);
}

elmx_error ShapeType::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, ShapeType_steps::k_reading, reader, name);
}

lmx::elmx_error ShapeType::set_Name(const std::wstring& value) {
  return internal::store(name_, value);
}

PartChoice& ShapeType::get_Choice() { return choice_.touch(); }
PartChoice& ShapeType::assign_Choice(const PartChoice& value) { return get_Choice() = value; }

// RoundType

constexpr Range k_RoundType_Radius_range{Range::inclusive, Range::none, 0, 0};

constexpr s_event_map k_RoundType_elements[] = {
  {internal::k_document_namespace_id, "Radius", 6, event::Radius},
  {0, nullptr, 0, lmx::elxp_unknown}};

RoundType::RoundType() = default;
RoundType::~RoundType() = default;

RoundType::RoundType(const RoundType& other) : ShapeType(other) {
  internal::copy_required(radius_, other.radius_, k_RoundType_Radius_range);
}

RoundType& RoundType::operator=(const RoundType& other) {
  RoundType copy(other);
  copy.swap(*this);
  return *this;
}

void RoundType::swap(RoundType& other) {
  ShapeType::swap(other);
  radius_.swap(other.radius_);
}

void RoundType::reset() {
  RoundType fresh;
  fresh.swap(*this);
}

bool RoundType::is_occurs_ok() const { return ShapeType::is_occurs_ok() && radius_.set; }

const char* RoundType::id = "RoundType";
RoundType* RoundType::clone() const { return new RoundType(*this); }
const char* RoundType::getid() const { return id; }
bool RoundType::has_id(const char* identity) const {
  return identity == id || ShapeType::has_id(identity);
}

RoundType* RoundType::factory(int ns_id, const std::string& type_name) {
  static constexpr internal::FactoryRow<RoundType> k_rows[] = {
    {"RoundType", internal::make_new<RoundType, RoundType>},
    {"RingType", internal::make_new<RoundType, RingType>},
  };
  return internal::make_from(k_rows, ns_id, type_name);
}

elmx_error RoundType::marshal_child_elements(c_xml_writer& writer) const {
  if (const elmx_error error = ShapeType::marshal_child_elements(writer)) return error;
  internal::BodyWriter out(writer);
  out.required("Zol:Radius", radius_);
  return out.error();
}

bool RoundType::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
  if (!ShapeType::unmarshal_body(reader, name, err)) return false;
  internal::BodyReader body(reader, *name, *err, k_RoundType_elements, __LINE__);
  return body.required(0, radius_, k_RoundType_Radius_range);
}

using RoundType_steps = Steps<RoundType, internal::k_wants_content | internal::k_names_namespaces>;

elmx_error RoundType::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, RoundType_steps::k_writing, writer, name, "RoundType",
      RoundType::id);
}

elmx_error RoundType::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, RoundType_steps::k_reading, reader, name);
}

lmx::elmx_error RoundType::set_Radius(double value) {
  return internal::store(radius_, value, k_RoundType_Radius_range);
}

// RingType

constexpr s_event_map k_RingType_elements[] = {
  {internal::k_document_namespace_id, "Inner", 5, event::Inner},
  {0, nullptr, 0, lmx::elxp_unknown}};

RingType::RingType() = default;
RingType::~RingType() = default;

RingType::RingType(const RingType& other) : RoundType(other) {
  internal::copy_required(inner_, other.inner_);
}

RingType& RingType::operator=(const RingType& other) {
  RingType copy(other);
  copy.swap(*this);
  return *this;
}

void RingType::swap(RingType& other) {
  RoundType::swap(other);
  inner_.swap(other.inner_);
}

void RingType::reset() {
  RingType fresh;
  fresh.swap(*this);
}

bool RingType::is_occurs_ok() const { return RoundType::is_occurs_ok() && inner_.set; }

const char* RingType::id = "RingType";
RingType* RingType::clone() const { return new RingType(*this); }
const char* RingType::getid() const { return id; }
bool RingType::has_id(const char* identity) const {
  return identity == id || RoundType::has_id(identity);
}

elmx_error RingType::marshal_child_elements(c_xml_writer& writer) const {
  if (const elmx_error error = RoundType::marshal_child_elements(writer)) return error;
  internal::BodyWriter out(writer);
  out.required("Zol:Inner", inner_);
  return out.error();
}

bool RingType::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
  if (!RoundType::unmarshal_body(reader, name, err)) return false;
  internal::BodyReader body(reader, *name, *err, k_RingType_elements, __LINE__);
  return body.required(0, inner_);
}

using RingType_steps = Steps<RingType, internal::k_wants_content | internal::k_names_namespaces>;

elmx_error RingType::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, RingType_steps::k_writing, writer, name, "RingType",
      RingType::id);
}

elmx_error RingType::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, RingType_steps::k_reading, reader, name);
}

lmx::elmx_error RingType::set_Inner(double value) {
  return internal::store(inner_, value);
}

// sg_Shape

constexpr s_event_map k_sg_Shape_elements[] = {
  {internal::k_document_namespace_id, "Shape", 5, event::Shape},
  {internal::k_document_namespace_id, "Round", 5, event::Round},
  {internal::k_document_namespace_id, "Ring", 4, event::Ring},
  {0, nullptr, 0, lmx::elxp_unknown}};

sg_Shape::sg_Shape() = default;
sg_Shape::~sg_Shape() { release_choice(); }

sg_Shape::sg_Shape(const sg_Shape& other) {
  if (other.member_ != nullptr) member_ = other.member_->clone();
  chosen_ = other.chosen_;
}

sg_Shape& sg_Shape::operator=(const sg_Shape& other) {
  sg_Shape copy(other);
  copy.swap(*this);
  return *this;
}

void sg_Shape::swap(sg_Shape& other) {
  std::swap(member_, other.member_);
  std::swap(chosen_, other.chosen_);
}

void sg_Shape::reset() {
  sg_Shape fresh;
  fresh.swap(*this);
}

bool sg_Shape::is_occurs_ok() const { return chosen_ != chosen_none; }

void sg_Shape::release_choice() { delete member_; }

template <class T>
T* sg_Shape::hold(T* member, int selection) {
  if (member == nullptr) return nullptr;
  release_choice();
  member_ = member;
  chosen_ = selection;
  return member;
}

elmx_error sg_Shape::marshal(c_xml_writer& writer, const char*) const {
  if (!is_occurs_ok()) return lmx::elmx_occurs_on_marshal;
  lmx::internal::MarshalScope scope(writer);
  return marshal_child_elements(writer);
}

elmx_error sg_Shape::marshal_child_elements(c_xml_writer& writer) const {
  static constexpr const char* k_names[] = {
    "Zol:Shape",
    "Zol:Round",
    "Zol:Ring"
  };
  if (chosen_ < 0 || chosen_ >= 3) return internal::bad_choice(writer, "sg_Shape", __LINE__);
  if (member_ == nullptr) return lmx::elmx_type_not_set;
  if (chosen_ == chosen_Shape) writer.set_expected_class_identity(ShapeType::id);
  if (chosen_ == chosen_Round) writer.set_expected_class_identity(RoundType::id);
  return member_->marshal(writer, k_names[chosen_]);
}

const s_event_map* sg_Shape::member_rows() { return k_sg_Shape_elements; }

bool sg_Shape::is_member(c_xml_reader& reader, const std::string&) {
  return internal::is_in_table(reader, member_rows());
}

bool sg_Shape::unmarshal(c_xml_reader& reader, std::string* name, elmx_error* err) {
  internal::MemberReader member(reader, *name, *err, k_sg_Shape_elements, __LINE__);
  switch (member.event()) {
    case event::Shape: return member.read(hold(member.make_named<ShapeType>().release(),
        chosen_Shape));
    case event::Round: return member.read(hold(member.make_named_or_plain<RoundType>().release(),
        chosen_Round));
    case event::Ring: return member.read(hold(new (reader.pool()) RingType, chosen_Ring));
    default: return member.skip();
  }
}

const ShapeType& sg_Shape::get_Shape() const {
  return chosen_ == chosen_Shape && member_ != nullptr
             ? static_cast<const ShapeType&>(*member_)
             : internal::empty_object<ShapeType>();
}

ShapeType& sg_Shape::get_Shape() {
  if (chosen_ == chosen_Shape && member_ != nullptr) return static_cast<ShapeType&>(*member_);
  return *hold(new ShapeType, chosen_Shape);
}

ShapeType& sg_Shape::assign_Shape(const ShapeType& value) {
  if (chosen_ == chosen_Shape && member_ != nullptr) return get_Shape() = value;
  // The value may live inside the member that goes.
  return *hold(new ShapeType(value), chosen_Shape);
}

ShapeType& sg_Shape::assign_Shape(ShapeType* value) {
  if (chosen_ != chosen_Shape) release_choice();
  member_ = value;
  chosen_ = chosen_Shape;
  return value != nullptr ? *value : internal::nowhere<ShapeType>();
}

const RoundType& sg_Shape::get_Round() const {
  return chosen_ == chosen_Round && member_ != nullptr
             ? static_cast<const RoundType&>(*member_)
             : internal::empty_object<RoundType>();
}

RoundType& sg_Shape::get_Round() {
  if (chosen_ == chosen_Round && member_ != nullptr) return static_cast<RoundType&>(*member_);
  return *hold(new RoundType, chosen_Round);
}

RoundType& sg_Shape::assign_Round(const RoundType& value) {
  if (chosen_ == chosen_Round && member_ != nullptr) return get_Round() = value;
  // The value may live inside the member that goes.
  return *hold(new RoundType(value), chosen_Round);
}

RoundType& sg_Shape::assign_Round(RoundType* value) {
  if (chosen_ != chosen_Round) release_choice();
  member_ = value;
  chosen_ = chosen_Round;
  return value != nullptr ? *value : internal::nowhere<RoundType>();
}

const RingType& sg_Shape::get_Ring() const {
  return chosen_ == chosen_Ring && member_ != nullptr
             ? static_cast<const RingType&>(*member_)
             : internal::empty_object<RingType>();
}

RingType& sg_Shape::get_Ring() {
  if (chosen_ == chosen_Ring && member_ != nullptr) return static_cast<RingType&>(*member_);
  return *hold(new RingType, chosen_Ring);
}

RingType& sg_Shape::assign_Ring(const RingType& value) {
  if (chosen_ == chosen_Ring && member_ != nullptr) return get_Ring() = value;
  // The value may live inside the member that goes.
  return *hold(new RingType(value), chosen_Ring);
}

// AnyShape

AnyShape::AnyShape() = default;
AnyShape::AnyShape(const AnyShape& other) = default;
AnyShape& AnyShape::operator=(const AnyShape& other) = default;

elmx_error AnyShape::unmarshal(c_xml_reader& reader) {
  reader.set_ns_map(internal::document_ns_map());
  lmx::c_xml_reader_local scope(reader);
  if (const elmx_error error = internal::read_root_tag(reader, "AnyShape", __LINE__)) return error;
  return unmarshal(reader, reader.name);
}

// Round

Round::Round() = default;
Round::Round(const Round& other) = default;
Round& Round::operator=(const Round& other) = default;

elmx_error Round::marshal(c_xml_writer& writer, const char* name) const {
  writer.conditionally_select_ns_map(ns_map());
  return RoundType::marshal(writer, name);
}

elmx_error Round::unmarshal(c_xml_reader& reader, const std::string& name) {
  return RoundType::unmarshal(reader, name);
}

const lmx::s_ns_map* Round::ns_map() { return internal::document_ns_map(); }

Round::Round(const char* file, elmx_error* err) : Round() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(file);
}
Round::Round(const char* buffer, std::size_t size, elmx_error* err) : Round() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(buffer, size);
}
Round::Round(const std::string& text, elmx_error* err) : Round() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(text);
}

elmx_error Round::marshal(const char* file) const {
  return internal::marshal_to_file(internal::source_of(*this), file);
}
elmx_error Round::marshal(std::string* out) const {
  return internal::marshal_to_string(internal::source_of(*this), out);
}
elmx_error Round::marshal(std::ostream& stream) const {
  return internal::marshal_to_stream(internal::source_of(*this), stream);
}

elmx_error Round::unmarshal(const char* file) {
  return internal::unmarshal_from_file(internal::target_of(*this), file);
}
elmx_error Round::unmarshal(const char* buffer, std::size_t size) {
  return internal::unmarshal_from_memory(internal::target_of(*this), buffer, size);
}
elmx_error Round::unmarshal(const std::string& text) {
  return unmarshal(text.data(), text.size());
}
elmx_error Round::unmarshal(c_xml_reader& reader) {
  reader.set_ns_map(ns_map());
  lmx::c_xml_reader_local scope(reader);
  if (const elmx_error error = internal::read_root_tag(reader, "Round", __LINE__)) return error;
  return unmarshal(reader, reader.name);
}

// Ring

constexpr s_event_map k_Ring_attributes[] = {
  {0, nullptr, 0, lmx::elxp_unknown}};

Ring::Ring() = default;
Ring::Ring(const Ring& other) = default;

Ring& Ring::operator=(const Ring& other) {
  Ring copy(other);
  copy.swap(*this);
  return *this;
}

void Ring::swap(Ring& other) {
  RingType::swap(other);
  std::swap(nil_, other.nil_);
}

void Ring::reset() {
  Ring fresh;
  fresh.swap(*this);
}

bool Ring::is_occurs_ok() const { return nil_ || RingType::is_occurs_ok(); }

bool Ring::unmarshal_attributes(c_xml_reader& reader, const std::string& name, elmx_error* err) {
  internal::AttributeReader attribute(reader, name, *err, k_Ring_attributes, __LINE__);
  switch (attribute.event()) {
    case lmx::elxp_xsi_nil: return attribute.read_nil(nil_);
    default: return RingType::unmarshal_attributes(reader, name, err);
  }
}

using Ring_steps = Steps<Ring,
    internal::k_wants_content | internal::k_names_namespaces | internal::k_nillable>;

elmx_error Ring::marshal(c_xml_writer& writer, const char* name) const {
  return internal::write_element(this, Ring_steps::k_writing, writer, name, "RingType",
      RingType::id);
}

elmx_error Ring::unmarshal(c_xml_reader& reader, const std::string& name) {
  return internal::read_element(this, Ring_steps::k_reading, reader, name);
}

const lmx::s_ns_map* Ring::ns_map() { return internal::document_ns_map(); }

Ring::Ring(const char* file, elmx_error* err) : Ring() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(file);
}
Ring::Ring(const char* buffer, std::size_t size, elmx_error* err) : Ring() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(buffer, size);
}
Ring::Ring(const std::string& text, elmx_error* err) : Ring() {
  *err = lmx::elmx_undefined;
  *err = unmarshal(text);
}

elmx_error Ring::marshal(const char* file) const {
  return internal::marshal_to_file(internal::source_of(*this), file);
}
elmx_error Ring::marshal(std::string* out) const {
  return internal::marshal_to_string(internal::source_of(*this), out);
}
elmx_error Ring::marshal(std::ostream& stream) const {
  return internal::marshal_to_stream(internal::source_of(*this), stream);
}

elmx_error Ring::unmarshal(const char* file) {
  return internal::unmarshal_from_file(internal::target_of(*this), file);
}
elmx_error Ring::unmarshal(const char* buffer, std::size_t size) {
  return internal::unmarshal_from_memory(internal::target_of(*this), buffer, size);
}
elmx_error Ring::unmarshal(const std::string& text) {
  return unmarshal(text.data(), text.size());
}
elmx_error Ring::unmarshal(c_xml_reader& reader) {
  reader.set_ns_map(ns_map());
  lmx::c_xml_reader_local scope(reader);
  if (const elmx_error error = internal::read_root_tag(reader, "Ring", __LINE__)) return error;
  return unmarshal(reader, reader.name);
}

}  // namespace zol_v2
