// Generated from model/schema by gen/model_header.py: edit those, not this.
// The document model: one class for each type and element of the format.
//
// Every class is built by one pattern. For a row X there are get_X and set_X or assign_X,
// isset_X and unset_X if it is optional, getenum_X and setenum_X if it is enumerated, and
// append_X, insert_X, delete_X, clear_X, size_X (back_X for children) if it is a list. A
// setter gives 0, or the code of the first facet that fails and stores nothing. The non-const
// get_X of a child marks it as present; that of a list appends until the index exists, as
// back_X does in an empty list. Past the end the const getters give an empty object and
// delete_X does nothing. An object owns all that it holds, and a copy is deep. References
// live until the row they belong to is cleared, replaced or swapped. Text is UTF-16, one
// unit a wchar_t on every platform. An object belongs to one thread at a time; nothing is
// shared between objects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/errors.h"
#include "lmx/internal/pool.h"
#include "model/document_result.h"
#include "model/internal/fields.h"
#include "port/export.h"

namespace lmx {
class c_xml_reader;
class c_xml_writer;
struct s_event_map;
struct s_ns_map;
}  // namespace lmx

namespace zol_v2 {

namespace internal {
struct PlainAccess;
class PlainReader;
template <class T, unsigned traits>
struct Steps;
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

// A box, which may be empty.
class ZOL_API Box {
 public:
  Box();
  Box(const Box& other);
  virtual ~Box();
  Box& operator=(const Box& other);

  void swap(Box& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);

  // A nilled element is written as xsi:nil without content. Only reset(), swap(), copying and
  // reading take the mark away again.
  void setnil_Box() { nil_ = true; }
  bool isnil_Box() const { return nil_; }

  // Grade: attribute, string, required, one of Grade
  enum Eenum_Grade : int {
    Grade_unknown = 0,
    Grade_A = 1,
    Grade_B_plus = 2
  };
  const std::wstring& get_Grade() const { return grade_.get(); }
  lmx::elmx_error set_Grade(const std::wstring& value);
  Eenum_Grade getenum_Grade() const;
  bool setenum_Grade(Eenum_Grade value);

  // Spare: attribute, string, optional, one of the Grade values, default Grade_A
  enum Eenum_Spare : int {
    Spare_unknown = 0,
    Spare_Grade_A = 1,
    Spare_Grade_B_plus = 2
  };
  const std::wstring& get_Spare() const { return spare_.get(); }
  lmx::elmx_error set_Spare(const std::wstring& value);
  Eenum_Spare getenum_Spare() const;
  bool setenum_Spare(Eenum_Spare value);
  bool isset_Spare() const { return spare_.set; }
  void unset_Spare() { spare_.set = false; }

  // Count: attribute, byte, required, >= 2, <= 99
  unsigned char get_Count() const { return count_.value; }
  lmx::elmx_error set_Count(unsigned char value);

  // Code: element, string, required, 1 character
  const std::wstring& get_Code() const { return code_.get(); }
  lmx::elmx_error set_Code(const std::wstring& value);

  // Weight: element, double, required, > 0, <= 2.5, default 1.5
  double get_Weight() const { return weight_.value; }
  lmx::elmx_error set_Weight(double value);

 protected:
  void marshal_attributes(lmx::c_xml_writer& writer) const;
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);
  void unmarshal_plain_attributes(internal::PlainReader& in);
  lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  void init();

  internal::Enumerated grade_;
  internal::Enumerated spare_;
  internal::Value<unsigned char> count_;
  internal::Text code_;
  internal::Value<double> weight_{1.5};
  bool nil_ = false;
};

class ZOL_API anon_Tag {
 public:
  anon_Tag();
  anon_Tag(const anon_Tag& other);
  virtual ~anon_Tag();
  anon_Tag& operator=(const anon_Tag& other);

  void swap(anon_Tag& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  // Whether the element at hand belongs here; if not, the reader is left as it was.
  static bool is_member(lmx::c_xml_reader& reader, const std::string& name);
  bool unmarshal(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

  enum elmx_chosen : int {
    chosen_TagText = 0,
    chosen_TagNumber = 1,
    chosen_none = 2
  };
  elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }

  // TagText: alternative, string
  const std::wstring& get_TagText() const;
  lmx::elmx_error set_TagText(const std::wstring& value);

  // TagNumber: alternative, double
  double get_TagNumber() const;
  lmx::elmx_error set_TagNumber(double value);

 private:
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;

  internal::Slot slot_;
  int chosen_ = chosen_none;
};

// The root.
class ZOL_API Zol {
 public:
  Zol();
  Zol(const Zol& other);
  virtual ~Zol();
  Zol& operator=(const Zol& other);

  void swap(Zol& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);

  // The element as a document of its own. A file that cannot be opened gives 1. A document
  // with another root gives 16.
  static constexpr char k_element_name[] = "Zol:Zol";
  static const lmx::s_ns_map* ns_map();
  Zol(const char* file, lmx::elmx_error* err);
  Zol(const char* buffer, std::size_t size, lmx::elmx_error* err);
  Zol(const std::string& text, lmx::elmx_error* err);
  // A failed marshal leaves no file and the string as it was; a stream keeps the partial text.
  lmx::elmx_error marshal(const char* file) const;
  lmx::elmx_error marshal(std::string* out) const;
  lmx::elmx_error marshal(std::ostream& stream) const;
  // What was read before the first failure stays. A second reading appends to lists and
  // overwrites elements; an attribute that is set gives 3.
  lmx::elmx_error unmarshal(const char* file);
  lmx::elmx_error unmarshal(const char* buffer, std::size_t size);
  lmx::elmx_error unmarshal(const std::string& text);
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);

  // Whole documents. Reading appends to what the object holds; reset() comes first if that is
  // not wanted. Writing is const and yet stamps the Header with this library's name and
  // version, also if it fails.
  //
  // The text of a document. Its XML declaration is acted on after conversion to UTF-8, so
  // that one which says UTF-16 is a mismatch: 15.
  lmx::elmx_error loadString(const std::wstring& text);
  XMLDocumentResult writeString() const;
  // A path that ends in ".zolz" is an archive whose first entry is the document, any other an
  // XML file. 1: cannot be opened. 1000: the entry of an archive is damaged. What is no
  // archive at all, or cannot be opened as one, throws CZipException; openFile() does not.
  lmx::elmx_error loadFile(const std::wstring& path);
  // ".zol" for XML, ".zolz" for an archive; any other path gives 1001 and touches nothing.
  // An archive goes through a working file of the same name that ends in ".zol", overwriting
  // and then removing what stood there. A failed marshal removes the ".zol" file, which is
  // truncated by then. Gives 0 for ".zol" in a directory that cannot be written, having
  // written nothing; throws CZipException if an archive cannot be created. saveFile() has
  // none of these edges.
  lmx::elmx_error writeFile(const std::wstring& path) const;

  // Note: element, string, required
  const std::wstring& get_Note() const { return note_.get(); }
  lmx::elmx_error set_Note(const std::wstring& value);

  // Stamp: element, dateTime, at least one
  const lmx::c_datetime& get_Stamp(unsigned index) const { return stamp_.at(index); }
  lmx::elmx_error set_Stamp(unsigned index, const lmx::c_datetime& value);
  lmx::elmx_error append_Stamp(const lmx::c_datetime& value);
  lmx::elmx_error insert_Stamp(unsigned index, const lmx::c_datetime& value);
  void delete_Stamp(unsigned index);
  void clear_Stamp();
  unsigned size_Stamp() const { return stamp_.size(); }

  // Alias: element, string, any number
  const std::wstring& get_Alias(unsigned index) const { return alias_.at(index); }
  lmx::elmx_error set_Alias(unsigned index, const std::wstring& value);
  lmx::elmx_error append_Alias(const std::wstring& value);
  lmx::elmx_error insert_Alias(unsigned index, const std::wstring& value);
  void delete_Alias(unsigned index);
  void clear_Alias();
  unsigned size_Alias() const { return alias_.size(); }

  // Size: element, uint, optional, > 0 on reading, <= 9
  unsigned get_Size() const { return size_.value; }
  lmx::elmx_error set_Size(unsigned value);
  bool isset_Size() const { return size_.set; }
  void unset_Size() { size_.set = false; }

  // Box: element, Box, required
  const Box& get_Box() const { return box_.get(); }
  Box& get_Box();
  Box& assign_Box(const Box& value);

  // Lid: element, Box, optional
  const Box& get_Lid() const { return lid_.get(); }
  Box& get_Lid();
  Box& assign_Lid(const Box& value);
  bool isset_Lid() const { return lid_.set; }
  void unset_Lid() { lid_.set = false; }

  // Part: element, Part, any number
  const Part& get_Part(unsigned index) const { return part_.at(index); }
  Part& get_Part(unsigned index);
  Part& assign_Part(unsigned index, const Part& value);
  lmx::elmx_error append_Part();
  lmx::elmx_error insert_Part(unsigned index);
  Part& back_Part() { return part_.back(); }
  void delete_Part(unsigned index);
  void clear_Part();
  unsigned size_Part() const { return part_.size(); }

  // Shape: element, sg_Shape, any number
  const sg_Shape& get_Shape(unsigned index) const { return shape_.at(index); }
  sg_Shape& get_Shape(unsigned index);
  sg_Shape& assign_Shape(unsigned index, const sg_Shape& value);
  lmx::elmx_error append_Shape();
  lmx::elmx_error insert_Shape(unsigned index);
  sg_Shape& back_Shape() { return shape_.back(); }
  void delete_Shape(unsigned index);
  void clear_Shape();
  unsigned size_Shape() const { return shape_.size(); }

  // Outline: element, sg_Shape, required
  const sg_Shape& get_Outline() const { return outline_.get(); }
  sg_Shape& get_Outline();
  sg_Shape& assign_Outline(const sg_Shape& value);

  // anon_Tag: one value of a group, anon_Tag, required
  const anon_Tag& get_anon_Tag() const { return anon_tag_.get(); }
  anon_Tag& get_anon_Tag();
  anon_Tag& assign_anon_Tag(const anon_Tag& value);

  // any: foreign elements, any number
  // An element's full name, its namespace and its whole text, each unless the pointer is
  // null. An entry that was appended has a text alone. Nothing if there is no such entry.
  void get_any(unsigned index, std::string* full_name, std::string* namespace_uri,
               std::string* text) const;
  lmx::elmx_error append_any(const std::string& text);
  lmx::elmx_error insert_any(unsigned index, const std::string& text);
  void delete_any(unsigned index);
  void clear_any();
  unsigned size_any() const { return any_.size(); }

 protected:
  void marshal_attributes(lmx::c_xml_writer& writer) const;
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);
  void unmarshal_plain_attributes(internal::PlainReader& in);
  lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  void init();

  internal::Text note_;
  internal::List<lmx::c_datetime> stamp_;
  internal::List<std::wstring> alias_;
  internal::Value<unsigned> size_;
  internal::Child<Box> box_;
  internal::OptionalChild<Box> lid_;
  internal::List<Part> part_;
  internal::List<sg_Shape> shape_;
  internal::OptionalChild<sg_Shape> outline_;
  internal::Child<anon_Tag> anon_tag_;
  internal::List<internal::AnyElement> any_;
};

class ZOL_API Seal {
 public:
  Seal();
  Seal(const Seal& other);
  virtual ~Seal();
  Seal& operator=(const Seal& other);

  void swap(Seal& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);

 protected:
  void marshal_attributes(lmx::c_xml_writer& writer) const;
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);
  void unmarshal_plain_attributes(internal::PlainReader& in);
  lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;
};

// A value with an attribute.
class ZOL_API Part {
 public:
  Part();
  Part(const Part& other);
  virtual ~Part();
  Part& operator=(const Part& other);

  void swap(Part& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);

  // Unit: attribute, string, optional
  const std::wstring& get_Unit() const { return unit_.get(); }
  lmx::elmx_error set_Unit(const std::wstring& value);
  bool isset_Unit() const { return unit_.set; }
  void unset_Unit() { unit_.set = false; }

  // Part: the content, base64
  const lmx::c_binary& get_Part() const { return part_.value; }
  lmx::elmx_error set_Part(const lmx::c_binary& value);
  bool isset_Part() const { return part_.set; }
  void unset_Part() { part_.set = false; }

 protected:
  void marshal_attributes(lmx::c_xml_writer& writer) const;
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);
  lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err,
                      bool has_text);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  friend struct internal::PlainAccess;
  void unmarshal_plain(internal::PlainReader& in);

  internal::OptionalText unit_;
  internal::Value<lmx::c_binary> part_;
};

// One of several.
class ZOL_API PartChoice {
 public:
  PartChoice();
  PartChoice(const PartChoice& other);
  virtual ~PartChoice();
  PartChoice& operator=(const PartChoice& other);

  void swap(PartChoice& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);

  enum elmx_chosen : int {
    chosen_Grade = 0,
    chosen_Text = 1,
    chosen_Amount = 2,
    chosen_Number = 3,
    chosen_Box = 4,
    chosen_none = 5
  };
  elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }

  // Grade: alternative, string, one of Grade
  enum Eenum_Grade : int {
    Grade_unknown = 0,
    Grade_A = 1,
    Grade_B_plus = 2
  };
  const std::wstring& get_Grade() const;
  lmx::elmx_error set_Grade(const std::wstring& value);
  Eenum_Grade getenum_Grade() const;
  bool setenum_Grade(Eenum_Grade value);

  // Text: alternative, string
  const std::wstring& get_Text() const;
  lmx::elmx_error set_Text(const std::wstring& value);

  // Amount: alternative, double, >= 0
  double get_Amount() const;
  lmx::elmx_error set_Amount(double value);

  // Number: alternative, int, >= -2147483648, <= 2147483647
  int get_Number() const;
  lmx::elmx_error set_Number(int value);

  // Box: alternative, Box
  // The const form gives an empty object unless this alternative is chosen; the other two
  // choose it.
  const Box& get_Box() const;
  Box& get_Box();
  Box& assign_Box(const Box& value);

 protected:
  void marshal_attributes(lmx::c_xml_writer& writer) const;
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);
  void unmarshal_plain_attributes(internal::PlainReader& in);
  lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  internal::Slot slot_;
  int chosen_ = chosen_none;
};

// A family.
class ZOL_API ShapeType : public lmx::internal::Pooled {
 public:
  ShapeType();
  ShapeType(const ShapeType& other);
  virtual ShapeType* clone() const;
  virtual ~ShapeType();
  ShapeType& operator=(const ShapeType& other);

  void swap(ShapeType& other);
  void reset();
  bool is_occurs_ok() const;

  // The name of the type, compared by address; has_id() is true for those of the bases too.
  static const char* id;
  virtual const char* getid() const;
  virtual bool has_id(const char* identity) const;
  // A new object of the named type, which the caller owns; null if the namespace is not
  // that of the format or the family has no such type.
  static ShapeType* factory(int ns_id, const std::string& type_name);

  virtual lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  virtual lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);

  // Name: attribute, string, optional
  const std::wstring& get_Name() const { return name_.get(); }
  lmx::elmx_error set_Name(const std::wstring& value);
  bool isset_Name() const { return name_.set; }
  void unset_Name() { name_.set = false; }

  // Choice: element, PartChoice, optional
  const PartChoice& get_Choice() const { return choice_.get(); }
  PartChoice& get_Choice();
  PartChoice& assign_Choice(const PartChoice& value);
  bool isset_Choice() const { return choice_.set; }
  void unset_Choice() { choice_.set = false; }

 protected:
  void marshal_attributes(lmx::c_xml_writer& writer) const;
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);
  void unmarshal_plain_attributes(internal::PlainReader& in);
  lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  internal::OptionalText name_;
  internal::OptionalChild<PartChoice> choice_;
};

class ZOL_API RoundType : public ShapeType {
 public:
  RoundType();
  RoundType(const RoundType& other);
  RoundType* clone() const override;
  ~RoundType() override;
  RoundType& operator=(const RoundType& other);

  void swap(RoundType& other);
  void reset();
  bool is_occurs_ok() const;

  // The name of the type, compared by address.
  static const char* id;
  const char* getid() const override;
  bool has_id(const char* identity) const override;
  // A new object of the named type, which the caller owns; null if the namespace is not
  // that of the format or the family has no such type.
  static RoundType* factory(int ns_id, const std::string& type_name);

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const override;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name) override;

  // Radius: element, double, required, >= 0
  double get_Radius() const { return radius_.value; }
  lmx::elmx_error set_Radius(double value);

 protected:
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  internal::Value<double> radius_;
};

class ZOL_API RingType : public RoundType {
 public:
  RingType();
  RingType(const RingType& other);
  RingType* clone() const override;
  ~RingType() override;
  RingType& operator=(const RingType& other);

  void swap(RingType& other);
  void reset();
  bool is_occurs_ok() const;

  // The name of the type, compared by address.
  static const char* id;
  const char* getid() const override;
  bool has_id(const char* identity) const override;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const override;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name) override;

  // Inner: element, double, required
  double get_Inner() const { return inner_.value; }
  lmx::elmx_error set_Inner(double value);

 protected:
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;
  bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  internal::Value<double> inner_;
};

class ZOL_API sg_Shape {
 public:
  sg_Shape();
  sg_Shape(const sg_Shape& other);
  virtual ~sg_Shape();
  sg_Shape& operator=(const sg_Shape& other);

  void swap(sg_Shape& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  // Whether the element at hand belongs here; if not, the reader is left as it was.
  static bool is_member(lmx::c_xml_reader& reader, const std::string& name);
  bool unmarshal(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);

  enum elmx_chosen : int {
    chosen_Shape = 0,
    chosen_Round = 1,
    chosen_Ring = 2,
    chosen_none = 3
  };
  elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }

  // Shape: alternative, ShapeType
  const ShapeType& get_Shape() const;
  ShapeType& get_Shape();
  ShapeType& assign_Shape(const ShapeType& value);
  // Takes ownership, so that an object of a derived type can stand here. If the
  // alternative is chosen already, its object is not freed. A null pointer is chosen
  // as it is, and cannot be written: 45.
  ShapeType& assign_Shape(ShapeType* value);

  // Round: alternative, RoundType
  const RoundType& get_Round() const;
  RoundType& get_Round();
  RoundType& assign_Round(const RoundType& value);
  // Takes ownership, so that an object of a derived type can stand here. If the
  // alternative is chosen already, its object is not freed. A null pointer is chosen
  // as it is, and cannot be written: 45.
  RoundType& assign_Round(RoundType* value);

  // Ring: alternative, RingType
  const RingType& get_Ring() const;
  RingType& get_Ring();
  RingType& assign_Ring(const RingType& value);

 private:
  void release_choice();
  // Takes ownership of a new member and makes it the chosen one; null is refused.
  template <class T>
  T* hold(T* member, int selection);
  friend struct internal::PlainAccess;
  static const lmx::s_event_map* member_rows();
  lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;

  ShapeType* member_ = nullptr;
  int chosen_ = chosen_none;
};

// The head element AnyShape of its family, which can be read but not written.
class ZOL_API AnyShape : public ShapeType {
 public:
  AnyShape();
  AnyShape(const AnyShape& other);
  AnyShape& operator=(const AnyShape& other);

  using ShapeType::unmarshal;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);
};

// The element Round, of type RoundType.
class ZOL_API Round : public RoundType {
 public:
  Round();
  Round(const Round& other);
  Round& operator=(const Round& other);

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const override;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name) override;

  // The element as a document of its own. A file that cannot be opened gives 1. A document
  // with another root gives 16.
  static constexpr char k_element_name[] = "Zol:Round";
  static const lmx::s_ns_map* ns_map();
  Round(const char* file, lmx::elmx_error* err);
  Round(const char* buffer, std::size_t size, lmx::elmx_error* err);
  Round(const std::string& text, lmx::elmx_error* err);
  // A failed marshal leaves no file and the string as it was; a stream keeps the partial text.
  lmx::elmx_error marshal(const char* file) const;
  lmx::elmx_error marshal(std::string* out) const;
  lmx::elmx_error marshal(std::ostream& stream) const;
  // What was read before the first failure stays. A second reading appends to lists and
  // overwrites elements; an attribute that is set gives 3.
  lmx::elmx_error unmarshal(const char* file);
  lmx::elmx_error unmarshal(const char* buffer, std::size_t size);
  lmx::elmx_error unmarshal(const std::string& text);
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);
};

// The element Ring, of type RingType.
class ZOL_API Ring : public RingType {
 public:
  Ring();
  Ring(const Ring& other);
  Ring& operator=(const Ring& other);

  void swap(Ring& other);
  void reset();
  bool is_occurs_ok() const;

  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const override;
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name) override;

  // The element as a document of its own. A file that cannot be opened gives 1. A document
  // with another root gives 16.
  static constexpr char k_element_name[] = "Zol:Ring";
  static const lmx::s_ns_map* ns_map();
  Ring(const char* file, lmx::elmx_error* err);
  Ring(const char* buffer, std::size_t size, lmx::elmx_error* err);
  Ring(const std::string& text, lmx::elmx_error* err);
  // A failed marshal leaves no file and the string as it was; a stream keeps the partial text.
  lmx::elmx_error marshal(const char* file) const;
  lmx::elmx_error marshal(std::string* out) const;
  lmx::elmx_error marshal(std::ostream& stream) const;
  // What was read before the first failure stays. A second reading appends to lists and
  // overwrites elements; an attribute that is set gives 3.
  lmx::elmx_error unmarshal(const char* file);
  lmx::elmx_error unmarshal(const char* buffer, std::size_t size);
  lmx::elmx_error unmarshal(const std::string& text);
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);

  // A nilled element is written as xsi:nil without content. Only reset(), swap(), copying and
  // reading take the mark away again.
  void setnil_Ring() { nil_ = true; }
  bool isnil_Ring() const { return nil_; }

 protected:
  bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                            lmx::elmx_error* err);

 private:
  template <class T, unsigned traits>
  friend struct internal::Steps;

  bool nil_ = false;
};

}  // namespace zol_v2
