// The lists of objects and values, which show the document as it is.
#include <algorithm>

#include "bridge/zol_helpers.h"
#include "lmx/errors.h"
#include "python/handles.h"

namespace zol_v2::python {

namespace {

struct List {
  PyObject_HEAD Proxy* holder;
  unsigned row;
  bool is_exact;
};

List& as_list(PyObject* object) { return *reinterpret_cast<List*>(object); }
bool has_objects(unsigned row) { return table_of(row).type != nullptr; }

PyObject* entry(const List& list, Py_ssize_t index) {
  Object& object = *list.holder->object;
  const auto at = static_cast<unsigned>(index);
  if (has_objects(list.row)) {
    unsigned type = 0;
    void* const child = zol_child(&object, list.row, at, &type);
    if (child == nullptr) Py_RETURN_NONE;  // a holder that holds nothing
    return wrap(*static_cast<Object*>(child), list.holder, list.row);
  }
  const internal::Row& row = table_of(list.row);
  const Value value = ConstRef(object).value(row, at);
  return list.is_exact ? to_text(value) : to_python(row, value);
}

// A new reference to the copy that is now in the document, or to the value.
PyObject* insert(Proxy* holder, unsigned row, unsigned index, PyObject* value) {
  if (!has_objects(row)) {
    if (store(holder, row, index, value, true) < 0) return nullptr;
    const internal::Row& table = table_of(row);
    if (table.kind != Kind::foreign) return Py_NewRef(value);
    return to_python(table, ConstRef(*holder->object).value(table, index));
  }
  Proxy* const source = live_proxy(value);
  if (source == nullptr) return nullptr;
  void* const copy = zol_insert_copy(holder->object, row, index, source->object);
  if (copy == nullptr) {
    return PyErr_Format(PyExc_TypeError, "a %s cannot stand in this list", Py_TYPE(value)->tp_name);
  }
  return wrap(*static_cast<Object*>(copy), holder, row);
}

int remove(Proxy* holder, unsigned row, unsigned index) {
  unsigned type = 0;
  void* const child = has_objects(row) ? zol_child(holder->object, row, index, &type) : nullptr;
  if (child != nullptr && !holder->owner->may_take_out(*holder, row, child)) return -1;
  if (zol_remove(holder->object, row, index) == 0) {
    PyErr_SetString(PyExc_IndexError, "the list has no such entry");
    return -1;
  }
  if (child != nullptr) holder->owner->take_out(child, k_itself);
  return 0;
}

Py_ssize_t list_length(PyObject* self) {
  Object* const object = live(as_list(self).holder);
  return object != nullptr ? static_cast<Py_ssize_t>(zol_count(object, as_list(self).row)) : -1;
}

PyObject* list_item(PyObject* self, Py_ssize_t index) {
  const Py_ssize_t size = list_length(self);
  if (size < 0) return nullptr;
  if (index < 0 || index >= size) {
    PyErr_SetString(PyExc_IndexError, "the list has no such entry");
    return nullptr;
  }
  return guarded<PyObject*>(nullptr, [=] { return entry(as_list(self), index); });
}

PyObject* list_subscript(PyObject* self, PyObject* key) {
  const Py_ssize_t size = list_length(self);
  if (size < 0) return nullptr;
  if (PySlice_Check(key)) {
    Py_ssize_t start = 0, stop = 0, step = 0;
    if (PySlice_Unpack(key, &start, &stop, &step) < 0) return nullptr;
    const Py_ssize_t count = PySlice_AdjustIndices(size, &start, &stop, step);
    PyObject* const result = PyList_New(count);
    for (Py_ssize_t i = 0; result != nullptr && i < count; ++i) {
      PyObject* const item = list_item(self, start + i * step);
      if (item == nullptr) {
        Py_DECREF(result);
        return nullptr;
      }
      PyList_SET_ITEM(result, i, item);
    }
    return result;
  }
  const Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
  if (index == -1 && PyErr_Occurred() != nullptr) return nullptr;
  return list_item(self, index < 0 ? index + size : index);
}

int remove_slice(PyObject* self, Py_ssize_t size, PyObject* key) {
  Py_ssize_t start = 0, stop = 0, step = 0;
  if (PySlice_Unpack(key, &start, &stop, &step) < 0) return -1;
  const Py_ssize_t count = PySlice_AdjustIndices(size, &start, &stop, step);
  if (step < 0) {
    start += (count - 1) * step;
    step = -step;
  }
  // From behind, so that the others keep their places.
  for (Py_ssize_t i = count; i-- > 0;) {
    const auto index = static_cast<unsigned>(start + i * step);
    if (remove(as_list(self).holder, as_list(self).row, index) < 0) return -1;
  }
  return 0;
}

// The entries that are to go, from the first one on: one behind the other, or every so many.
struct Slice {
  Py_ssize_t start = 0, step = 1, count = 0;

  unsigned at(Py_ssize_t i) const { return static_cast<unsigned>(start + i * step); }
};

bool may_remove(const List& list, const Slice& slice) {
  for (Py_ssize_t i = 0; has_objects(list.row) && i < slice.count; ++i) {
    unsigned type = 0;
    void* const child = zol_child(list.holder->object, list.row, slice.at(i), &type);
    if (child != nullptr && !list.holder->owner->may_take_out(*list.holder, list.row, child)) {
      return false;
    }
  }
  return true;
}

// Where the i-th of the new ones goes while all old ones are still there. Those that take the
// place of every so many stand behind them.
unsigned place_of_new(const Slice& slice, bool is_run, Py_ssize_t i) {
  return is_run ? slice.at(slice.count) + static_cast<unsigned>(i)
                : slice.at(i) + static_cast<unsigned>(i) + 1;
}

// The new ones first, so that nothing is lost if one of them cannot stand there.
int replace_slice(const List& list, const Slice& slice, bool is_run, PyObject* values) {
  if (!may_remove(list, slice)) return -1;
  const Py_ssize_t given = PyList_GET_SIZE(values);
  for (Py_ssize_t i = 0; i < given; ++i) {
    PyObject* const added =
        insert(list.holder, list.row, place_of_new(slice, is_run, i), PyList_GET_ITEM(values, i));
    Py_XDECREF(added);
    if (added != nullptr && live(list.holder) != nullptr) continue;
    while (live(list.holder) != nullptr && i-- > 0) {
      zol_remove(list.holder->object, list.row, place_of_new(slice, is_run, i));
    }
    return -1;
  }
  for (Py_ssize_t i = slice.count; i-- > 0;) {
    const unsigned shift = is_run ? 0 : static_cast<unsigned>(i);
    if (remove(list.holder, list.row, slice.at(i) + shift) < 0) return -1;
  }
  return 0;
}

int assign_slice(PyObject* self, PyObject* key, PyObject* value) {
  // Entries of the list itself may be among them.
  const auto values = pybind11::reinterpret_steal<pybind11::object>(PySequence_List(value));
  Slice slice;
  Py_ssize_t stop = 0;
  if (!values || PySlice_Unpack(key, &slice.start, &stop, &slice.step) < 0) return -1;
  const Py_ssize_t size = list_length(self);
  if (size < 0) return -1;
  slice.count = PySlice_AdjustIndices(size, &slice.start, &stop, slice.step);
  if (slice.step == 1) return replace_slice(as_list(self), slice, true, values.ptr());
  if (PyList_GET_SIZE(values.ptr()) != slice.count) {
    PyErr_Format(PyExc_ValueError, "%zd values cannot take the place of %zd entries",
                 PyList_GET_SIZE(values.ptr()), slice.count);
    return -1;
  }
  if (slice.step < 0) {
    slice.start += (slice.count - 1) * slice.step;
    slice.step = -slice.step;
    if (PyList_Reverse(values.ptr()) < 0) return -1;
  }
  return replace_slice(as_list(self), slice, false, values.ptr());
}

int list_assign(PyObject* self, PyObject* key, PyObject* value) {
  return guarded<int>(-1, [=]() -> int {
    const List& list = as_list(self);
    const Py_ssize_t size = list_length(self);
    if (size < 0) return -1;
    if (PySlice_Check(key)) {
      return value == nullptr ? remove_slice(self, size, key) : assign_slice(self, key, value);
    }
    Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
    if (index == -1 && PyErr_Occurred() != nullptr) return -1;
    if (index < 0) index += size;
    if (index < 0 || index >= size) {
      PyErr_SetString(PyExc_IndexError, "the list has no such entry");
      return -1;
    }
    const auto at = static_cast<unsigned>(index);
    if (value == nullptr) return remove(list.holder, list.row, at);
    if (!has_objects(list.row)) return store(list.holder, list.row, at, value, false);
    // Behind the old one first, so that nothing is lost if it cannot stand there.
    PyObject* const added = insert(list.holder, list.row, at + 1, value);
    if (added == nullptr) return -1;
    Py_DECREF(added);
    if (remove(list.holder, list.row, at) == 0) return 0;
    zol_remove(list.holder->object, list.row, at + 1);
    return -1;
  });
}

PyObject* list_insert(PyObject* self, PyObject* arguments) {
  Py_ssize_t index = 0;
  PyObject* value = nullptr;
  if (PyArg_ParseTuple(arguments, "nO", &index, &value) == 0) return nullptr;
  return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
    const Py_ssize_t size = list_length(self);
    if (size < 0) return nullptr;
    if (index < 0) index = std::max<Py_ssize_t>(index + size, 0);
    return insert(as_list(self).holder, as_list(self).row,
                  static_cast<unsigned>(std::min(index, size)), value);
  });
}

// An object in its place, of the class that the list is of.
PyObject* list_make(PyObject* self, PyObject*) {
  const List& list = as_list(self);
  const Py_ssize_t size = list_length(self);
  if (size < 0) return nullptr;
  if (!has_objects(list.row) || table_of(list.row).kind == Kind::member) {
    return PyErr_Format(PyExc_TypeError, "append what is to stand in this list");
  }
  return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
    void* const made = zol_insert_child(list.holder->object, list.row, static_cast<unsigned>(size),
                                        table_of(list.row).type->number);
    return made != nullptr ? wrap(*static_cast<Object*>(made), list.holder, list.row)
                           : PyErr_NoMemory();
  });
}

PyObject* list_exact(PyObject* self, void*) {
  const List& list = as_list(self);
  if (table_of(list.row).kind != Kind::datetime) {
    return PyErr_Format(PyExc_AttributeError, "only dates have an exact form");
  }
  return make_list(list.holder, list.row, true);
}

PyObject* list_holder(PyObject* self, void*) {
  return Py_NewRef(reinterpret_cast<PyObject*>(as_list(self).holder));
}

PyObject* list_iterate(PyObject* self) { return PySeqIter_New(self); }

PyObject* list_new(PyTypeObject* type, PyObject*, PyObject*) {
  return PyErr_Format(PyExc_TypeError, "a %s belongs to an object", type->tp_name);
}

void list_dealloc(PyObject* self) {
  PyTypeObject* const type = Py_TYPE(self);
  auto* const holder = reinterpret_cast<PyObject*>(as_list(self).holder);
  type->tp_free(self);
  Py_DECREF(type);
  Py_XDECREF(holder);
}

PyMethodDef k_list_methods[] = {
    {"insert", list_insert, METH_VARARGS,
     "Inserts a copy of an object, or a value, before the index; gives what now stands there."},
    {"_make", list_make, METH_NOARGS, nullptr},
    {}};
PyGetSetDef k_list_attributes[] = {
    {"exact", list_exact, nullptr, "The same dates as the document has them, as texts.", nullptr},
    {"parent", list_holder, nullptr, "The object whose list it is.", nullptr},
    {}};
PyType_Slot k_list_slots[] = {{Py_tp_new, reinterpret_cast<void*>(list_new)},
                              {Py_tp_dealloc, reinterpret_cast<void*>(list_dealloc)},
                              {Py_tp_iter, reinterpret_cast<void*>(list_iterate)},
                              {Py_sq_length, reinterpret_cast<void*>(list_length)},
                              {Py_sq_item, reinterpret_cast<void*>(list_item)},
                              {Py_mp_length, reinterpret_cast<void*>(list_length)},
                              {Py_mp_subscript, reinterpret_cast<void*>(list_subscript)},
                              {Py_mp_ass_subscript, reinterpret_cast<void*>(list_assign)},
                              {Py_tp_methods, k_list_methods},
                              {Py_tp_getset, k_list_attributes},
                              {}};
PyType_Spec k_list_spec = {"zol._zol.List", sizeof(List), 0,
                           Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, k_list_slots};

}  // namespace

PyObject* make_list(Proxy* holder, unsigned row, bool is_exact) {
  PyTypeObject* const type = classes().list_class;
  auto* const list = reinterpret_cast<List*>(type->tp_alloc(type, 0));
  if (list == nullptr) return nullptr;
  Py_INCREF(holder);
  list->holder = holder;
  list->row = row;
  list->is_exact = is_exact;
  return reinterpret_cast<PyObject*>(list);
}

int replace_all(Proxy* self, unsigned row, PyObject* values) {
  // Entries of the list itself may be among them.
  const auto all = pybind11::reinterpret_steal<pybind11::object>(
      values != nullptr ? PySequence_List(values) : PyList_New(0));
  if (!all || live(self) == nullptr) return -1;
  if (!self->owner->may_take_out(*self, row)) return -1;
  const unsigned before = zol_count(self->object, row);
  for (Py_ssize_t i = 0; i < PyList_GET_SIZE(all.ptr()); ++i) {
    PyObject* const added =
        insert(self, row, zol_count(self->object, row), PyList_GET_ITEM(all.ptr(), i));
    if (live(self) == nullptr) {
      Py_XDECREF(added);
      return -1;
    }
    if (added == nullptr) {
      while (zol_count(self->object, row) > before) {
        zol_remove(self->object, row, zol_count(self->object, row) - 1);
      }
      return -1;
    }
    Py_DECREF(added);
  }
  for (unsigned i = 0; i < before; ++i) {
    if (remove(self, row, before - 1 - i) < 0) return -1;
  }
  return 0;
}

bool add_list_type(PyObject* module) {
  classes().list = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&k_list_spec));
  classes().list_class = classes().list;
  return classes().list != nullptr && PyModule_AddType(module, classes().list) == 0;
}

}  // namespace zol_v2::python
