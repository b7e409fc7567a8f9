// Whole documents: loading, saving, judging, without the interpreter's lock.
#include <pybind11/stl.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "facade/check.h"
#include "facade/files.h"
#include "model/Zol.h"
#include "python/handles.h"

namespace zol_v2::python {

namespace py = pybind11;

namespace {

// What zol.Fault is made of, in its order.
py::tuple told(const Fault& fault) {
  const auto text = [](std::string_view utf8) {
    return py::reinterpret_steal<py::object>(to_text(utf8));
  };
  const auto place = [](const SourcePlace& at) -> py::object {
    return at ? py::make_tuple(at.line, at.column, at.offset) : py::object(py::none());
  };
  py::list allowed;
  for (const std::string& one : fault.allowed) allowed.append(text(one));
  return py::make_tuple(static_cast<int>(fault.code), fault.severity == Severity::warning,
                        text(fault.rule), text(fault.text()), text(fault.path), text(fault.object),
                        place(fault.place), fault.length, place(fault.first), text(fault.item),
                        text(fault.found), text(fault.expected), py::tuple(allowed),
                        text(fault.entry));
}

py::list told(const std::vector<Fault>& faults) {
  py::list all;
  for (const Fault& fault : faults) all.append(told(fault));
  return all;
}

py::object text_of(const std::string& text) {
  return py::reinterpret_steal<py::object>(to_text(text));
}

Proxy& alive(const py::object& object) {
  Proxy* const proxy = live_proxy(object.ptr());
  if (proxy == nullptr) throw py::error_already_set();
  return *proxy;
}

// What an object lends: as it stands, or a copy of what somebody else could change meanwhile.
class Bytes {
 public:
  explicit Bytes(const py::object& object) {
    if (PyObject_GetBuffer(object.ptr(), &lent_, PyBUF_SIMPLE) < 0) throw py::error_already_set();
    if (lent_.readonly == 0) copy_ = lent();
  }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  ~Bytes() { PyBuffer_Release(&lent_); }

  std::string_view view() const { return lent_.readonly == 0 ? std::string_view(copy_) : lent(); }

 private:
  std::string_view lent() const {
    return {static_cast<const char*>(lent_.buf), static_cast<std::size_t>(lent_.len)};
  }

  Py_buffer lent_{};
  std::string copy_;
};

// A path, or bytes. Gives code, document, faults, their number, message and whether all was judged.
py::tuple load(const std::optional<std::wstring>& path, const py::object& bytes, bool strict,
               bool best_effort, std::uint64_t largest, std::size_t most_faults) {
  LoadOptions options;
  options.strict = strict;
  options.best_effort = best_effort;
  options.largest_document = largest;
  options.most_faults = most_faults;
  LoadReport report;
  auto document = std::make_unique<Zol>();
  lmx::elmx_error code = lmx::elmx_ok;
  if (path) {
    const py::gil_scoped_release unlocked;
    code = openFile(*document, *path, &report, options);
  } else {
    const Bytes all(bytes);
    const py::gil_scoped_release unlocked;
    code = openText(*document, all.view(), &report, options);
  }
  py::object made = py::none();
  if (code == lmx::elmx_ok || best_effort) {
    made = py::reinterpret_steal<py::object>(wrap_root(document.release()));
    if (!made) throw py::error_already_set();
  }
  return py::make_tuple(static_cast<int>(code), made, told(report.faults), report.fault_count,
                        text_of(report.message), report.is_complete);
}

SaveOptions save_options(bool exact, bool indented, bool stamped, bool checked) {
  SaveOptions options;
  options.is_exact = exact;
  options.is_indented = indented;
  options.is_stamped = stamped;
  options.is_checked = checked;
  return options;
}

py::tuple outcome(lmx::elmx_error code, const SaveReport& report) {
  return py::make_tuple(static_cast<int>(code), told(report.faults), text_of(report.message));
}

// Writing sets the stamp of a document, so nobody else may look meanwhile.
py::tuple save(const py::object& object, const std::wstring& path, bool exact, bool indented,
               bool stamped, bool checked) {
  const Proxy& proxy = alive(object);
  SaveReport report;
  lmx::elmx_error code = lmx::elmx_ok;
  {
    const Exclusive unlocked(proxy);
    code = saveFile(*proxy.object, path, &report, save_options(exact, indented, stamped, checked));
  }
  return outcome(code, report);
}

py::tuple dump(const py::object& object, bool exact, bool indented, bool stamped, bool checked) {
  const Proxy& proxy = alive(object);
  SaveReport report;
  std::string text;
  lmx::elmx_error code = lmx::elmx_ok;
  {
    const Exclusive unlocked(proxy);
    code =
        saveString(*proxy.object, text, &report, save_options(exact, indented, stamped, checked));
  }
  return py::make_tuple(outcome(code, report), py::bytes(text));
}

py::list judge(const py::object& object, bool warnings) {
  const Proxy& proxy = alive(object);
  CheckReport report;
  {
    const Exclusive unlocked(proxy);
    CheckOptions options;
    options.level = warnings ? CheckLevel::warnings : CheckLevel::reading;
    report = check(*proxy.object, options);
  }
  return told(report.faults);
}

}  // namespace

void add_documents(py::module_& module) {
  module.def("load", load);
  module.def("save", save);
  module.def("dump", dump);
  module.def("check", judge);
}

}  // namespace zol_v2::python
