#include "python/handles.h"

#include <algorithm>
#include <memory>
#include <string>

#include "bridge/zol_helpers.h"

namespace zol_v2::python {

Classes& classes() {
  static Classes instance;
  return instance;
}

unsigned number_of(Type type, Row row) {
  const internal::Class* owner = &type.table();
  const auto has = [&](const internal::Rows& rows) {
    return std::find_if(rows.begin(), rows.end(), [&](const internal::Row& one) {
             return &one == &row.table();
           }) != rows.end();
  };
  while (!has(owner->all())) owner = owner->base;
  return static_cast<unsigned>(owner->number * k_rows_of_a_class + (&row.table() - owner->rows));
}

// --- Owners --------------------------------------------------------------------------------------

Owner::~Owner() { zol_delete(root_); }

void Owner::let_go() {
  if (--references_ == 0) delete this;
}

void Owner::wait() {
  while (is_busy_) {
    Py_BEGIN_ALLOW_THREADS;
    { const std::lock_guard<std::mutex> until_then(work_); }
    Py_END_ALLOW_THREADS;
  }
}

bool Owner::close() {
  wait();
  if (!lent_.empty()) {
    PyErr_SetString(PyExc_BufferError, "an array still shows numbers of the document");
    return false;
  }
  zol_delete(root_);
  root_ = nullptr;
  version_ = 0;
  return true;
}

namespace {

// Whether the proxy is the entry, or what the row of the parent holds, or a part of those.
bool is_inside(const Proxy* part, const Proxy& parent, unsigned row, const void* entry) {
  for (; part != nullptr; part = part->parent) {
    if (entry != nullptr) {
      if (part->object == entry) return true;
    } else if (part->parent != nullptr && part->parent->object == parent.object &&
               part->row == row) {
      return true;
    }
  }
  return false;
}

// Whether the row of the parent is one whose numbers are lent, or lies in such a one.
bool is_lent(const Proxy& parent, unsigned row, const Proxy& lender, unsigned lent) {
  for (const Proxy* at = &parent; at != nullptr; row = at->row, at = at->parent) {
    if (at->object == lender.object) return lent == k_all_rows || lent == row;
  }
  return false;
}

}  // namespace

bool Owner::may_take_out(const Proxy& parent, unsigned row, const void* entry) const {
  for (const auto& [lender, lent] : lent_) {
    if (!is_inside(lender, parent, row, entry) && !is_lent(parent, row, *lender, lent)) continue;
    PyErr_SetString(PyExc_BufferError, "an array still shows numbers of what would be removed");
    return false;
  }
  return true;
}

void Owner::take_out(const void* address, unsigned row) {
  gone_since_[{address, row}] = ++changes_;
  version_ = changes_;
}

bool Owner::is_gone(const void* address, unsigned row, std::uint64_t since) const {
  const auto found = gone_since_.find({address, row});
  return found != gone_since_.end() && found->second > since;
}

void Owner::take_back(const Proxy& proxy, unsigned row) {
  lent_.erase(std::find(lent_.begin(), lent_.end(), std::pair(&proxy, row)));
}

Exclusive::Exclusive(const Proxy& proxy) : owner_(*proxy.owner) {
  owner_.hold();
  owner_.is_busy_ = true;
  owner_.version_ = 0;
  owner_.work_.lock();
  state_ = PyEval_SaveThread();
}

Exclusive::~Exclusive() {
  owner_.work_.unlock();
  PyEval_RestoreThread(state_);
  owner_.is_busy_ = false;
  owner_.version_ = owner_.changes_;
  owner_.let_go();
}

// --- Proxies -------------------------------------------------------------------------------------

namespace {

constexpr std::uint64_t k_gone = ~std::uint64_t{0};

Proxy* as_proxy(PyObject* object) { return reinterpret_cast<Proxy*>(object); }

// Brings the proxy up to date, whose parent is.
void look(Proxy& self) {
  const Owner& owner = *self.owner;
  bool is_gone = owner.is_closed() || owner.is_gone(self.object, k_itself, self.version);
  if (!is_gone && self.parent != nullptr) {
    is_gone = self.parent->version == k_gone ||
              owner.is_gone(self.parent->object, self.row, self.version);
  }
  self.version = is_gone ? k_gone : owner.changes();
}

}  // namespace

bool is_alive(Proxy* self) {
  if (self->version == k_gone) return false;
  self->owner->wait();
  const std::uint64_t now = self->owner->changes();
  // From the top down, as far as a proxy is not up to date; chains may be long.
  std::vector<Proxy*> chain;
  for (Proxy* at = self; at != nullptr && at->version != k_gone; at = at->parent) {
    if (at->version == now && !self->owner->is_closed()) break;
    chain.push_back(at);
  }
  std::for_each(chain.rbegin(), chain.rend(), [](Proxy* at) { look(*at); });
  return self->version != k_gone;
}

Object* settled(Proxy* self) {
  return guarded<Object*>(nullptr, [=]() -> Object* {
    if (is_alive(self)) return self->object;
    PyErr_Format(PyExc_ReferenceError, "%s: %s", Py_TYPE(self)->tp_name,
                 self->owner->is_closed() ? "the document was closed"
                                          : "it was removed from the document, or replaced");
    return nullptr;
  });
}

Proxy* live_proxy(PyObject* value) {
  if (!is_proxy(value)) {
    PyErr_Format(PyExc_TypeError, "a %s is no object of a document", Py_TYPE(value)->tp_name);
    return nullptr;
  }
  Proxy* const proxy = as_proxy(value);
  return live(proxy) != nullptr ? proxy : nullptr;
}

namespace {

PyObject* make(PyTypeObject* type, Object& object, Owner& owner, Proxy* parent, unsigned row) {
  auto* const self = as_proxy(type->tp_alloc(type, 0));
  if (self == nullptr) return nullptr;
  self->object = &object;
  self->owner = &owner;
  owner.hold();
  Py_XINCREF(parent);
  self->parent = parent;
  self->version = owner.changes();
  self->row = row;
  return reinterpret_cast<PyObject*>(self);
}

PyTypeObject* class_of(const Object& object) {
  const auto& type = internal::Head::class_of(object).content_class();
  PyTypeObject* const found = classes().by_number.at(type.number);
  if (found == nullptr) PyErr_Format(PyExc_RuntimeError, "no class for %s", type.name);
  return found;
}

}  // namespace

PyObject* wrap(Object& object, Proxy* parent, unsigned row) {
  PyTypeObject* const type = class_of(object);
  return type != nullptr ? make(type, object, *parent->owner, parent, row) : nullptr;
}

PyObject* wrap_root(Object* object) {
  if (object == nullptr) return PyErr_NoMemory();
  auto* const owner = new Owner(object);
  owner->hold();
  PyTypeObject* const type = class_of(*object);
  PyObject* const made = type != nullptr ? make(type, *object, *owner, nullptr, 0) : nullptr;
  owner->let_go();
  return made;
}

// --- The type of proxies -------------------------------------------------------------------------

namespace {

// The number of the class that an object of the type is made as.
int number_of_type(PyTypeObject* type) {
  const auto& numbered = classes().by_number;
  for (; type != nullptr && type != classes().object; type = type->tp_base) {
    const auto found = std::find(numbered.begin(), numbered.end(), type);
    if (found != numbered.end()) return static_cast<int>(found - numbered.begin());
  }
  return -1;
}

PyObject* proxy_new(PyTypeObject* type, PyObject*, PyObject*) {
  return guarded<PyObject*>(nullptr, [=]() -> PyObject* {
    const int number = number_of_type(type);
    if (number < 0) {
      return PyErr_Format(PyExc_TypeError, "%s is abstract: make one of its kinds", type->tp_name);
    }
    void* const object = zol_new(static_cast<unsigned>(number));
    if (object == nullptr) return PyErr_NoMemory();
    auto* const owner = new Owner(static_cast<Object*>(object));
    owner->hold();
    PyObject* const made = make(type, *static_cast<Object*>(object), *owner, nullptr, 0);
    owner->let_go();
    return made;
  });
}

int proxy_init(PyObject* self, PyObject* arguments, PyObject* words) {
  if (PyTuple_GET_SIZE(arguments) != 0) {
    PyErr_Format(PyExc_TypeError, "%s takes its values by name", Py_TYPE(self)->tp_name);
    return -1;
  }
  PyObject *name = nullptr, *value = nullptr;
  Py_ssize_t at = 0;
  while (words != nullptr && PyDict_Next(words, &at, &name, &value) != 0) {
    if (PyObject_SetAttr(self, name, value) < 0) return -1;
  }
  return 0;
}

// One by one, however long the chain of parents is.
void drop(Proxy* parent) {
  static std::vector<Proxy*> waiting;
  static bool is_at_it = false;
  waiting.push_back(parent);
  if (is_at_it) return;
  is_at_it = true;
  while (!waiting.empty()) {
    Proxy* const next = waiting.back();
    waiting.pop_back();
    Py_DECREF(next);
  }
  is_at_it = false;
}

void proxy_dealloc(PyObject* object) {
  Proxy* const self = as_proxy(object);
  Proxy* const parent = self->parent;
  PyTypeObject* const type = Py_TYPE(object);
  self->owner->let_go();
  type->tp_free(object);
  Py_DECREF(type);
  if (parent != nullptr) drop(parent);
}

PyObject* proxy_compare(PyObject* left, PyObject* right, int operation) {
  if ((operation != Py_EQ && operation != Py_NE) || !is_proxy(right)) Py_RETURN_NOTIMPLEMENTED;
  return guarded<PyObject*>(nullptr, [=] {
    Proxy *const a = as_proxy(left), *const b = as_proxy(right);
    const bool is_same =
        a == b || (a->object == b->object && a->owner == b->owner && is_alive(a) && is_alive(b));
    return PyBool_FromLong(is_same == (operation == Py_EQ));
  });
}

Py_hash_t proxy_hash(PyObject* self) { return _Py_HashPointer(as_proxy(self)->object); }

PyObject* proxy_parent(PyObject* self, void*) {
  if (live(as_proxy(self)) == nullptr) return nullptr;
  auto* const parent = reinterpret_cast<PyObject*>(as_proxy(self)->parent);
  return Py_NewRef(parent != nullptr ? parent : Py_None);
}

PyObject* proxy_path(PyObject* self, void*) {
  if (live(as_proxy(self)) == nullptr) return nullptr;
  // A group without a value has no path, nor has what is in an element that is nil: they go by that
  // of what is around.
  for (const Proxy* at = as_proxy(self); at != nullptr; at = at->parent) {
    const std::unique_ptr<char, void (*)(void*)> path(
        zol_path(at->owner->root(), at->object, -1, 0), zol_text_free);
    if (path != nullptr) return PyUnicode_FromString(path.get());
  }
  return PyErr_NoMemory();
}

PyObject* proxy_is_removed(PyObject* self, void*) {
  return guarded<PyObject*>(nullptr,
                            [=] { return PyBool_FromLong(is_alive(as_proxy(self)) ? 0 : 1); });
}

PyObject* proxy_is_nil(PyObject* self, void*) {
  Object* const object = live(as_proxy(self));
  return object != nullptr ? PyBool_FromLong(zol_is_nil(object) != 0 ? 1 : 0) : nullptr;
}

int proxy_set_nil(PyObject* self, PyObject* value, void*) {
  const int is_nil = value != nullptr ? PyObject_IsTrue(value) : -1;
  if (is_nil < 0) {
    if (value == nullptr) PyErr_SetString(PyExc_TypeError, "is_nil cannot be deleted");
    return -1;
  }
  Object* const object = live(as_proxy(self));
  if (object == nullptr) return -1;
  if (zol_set_nil(object, is_nil != 0 ? 1 : 0) != 0 || is_nil == 0) return 0;
  PyErr_Format(PyExc_ValueError, "a %s cannot be nil", Py_TYPE(self)->tp_name);
  return -1;
}

PyObject* proxy_kind(PyObject* self, void*) {
  Object* const object = live(as_proxy(self));
  if (object == nullptr) return nullptr;
  const Row chosen = ConstRef(*object).chosen();
  return chosen ? to_text(chosen.name()) : Py_NewRef(Py_None);
}

PyObject* proxy_size(PyObject* self, PyObject*) {
  Object* const object = live(as_proxy(self));
  if (object == nullptr) return nullptr;
  return PyLong_FromUnsignedLongLong(zol_memory(object));
}

PyObject* proxy_copy(PyObject* self, PyObject*) {
  return guarded<PyObject*>(nullptr, [=]() -> PyObject* {
    Object* const object = live(as_proxy(self));
    return object != nullptr ? wrap_root(static_cast<Object*>(zol_copy(object))) : nullptr;
  });
}

PyObject* proxy_close(PyObject* self, PyObject*) {
  Owner& owner = *as_proxy(self)->owner;
  if (as_proxy(self)->parent != nullptr) {
    return PyErr_Format(PyExc_ValueError, "a part of a document cannot be closed");
  }
  if (!owner.close()) return nullptr;
  Py_RETURN_NONE;
}

PyGetSetDef k_proxy_attributes[] = {
    {"parent", proxy_parent, nullptr, "What this is part of; None for what stands by itself.",
     nullptr},
    {"path", proxy_path, nullptr,
     "Where this stands, as in 'Zol/Color[3]/ColorSpaceCIELab'. Searches the document.", nullptr},
    {"is_removed", proxy_is_removed, nullptr,
     "Whether this was removed or replaced, or its document closed.", nullptr},
    {"is_nil", proxy_is_nil, proxy_set_nil,
     "Whether it is marked as nil: there, and with nothing in it that is written.", nullptr},
    {"_chosen", proxy_kind, nullptr, "The format's name of what a choice holds.", nullptr},
    {}};

PyMethodDef k_proxy_methods[] = {
    {"copy", proxy_copy, METH_NOARGS, "A copy, which is part of no document."},
    {"__copy__", proxy_copy, METH_NOARGS, nullptr},
    {"__deepcopy__", proxy_copy, METH_O, nullptr},
    {"__sizeof__", proxy_size, METH_NOARGS, "What the object and everything in it take, in bytes."},
    {"_close", proxy_close, METH_NOARGS, nullptr},
    {}};

PyType_Slot k_proxy_slots[] = {
    {Py_tp_new, reinterpret_cast<void*>(proxy_new)},
    {Py_tp_init, reinterpret_cast<void*>(proxy_init)},
    {Py_tp_dealloc, reinterpret_cast<void*>(proxy_dealloc)},
    {Py_tp_richcompare, reinterpret_cast<void*>(proxy_compare)},
    {Py_tp_hash, reinterpret_cast<void*>(proxy_hash)},
    {Py_tp_getset, k_proxy_attributes},
    {Py_tp_methods, k_proxy_methods},
    {Py_tp_doc, const_cast<char*>("An object of a document, or one that is part of none.")},
    {}};
PyType_Spec k_proxy_spec = {"zol._zol.Object", sizeof(Proxy), 0,
                            Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, k_proxy_slots};

}  // namespace

bool add_object_type(PyObject* module) {
  classes().by_number.resize(reflection::all_types().size());
  classes().object = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&k_proxy_spec));
  return classes().object != nullptr && PyModule_AddType(module, classes().object) == 0;
}

}  // namespace zol_v2::python
