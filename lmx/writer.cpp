#include "lmx/writer.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <exception>
#include <locale>
#include <memory>
#include <typeinfo>

#include "lmx/internal/number_text.h"
#include "lmx/internal/plain_stream.h"
#include "lmx/internal/writer_state.h"
#include "lmx/names.h"

namespace lmx {
namespace {

const char* or_empty(const char* text) { return text == nullptr ? "" : text; }

// Puts a stream's precision back, also when the stream throws.
class PrecisionScope {
 public:
  PrecisionScope(std::ostream& os, int precision) : os_(os), saved_(os.precision(precision)) {}
  ~PrecisionScope() { os_.precision(saved_); }
  PrecisionScope(const PrecisionScope&) = delete;
  PrecisionScope& operator=(const PrecisionScope&) = delete;

 private:
  std::ostream& os_;
  std::streamsize saved_;
};

// Precision and formatter belong together.
template <class Number>
std::ostream& write_number(std::ostream& os, Number value, int precision,
                           char* (*format)(Number value, char* out)) {
  const bool is_word = !std::isfinite(value) || value == 0;
  const bool formats_as_ours = internal::is_plain_stream(os);
  if (!is_word && !formats_as_ours) {
    PrecisionScope scope(os, precision);
    return os << value;
  }
  char text[internal::k_number_room];
  const auto size = static_cast<std::size_t>(format(value, text) - text);
  if (formats_as_ours) return os.write(text, static_cast<std::streamsize>(size));
  return os << std::string_view(text, size);  // in the stream's width
}

template <class Text>
std::ostream& write_escaped(std::ostream& os, const Text& text) {
  internal::WriteBlock block(os);
  block.append_escaped(text);
  block.flush();
  return os;
}

}  // namespace

// --- The face -----------------------------------------------------------------------------------

c_xml_writer::c_xml_writer(std::ostream& os, const char* tab, const char* nl)
    : state_(std::make_unique<internal::WriterState>(*this, os, or_empty(tab), or_empty(nl))) {
  os.imbue(std::locale::classic());
}

c_xml_writer::c_xml_writer(std::ostream& os, int flags, const char* tab, const char* nl)
    : c_xml_writer(os, tab, nl) {
  if ((flags & (include_xml_decl | include_standalone)) == 0) return;
  os << "<?xml version=\"1.0\" encoding=\"UTF-8\"";
  if ((flags & include_standalone) != 0) os << " standalone=\"yes\"";
  os << "?>" << state_->newline_;
}

c_xml_writer::~c_xml_writer() = default;

elmx_error c_xml_writer::user_handle_error(elmx_error error, const std::string& /*item_name*/,
                                           const char* /*file*/, int /*line*/) {
  return user_handle_error(error);
}

elmx_error c_xml_writer::user_handle_error(elmx_error error) { return error; }

std::string& c_xml_writer::get_error_message(std::string* out) const {
  out->clear();
  if (state_->last_error_ != elmx_ok)
    out->append("'").append(state_->error_item_name_).append("'-");
  return out->append(get_error_description(state_->last_error_));
}

const char* c_xml_writer::endl() { return state_->newline_; }

void c_xml_writer::nest() {
  state_->block_.flush();
  state_->os_ << state_->tab_;
}

std::ostream& c_xml_writer::operator()(bool nest) {
  state_->block_.flush();
  if (nest) {
    for (int level = 0; level < state_->depth_; ++level) this->nest();
  }
  return state_->os_;
}

void c_xml_writer::indent() { state_->indent(); }

void c_xml_writer::undent() { state_->undent(); }

void c_xml_writer::add_namespace(const std::string& prefix, const std::string& uri) {
  state_->namespaces_.emplace_back(prefix, uri);
}

void c_xml_writer::add_default_namespace(const std::string& uri) { add_namespace({}, uri); }

void c_xml_writer::add_schema_location(const std::string& ns, const std::string& location) {
  state_->schema_locations_.emplace_back(ns, location);
}

void c_xml_writer::add_no_namespace_schema_location(const std::string& location) {
  add_schema_location({}, location);
}

void c_xml_writer::conditionally_select_ns_map(const s_ns_map* map) {
  state_->conditionally_select_ns_map(map);
}

void c_xml_writer::conditionally_write_ns_attrs(bool need_xsi) {
  state_->conditionally_write_ns_attrs(need_xsi);
}

void c_xml_writer::reenable_ns_map_output() {
  state_->ns_map_ = nullptr;
  state_->ns_attrs_written_ = false;
}

const char* c_xml_writer::get_namespace_prefix(const std::string& uri) const {
  for (const s_ns_map* row = state_->ns_map_; row != nullptr && row->uri != nullptr; ++row) {
    if (uri == row->uri) return row->prefix;
  }
  for (const auto& [prefix, added_uri] : state_->namespaces_) {
    if (uri == added_uri) return prefix.c_str();
  }
  return nullptr;
}

const char* c_xml_writer::get_expected_class_identity() const {
  return state_->expected_class_identity_;
}

void c_xml_writer::set_expected_class_identity(const char* identity) {
  state_->expected_class_identity_ = identity;
}

void c_xml_writer::clear_expected_class_identity() { state_->expected_class_identity_ = nullptr; }

void c_xml_writer::set_exact(bool is_exact) { state_->block_.set_exact(is_exact); }

elmx_error c_xml_writer::handle_error(elmx_error error, const std::string& item_name,
                                      const char* file, int line) {
  // What the handler does may end the run or write on the stream, which so far has to be whole.
  state_->block_.flush();
  state_->last_error_ = error;
  state_->error_item_name_ = item_name;
  state_->last_error_ = user_handle_error(error, item_name, file, line);
  return state_->last_error_;
}

const std::string& c_xml_writer::get_error_item_name() const { return state_->error_item_name_; }

bool c_xml_writer::get_error_info(elmx_error_type* type, elmx_error* error, int* line) {
  return state_->error_.get_error_info(type, error, line);
}

// --- Lines --------------------------------------------------------------------------------------

namespace internal {

WriterState::WriterState(c_xml_writer& face, std::ostream& os, const char* tab, const char* newline)
    : face_(face), os_(os), tab_(tab), newline_(newline), block_(os) {}

// nest() and endl() may be overridden, and an override may write on the stream by any way that it
// knows, call the base class or not, and behave differently each time. No probing call can rule
// that out, but the dynamic type can: an object whose most derived class is this one overrides
// nothing. Only then is indentation appended to the block without a virtual call; a subclass of
// any kind gets its calls, with the stream up to date before each. The constructor is too early to
// ask, since an object under construction has the type of the base.
void WriterState::enter_scope() {
  exceptions_at_entry_ = std::uncaught_exceptions();
  calls_hooks_ = typeid(face_) != typeid(c_xml_writer);
  if (calls_hooks_) return;
  newline_size_ = std::strlen(newline_);
  tab_size_ = std::strlen(tab_);
  indentation_depth_ = 0;
  std::size_t filled = 0;
  while (tab_size_ != 0 && filled + tab_size_ <= sizeof indentation_) {
    std::memcpy(indentation_ + filled, tab_, tab_size_);
    filled += tab_size_;
    ++indentation_depth_;
  }
}

void WriterState::leave_scope() {
  calls_hooks_ = true;
  indentation_depth_ = -1;
  if (std::uncaught_exceptions() == exceptions_at_entry_) return block_.flush();
  // An exception is on its way out, and a second one of the stream would end the program.
  try {
    block_.flush();
  } catch (...) {
  }
}

void WriterState::begin_deep_line() {
  if (calls_hooks_) {
    face_(true);
    return;
  }
  for (int level = 0; level < depth_; ++level) block_.append({tab_, tab_size_});
}

void WriterState::end_line_through_hook() {
  block_.flush();
  os_ << face_.endl();
}

void WriterState::write_ns_attrs(bool need_xsi) {
  for (const s_ns_map* row = ns_map_; row != nullptr && row->uri != nullptr; ++row) {
    append_ns_attr(row->prefix, row->uri);
  }
  for (const auto& [prefix, uri] : namespaces_) append_ns_attr(prefix, uri);
  if (need_xsi || !schema_locations_.empty()) append_ns_attr("xsi", k_xsi_uri);
  if (!schema_locations_.empty()) append_schema_locations();
  ns_attrs_written_ = true;
  // A caller may go on with the stream that it took before.
  block_.flush();
}

void WriterState::append_ns_attr(std::string_view prefix, std::string_view uri) {
  block_.append(" xmlns");
  if (!prefix.empty()) {
    block_.append(':');
    block_.append(prefix);
  }
  block_.append("=\"");
  block_.append(uri);
  block_.append('"');
}

void WriterState::append_schema_locations() {
  const auto& [first_namespace, first_location] = schema_locations_.front();
  if (first_namespace.empty()) {
    block_.append(" xsi:noNamespaceSchemaLocation=\"");
    block_.append(first_location);
  } else {
    std::string_view separator = " xsi:schemaLocation=\"";
    for (const auto& [ns, location] : schema_locations_) {
      block_.append(separator);
      block_.append(ns);
      block_.append(' ');
      block_.append(location);
      separator = " ";
    }
  }
  block_.append('"');
}

}  // namespace internal

// --- Manipulators -------------------------------------------------------------------------------

std::ostream& operator<<(std::ostream& os, const c_as_xml<std::wstring>& text) {
  return write_escaped(os, text.get());
}

std::ostream& operator<<(std::ostream& os, const c_as_xml<std::string>& text) {
  return write_escaped(os, text.get());
}

std::ostream& operator<<(std::ostream& os, const c_as_xml<bool>& value) {
  return os << (value.get() ? "true" : "false");
}

std::ostream& operator<<(std::ostream& os, const c_as_xml<float>& value) {
  return write_number(os, value.get(), 7, internal::format_float);
}

std::ostream& operator<<(std::ostream& os, const c_as_xml<double>& value) {
  return write_number(os, value.get(), 14, internal::format_double);
}

std::ostream& operator<<(std::ostream& os, const c_as_escaped<std::string>& text) {
  return write_escaped(os, text.get());
}

std::ostream& operator<<(std::ostream& os, const c_as_bool_digit<bool>& value) {
  return os << (value.get() ? '1' : '0');
}

std::ostream& operator<<(std::ostream& os, const c_as_ascii<std::wstring>& text) {
  for (const wchar_t unit : text.get()) {
    const auto value = static_cast<std::uint32_t>(unit);
    os.put(value <= 127 ? static_cast<char>(value) : '.');
  }
  return os;
}

}  // namespace lmx
