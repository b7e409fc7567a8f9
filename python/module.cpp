// The extension under the package zol, whose Python says the rest.
#include "python/handles.h"

namespace py = pybind11;

using zol_v2::python::classes;

namespace {

// The class of objects of the type by that number.
void set_class(unsigned number, const py::type& type) {
  auto& numbered = classes().by_number;
  if (number >= numbered.size()) throw py::value_error("no class has this number");
  Py_INCREF(type.ptr());
  numbered[number] = reinterpret_cast<PyTypeObject*>(type.ptr());
}

// The class of lists, and the functions that refuse a value and make a foreign element.
void set_makers(const py::type& list, const py::object& refused, const py::object& foreign) {
  classes().list_class = reinterpret_cast<PyTypeObject*>(list.inc_ref().ptr());
  classes().refused = refused.inc_ref().ptr();
  classes().foreign = foreign.inc_ref().ptr();
}

}  // namespace

PYBIND11_MODULE(_zol, module) {
  if (!zol_v2::python::add_object_type(module.ptr()) ||
      !zol_v2::python::add_field_type(module.ptr()) ||
      !zol_v2::python::add_list_type(module.ptr())) {
    throw py::error_already_set();
  }
  module.def("set_class", set_class);
  module.def("set_makers", set_makers);
  zol_v2::python::add_documents(module);
  zol_v2::python::add_columns(module);
#ifdef ZOL_PYTHON_COLOR
  auto color = module.def_submodule("color");
  zol_v2::python::add_color(color);
#endif
}
