// Columns of numbers and texts out of a whole tree, and numbers into it.
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bridge/zol_helpers.h"
#include "lmx/errors.h"
#include "model/Zol.h"
#include "python/handles.h"

namespace zol_v2::python {

namespace py = pybind11;

namespace {

using internal::Class;
using internal::Head;
using internal::PointerList;
using Numbers = py::array_t<double, py::array::c_style | py::array::forcecast>;

Proxy& alive(const py::object& object) {
  Proxy* const proxy = live_proxy(object.ptr());
  if (proxy == nullptr) throw py::error_already_set();
  return *proxy;
}

// Keeps objects of a tree from being removed, whatever code the collector runs.
class Lent {
 public:
  explicit Lent(Proxy& proxy) : proxy_(proxy) { proxy.owner->lend(proxy, k_all_rows); }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;
  ~Lent() { proxy_.owner->take_back(proxy_, k_all_rows); }

 private:
  Proxy& proxy_;
};

// --- Finding the objects of a class --------------------------------------------------------------

// By class, the rows behind which objects of the wanted one may stand.
class Ways {
 public:
  explicit Ways(const Class& wanted) : wanted_(wanted), rows_(reflection::all_types().size()) {
    const std::size_t count = rows_.size();
    std::vector<bool> leads(count);
    for (std::size_t i = 0; i < count; ++i) leads[i] = internal::k_classes[i]->is_a(wanted);
    for (bool is_new = true; is_new;) {
      is_new = false;
      for (std::size_t i = 0; i < count; ++i) {
        if (leads[i] || !has_way(*internal::k_classes[i], leads)) continue;
        leads[i] = is_new = true;
      }
    }
    for (std::size_t i = 0; i < count; ++i) {
      for (const Row row : Type(*internal::k_classes[i]).rows()) {
        if (is_way(row.table(), leads)) rows_[i].push_back(&row.table());
      }
    }
  }

  const std::vector<const internal::Row*>& from(const Object& object) const {
    return rows_[Head::class_of(object).number];
  }
  bool is_wanted(const Object& object) const { return Head::class_of(object).is_a(wanted_); }

 private:
  // The space that another one was computed from is no rendering of the colour.
  static bool is_way(const internal::Row& row, const std::vector<bool>& leads) {
    if (row.type == nullptr || row.type == &ParentColorSpace::k_class) return false;
    if (leads[row.type->number]) return true;
    for (const Type named : Type(*row.type).named_types()) {
      if (leads[named.table().number]) return true;
    }
    return false;
  }
  static bool has_way(const Class& type, const std::vector<bool>& leads) {
    for (const Row row : Type(type).rows()) {
      if (is_way(row.table(), leads)) return true;
    }
    return false;
  }

  const Class& wanted_;
  std::vector<std::vector<const internal::Row*>> rows_;
};

// An object, and what it stands in.
struct Found {
  const Object* object;
  const PaletteType* palette;
  const ColorSetType* set;
  const ColorType* color;
};

template <class T>
void note(const Object& object, const T** around) {
  if (Head::class_of(object).is_a(T::k_class)) *around = static_cast<const T*>(&object);
}

void collect(const Ways& ways, const Object& object, Found around, std::vector<Found>* all) {
  note(object, &around.palette);
  note(object, &around.set);
  note(object, &around.color);
  if (ways.is_wanted(object)) {
    around.object = &object;
    all->push_back(around);
  }
  for (const internal::Row* const row : ways.from(object)) {
    if (row->is_list) {
      for (void* const entry : row->field<PointerList>(object)) {
        collect(ways, *static_cast<const Object*>(entry), around, all);
      }
      continue;
    }
    const ConstRef ref(object);
    if (!ref.has(*row)) continue;
    const ConstRef child = ref.value(*row).child();
    if (child) collect(ways, child.object(), around, all);
  }
}

std::vector<Found> found_in(const Proxy& proxy, const Class& wanted) {
  const Exclusive unlocked(proxy);
  std::vector<Found> all;
  collect(Ways(wanted), *proxy.object, {}, &all);
  return all;
}

const Class& class_numbered(unsigned number) {
  if (number >= reflection::all_types().size()) throw py::value_error("no class has this number");
  return internal::k_classes[number]->content_class();
}

// --- Columns -------------------------------------------------------------------------------------

// Fills an array of objects.
class Objects {
 public:
  explicit Objects(std::size_t size)
      : array_(py::dtype("O"), std::vector<py::ssize_t>{static_cast<py::ssize_t>(size)}),
        at_(static_cast<PyObject**>(array_.mutable_data())) {}
  // A new reference, or null with an error set.
  void add(PyObject* object) {
    if (object == nullptr) throw py::error_already_set();
    PyObject* const before = *at_;
    *at_++ = object;
    Py_XDECREF(before);
  }
  PyObject* last() const { return at_[-1]; }
  py::array take() { return std::move(array_); }

 private:
  py::array array_;
  PyObject** at_;
};

// Texts come in runs of the same one. Dates are as the document has them: a calendar may not have
// all of them.
py::array texts(const std::vector<Found>& all, const internal::Row& row) {
  Objects column(all.size());
  std::string_view last;
  bool has_last = false;
  for (const Found& found : all) {
    const ConstRef object(*found.object);
    if (!object.has(row)) {
      column.add(Py_NewRef(Py_None));
      has_last = false;
      continue;
    }
    const Value value = object.value(row);
    std::string_view text;
    const bool is_kept = row.kind == Kind::text && value.narrow_text(&text);
    PyObject* const made = is_kept && has_last && text == last ? Py_NewRef(column.last())
                           : row.kind == Kind::datetime        ? to_text(value)
                                                               : to_python(row, value);
    column.add(made);
    last = text;
    has_last = is_kept;
  }
  return column.take();
}

template <class T, class Get>
py::array numbers(const std::vector<Found>& all, const Get& get) {
  py::array_t<T> column(static_cast<py::ssize_t>(all.size()));
  T* at = column.mutable_data();
  for (const Found& found : all) *at++ = get(*found.object);
  return std::move(column);
}

py::array column_of(const std::vector<Found>& all, const internal::Row& row) {
  const bool is_number = row.kind == Kind::real || row.kind == Kind::int32 ||
                         row.kind == Kind::uint32 || row.kind == Kind::uint8;
  if (!is_number || row.place == Place::alternative) return texts(all, row);
  if (row.kind == Kind::real) {
    return numbers<double>(all, [&](const Object& object) {
      return Head::has(object, row.bit) ? row.field<double>(object)
                                        : std::numeric_limits<double>::quiet_NaN();
    });
  }
  const bool is_whole = std::all_of(all.begin(), all.end(), [&](const Found& found) {
    return Head::has(*found.object, row.bit);
  });
  if (is_whole) {
    return numbers<std::int64_t>(
        all, [&](const Object& object) { return ConstRef(object).value(row).integer(); });
  }
  return numbers<double>(all, [&](const Object& object) {
    return Head::has(object, row.bit) ? ConstRef(object).value(row).number()
                                      : std::numeric_limits<double>::quiet_NaN();
  });
}

// The name of what is around; one object of Python for all that stand in it.
template <class T, class Name>
py::array names(const std::vector<Found>& all, const T* Found::*around, const Name& name) {
  Objects column(all.size());
  const T* last = nullptr;
  bool has_last = false;
  for (const Found& found : all) {
    const T* const at = found.*around;
    if (has_last && at == last) {
      column.add(Py_NewRef(column.last()));
      continue;
    }
    column.add(at != nullptr ? name(*at) : Py_NewRef(Py_None));
    last = at;
    has_last = true;
  }
  return column.take();
}

PyObject* row_text(const Object& object, const char* row) {
  const ConstRef ref(object);
  return to_text(ref.value(ref.type().row(row)));
}

py::dict around(const std::vector<Found>& all) {
  py::dict columns;
  columns["palette"] = names(all, &Found::palette, [](const PaletteType& palette) {
    return row_text(palette, "PaletteName");
  });
  columns["color_set"] = names(
      all, &Found::set, [](const ColorSetType& set) { return row_text(set, "ColorSetName"); });
  columns["color"] = names(all, &Found::color,
                           [](const ColorType& color) { return row_text(color, "ColorName"); });
  return columns;
}

std::vector<Field*> fields_of(const py::list& list) {
  std::vector<Field*> fields;
  for (const py::handle one : list) {
    if (Py_TYPE(one.ptr()) != classes().field) throw py::type_error("a field is wanted");
    fields.push_back(reinterpret_cast<Field*>(one.ptr()));
  }
  return fields;
}

// The columns of the fields for all objects of the class, and what those stand in.
py::dict table(const py::object& root, unsigned type, const py::list& fields) {
  const Class& wanted = class_numbered(type);
  Proxy& proxy = alive(root);
  const Lent lent(proxy);
  const std::vector<Found> all = found_in(proxy, wanted);
  py::dict columns = around(all);
  for (const Field* const field : fields_of(fields)) {
    if (!wanted.is_a(*field->owner) || !field->row->is_simple() || field->row->is_list) {
      throw py::type_error("no column of this class");
    }
    py::object name = py::reinterpret_borrow<py::object>(field->name);
    if (columns.contains(name)) name = name + py::str("_");
    columns[name] = column_of(all, *field->row);
  }
  return columns;
}

// Judges numbers for a row without an object to store them in.
class Judge {
 public:
  explicit Judge(const Class& type) : trial_(type.make(nullptr)) {}
  lmx::elmx_error operator()(const internal::Row& row, double value) const {
    return set(*trial_, row, value);
  }

 private:
  std::unique_ptr<Object> trial_;
};

[[noreturn]] void throw_refused(const Proxy& proxy, const Object& object, unsigned row,
                                unsigned index, int code, double value) {
  refuse(*proxy.owner, const_cast<Object&>(object), row, index, code, py::float_(value).ptr());
  throw py::error_already_set();
}

// Stores columns of numbers in the objects that table() finds, if all can stand there.
void update(const py::object& root, unsigned type, const py::list& fields,
            const std::vector<Numbers>& columns) {
  const Class& wanted = class_numbered(type);
  Proxy& proxy = alive(root);
  const Lent lent(proxy);
  const std::vector<Found> all = found_in(proxy, wanted);
  const std::vector<Field*> targets = fields_of(fields);
  if (targets.size() != columns.size()) throw py::value_error("a column for each field is wanted");
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const Field& field = *targets[i];
    if (field.way != Way::real || !wanted.is_a(*field.owner)) {
      throw py::type_error("only numbers can be set as a column");
    }
    if (columns[i].ndim() != 1 || static_cast<std::size_t>(columns[i].size()) != all.size()) {
      throw py::value_error("the table has " + std::to_string(all.size()) + " rows");
    }
    const Judge judge(*field.owner);
    const double* value = columns[i].data();
    for (const Found& found : all) {
      const lmx::elmx_error code = judge(*field.row, *value);
      if (code != lmx::elmx_ok) throw_refused(proxy, *found.object, field.number, 0, code, *value);
      ++value;
    }
  }
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const double* value = columns[i].data();
    for (const Found& found : all) {
      static_cast<void>(set(const_cast<Object&>(*found.object), *targets[i]->row, *value++));
    }
  }
}

// --- Spectra -------------------------------------------------------------------------------------

// All spectra of the class: where each begins, its wavelengths and values, and what it stands in.
py::dict spectra(const py::object& root, unsigned type) {
  const Class& wanted = class_numbered(type);
  if (!wanted.is_a(ColorSpaceSpectralType::k_class) &&
      !wanted.is_a(ColorSpaceEmissiveSpectralType::k_class)) {
    throw py::type_error("this class has no spectrum");
  }
  Proxy& proxy = alive(root);
  const Lent lent(proxy);
  const std::vector<Found> all = found_in(proxy, wanted);
  py::array_t<std::int64_t> offsets(static_cast<py::ssize_t>(all.size() + 1));
  std::int64_t* const at = offsets.mutable_data();
  at[0] = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    void* const space = const_cast<Object*>(all[i].object);
    at[i + 1] = at[i] + zol_spectrum_points(space, nullptr, nullptr, 0);
  }
  Numbers wavelengths(at[all.size()]), values(at[all.size()]);
  double* const wavelength = wavelengths.mutable_data();
  double* const value = values.mutable_data();
  {
    const Exclusive unlocked(proxy);
    for (std::size_t i = 0; i < all.size(); ++i) {
      zol_spectrum_points(const_cast<Object*>(all[i].object), wavelength + at[i], value + at[i],
                          static_cast<unsigned>(at[i + 1] - at[i]));
    }
  }
  py::dict columns = around(all);
  columns["offsets"] = offsets;
  columns["wavelengths"] = wavelengths;
  columns["values"] = values;
  return columns;
}

// --- Numbers of one object, as they stand --------------------------------------------------------

// Numbers at equal distances in a tree.
struct Run {
  const double* first = nullptr;
  std::ptrdiff_t step = 0;  // in bytes
  std::size_t count = 0;
};

std::ptrdiff_t distance(const double* from, const double* to) {
  return reinterpret_cast<const char*>(to) - reinterpret_cast<const char*>(from);
}

// False if they do not stand so.
template <class At>
bool find_run(std::size_t count, const At& at, Run* run) {
  if (count == 0) return false;
  run->first = at(0);
  run->count = count;
  run->step = count > 1 ? distance(run->first, at(1)) : std::ptrdiff_t{sizeof(double)};
  for (std::size_t i = 1; i < count; ++i) {
    if (distance(at(i - 1), at(i)) != run->step) return false;
  }
  return true;
}

// An array over the numbers of a tree, which keeps the tree and what the numbers are in; where they
// do not stand at equal distances, a copy. Nobody can write through it. The row is the one that
// holds them, if they are not in the object itself.
template <class At>
py::array shown(Proxy& proxy, unsigned row, std::size_t count, const At& at) {
  Run run;
  py::array array;
  if (find_run(count, at, &run)) {
    struct Loan {
      Proxy& lender;
      unsigned row;
    };
    auto loan = std::make_unique<Loan>(Loan{proxy, row});
    const py::capsule lent(loan.get(), [](void* given) {
      const std::unique_ptr<Loan> ended(static_cast<Loan*>(given));
      ended->lender.owner->take_back(ended->lender, ended->row);
      Py_DECREF(&ended->lender);
    });
    static_cast<void>(loan.release());
    Py_INCREF(&proxy);
    proxy.owner->lend(proxy, row);
    array = py::array(py::dtype::of<double>(), {static_cast<py::ssize_t>(count)},
                      {static_cast<py::ssize_t>(run.step)}, run.first, lent);
  } else {
    py::array_t<double> copy(static_cast<py::ssize_t>(count));
    for (std::size_t i = 0; i < count; ++i) copy.mutable_data()[i] = *at(i);
    array = std::move(copy);
  }
  py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return array;
}

// The numbers that a space has by its class.
std::vector<const internal::Row*> coordinates_of(Type type) {
  std::vector<const internal::Row*> rows;
  for (const Row row : type.rows()) {
    if (row.kind() == Kind::real && row.is_required() && !row.is_list() && !row.is_attribute()) {
      rows.push_back(&row.table());
    }
  }
  return rows;
}

py::object coordinates(const py::object& space) {
  Proxy& proxy = alive(space);
  const auto rows = coordinates_of(reflection::type_of(*proxy.object));
  if (rows.empty()) return py::none();
  return shown(proxy, k_itself, rows.size(),
               [&](std::size_t i) { return &rows[i]->field<double>(*proxy.object); });
}

void set_coordinates(const py::object& space, const Numbers& values) {
  Proxy& proxy = alive(space);
  const Type type = reflection::type_of(*proxy.object);
  const auto rows = coordinates_of(type);
  if (values.ndim() != 1 || static_cast<std::size_t>(values.size()) != rows.size()) {
    throw py::value_error("the space has " + std::to_string(rows.size()) + " coordinates");
  }
  const Judge judge(type.table());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double value = values.data()[i];
    const lmx::elmx_error code = judge(*rows[i], value);
    if (code != lmx::elmx_ok) {
      throw_refused(proxy, *proxy.object, number_of(type, Row(*rows[i])), 0, code, value);
    }
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    static_cast<void>(set(*proxy.object, *rows[i], values.data()[i]));
  }
}

struct Points {
  const PointerList* list;
  const internal::Row *row, *wavelength, *value;
};

Points points_of(const Object& object) {
  for (const Row row : reflection::type_of(object).elements()) {
    if (!row.is_list() || !row.type()) continue;
    const Row wavelength = row.type().row("Wavelength");
    if (!wavelength) continue;
    return {&row.table().field<PointerList>(object), &row.table(), &wavelength.table(),
            &row.type().content().table()};
  }
  throw py::type_error("this space has no spectrum");
}

py::array points(const py::object& space, bool is_value) {
  Proxy& proxy = alive(space);
  const Points points = points_of(*proxy.object);
  const internal::Row& row = is_value ? *points.value : *points.wavelength;
  const unsigned list = number_of(reflection::type_of(*proxy.object), Row(*points.row));
  return shown(proxy, list, points.list->size(), [&](std::size_t i) {
    return &row.field<double>(
        *static_cast<const Object*>((*points.list)[static_cast<unsigned>(i)]));
  });
}

// Points instead of those that were there.
void set_points(const py::object& space, const Numbers& wavelengths, const Numbers& values) {
  Proxy& proxy = alive(space);
  const Points points = points_of(*proxy.object);
  if (wavelengths.ndim() != 1 || values.ndim() != 1 || wavelengths.size() != values.size()) {
    throw py::value_error("as many values as wavelengths are wanted");
  }
  const unsigned row = number_of(reflection::type_of(*proxy.object), Row(*points.row));
  const auto count = static_cast<unsigned>(values.size());
  const bool is_shorter = count < points.list->size();
  if (is_shorter && !proxy.owner->may_take_out(proxy, row)) throw py::error_already_set();
  unsigned wrong = 0;
  const int code = zol_set_spectrum(proxy.object, wavelengths.data(), values.data(), count, &wrong);
  if (code != lmx::elmx_ok) {
    throw_refused(proxy, *proxy.object, row, wrong, code, values.data()[wrong]);
  }
  // One that is left over cannot be told from another.
  if (is_shorter) proxy.owner->take_out(proxy.object, row);
}

}  // namespace

void add_columns(py::module_& module) {
  module.def("table", table);
  module.def("update", update);
  module.def("spectra", spectra);
  module.def("coordinates", coordinates);
  module.def("set_coordinates", set_coordinates);
  module.def("points", points);
  module.def("set_points", set_points);
}

}  // namespace zol_v2::python
