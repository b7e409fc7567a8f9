// Values between rows and Python, and what a refusal says.
#include "python/handles.h"
// It wants what Python.h declares.
#include <datetime.h>

#include <limits>
#include <memory>
#include <string>

#include "bridge/zol_helpers.h"
#include "lmx/errors.h"
#include "model/Zol.h"

namespace zol_v2::python {

PyObject* to_text(std::string_view utf8) {
  return PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "replace");
}

PyObject* to_text(Value value) {
  std::string_view narrow;
  if (value.narrow_text(&narrow)) return to_text(narrow);
  std::string text;
  value.append_text(&text);
  return to_text(text);
}

namespace {

struct Drop {
  void operator()(PyObject* object) const { Py_XDECREF(object); }
};
using Held = std::unique_ptr<PyObject, Drop>;

bool import_datetime() {
  if (PyDateTimeAPI == nullptr) PyDateTime_IMPORT;
  return PyDateTimeAPI != nullptr;
}

// The digits of the second's fraction, as far as a datetime has them.
int microseconds(const std::string& text) {
  const std::size_t point = text.find('.');
  int value = 0;
  for (std::size_t i = 1; i <= 6; ++i) {
    const char c = point != std::string::npos && point + i < text.size() ? text[point + i] : ' ';
    if (c < '0' || c > '9') {
      for (; i <= 6; ++i) value *= 10;
      break;
    }
    value = value * 10 + (c - '0');
  }
  return value;
}

PyObject* to_datetime(Value value) {
  if (!import_datetime()) return nullptr;
  const lmx::c_datetime& date = value.date();
  std::string text;
  value.append_text(&text);
  const int minutes = date.get_total_offset_mins();
  Held zone(Py_NewRef(PyDateTime_TimeZone_UTC));
  if (minutes != 0) {
    const Held offset(PyDelta_FromDSU(0, minutes * 60, 0));
    zone.reset(offset != nullptr ? PyTimeZone_FromOffset(offset.get()) : nullptr);
    if (zone == nullptr) return nullptr;
  }
  return PyDateTimeAPI->DateTime_FromDateAndTime(
      date.get_year(), static_cast<int>(date.get_month()), static_cast<int>(date.get_day()),
      static_cast<int>(date.get_hours()), static_cast<int>(date.get_mins()),
      static_cast<int>(date.get_secs()), microseconds(text), zone.get(),
      PyDateTimeAPI->DateTimeType);
}

PyObject* to_foreign(const internal::AnyElement& element) {
  const Held name(to_text(element.full_name)), space(to_text(element.namespace_uri)),
      text(to_text(element.text));
  if (name == nullptr || space == nullptr || text == nullptr) return nullptr;
  return PyObject_CallFunctionObjArgs(classes().foreign, name.get(), space.get(), text.get(),
                                      nullptr);
}

PyObject* to_member(const internal::Row& row, Value value) {
  const int number = value.number_in_enumeration();
  const auto members = classes().members.find(&row);
  if (number == 0 || members == classes().members.end()) return to_text(value);
  return Py_NewRef(PyTuple_GET_ITEM(members->second, number - 1));
}

}  // namespace

PyObject* to_python(const internal::Row& row, Value value) {
  if (!value) Py_RETURN_NONE;
  switch (row.kind) {
    case Kind::real:
      return PyFloat_FromDouble(value.number());
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return PyLong_FromLongLong(value.integer());
    case Kind::truth:
      return PyBool_FromLong(value.truth() ? 1 : 0);
    case Kind::enumerated:
      return to_member(row, value);
    case Kind::datetime:
      return to_datetime(value);
    case Kind::binary: {
      const lmx::c_binary& bytes = value.bytes();
      const void* const first = bytes.size() != 0 ? &const_cast<lmx::c_binary&>(bytes)[0] : nullptr;
      return PyBytes_FromStringAndSize(static_cast<const char*>(first), bytes.size());
    }
    case Kind::foreign:
      return to_foreign(value.foreign());
    default:
      return to_text(value);
  }
}

// --- Refusals ------------------------------------------------------------------------------------

int refuse(const Owner& owner, Object& object, unsigned row, unsigned index, int code,
           PyObject* value) {
  if (code == lmx::elmx_user_defined_1) {
    PyErr_NoMemory();
    return -1;
  }
  using Given = std::unique_ptr<char, void (*)(void*)>;
  const auto free_text = [](void* text) { zol_text_free(text); };
  const Given path(zol_path(owner.root(), &object, static_cast<int>(row), index), free_text);
  const Given expected(zol_expected(row), free_text);
  const Held raised(PyObject_CallFunction(classes().refused, "isOs", code,
                                          path != nullptr ? path.get() : "", value,
                                          expected != nullptr ? expected.get() : ""));
  return -1;
}

// --- Storing -------------------------------------------------------------------------------------

// To ask an object of Python for its value runs whatever code it has, which may remove anything: so
// `self` is looked at again behind each such question.

namespace {

int wrong_type(const internal::Row& row, const char* wanted, PyObject* value) {
  PyErr_Format(PyExc_TypeError, "%s wants %s, not %s", std::string(Row(row).name()).c_str(), wanted,
               Py_TYPE(value)->tp_name);
  return -1;
}

// A date as a document has it. One without an offset from UTC is written as Z, as that is how it
// comes back.
PyObject* date_text(const internal::Row& row, PyObject* value) {
  if (!import_datetime()) return nullptr;
  Held text(PyUnicode_Check(value)    ? Py_NewRef(value)
            : PyDateTime_Check(value) ? PyObject_CallMethod(value, "isoformat", nullptr)
                                      : nullptr);
  if (text == nullptr) {
    if (PyErr_Occurred() == nullptr) wrong_type(row, "a datetime or its text", value);
    return nullptr;
  }
  Py_ssize_t size = 0;
  const char* const utf8 = PyUnicode_AsUTF8AndSize(text.get(), &size);
  if (utf8 == nullptr) return nullptr;
  const std::string_view view(utf8, static_cast<std::size_t>(size));
  for (const std::string_view zero : {"+00:00", "-00:00"}) {
    if (view.size() < zero.size() || view.substr(view.size() - zero.size()) != zero) continue;
    return to_text(std::string(view.substr(0, view.size() - zero.size())) + "Z");
  }
  return text.release();
}

int store_text(Proxy* self, unsigned row, unsigned index, PyObject* text, PyObject* value,
               bool is_new) {
  Py_ssize_t size = 0;
  const char* const utf8 = PyUnicode_AsUTF8AndSize(text, &size);
  if (utf8 == nullptr) return -1;
  if (static_cast<std::size_t>(size) > std::numeric_limits<unsigned>::max()) {
    PyErr_NoMemory();
    return -1;
  }
  const auto bytes = static_cast<unsigned>(size);
  const int code = is_new ? zol_insert_text(self->object, row, index, utf8, bytes)
                          : zol_set_text(self->object, row, index, utf8, bytes);
  return code == lmx::elmx_ok ? 0 : refuse(self, row, is_new ? 0 : index, code, value);
}

int store_integer(Proxy* self, unsigned row, PyObject* value) {
  const Held number(PyNumber_Index(value));
  if (number == nullptr || live(self) == nullptr) return -1;
  int overflow = 0;
  long long integer = PyLong_AsLongLongAndOverflow(number.get(), &overflow);
  if (overflow != 0) {
    using Limits = std::numeric_limits<long long>;
    integer = overflow > 0 ? Limits::max() : Limits::min();
  }
  const int code = zol_set_integer(self->object, row, integer);
  return code == lmx::elmx_ok ? 0 : refuse(self, row, 0, code, value);
}

int store_member(Proxy* self, unsigned row, PyObject* value) {
  const internal::Row& table = table_of(row);
  const auto members = classes().members.find(&table);
  if (members != classes().members.end()) {
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(members->second); ++i) {
      if (PyTuple_GET_ITEM(members->second, i) != value) continue;
      const int code = zol_set_integer(self->object, row, i + 1);
      return code == lmx::elmx_ok ? 0 : refuse(self, row, 0, code, value);
    }
  }
  if (PyUnicode_Check(value)) return store_text(self, row, 0, value, value, false);
  return wrong_type(table, "a member of its enumeration or its text", value);
}

int store_bytes(Proxy* self, unsigned row, PyObject* value) {
  Py_buffer view;
  if (PyObject_GetBuffer(value, &view, PyBUF_SIMPLE) < 0) return -1;
  int code = lmx::elmx_user_defined_1;
  if (live(self) == nullptr) {
    PyBuffer_Release(&view);
    return -1;
  }
  if (static_cast<std::size_t>(view.len) <= std::numeric_limits<unsigned>::max()) {
    code = zol_set_bytes(self->object, row, static_cast<const unsigned char*>(view.buf),
                         static_cast<unsigned>(view.len));
  }
  PyBuffer_Release(&view);
  return code == lmx::elmx_ok ? 0 : refuse(self, row, 0, code, value);
}

// Whether the text is one element, with all prefixes declared; its namespace then.
bool judge_element(PyObject* text, std::string* space) {
  const Held trees(PyImport_ImportModule("xml.etree.ElementTree"));
  if (trees == nullptr) return false;
  const Held root(PyObject_CallMethod(trees.get(), "fromstring", "O", text));
  const Held tag(root != nullptr ? PyObject_GetAttrString(root.get(), "tag") : nullptr);
  const char* const name = tag != nullptr ? PyUnicode_AsUTF8(tag.get()) : nullptr;
  if (name == nullptr) return false;
  const std::string_view whole(name);
  if (whole.substr(0, 1) == "{") *space = whole.substr(1, whole.rfind('}') - 1);
  return true;
}

// An element of another vocabulary, as a ForeignElement or its text.
int store_foreign(Proxy* self, unsigned row, unsigned index, PyObject* value, bool is_new) {
  const internal::Row& table = table_of(row);
  const Held text(PyUnicode_Check(value) ? Py_NewRef(value)
                                         : PyObject_GetAttrString(value, "text"));
  if (text == nullptr || !PyUnicode_Check(text.get())) {
    PyErr_Clear();
    return wrong_type(table, "a ForeignElement or the text of one", value);
  }
  const char* const utf8 = PyUnicode_AsUTF8(text.get());
  if (utf8 == nullptr) return -1;
  internal::AnyElement element;
  element.text = utf8;
  const std::string_view begin = std::string_view(element.text).substr(0, 2);
  const bool is_element =
      begin.size() == 2 && begin[0] == '<' && begin[1] != '!' && begin[1] != '?';
  if (!is_element || !judge_element(text.get(), &element.namespace_uri)) {
    PyErr_Clear();
    return refuse(self, row, index, lmx::elmx_not_well_formed, value);
  }
  if (live(self) == nullptr) return -1;
  element.full_name = element.text.substr(1, element.text.find_first_of(" \t\r\n/>") - 1);
  auto& revision = static_cast<Revision&>(*self->object);
  const lmx::elmx_error code = revision.insert_any(index, element.text);
  if (code != lmx::elmx_ok) return refuse(self, row, index, code, value);
  if (!is_new) revision.delete_any(index + 1);
  // As if it were read.
  const Value stored = ConstRef(revision).value(table, index);
  const_cast<internal::AnyElement&>(stored.foreign()) = std::move(element);
  return 0;
}

int store_value(Proxy* self, unsigned row, unsigned index, PyObject* value, bool is_new) {
  const internal::Row& table = table_of(row);
  switch (table.kind) {
    case Kind::real: {
      const double number = PyFloat_AsDouble(value);
      if (number == -1 && PyErr_Occurred() != nullptr) return -1;
      if (live(self) == nullptr) return -1;
      const int code = zol_set_number(self->object, row, number);
      return code == lmx::elmx_ok ? 0 : refuse(self, row, 0, code, value);
    }
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return store_integer(self, row, value);
    case Kind::truth:
      if (PyBool_Check(value)) return store_integer(self, row, value);
      return wrong_type(table, "True or False", value);
    case Kind::enumerated:
      return store_member(self, row, value);
    case Kind::datetime: {
      const Held text(date_text(table, value));
      if (text == nullptr || live(self) == nullptr) return -1;
      return store_text(self, row, index, text.get(), value, is_new);
    }
    case Kind::binary:
      return store_bytes(self, row, value);
    case Kind::text:
      if (!PyUnicode_Check(value)) return wrong_type(table, "a str", value);
      return store_text(self, row, index, value, value, is_new);
    case Kind::foreign:
      return store_foreign(self, row, index, value, is_new);
    default:
      return wrong_type(table, "nothing", value);
  }
}

}  // namespace

int store(Proxy* self, unsigned row, unsigned index, PyObject* value, bool is_new) {
  // What a choice held before goes if it holds something else now.
  const int before = table_of(row).place == Place::alternative ? zol_chosen(self->object) : -1;
  const bool is_choice = before >= 0 && static_cast<unsigned>(before) != row;
  if (is_choice && !self->owner->may_take_out(*self, static_cast<unsigned>(before))) {
    return -1;
  }
  if (store_value(self, row, index, value, is_new) < 0) return -1;
  if (is_choice) self->owner->take_out(self->object, static_cast<unsigned>(before));
  return 0;
}

int unset(Proxy* self, unsigned row) {
  const internal::Row& table = table_of(row);
  const bool has_objects = table.type != nullptr;
  if (has_objects && !self->owner->may_take_out(*self, row)) return -1;
  if (zol_unset(self->object, row) == 0) {
    PyErr_Format(PyExc_ValueError, "%s is required and cannot be taken away",
                 std::string(Row(table).name()).c_str());
    return -1;
  }
  if (has_objects) self->owner->take_out(self->object, row);
  return 0;
}

}  // namespace zol_v2::python
