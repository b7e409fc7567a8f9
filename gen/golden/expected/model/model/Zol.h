// Generated from model/schema by gen/model_header.py: edit those, not this.
// The document model: one class for each type and element of the format.
//
// Every class is built by one pattern. For a row X there are get_X and set_X or assign_X,
// isset_X and unset_X if it is optional, getenum_X and setenum_X if it is enumerated, and
// append_X, insert_X, delete_X, clear_X, size_X (back_X and each_X for children) if it is a
// list. A setter gives 0, or the code of the first facet that fails and stores nothing. The
// non-const get_X of a child marks it as present; that of a list appends until the index
// exists, as back_X does in an empty list. setenum_X is false, and stores nothing, for a number
// that is no value's. Past the end the const getters give an empty object, delete_X does nothing,
// and set_X and insert_X of a list append. An object owns all that it holds, and a copy is deep;
// what was moved from is empty. References live until the row they belong to is cleared, replaced,
// moved from or swapped. Text is UTF-16, one unit a wchar_t on every platform. An object belongs
// to one thread at a time; nothing is shared between objects.
//
// Every class has swap(), reset(), which makes it as new, and is_occurs_ok(), whether all that
// is required is there; those that are elements have marshal() and unmarshal() (see
// model/internal/bases.h). k_class is what the library knows of a class; ask it through
// model/reflection.h.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/errors.h"
#include "model/document_result.h"
#include "model/internal/bases.h"
#include "model/internal/object.h"
#include "model/internal/walkers.h"
#include "port/export.h"
#include "port/narrow_text.h"

namespace zol_v2 {

namespace internal {
extern ZOL_API const EnumTable k_Grade;
}  // namespace internal

class Box;
class anon_Tag;
class Zol;
class Seal;
class Part;
class PartChoice;
class ShapeType;
class RoundType;
class RingType;
class sg_Shape;
class AnyShape;
class Round;
class Ring;

// A box. It may be empty.
class ZOL_API Box : public internal::Plain {
 public:
  // With nothing set.
  Box();
  // A deep copy.
  Box(const Box& other);
  Box& operator=(const Box& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  Box(Box&& other) noexcept;
  Box& operator=(Box&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~Box() override;
  // Exchanges all that the two hold.
  void swap(Box& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // A nilled element is written as xsi:nil without content. Only reset(), swap(), copying and
  // reading take the mark away again.
  void setnil_Box() { touch(6); }
  bool isnil_Box() const { return has(6); }

  // How it is graded.
  // Grade: attribute, string, required, one of Grade.
  // get_Grade gives an empty text while it was never set. set_Grade gives 38 for another text.
  enum Eenum_Grade : int {
    Grade_unknown = 0,  // Not set, or none of these.
    Grade_A = 1,  // The best.
    Grade_B_plus = 2,  // Nearly "as good", a | b & <c>.
  };
  const std::wstring& get_Grade() const { return internal::text_of(grade_); }
  lmx::elmx_error set_Grade(const std::wstring& value) { return set(*this, k_rows[0], value); }
  Eenum_Grade getenum_Grade() const {
    return Eenum_Grade(k_rows[0].enumeration->number_at(grade_));
  }
  bool setenum_Grade(Eenum_Grade value) { return set_number(*this, k_rows[0], value); }

  // How a spare one is graded.
  // Spare: attribute, string, optional, one of the Grade values, default Grade_A.
  // get_Spare gives Grade_A while it was never set. set_Spare gives 38 for another text.
  enum Eenum_Spare : int {
    Spare_unknown = 0,  // Not set, or none of these.
    Spare_Grade_A = 1,  // The best.
    Spare_Grade_B_plus = 2,  // Nearly "as good", a | b & <c>.
  };
  const std::wstring& get_Spare() const { return internal::text_of(spare_); }
  lmx::elmx_error set_Spare(const std::wstring& value) { return set(*this, k_rows[1], value); }
  Eenum_Spare getenum_Spare() const {
    return Eenum_Spare(k_rows[1].enumeration->number_at(spare_));
  }
  bool setenum_Spare(Eenum_Spare value) { return set_number(*this, k_rows[1], value); }
  bool isset_Spare() const { return has(2); }
  void unset_Spare() { drop(2); }

  // How many there are, the spare ones included.
  // Count: attribute, byte, required, >= 2, <= 99.
  // get_Count gives 0 while it was never set. set_Count gives 37 for less than 2, 36 for more than
  // 99.
  unsigned char get_Count() const { return count_; }
  lmx::elmx_error set_Count(unsigned char value) { return set(*this, k_rows[2], value); }

  // A letter.
  // Code: element, string, required, 1 character.
  // get_Code gives an empty text while it was never set. set_Code gives 20 for a shorter text, 19
  // for a longer one.
  const std::wstring& get_Code() const { return code_.get(); }
  lmx::elmx_error set_Code(const std::wstring& value) { return set(*this, k_rows[3], value); }

  // How heavy it is.
  // Weight: element, double, required, > 0, <= 2.5, unit kg, default 1.5.
  // get_Weight gives 1.5 while it was never set. set_Weight gives 37 for no more than 0 and NaN, 36
  // for more than 2.5.
  double get_Weight() const { return weight_; }
  lmx::elmx_error set_Weight(double value) { return set(*this, k_rows[4], value); }

 private:
  static const internal::Row k_rows[];

  const std::wstring* grade_ = nullptr;
  const std::wstring* spare_ = internal::k_Grade.first + 0;
  unsigned char count_ = 0;
  internal::Text code_;
  double weight_ = 1.5;
};

// What it is tagged with.
class ZOL_API anon_Tag : public internal::Object {
 public:
  // With nothing set.
  anon_Tag();
  // A deep copy.
  anon_Tag(const anon_Tag& other);
  anon_Tag& operator=(const anon_Tag& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  anon_Tag(anon_Tag&& other) noexcept;
  anon_Tag& operator=(anon_Tag&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~anon_Tag() override;
  // Exchanges all that the two hold.
  void swap(anon_Tag& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // Writes what is chosen, under its own name: 46 if nothing is.
  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const {
    return internal::write_element(*this, k_class, writer, name);
  }
  // Whether the element at hand belongs here; if not, the reader is left as it was.
  static bool is_member(lmx::c_xml_reader& reader, const std::string&) {
    return internal::is_member(k_class, reader);
  }
  // Reads the element at hand, and gives the name of what follows it. False if the element
  // does not belong here, or with *err set after a failure.
  bool unmarshal(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err) {
    return internal::read_member(*this, k_class, reader, name, err);
  }

  // Which alternative is held.
  enum elmx_chosen : int {
    chosen_TagText = 0,  // What it says.
    chosen_TagNumber = 1,  // A number.
    chosen_none = 2,  // Nothing.
  };
  elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }
  // Calls the visitor with what is chosen; false if nothing is.
  template <class Visitor>
  bool visit(Visitor&& visitor) const {
    switch (chosen_) {
      case chosen_TagText: visitor(get_TagText()); return true;
      case chosen_TagNumber: visitor(get_TagNumber()); return true;
      default: return false;
    }
  }

  // What it says.
  // TagText: alternative, string.
  // get_TagText gives an empty text while it is not chosen. set_TagText chooses it.
  const std::wstring& get_TagText() const {
    return internal::text_of(chosen_ == 0 ? slot_.text : nullptr);
  }
  lmx::elmx_error set_TagText(const std::wstring& value) { return set(*this, k_rows[0], value); }

  // A number.
  // TagNumber: alternative, double.
  // get_TagNumber gives 0 while it is not chosen. set_TagNumber chooses it.
  double get_TagNumber() const { return chosen_ == 1 ? slot_.real : 0.0; }
  lmx::elmx_error set_TagNumber(double value) { return set(*this, k_rows[1], value); }

 private:
  static const internal::Row k_rows[];

  internal::Slot slot_;
};

// The root.
class ZOL_API Zol : public internal::Plain, public internal::Document<Zol> {
 public:
  // With nothing set but the read stamp.
  Zol();
  // A deep copy.
  Zol(const Zol& other);
  Zol& operator=(const Zol& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  Zol(Zol&& other) noexcept;
  Zol& operator=(Zol&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~Zol() override;
  // Exchanges all that the two hold.
  void swap(Zol& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // The name of its element.
  static constexpr char k_element_name[] = "Zol:Zol";
  // From a file, from bytes, or from a text, by unmarshal(), whose code *err gets.
  Zol(const char* file, lmx::elmx_error* err) : Zol() { construct(err, file); }
  Zol(const char* buffer, std::size_t size, lmx::elmx_error* err) : Zol() {
    construct(err, buffer, size);
  }
  Zol(const std::string& text, lmx::elmx_error* err) : Zol() { construct(err, text); }
  using Document::marshal;
  using Document::unmarshal;
  using Plain::marshal;
  using Plain::unmarshal;

  // Whole documents. Reading appends to what the object holds; reset() comes first if that is
  // not wanted. Writing is const and yet stamps the Header with this library's name and
  // version, also if it fails. Texts and paths may be narrow, in UTF-8, and a path a
  // std::filesystem::path.
  //
  // The text of a document. Its XML declaration is acted on after conversion to UTF-8, so
  // that one which says UTF-16 is a mismatch: 15.
  lmx::elmx_error loadString(const std::wstring& text);
  lmx::elmx_error loadString(zol::port::Utf8Text text);
  XMLDocumentResult writeString() const;
  // A path that ends in ".zolz" is an archive whose first entry is the document, any other an
  // XML file. 1: cannot be opened. 1000: the entry of an archive is damaged. What is no
  // archive at all, or cannot be opened as one, throws CZipException; openFile() does not.
  lmx::elmx_error loadFile(const std::wstring& path);
  lmx::elmx_error loadFile(zol::port::FilePath path) { return loadFile(path.wide()); }
  // ".zol" for XML, ".zolz" for an archive; any other path gives 1001 and touches nothing.
  // An archive goes through a working file of the same name that ends in ".zol", overwriting
  // and then removing what stood there. A failed marshal removes the ".zol" file, which is
  // truncated by then. Gives 0 also if the ".zol" can't be made or written, and an archive then
  // gets what stands there (see docs/formats.md); throws CZipException if an archive cannot be
  // created. saveFile() has none of these edges.
  lmx::elmx_error writeFile(const std::wstring& path) const;
  lmx::elmx_error writeFile(zol::port::FilePath path) const { return writeFile(path.wide()); }

  // What "the\rest" means, a | b & c*.
  // Note: element, string, required.
  // get_Note gives an empty text while it was never set.
  const std::wstring& get_Note() const { return note_.get(); }
  lmx::elmx_error set_Note(const std::wstring& value) { return set(*this, k_rows[0], value); }

  // When it was stamped.
  // Stamp: element, dateTime, at least one.
  // Past the end get_Stamp gives an untouched date, and set_Stamp appends.
  const lmx::c_datetime& get_Stamp(unsigned index) const { return stamp_.at(index); }
  lmx::elmx_error set_Stamp(unsigned index, const lmx::c_datetime& value) {
    return stamp_.set(index, value);
  }
  lmx::elmx_error append_Stamp(const lmx::c_datetime& value) { return stamp_.append(value); }
  lmx::elmx_error insert_Stamp(unsigned index, const lmx::c_datetime& value) {
    return stamp_.insert(index, value);
  }
  void delete_Stamp(unsigned index) { stamp_.remove(index); }
  void clear_Stamp() { stamp_.clear(); }
  unsigned size_Stamp() const { return stamp_.size(); }

  // Another name.
  // Alias: element, string, any number.
  // Past the end get_Alias gives an empty text, and set_Alias appends.
  const std::wstring& get_Alias(unsigned index) const { return alias_.at(index); }
  lmx::elmx_error set_Alias(unsigned index, const std::wstring& value) {
    return alias_.set(index, value);
  }
  lmx::elmx_error append_Alias(const std::wstring& value) { return alias_.append(value); }
  lmx::elmx_error insert_Alias(unsigned index, const std::wstring& value) {
    return alias_.insert(index, value);
  }
  void delete_Alias(unsigned index) { alias_.remove(index); }
  void clear_Alias() { alias_.clear(); }
  unsigned size_Alias() const { return alias_.size(); }

  // How big it is.
  // Size: element, uint, optional, > 0 on reading, <= 9.
  // get_Size gives 0 while it was never set. set_Size gives 36 for more than 9.
  unsigned get_Size() const { return size_; }
  lmx::elmx_error set_Size(unsigned value) { return set(*this, k_rows[3], value); }
  bool isset_Size() const { return has(4); }
  void unset_Size() { drop(4); }

  // A box.
  // Box: element, Box, required.
  // The const get_Box gives an untouched object if there is none; the other one and the assignment
  // mark it as present.
  const Box& get_Box() const { return box_; }
  Box& get_Box() { touch(5); return box_; }
  Box& assign_Box(const Box& value) { return get_Box() = value; }

  // What shuts the box.
  // Lid: element, Box, optional.
  // The const get_Lid gives an untouched object if there is none; the other one and the assignment
  // mark it as present.
  const Box& get_Lid() const { return internal::child_of<Box>(lid_); }
  Box& get_Lid() { touch(6); return internal::made<Box>(lid_); }
  Box& assign_Lid(const Box& value) { return internal::assigned(get_Lid(), value); }
  bool isset_Lid() const { return has(6); }
  void unset_Lid() { drop(6); }

  // A value with an attribute.
  // Part: element, Part, any number.
  // Past the end the const get_Part gives an untouched object; the other one and the assignment
  // append up to there.
  const Part& get_Part(unsigned index) const { return part_.at(index); }
  Part& get_Part(unsigned index) { return part_.grow_to(index); }
  Part& assign_Part(unsigned index, const Part& value) {
    return internal::assigned(get_Part(index), value);
  }
  lmx::elmx_error append_Part() { return part_.append(); }
  lmx::elmx_error insert_Part(unsigned index) { return part_.insert(index); }
  Part& back_Part() { return part_.back(); }
  void delete_Part(unsigned index) { part_.remove(index); }
  void clear_Part() { part_.clear(); }
  unsigned size_Part() const { return part_.size(); }
  internal::Each<Part> each_Part() { return part_.each(); }
  internal::Each<const Part> each_Part() const { return part_.each(); }

  // One of the family.
  // Shape: element, sg_Shape, any number.
  // Past the end the const get_Shape gives an untouched object; the other one and the assignment
  // append up to there.
  const sg_Shape& get_Shape(unsigned index) const { return shape_.at(index); }
  sg_Shape& get_Shape(unsigned index) { return shape_.grow_to(index); }
  sg_Shape& assign_Shape(unsigned index, const sg_Shape& value) {
    return internal::assigned(get_Shape(index), value);
  }
  lmx::elmx_error append_Shape() { return shape_.append(); }
  lmx::elmx_error insert_Shape(unsigned index) { return shape_.insert(index); }
  sg_Shape& back_Shape() { return shape_.back(); }
  void delete_Shape(unsigned index) { shape_.remove(index); }
  void clear_Shape() { shape_.clear(); }
  unsigned size_Shape() const { return shape_.size(); }
  internal::Each<sg_Shape> each_Shape() { return shape_.each(); }
  internal::Each<const sg_Shape> each_Shape() const { return shape_.each(); }

  // One of the family.
  // Outline: element, sg_Shape, required.
  // The const get_Outline gives an untouched object if there is none; the other one and the
  // assignment mark it as present.
  const sg_Shape& get_Outline() const { return internal::child_of<sg_Shape>(outline_); }
  sg_Shape& get_Outline() { touch(9); return internal::made<sg_Shape>(outline_); }
  sg_Shape& assign_Outline(const sg_Shape& value) {
    return internal::assigned(get_Outline(), value);
  }

  // What it is tagged with.
  // anon_Tag: one value of a group, anon_Tag, required.
  // The const get_anon_Tag gives an untouched object if there is none; the other one and the
  // assignment mark it as present.
  const anon_Tag& get_anon_Tag() const { return anon_tag_; }
  anon_Tag& get_anon_Tag() { touch(10); return anon_tag_; }
  anon_Tag& assign_anon_Tag(const anon_Tag& value) { return get_anon_Tag() = value; }

  // Whatever else there is.
  // any: foreign elements, any number.
  // An element's full name, its namespace and its whole text, each unless the pointer is
  // null. An entry that was appended has a text alone. Nothing if there is no such entry.
  void get_any(unsigned index, std::string* full_name, std::string* namespace_uri,
      std::string* text) const {
    internal::get_foreign(any_, index, full_name, namespace_uri, text);
  }
  // Whole elements as text, which nothing checks; inserted past the end they are appended.
  lmx::elmx_error append_any(const std::string& text) { return any_.append({{}, {}, text}); }
  lmx::elmx_error insert_any(unsigned index, const std::string& text) {
    return any_.insert(index, {{}, {}, text});
  }
  void delete_any(unsigned index) { any_.remove(index); }
  void clear_any() { any_.clear(); }
  unsigned size_any() const { return any_.size(); }

 private:
  static const internal::Row k_rows[];

  internal::Batch batch_;
  internal::Text note_;
  internal::Values<lmx::c_datetime> stamp_;
  internal::Values<std::wstring> alias_;
  unsigned size_ = 0;
  Box box_;
  internal::Object* lid_ = nullptr;
  internal::List<Part> part_;
  internal::List<sg_Shape> shape_;
  internal::Object* outline_ = nullptr;
  anon_Tag anon_tag_;
  internal::Values<internal::AnyElement> any_;
};

// That it is sealed.
class ZOL_API Seal : public internal::Plain {
 public:
  // With nothing set.
  Seal();
  // A deep copy.
  Seal(const Seal& other);
  Seal& operator=(const Seal& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  Seal(Seal&& other) noexcept;
  Seal& operator=(Seal&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~Seal() override;
  // Exchanges all that the two hold.
  void swap(Seal& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;
};

// A value with an attribute.
class ZOL_API Part : public internal::Plain {
 public:
  // With nothing set.
  Part();
  // A deep copy.
  Part(const Part& other);
  Part& operator=(const Part& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  Part(Part&& other) noexcept;
  Part& operator=(Part&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~Part() override;
  // Exchanges all that the two hold.
  void swap(Part& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // What it is counted in.
  // Unit: attribute, string, optional.
  // get_Unit gives an empty text while it was never set.
  const std::wstring& get_Unit() const { return unit_.get(); }
  lmx::elmx_error set_Unit(const std::wstring& value) { return set(*this, k_rows[0], value); }
  bool isset_Unit() const { return has(1); }
  void unset_Unit() { drop(1); }

  // What it is made of.
  // Part: the content, base64.
  // get_Part gives no bytes while it was never set.
  const lmx::c_binary& get_Part() const { return part_; }
  lmx::elmx_error set_Part(const lmx::c_binary& value) { return set(*this, k_rows[1], value); }
  bool isset_Part() const { return has(2); }
  void unset_Part() { drop(2); }

 private:
  static const internal::Row k_rows[];

  internal::Text unit_;
  lmx::c_binary part_;
};

// One of several.
class ZOL_API PartChoice : public internal::Plain {
 public:
  // With nothing set.
  PartChoice();
  // A deep copy.
  PartChoice(const PartChoice& other);
  PartChoice& operator=(const PartChoice& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  PartChoice(PartChoice&& other) noexcept;
  PartChoice& operator=(PartChoice&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~PartChoice() override;
  // Exchanges all that the two hold.
  void swap(PartChoice& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // Which alternative is held.
  enum elmx_chosen : int {
    chosen_Grade = 0,  // How it is graded.
    chosen_Text = 1,  // What it says.
    chosen_Amount = 2,  // A share.
    chosen_Number = 3,  // A number.
    chosen_Box = 4,  // A box.
    chosen_none = 5,  // Nothing.
  };
  elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }
  // Calls the visitor with what is chosen; false if nothing is.
  template <class Visitor>
  bool visit(Visitor&& visitor) const {
    switch (chosen_) {
      case chosen_Grade: visitor(get_Grade()); return true;
      case chosen_Text: visitor(get_Text()); return true;
      case chosen_Amount: visitor(get_Amount()); return true;
      case chosen_Number: visitor(get_Number()); return true;
      case chosen_Box: visitor(get_Box()); return true;
      default: return false;
    }
  }

  // How it is graded.
  // Grade: alternative, string, one of Grade.
  // get_Grade gives an empty text while it is not chosen. set_Grade chooses it, and gives 38 for
  // another text.
  enum Eenum_Grade : int {
    Grade_unknown = 0,  // Not set, or none of these.
    Grade_A = 1,  // The best.
    Grade_B_plus = 2,  // Nearly "as good", a | b & <c>.
  };
  const std::wstring& get_Grade() const {
    return internal::text_of(chosen_ == 0 ? slot_.enumerated : nullptr);
  }
  lmx::elmx_error set_Grade(const std::wstring& value) { return set(*this, k_rows[0], value); }
  Eenum_Grade getenum_Grade() const {
    return Eenum_Grade(k_rows[0].enumeration->number_at(chosen_ == 0 ? slot_.enumerated : nullptr));
  }
  bool setenum_Grade(Eenum_Grade value) { return set_number(*this, k_rows[0], value); }

  // What it says.
  // Text: alternative, string.
  // get_Text gives an empty text while it is not chosen. set_Text chooses it.
  const std::wstring& get_Text() const {
    return internal::text_of(chosen_ == 1 ? slot_.text : nullptr);
  }
  lmx::elmx_error set_Text(const std::wstring& value) { return set(*this, k_rows[1], value); }

  // A share.
  // Amount: alternative, double, >= 0, unit percent.
  // get_Amount gives 0 while it is not chosen. set_Amount chooses it, and gives 37 for less than 0
  // and NaN.
  double get_Amount() const { return chosen_ == 2 ? slot_.real : 0.0; }
  lmx::elmx_error set_Amount(double value) { return set(*this, k_rows[2], value); }

  // A number.
  // Number: alternative, int, >= -2147483648, <= 2147483647.
  // get_Number gives 0 while it is not chosen. set_Number chooses it.
  int get_Number() const { return chosen_ == 3 ? slot_.int32 : 0; }
  lmx::elmx_error set_Number(int value) { return set(*this, k_rows[3], value); }

  // A box.
  // Box: alternative, Box.
  // The const get_Box gives an untouched object unless this is chosen; the other one and the
  // assignment choose it.
  const Box& get_Box() const {
    return internal::child_of<Box>(chosen_ == 4 ? slot_.object : nullptr);
  }
  Box& get_Box() { return choose_as<Box>(k_rows[4]); }
  Box& assign_Box(const Box& value) { return choose_as(k_rows[4], value); }

 private:
  static const internal::Row k_rows[];

  internal::Slot slot_;
};

// A family.
class ZOL_API ShapeType : public internal::Polymorphic {
 public:
  // With nothing set.
  ShapeType();
  // A deep copy.
  ShapeType(const ShapeType& other);
  ShapeType& operator=(const ShapeType& other) { return assigned(*this, other, k_class); }
  virtual ShapeType* clone() const { return new ShapeType(*this); }
  // Of what another held, which is then empty.
  ShapeType(ShapeType&& other) noexcept;
  ShapeType& operator=(ShapeType&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~ShapeType() override;
  // Exchanges all that the two hold.
  void swap(ShapeType& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // The name that an xsi:type has for the class.
  static const char* id;
  // A new object of the named type, which the caller owns; null if the namespace is not
  // that of the format or the family has no such type.
  static ShapeType* factory(int ns_id, const std::string& type_name) {
    return static_cast<ShapeType*>(internal::make_named(k_class, ns_id, type_name, nullptr));
  }

  // What it is called.
  // Name: attribute, string, optional.
  // get_Name gives an empty text while it was never set.
  const std::wstring& get_Name() const { return name_.get(); }
  lmx::elmx_error set_Name(const std::wstring& value) { return set(*this, k_rows[0], value); }
  bool isset_Name() const { return has(1); }
  void unset_Name() { drop(1); }

  // One of several.
  // Choice: element, PartChoice, optional.
  // The const get_Choice gives an untouched object if there is none; the other one and the
  // assignment mark it as present.
  const PartChoice& get_Choice() const { return internal::child_of<PartChoice>(choice_); }
  PartChoice& get_Choice() { touch(2); return internal::made<PartChoice>(choice_); }
  PartChoice& assign_Choice(const PartChoice& value) {
    return internal::assigned(get_Choice(), value);
  }
  bool isset_Choice() const { return has(2); }
  void unset_Choice() { drop(2); }

 private:
  static const internal::Row k_rows[];

  internal::Text name_;
  internal::Object* choice_ = nullptr;
};

// Something round.
class ZOL_API RoundType : public ShapeType {
 public:
  // With nothing set.
  RoundType();
  // A deep copy.
  RoundType(const RoundType& other);
  RoundType& operator=(const RoundType& other) { return assigned(*this, other, k_class); }
  RoundType* clone() const override { return new RoundType(*this); }
  // Of what another held, which is then empty.
  RoundType(RoundType&& other) noexcept;
  RoundType& operator=(RoundType&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~RoundType() override;
  // Exchanges all that the two hold.
  void swap(RoundType& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // The name that an xsi:type has for the class.
  static const char* id;
  // A new object of the named type, which the caller owns; null if the namespace is not
  // that of the format or the family has no such type.
  static RoundType* factory(int ns_id, const std::string& type_name) {
    return static_cast<RoundType*>(internal::make_named(k_class, ns_id, type_name, nullptr));
  }

  // From its middle to its edge.
  // Radius: element, double, required, >= 0.
  // get_Radius gives 0 while it was never set. set_Radius gives 37 for less than 0 and NaN.
  double get_Radius() const { return radius_; }
  lmx::elmx_error set_Radius(double value) { return set(*this, k_rows[0], value); }

 private:
  static const internal::Row k_rows[];

  double radius_ = 0;
};

// Something round with a hole.
class ZOL_API RingType : public RoundType {
 public:
  // With nothing set.
  RingType();
  // A deep copy.
  RingType(const RingType& other);
  RingType& operator=(const RingType& other) { return assigned(*this, other, k_class); }
  RingType* clone() const override { return new RingType(*this); }
  // Of what another held, which is then empty.
  RingType(RingType&& other) noexcept;
  RingType& operator=(RingType&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~RingType() override;
  // Exchanges all that the two hold.
  void swap(RingType& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // The name that an xsi:type has for the class.
  static const char* id;

  // From its middle to the hole.
  // Inner: element, double, required.
  // get_Inner gives 0 while it was never set.
  double get_Inner() const { return inner_; }
  lmx::elmx_error set_Inner(double value) { return set(*this, k_rows[0], value); }

 private:
  static const internal::Row k_rows[];

  double inner_ = 0;
};

// One of the family.
class ZOL_API sg_Shape : public internal::Object {
 public:
  // With nothing set.
  sg_Shape();
  // A deep copy.
  sg_Shape(const sg_Shape& other);
  sg_Shape& operator=(const sg_Shape& other) { return assigned(*this, other, k_class); }
  // Of what another held, which is then empty.
  sg_Shape(sg_Shape&& other) noexcept;
  sg_Shape& operator=(sg_Shape&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~sg_Shape() override;
  // Exchanges all that the two hold.
  void swap(sg_Shape& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // Writes what is chosen, under its own name: 46 if nothing is.
  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const {
    return internal::write_element(*this, k_class, writer, name);
  }
  // Whether the element at hand belongs here; if not, the reader is left as it was.
  static bool is_member(lmx::c_xml_reader& reader, const std::string&) {
    return internal::is_member(k_class, reader);
  }
  // Reads the element at hand, and gives the name of what follows it. False if the element
  // does not belong here, or with *err set after a failure.
  bool unmarshal(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err) {
    return internal::read_member(*this, k_class, reader, name, err);
  }

  // Which alternative is held.
  enum elmx_chosen : int {
    chosen_Shape = 0,  // A family.
    chosen_Round = 1,  // Something round.
    chosen_Ring = 2,  // Something round with a hole.
    chosen_none = 3,  // Nothing.
  };
  elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }
  // Calls the visitor with what is chosen; false if nothing is.
  template <class Visitor>
  bool visit(Visitor&& visitor) const {
    switch (chosen_) {
      case chosen_Shape: visitor(get_Shape()); return true;
      case chosen_Round: visitor(get_Round()); return true;
      case chosen_Ring: visitor(get_Ring()); return true;
      default: return false;
    }
  }

  // A family.
  // Shape: alternative, ShapeType.
  // The const get_Shape gives an untouched object unless this is chosen; the other one and the
  // assignment choose it.
  const ShapeType& get_Shape() const {
    return internal::child_of<ShapeType>(chosen_ == 0 ? slot_.object : nullptr);
  }
  ShapeType& get_Shape() { return choose_as<ShapeType>(k_rows[0]); }
  ShapeType& assign_Shape(const ShapeType& value) { return choose_as(k_rows[0], value); }
  // Takes ownership, so that an object of a derived type can stand here. If the
  // alternative is chosen already, its object is not freed. A null pointer is chosen
  // as it is, and cannot be written: 45.
  ShapeType& assign_Shape(ShapeType* value) { return adopt_as(k_rows[0], value); }

  // Something round.
  // Round: alternative, RoundType.
  // The const get_Round gives an untouched object unless this is chosen; the other one and the
  // assignment choose it.
  const RoundType& get_Round() const {
    return internal::child_of<RoundType>(chosen_ == 1 ? slot_.object : nullptr);
  }
  RoundType& get_Round() { return choose_as<RoundType>(k_rows[1]); }
  RoundType& assign_Round(const RoundType& value) { return choose_as(k_rows[1], value); }
  // Takes ownership, so that an object of a derived type can stand here. If the
  // alternative is chosen already, its object is not freed. A null pointer is chosen
  // as it is, and cannot be written: 45.
  RoundType& assign_Round(RoundType* value) { return adopt_as(k_rows[1], value); }

  // Something round with a hole.
  // Ring: alternative, RingType.
  // The const get_Ring gives an untouched object unless this is chosen; the other one and the
  // assignment choose it.
  const RingType& get_Ring() const {
    return internal::child_of<RingType>(chosen_ == 2 ? slot_.object : nullptr);
  }
  RingType& get_Ring() { return choose_as<RingType>(k_rows[2]); }
  RingType& assign_Ring(const RingType& value) { return choose_as(k_rows[2], value); }

 private:
  static const internal::Row k_rows[];

  internal::Slot slot_;
};

// A family. The head element AnyShape of its family, which can be read but not written.
class ZOL_API AnyShape : public ShapeType {
 public:
  // With nothing set.
  AnyShape();
  // A deep copy.
  AnyShape(const AnyShape& other);
  AnyShape& operator=(const AnyShape& other) = default;
  AnyShape* clone() const override { return new AnyShape(*this); }
  // Of what another held, which is then empty.
  AnyShape(AnyShape&& other) noexcept;
  AnyShape& operator=(AnyShape&& other) noexcept = default;
  // Deletes what it holds.
  ~AnyShape() override;
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  using ShapeType::unmarshal;
  // Reads a document that begins with this element: 0, or the code of the fault.
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader) {
    return internal::unmarshal_document(*this, k_class, reader);
  }
};

// Something round. The element Round, of type RoundType.
class ZOL_API Round : public RoundType, public internal::Document<Round> {
 public:
  // With nothing set.
  Round();
  // A deep copy.
  Round(const Round& other);
  Round& operator=(const Round& other) = default;
  Round* clone() const override { return new Round(*this); }
  // Of what another held, which is then empty.
  Round(Round&& other) noexcept;
  Round& operator=(Round&& other) noexcept = default;
  // Deletes what it holds.
  ~Round() override;
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // The name of its element.
  static constexpr char k_element_name[] = "Zol:Round";
  // From a file, from bytes, or from a text, by unmarshal(), whose code *err gets.
  Round(const char* file, lmx::elmx_error* err) : Round() { construct(err, file); }
  Round(const char* buffer, std::size_t size, lmx::elmx_error* err) : Round() {
    construct(err, buffer, size);
  }
  Round(const std::string& text, lmx::elmx_error* err) : Round() { construct(err, text); }
  using Document::marshal;
  using Document::unmarshal;
  using RoundType::marshal;
  using RoundType::unmarshal;
};

// Something round with a hole. The element Ring, of type RingType.
class ZOL_API Ring : public RingType, public internal::Document<Ring> {
 public:
  // With nothing set.
  Ring();
  // A deep copy.
  Ring(const Ring& other);
  Ring& operator=(const Ring& other) { return assigned(*this, other, k_class); }
  Ring* clone() const override { return new Ring(*this); }
  // Of what another held, which is then empty.
  Ring(Ring&& other) noexcept;
  Ring& operator=(Ring&& other) noexcept { return moved(*this, other); }
  // Deletes what it holds.
  ~Ring() override;
  // Exchanges all that the two hold.
  void swap(Ring& other) noexcept { internal::swap(*this, other, k_class); }
  // Makes it as new, with nothing set.
  void reset() { internal::reset(*this, k_class); }
  // Is all there that is required?
  bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
  // What the library knows of the class, for model/reflection.h.
  static const internal::Class k_class;

  // The name of its element.
  static constexpr char k_element_name[] = "Zol:Ring";
  // From a file, from bytes, or from a text, by unmarshal(), whose code *err gets.
  Ring(const char* file, lmx::elmx_error* err) : Ring() { construct(err, file); }
  Ring(const char* buffer, std::size_t size, lmx::elmx_error* err) : Ring() {
    construct(err, buffer, size);
  }
  Ring(const std::string& text, lmx::elmx_error* err) : Ring() { construct(err, text); }
  using Document::marshal;
  using Document::unmarshal;
  using RingType::marshal;
  using RingType::unmarshal;

  // A nilled element is written as xsi:nil without content. Only reset(), swap(), copying and
  // reading take the mark away again.
  void setnil_Ring() { touch(5); }
  bool isnil_Ring() const { return has(5); }
};

}  // namespace zol_v2
