// What Python holds of an object: a proxy, made when it is asked for.
//
// A tree of objects has one owner, which lives as long as a proxy or a view of numbers does. A
// proxy keeps the proxy of what it is a part of, so the collector may take them in any order. What
// is removed is no more: the owner counts how often something was taken out, and notes the place
// with the count; a proxy remembers the count at which it was known to be right, and looks only if
// there is a later one. As an address is noted again when it is used again, the notes stay few.
//
// Everything here happens under the interpreter's lock. A thread that lets go of it while it works
// on a tree has the tree to itself: `Exclusive`.
#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <mutex>
#include <new>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/reflection.h"

namespace zol_v2::python {

using reflection::ConstRef;
using reflection::Kind;
using reflection::Object;
using reflection::Place;
using reflection::Ref;
using reflection::Row;
using reflection::Type;
using reflection::Value;

struct Proxy;

// Of a row by its number: that of its class, and its place among the rows of the class.
constexpr unsigned k_rows_of_a_class = 256;
// Instead of a row.
constexpr unsigned k_itself = ~0U;
constexpr unsigned k_all_rows = ~0U - 1;

inline const internal::Row& table_of(unsigned row) {
  return internal::k_classes[row / k_rows_of_a_class]->rows[row % k_rows_of_a_class];
}
// The row may be one of a base.
unsigned number_of(Type type, Row row);

class Owner {
 public:
  // Takes the object.
  explicit Owner(Object* root) : root_(root) {}
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  void hold() { ++references_; }
  void let_go();
  Object* root() const { return root_; }
  // What a proxy that is right has; 0 while nobody may look.
  std::uint64_t version() const { return version_; }
  std::uint64_t changes() const { return changes_; }
  bool is_closed() const { return root_ == nullptr; }
  // Waits for a thread that works on the tree.
  void wait();
  // False, with a BufferError, if numbers of the tree are lent out.
  bool close();

  // Before what the row of the parent holds goes, or of a list only that entry: false with a
  // BufferError if numbers in it are lent out.
  bool may_take_out(const Proxy& parent, unsigned row, const void* entry = nullptr) const;
  void take_out(const void* address, unsigned row);
  bool is_gone(const void* address, unsigned row, std::uint64_t since) const;

  // Numbers of the object itself, of what its row holds, or of everything in it.
  void lend(const Proxy& proxy, unsigned row) { lent_.emplace_back(&proxy, row); }
  void take_back(const Proxy& proxy, unsigned row);

 private:
  friend class Exclusive;
  struct At {
    const void* address;
    unsigned row;
    bool operator==(const At& other) const { return address == other.address && row == other.row; }
  };
  struct Hash {
    std::size_t operator()(const At& at) const {
      return std::hash<const void*>()(at.address) * 31 + at.row;
    }
  };

  ~Owner();

  Object* root_;
  std::uint64_t version_ = 1, changes_ = 1;
  long references_ = 0;
  bool is_busy_ = false;
  std::mutex work_;
  std::unordered_map<At, std::uint64_t, Hash> gone_since_;
  std::vector<std::pair<const Proxy*, unsigned>> lent_;
};

struct Proxy {
  PyObject_HEAD Object* object;
  Owner* owner;
  Proxy* parent;  // null for the root
  std::uint64_t version;
  unsigned row;  // of the parent
};

// The classes of Python that C++ makes objects of.
struct Classes {
  PyTypeObject* object = nullptr;
  PyTypeObject* field = nullptr;
  PyTypeObject* list = nullptr;        // the one of C++
  PyTypeObject* list_class = nullptr;  // what a list is made as
  PyObject* refused = nullptr;         // raises what stands for a value that was refused
  PyObject* foreign = nullptr;         // makes a foreign element
  std::vector<PyTypeObject*> by_number;
  std::unordered_map<const internal::Row*, PyObject*> members;  // of an enumerated row, a tuple
};
Classes& classes();

// The object, good until something else is called; null with an error set if it is no more.
Object* settled(Proxy* self);
inline Object* live(Proxy* self) {
  return self->version == self->owner->version() ? self->object : settled(self);
}
// Whether it is still there; the error is not set.
bool is_alive(Proxy* self);

inline bool is_proxy(PyObject* value) { return PyObject_TypeCheck(value, classes().object); }
// Null with a TypeError for anything else than a proxy that is alive.
Proxy* live_proxy(PyObject* value);
// A new reference; null with an error set.
PyObject* wrap(Object& object, Proxy* parent, unsigned row);
// The root of a tree of its own, which is taken whatever happens.
PyObject* wrap_root(Object* object);

// The tree of the proxy is this thread's alone, and the interpreter's lock is not.
class Exclusive {
 public:
  explicit Exclusive(const Proxy& proxy);
  Exclusive(const Exclusive&) = delete;
  Exclusive& operator=(const Exclusive&) = delete;
  ~Exclusive();

 private:
  Owner& owner_;
  PyThreadState* state_;
};

// Gives what `operation` does, or null with a MemoryError: nothing is thrown at the interpreter.
template <class Result, class Operation>
Result guarded(Result otherwise, const Operation& operation) noexcept {
  try {
    return operation();
  } catch (const pybind11::error_already_set& error) {
    const_cast<pybind11::error_already_set&>(error).restore();
  } catch (const std::exception&) {
    PyErr_NoMemory();
  }
  return otherwise;
}

// --- Values --------------------------------------------------------------------------------------

// What a row of simple values holds, as an object of Python; None for nothing.
PyObject* to_python(const internal::Row& row, Value value);
// The same as a document writes it.
PyObject* to_text(Value value);
PyObject* to_text(std::string_view utf8);
// Stores a value in a single row, or in an entry of a list of texts or dates: 0, or -1 with an
// error set. `is_new` makes an entry of the list.
int store(Proxy* self, unsigned row, unsigned index, PyObject* value, bool is_new);
// Sets the error for a value that a row of an object refused; gives -1.
int refuse(const Owner& owner, Object& object, unsigned row, unsigned index, int code,
           PyObject* value);
inline int refuse(Proxy* self, unsigned row, unsigned index, int code, PyObject* value) {
  return refuse(*self->owner, *self->object, row, index, code, value);
}
// Takes away what a single row has.
int unset(Proxy* self, unsigned row);
// A list takes over other entries.
int replace_all(Proxy* self, unsigned row, PyObject* values);

// What a row is for a program.
enum class Way : unsigned char {
  real,      // a number in its place
  value,     // any other value, or one of a choice
  exact,     // a date as a document has it
  child,     // none, if there is none
  made,      // a child that every object has
  nillable,  // the same, or none if it is nil
  held,      // what a choice holds, not the choice
  list
};
struct Field {
  PyObject_HEAD const internal::Row* row;
  const internal::Class* owner;
  unsigned number;
  Way way;
  PyObject* name;
  PyObject* doc;
};

PyObject* make_list(Proxy* holder, unsigned row, bool is_exact);

bool add_object_type(PyObject* module);
bool add_field_type(PyObject* module);
bool add_list_type(PyObject* module);
void add_documents(pybind11::module_& module);
void add_columns(pybind11::module_& module);
void add_color(pybind11::module_& module);

}  // namespace zol_v2::python
