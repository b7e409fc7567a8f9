// The attributes of the classes: a descriptor for each row.
#include <memory>
#include <string>

#include "bridge/zol_helpers.h"
#include "lmx/errors.h"
#include "python/handles.h"

namespace zol_v2::python {

namespace {

namespace py = pybind11;

using internal::Head;

Field& as_field(PyObject* object) { return *reinterpret_cast<Field*>(object); }

// --- Getting -------------------------------------------------------------------------------------

PyObject* child_of(Proxy* self, unsigned row) {
  unsigned type = 0;
  void* const child = zol_child(self->object, row, 0, &type);
  if (child == nullptr) Py_RETURN_NONE;
  return wrap(*static_cast<Object*>(child), self, row);
}

// A child that every object has; it counts as set from now on.
PyObject* made_child(Proxy* self, unsigned row) {
  unsigned type = 0;
  void* child = zol_child(self->object, row, 0, &type);
  if (child == nullptr) child = zol_make_child(self->object, row, table_of(row).type->number);
  if (child == nullptr) return PyErr_NoMemory();
  return wrap(*static_cast<Object*>(child), self, row);
}

PyObject* nillable_child(Proxy* self, unsigned row) {
  unsigned type = 0;
  void* const child = zol_child(self->object, row, 0, &type);
  if (child == nullptr || zol_is_nil(child) != 0) Py_RETURN_NONE;
  return wrap(*static_cast<Object*>(child), self, row);
}

PyObject* held_by(Proxy* self, unsigned row) {
  unsigned type = 0;
  void* const choice = zol_child(self->object, row, 0, &type);
  if (choice == nullptr) Py_RETURN_NONE;
  const ConstRef object(*static_cast<Object*>(choice));
  const Row chosen = object.chosen();
  if (!chosen) Py_RETURN_NONE;
  if (chosen.is_simple()) return to_python(chosen.table(), object.value(chosen));
  const unsigned alternative = number_of(object.type().table().content_class(), chosen);
  const py::object around =
      py::reinterpret_steal<py::object>(wrap(*static_cast<Object*>(choice), self, row));
  return around ? child_of(reinterpret_cast<Proxy*>(around.ptr()), alternative) : nullptr;
}

PyObject* value_of(const Object& object, const internal::Row& row) {
  const ConstRef ref(object);
  if (!ref.has(row)) Py_RETURN_NONE;
  return to_python(row, ref.value(row));
}

PyObject* exact_date(const Object& object, const internal::Row& row) {
  const ConstRef ref(object);
  if (!ref.has(row)) Py_RETURN_NONE;
  return to_text(ref.value(row));
}

PyObject* get(const Field& field, Proxy* self) {
  switch (field.way) {
    case Way::value:
      return value_of(*self->object, *field.row);
    case Way::exact:
      return exact_date(*self->object, *field.row);
    case Way::child:
      return child_of(self, field.number);
    case Way::made:
      return made_child(self, field.number);
    case Way::nillable:
      return nillable_child(self, field.number);
    case Way::held:
      return held_by(self, field.number);
    default:
      return make_list(self, field.number, false);
  }
}

// The proxy that the attribute is asked of, alive and of a class that has it; null with an error.
Proxy* target(const Field& field, PyObject* object) {
  Proxy* const self = live_proxy(object);
  if (self == nullptr) return nullptr;
  if (Head::class_of(*self->object).is_a(*field.owner)) return self;
  PyErr_Format(PyExc_TypeError, "a %s has no %U of %s", Py_TYPE(object)->tp_name, field.name,
               field.owner->name);
  return nullptr;
}

PyObject* field_get(PyObject* descriptor, PyObject* object, PyObject*) {
  const Field& field = as_field(descriptor);
  if (object == nullptr || object == Py_None) return Py_NewRef(descriptor);
  Proxy* const self = target(field, object);
  if (self == nullptr) return nullptr;
  if (field.way == Way::real) {
    if (!Head::has(*self->object, field.row->bit)) Py_RETURN_NONE;
    return PyFloat_FromDouble(field.row->field<double>(*self->object));
  }
  return guarded<PyObject*>(nullptr, [&] { return get(field, self); });
}

// --- Setting -------------------------------------------------------------------------------------

int misplaced(const Field& field, PyObject* value) {
  PyErr_Format(PyExc_TypeError, "a %s cannot stand in %U", Py_TYPE(value)->tp_name, field.name);
  return -1;
}

int put_child(const Field& field, Proxy* self, unsigned row, PyObject* value) {
  Proxy* const source = live_proxy(value);
  if (source == nullptr) return -1;
  unsigned type = 0;
  void* const old = zol_child(self->object, row, 0, &type);
  if (old == source->object) return 0;
  const bool is_alternative = table_of(row).place == Place::alternative;
  const int before = is_alternative ? zol_chosen(self->object) : -1;
  if (before >= 0 && !self->owner->may_take_out(*self, static_cast<unsigned>(before))) {
    return -1;
  }
  if (!self->owner->may_take_out(*self, row)) return -1;
  const int code = zol_put_child(self->object, row, source->object);
  if (code == lmx::elmx_bad_choice) return misplaced(field, value);
  if (code != lmx::elmx_ok) return refuse(self, row, 0, code, value);
  if (old != nullptr) self->owner->take_out(old, k_itself);
  if (before >= 0) self->owner->take_out(self->object, static_cast<unsigned>(before));
  return 0;
}

int set_nil(Proxy* self, unsigned row) {
  if (!self->owner->may_take_out(*self, row)) return -1;
  void* const child = zol_make_child(self->object, row, table_of(row).type->number);
  if (child == nullptr || zol_set_nil(child, 1) == 0) {
    PyErr_NoMemory();
    return -1;
  }
  self->owner->take_out(child, k_itself);
  return 0;
}

// Whether a value is of the kind that an alternative holds.
bool suits(const internal::Row& row, PyObject* value) {
  switch (row.kind) {
    case Kind::real:
      return PyFloat_Check(value);
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return PyLong_Check(value) && !PyBool_Check(value);
    case Kind::text:
      return PyUnicode_Check(value);
    case Kind::enumerated: {
      const auto members = classes().members.find(&row);
      return members != classes().members.end() && !PyUnicode_CheckExact(value) &&
             PySequence_Contains(members->second, value) == 1;
    }
    case Kind::object:
      return is_proxy(value) &&
             &Head::class_of(*reinterpret_cast<Proxy*>(value)->object).content_class() ==
                 &row.type->content_class();
    default:
      return false;
  }
}

const internal::Row* alternative_for(const internal::Class& choice, PyObject* value) {
  for (const internal::Row& row : choice.alternatives()) {
    if (suits(row, value)) return &row;
  }
  // Where there is no whole number, it is one with a fraction of nothing.
  for (const internal::Row& row : choice.alternatives()) {
    if (row.kind == Kind::real && PyNumber_Check(value) && !PyBool_Check(value)) return &row;
  }
  return nullptr;
}

int put_held(const Field& field, Proxy* self, PyObject* value) {
  const internal::Class& choice = field.row->type->content_class();
  if (is_proxy(value)) {
    Proxy* const source = live_proxy(value);
    if (source == nullptr) return -1;
    if (&Head::class_of(*source->object).content_class() == &choice) {
      return put_child(field, self, field.number, value);
    }
  }
  const internal::Row* const row = alternative_for(choice, value);
  if (row == nullptr) return misplaced(field, value);
  if (live(self) == nullptr) return -1;  // a comparison may have run any code
  const auto around = py::reinterpret_steal<py::object>(made_child(self, field.number));
  if (!around) return -1;
  auto* const holder = reinterpret_cast<Proxy*>(around.ptr());
  const unsigned number = number_of(choice, *row);
  return row->is_simple() ? store(holder, number, 0, value, false)
                          : put_child(field, holder, number, value);
}

int set(const Field& field, Proxy* self, PyObject* value) {
  if (field.way == Way::list) {
    return replace_all(self, field.number, value != Py_None ? value : nullptr);
  }
  if (value == Py_None) {
    return field.way == Way::nillable ? set_nil(self, field.number) : unset(self, field.number);
  }
  switch (field.way) {
    case Way::real:
    case Way::value:
    case Way::exact:
      return store(self, field.number, 0, value, false);
    case Way::held:
      return put_held(field, self, value);
    default:
      return put_child(field, self, field.number, value);
  }
}

int field_set(PyObject* descriptor, PyObject* object, PyObject* value) {
  const Field& field = as_field(descriptor);
  Proxy* const self = target(field, object);
  if (self == nullptr) return -1;
  return guarded<int>(-1, [&] { return set(field, self, value != nullptr ? value : Py_None); });
}

// --- The type of descriptors ---------------------------------------------------------------------

Way way_of(const internal::Row& row, bool is_exact, bool is_held) {
  if (row.is_list) return Way::list;
  if (row.is_simple()) {
    if (is_exact) return Way::exact;
    return row.kind == Kind::real && row.place != Place::alternative ? Way::real : Way::value;
  }
  if (is_held) return Way::held;
  if (row.place == Place::alternative || !row.is_required || row.kind == Kind::member) {
    return row.is_required && row.type->is_nillable() ? Way::nillable : Way::child;
  }
  return row.type->is_nillable() ? Way::nillable : Way::made;
}

const internal::Class* owner_of(unsigned row) {
  return internal::k_classes[row / k_rows_of_a_class];
}

// field(number, name, doc, members=None, way=''): the descriptor of a row, which a class has as an
// attribute. `members` are those of an enumeration, in its order; `way` is "exact" or "held".
PyObject* field_new(PyTypeObject* type, PyObject* arguments, PyObject*) {
  return guarded<PyObject*>(nullptr, [=]() -> PyObject* {
    unsigned number = 0;
    PyObject *name = nullptr, *doc = nullptr, *members = Py_None;
    const char* way = "";
    if (PyArg_ParseTuple(arguments, "IUU|Os", &number, &name, &doc, &members, &way) == 0) {
      return nullptr;
    }
    const unsigned count = static_cast<unsigned>(reflection::all_types().size());
    if (number / k_rows_of_a_class >= count) {
      return PyErr_Format(PyExc_ValueError, "no row is called %u", number);
    }
    auto* const field = reinterpret_cast<Field*>(type->tp_alloc(type, 0));
    if (field == nullptr) return nullptr;
    field->row = &table_of(number);
    field->owner = owner_of(number);
    field->number = number;
    const std::string_view wanted(way);
    field->way = way_of(*field->row, wanted == "exact", wanted == "held");
    field->name = Py_NewRef(name);
    field->doc = Py_NewRef(doc);
    if (members != Py_None) {
      PyObject*& kept = classes().members[field->row];
      Py_XDECREF(kept);
      kept = PySequence_Tuple(members);
      if (kept == nullptr ||
          PyTuple_GET_SIZE(kept) != static_cast<Py_ssize_t>(Row(*field->row).values().size())) {
        Py_DECREF(field);
        return PyErr_Format(PyExc_ValueError, "%U has other members", name);
      }
    }
    return reinterpret_cast<PyObject*>(field);
  });
}

void field_dealloc(PyObject* object) {
  PyTypeObject* const type = Py_TYPE(object);
  Py_XDECREF(as_field(object).name);
  Py_XDECREF(as_field(object).doc);
  type->tp_free(object);
  Py_DECREF(type);
}

PyObject* field_name(PyObject* self, void*) { return Py_NewRef(as_field(self).name); }
PyObject* field_doc(PyObject* self, void*) { return Py_NewRef(as_field(self).doc); }
PyObject* field_format_name(PyObject* self, void*) {
  return to_text(Row(*as_field(self).row).name());
}
PyObject* field_number(PyObject* self, void*) {
  return PyLong_FromUnsignedLong(as_field(self).number);
}
PyObject* field_is_column(PyObject* self, void*) {
  const Field& field = as_field(self);
  return PyBool_FromLong(field.way == Way::real || field.way == Way::value);
}
PyObject* field_is_list(PyObject* self, void*) {
  return PyBool_FromLong(as_field(self).way == Way::list);
}

PyGetSetDef k_field_attributes[] = {
    {"__name__", field_name, nullptr, nullptr, nullptr},
    {"__doc__", field_doc, nullptr, nullptr, nullptr},
    {"format_name", field_format_name, nullptr, "What the format calls it.", nullptr},
    {"number", field_number, nullptr, "Of the row.", nullptr},
    {"is_column", field_is_column, nullptr, "Whether it is a single value.", nullptr},
    {"is_list", field_is_list, nullptr, "Whether it is a list.", nullptr},
    {}};
PyType_Slot k_field_slots[] = {{Py_tp_new, reinterpret_cast<void*>(field_new)},
                               {Py_tp_dealloc, reinterpret_cast<void*>(field_dealloc)},
                               {Py_tp_descr_get, reinterpret_cast<void*>(field_get)},
                               {Py_tp_descr_set, reinterpret_cast<void*>(field_set)},
                               {Py_tp_getset, k_field_attributes},
                               {}};
PyType_Spec k_field_spec = {"zol._zol.field", sizeof(Field), 0, Py_TPFLAGS_DEFAULT, k_field_slots};

}  // namespace

bool add_field_type(PyObject* module) {
  classes().field = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&k_field_spec));
  return classes().field != nullptr && PyModule_AddType(module, classes().field) == 0;
}

}  // namespace zol_v2::python
