// Entities: the getter that splices entity text into the input, the places where the name of a
// reference can stand, and the reader of the internal DTD subset.
//
// Declarations of entities are honoured and everything else that a DTD can say is passed over.
// Nothing external is ever fetched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/input.h"
#include "lmx/names.h"

namespace lmx {

class c_get_for_xml;

namespace internal {

class AttributeList;

// What "lt", "gt", "amp", "apos" or "quot" stands for; 0 for any other name.
char predefined_entity(std::string_view name);

}  // namespace internal

// Keeps the entities of a document, and splices their text into the input.
class ZOL_API c_get_with_entities : public c_get_as_utf8 {
 public:
  // Borrows both, for its whole life.
  c_get_with_entities(c_read& source, c_error& error) : c_get_as_utf8(source, error) {}

  // The next byte of the innermost entity text, or of the document. The end of an entity does not
  // show; lines are not counted inside one.
  int get() { return stack_.empty() ? c_get_as_utf8::get() : get_from_stack(); }
  // Gives a byte back.
  void unget(int value);

  // A later definition replaces an earlier one.
  void add_general_entity(const char* name, const char* text);
  // The same, for references with "%".
  void add_parameter_entity(const char* name, const char* text);
  // The text of the entity, good until it is replaced; false if there is none of that name.
  bool get_general_entity(const char* name, const char** text) const {
    return general_.find(name, text);
  }
  // See get_general_entity.
  bool get_parameter_entity(const char* name, const char** text) const {
    return parameter_.find(name, text);
  }

  // Makes `text`, which a repository of this object holds, the next input. False, after a fatal
  // report of 9, if that text is being read already or if entities expand out of all proportion.
  bool set_input_entity_value(const char* text);
  // How many entities are being read in one another; 0 in the document itself.
  unsigned int get_entity_stack_depth() const { return static_cast<unsigned>(stack_.size()); }
  // Forgets the entities too.
  void rewind();

  // Counts the text of a reference that is being expanded. False, after a fatal report of 9, once
  // all such text exceeds both 8 MiB and 100 times the input read so far.
  bool count_expansion(const char* text);

 private:
  struct Input {
    const char* at;
    const char* start;  // tells one entity from another
    c_unget_buffer unget;
  };

  int get_from_stack();
  void add(c_repository<const char*>* repository, const char* name, const char* text);

  std::vector<Input> stack_;
  c_repository<const char*> general_;
  c_repository<const char*> parameter_;
  std::set<const char*> open_texts_;
  // Texts that were replaced while some entity was open, perhaps that one.
  std::vector<std::unique_ptr<const char[]>> retired_;
  std::uint64_t expanded_ = 0;
};

// A place from which the name of a reference is read.
class ZOL_API c_entity_name_reader {
 public:
  virtual ~c_entity_name_reader();
  // The next byte, or -1.
  virtual int get() = 0;
  // Gives a byte back; -1 is let pass.
  virtual void unget(int value) = 0;

  // With the flag an entity's text becomes input, and markup in it is markup.
  bool get_expand_into_input() const { return expand_into_input_; }
  // See get_expand_into_input.
  void set_expand_into_input(bool expand) { expand_into_input_ = expand; }

 private:
  bool expand_into_input_ = false;
};

// Reads on in the input.
class ZOL_API c_entity_name_reader_for_c_get : public c_entity_name_reader {
 public:
  // Borrows the getter.
  explicit c_entity_name_reader_for_c_get(c_get_with_entities& getter) : getter_(&getter) {}
  int get() override;
  // As c_entity_name_reader has it.
  void unget(int value) override;

 private:
  c_get_with_entities* getter_;
};

// Reads a zero-ended text through a pointer that the caller shares.
class ZOL_API c_entity_name_reader_for_entity : public c_entity_name_reader {
 public:
  // Borrows pointer and text; never goes back before where it began.
  explicit c_entity_name_reader_for_entity(const char** at) : start_(*at), at_(at) {}
  int get() override;
  // As c_entity_name_reader has it.
  void unget(int value) override;

 private:
  const char* start_;
  const char** at_;
};

// Reads a zero-ended text through an index that the caller shares.
class ZOL_API c_entity_name_reader_for_c_str : public c_entity_name_reader {
 public:
  // Borrows text and index.
  c_entity_name_reader_for_c_str(const char* text, std::size_t* index)
      : text_(text), index_(index) {}
  int get() override;
  // As c_entity_name_reader has it.
  void unget(int value) override;

 private:
  const char* text_;
  std::size_t* index_;
};

// Reads on in the value of an attribute that was read ahead. The tokeniser makes them.
class c_entity_name_reader_for_attribute_data : public c_entity_name_reader {
 public:
  // Borrows the list.
  explicit c_entity_name_reader_for_attribute_data(internal::AttributeList& list) : list_(&list) {}
  int get() override;
  // As c_entity_name_reader has it.
  void unget(int value) override;

 private:
  internal::AttributeList* list_;
};

// Reads the words of a DTD.
class ZOL_API c_dtd_util {
 public:
  // Borrows the getter.
  explicit c_dtd_util(c_get_for_xml& getter) : getter_(&getter) {}

  // The next byte, or -1.
  int get();
  // Gives a byte back.
  void unget(int value);
  // The getter that it reads from.
  c_get_for_xml& getter() { return *getter_; }

  // A word up to white space or ">". False if the input ends before it.
  bool get_entity_value(std::string* out);
  // A quoted text, with parameter entities and character references resolved. The end of input
  // ends it as the quote does.
  bool get_quoted_entity_value(std::string* out);
  // Entered after "%": makes the text of the named entity the next input. An unknown name is
  // reported as 41, and passes.
  bool select_parameter_entity();

 private:
  c_get_for_xml* getter_;
};

// Reads the internal subset of a document type, and keeps its entities in the getter.
class ZOL_API c_internal_dtd : public c_dtd_util {
 public:
  // Borrows the getter.
  explicit c_internal_dtd(c_get_for_xml& getter) : c_dtd_util(getter) {}

  // Entered after "<!DOCTYPE". False for what is not well formed, with or without a report.
  bool read_doctype_decl();
  // As new; it keeps nothing itself.
  void reset() {}

 private:
  int get_non_space();
  bool read_internal_subset();
  bool read_declaration();
  bool read_entity_declaration();
  bool skip_declaration();
  bool report(const char* before, int c);
};

}  // namespace lmx
