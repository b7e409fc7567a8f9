// Any bytes as a sequence of calls through the flat interface, as a client makes them that keeps to
// its rules: handles of the right class, used no longer than they are good, everything ended. What
// comes out must be as the rules say, and in the end a copy of each complete object writes what it
// does.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bridge/zol_exports.h"
#include "bridge/zol_helpers.h"
#include "fuzz/bridge_calls.h"
#include "fuzz/input.h"
#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/Zol.h"

namespace {

using namespace zol_fuzz;

// A sequence ends here, so that an input is done in a millisecond.
constexpr unsigned k_most_calls = 60;
constexpr std::size_t k_most_objects = 6;
// Each may double what there is.
constexpr unsigned k_most_copies = 6;
// get_ of a list of children appends until the index is there.
constexpr std::size_t k_most_index = 5;
constexpr std::size_t k_longest_text = 40;
constexpr std::size_t k_longest_document = 1000;

unsigned g_raised = 0;

void ZOL_CALL note_argument(const char* message, const char* parameter) {
  if (message == nullptr || parameter != nullptr) std::abort();
  ++g_raised;
}
void ZOL_CALL note_exception(const char*) { std::abort(); }

struct Class;

// What a parameter is to get.
enum class Kind {
  object,
  code,
  writer,
  reader,
  name,
  bytes,
  wide,
  real,
  index,
  digits,
  number,
  space
};

struct Parameter {
  Kind kind = Kind::number;
  Class* type = nullptr;     // of an object
  bool is_raising = false;   // for null
  bool is_unsigned = false;  // of digits or a number
  bool is_size = false;      // of the bytes before it
};

struct Function {
  const Call* call = nullptr;
  std::vector<Parameter> parameters;
  Class* self = nullptr;
  Class* gives = nullptr;
  bool is_end = false;
  bool is_swap = false;
  bool is_copy = false;      // of an object, which may be large
  bool is_question = false;  // to a value
  bool is_upcast = false;
};

struct Class {
  std::vector<const Function*> functions;
  const Function* copy = nullptr;
  const Function* marshal = nullptr;
  const Function* end = nullptr;
};

bool has(std::string_view name, std::string_view part) {
  return name.find(part) != std::string_view::npos;
}
bool begins(std::string_view name, std::string_view part) {
  return name.substr(0, part.size()) == part;
}

// The table, by what a client has in hand.
class Functions {
 public:
  Functions() {
    _SWIGRegisterExceptionCallbacks_ZolModule(note_exception, note_exception, note_exception,
                                              note_exception, note_exception, note_exception,
                                              note_exception, note_exception, note_exception,
                                              note_exception, note_exception);
    _SWIGRegisterExceptionArgumentCallbacks_ZolModule(note_argument, note_argument, note_argument);
    for (const Call& call : all_calls()) sort_in(all_.emplace_back(read(call)));
  }

  const std::vector<const Function*>& makers() const { return makers_; }  // of objects
  const std::vector<const Function*>& free() const { return free_; }  // neither of nor for objects

 private:
  Parameter read_parameter(std::string_view word, const Call& call, const Parameter* last) {
    Parameter parameter;
    parameter.is_raising = word.back() == '*';
    if (parameter.is_raising) word.remove_suffix(1);
    const std::string_view kind = word.substr(0, word.find(':'));
    const std::string_view type = word.substr(std::min(word.size(), kind.size() + 1));
    const std::string_view name = call.name;
    if (kind == "handle") {
      parameter.kind = type == "elmx_error"     ? Kind::code
                       : type == "c_xml_writer" ? Kind::writer
                       : type == "c_xml_reader" ? Kind::reader
                       : type == "string"       ? Kind::name
                                                : Kind::object;
      if (parameter.kind == Kind::object) parameter.type = &classes_[std::string(type)];
    } else if (kind == "text" || kind == "chars" || kind == "identity" || kind == "bytes") {
      parameter.kind = Kind::bytes;
    } else if (kind == "wide") {
      parameter.kind = Kind::wide;
    } else if (kind == "double" || kind == "float") {
      parameter.kind = Kind::real;
    } else if (has(name, "_factory")) {
      parameter.kind = Kind::space;
    } else if (has(name, "c_decimal")) {
      parameter.kind = Kind::digits;
    } else if (kind == "uint" && !has(name, "_c_")) {
      parameter.kind = Kind::index;
    }
    parameter.is_unsigned = kind == "uint" || kind == "ulong" || kind == "byte";
    parameter.is_size = kind == "uint" && last != nullptr && last->kind == Kind::bytes;
    return parameter;
  }

  Function read(const Call& call) {
    Function function;
    function.call = &call;
    std::istringstream words(call.parameters);
    for (std::string word; words >> word;) {
      const Parameter* const last =
          function.parameters.empty() ? nullptr : &function.parameters.back();
      function.parameters.push_back(read_parameter(word, call, last));
    }
    if (call.gives[0] != '\0') function.gives = &classes_[call.gives];
    if (!function.parameters.empty() && !function.parameters[0].is_raising) {
      function.self = function.parameters[0].type;
    }
    const std::string_view name = call.name;
    function.is_end = begins(name, "_CSharp_delete_");
    function.is_swap = has(name, "_swap");
    function.is_upcast = has(name, "Upcast");
    function.is_copy = has(name, "_assign_") || has(name, "_clone") ||
                       (begins(name, "_CSharp_new_") && has(name, "__SWIG_1"));
    function.is_question = has(name, "_get_") || has(name, "_equal") || has(name, "_size");
    return function;
  }

  void sort_in(const Function& function) {
    if (function.self != nullptr) {
      function.self->functions.push_back(&function);
      if (function.is_end) function.self->end = &function;
      if (has(function.call->name, "_marshal__SWIG_0")) function.self->marshal = &function;
    } else if (function.call->given == Given::owned) {
      makers_.push_back(&function);
      if (function.is_copy) function.gives->copy = &function;
    } else {
      free_.push_back(&function);
    }
  }

  std::deque<Function> all_;
  std::map<std::string, Class> classes_;
  std::vector<const Function*> makers_;
  std::vector<const Function*> free_;
};

const Functions& functions() {
  static const Functions all;
  return all;
}

struct Handle {
  void* address = nullptr;
  const Class* type = nullptr;
  bool is_constant = false;  // a value out of a row: what it stands in is set, not the value
};

// An object of the client's and the way down to what was got out of it last. A change at one place
// leaves what is above it as it was.
using Path = std::vector<Handle>;

class Session {
 public:
  Session(const std::uint8_t* data, std::size_t size) : input_(data, size) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    for (const Path& path : paths_) end(path);
  }

  void run() {
    for (unsigned i = 0; i < k_most_calls && !input_.is_empty(); ++i) step();
    for (const Path& path : paths_) compare_copy(path[0]);
  }

 private:
  // Where the arguments of a call live.
  struct Arguments {
    std::vector<Value> values;
    std::deque<std::string> texts;
    std::deque<std::u16string> wide_texts;
    std::string document;
    std::deque<lmx::c_xml_reader_memory> readers;
    std::deque<lmx::c_xml_reader_local> scopes;
    std::ostringstream stream;
    std::deque<lmx::c_xml_writer> writers;
    lmx::elmx_error code = lmx::elmx_ok;
    Path* other = nullptr;        // of the second object
    std::size_t other_level = 0;  // in that path
    bool has_null = false;        // where null raises
    bool is_complete = true;      // there is an object for each parameter
  };

  void step() {
    constexpr unsigned k_make = 20;
    constexpr unsigned k_free = 30;
    constexpr unsigned k_anywhere = 100;  // mostly at the end of a path
    const unsigned choice = input_.byte();
    if (paths_.empty() || (choice < k_make && paths_.size() < k_most_objects)) {
      call(one_of(functions().makers()), nullptr, 0);
    } else if (choice < k_free) {
      call(one_of(functions().free()), nullptr, 0);
    } else {
      Path& path = paths_[choice % paths_.size()];
      const std::size_t level =
          path.size() - 1 - (choice < k_anywhere ? input_.below(path.size()) : 0);
      if (!path[level].type->functions.empty()) {
        call(one_of(path[level].type->functions), &path, level);
      }
    }
  }

  const Function& one_of(const std::vector<const Function*>& functions) {
    return *functions[input_.below(functions.size())];
  }

  bool may_call(const Function& function, const Path* path, std::size_t level) {
    if (function.is_end) return level == 0;
    if (path != nullptr && (*path)[level].is_constant) return function.is_question;
    return !function.is_copy || copies_++ < k_most_copies;
  }

  void call(const Function& function, Path* path, std::size_t level) {
    if (!may_call(function, path, level)) return;
    Arguments arguments;
    for (const Parameter& parameter : function.parameters) {
      if (path != nullptr && arguments.values.empty()) {
        arguments.values.push_back({(*path)[level].address});
      } else {
        add(function, parameter, path, &arguments);
      }
    }
    if (!arguments.is_complete) return;
    const Call& what = *function.call;
    if (is_traced_) trace(what, arguments);
    g_raised = 0;
    Value result;
    try {
      result = what.function.call(what.function.function, arguments.values.data());
    } catch (const std::out_of_range&) {
      // The one function that says so of itself.
      if (std::string_view(what.name) != "_CSharp_stringncompare") throw;
      return;
    }
    if (g_raised != (arguments.has_null ? 1U : 0U)) fail("raised, or did not", what);
    if (arguments.has_null && (result.pointer != nullptr || result.number != 0)) {
      fail("gave something for null", what);
    }
    take_result(function, result, arguments, path, level);
  }

  static void trace(const Call& what, const Arguments& arguments) {
    std::fprintf(stderr, "%s", what.name);
    for (const Value& value : arguments.values) {
      std::fprintf(stderr, " %p/%lld/%g", value.pointer, static_cast<long long>(value.number),
                   value.real);
    }
    std::fprintf(stderr, "\n");
  }

  void take_result(const Function& function, const Value& result, const Arguments& arguments,
                   Path* path, std::size_t level) {
    const Call& what = *function.call;
    const std::string_view kind = what.result;
    if (kind == "text" || kind == "wide") take_text(what, result.pointer, arguments.has_null);
    if (kind == "bool" && result.number != 0 && result.number != 1) fail("is no bool", what);
    if (function.is_end) {
      paths_.erase(paths_.begin() + (path - paths_.data()));
      return;
    }
    if (arguments.has_null) return;
    if (path != nullptr && what.effect == Effect::change) path->resize(level + 1);
    if (arguments.other != nullptr) arguments.other->resize(arguments.other_level + 1);
    auto* const address = const_cast<void*>(result.pointer);
    if (function.gives == nullptr || address == nullptr) return;
    if (what.given == Given::owned) {
      paths_.push_back({{address, function.gives}});
    } else {
      const bool is_value = what.effect == Effect::query && !function.is_upcast;
      path->resize(level + 1);
      path->push_back({address, function.gives, is_value});
    }
  }

  static void take_text(const Call& what, const void* text, bool is_null) {
    if ((text == nullptr) != is_null) fail("gave no text, or one for null", what);
    if (text == nullptr) return;
    const unsigned bytes = zol_text_bytes(text);
    const std::size_t unit = std::string_view(what.result) == "wide" ? sizeof(char16_t) : 1;
    const auto* const end = static_cast<const char*>(text) + bytes;
    if (bytes % unit != 0 || end[0] != 0 || end[unit - 1] != 0) fail("gave a torn text", what);
    zol_text_free(const_cast<void*>(text));
  }

  void add(const Function& function, const Parameter& parameter, Path* self, Arguments* arguments) {
    constexpr unsigned k_null = 250;
    Value value;
    if (parameter.is_raising && input_.byte() >= k_null && !arguments->has_null) {
      arguments->has_null = true;
    } else if (parameter.is_size) {
      // That of nothing, where null stands for the text.
      const auto& texts = arguments->texts;
      value.number = texts.empty() ? 0 : static_cast<std::int64_t>(texts.back().size());
    } else {
      give(function, parameter, self, arguments, &value);
    }
    arguments->values.push_back(value);
  }

  void give(const Function& function, const Parameter& parameter, Path* self, Arguments* arguments,
            Value* value) {
    constexpr int k_document_space = 1000;
    switch (parameter.kind) {
      case Kind::object:
        value->pointer = object(function, parameter.type, self, arguments);
        break;
      case Kind::code:
        value->pointer = &arguments->code;
        break;
      case Kind::writer:
        value->pointer = &arguments->writers.emplace_back(
            arguments->stream, lmx::c_xml_writer::include_xml_decl, "", "");
        break;
      case Kind::reader:
        value->pointer = reader(function.parameters.back().kind == Kind::name, arguments);
        break;
      case Kind::name:
        value->pointer = &arguments->readers.back().name;
        break;
      case Kind::bytes:
        value->pointer = arguments->texts.emplace_back(input_.text(k_longest_text)).c_str();
        break;
      case Kind::wide:
        value->pointer =
            arguments->wide_texts.emplace_back(wide(input_.text(k_longest_text))).c_str();
        break;
      case Kind::real:
        value->real = number();
        break;
      case Kind::index:
        value->number = static_cast<std::int64_t>(input_.below(k_most_index));
        break;
      case Kind::digits:  // it has as many as it is asked for
        value->number =
            static_cast<std::int64_t>(input_.byte()) - (parameter.is_unsigned ? 0 : 100);
        break;
      case Kind::number:
        value->number = input_.byte() % 4 != 0  ? static_cast<int>(input_.byte())
                        : parameter.is_unsigned ? input_.raw<std::uint32_t>()
                                                : std::int64_t{input_.raw<std::int32_t>()};
        break;
      case Kind::space:
        value->number = k_document_space;
    }
  }

  lmx::c_xml_reader* reader(bool is_at_element, Arguments* arguments) {
    arguments->document = input_.text(k_longest_document);
    auto& reader =
        arguments->readers.emplace_back(arguments->document.data(), arguments->document.size());
    if (is_at_element) {
      reader.set_ns_map(zol_v2::Zol::ns_map());
      arguments->scopes.emplace_back(reader);
      reader.get_element_event(nullptr, &arguments->code, &reader.name);
    }
    return &reader;
  }

  double number() {
    switch (input_.byte() % 4) {
      case 0:
        return input_.raw<double>();
      case 1:
        return static_cast<double>(input_.raw<float>());
      default:
        return static_cast<double>(input_.byte()) / 2 - 10;
    }
  }

  // A unit from each byte, so that a dictionary helps, or from two behind a byte of ones.
  static std::u16string wide(const std::string& bytes) {
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      auto unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[i]));
      if (unit == 0xFF && i + 2 < bytes.size()) {
        unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[i + 1]) << 8 |
                                     static_cast<unsigned char>(bytes[i + 2]));
        i += 2;
      }
      text += unit;
    }
    return text;
  }

  // One of that class, from anywhere if it is copied. Of two that are swapped none may hold the
  // other.
  void* object(const Function& function, const Class* type, Path* self, Arguments* arguments) {
    std::vector<std::pair<Path*, std::size_t>> found;
    for (Path& path : paths_) {
      if (function.is_swap && &path == self) continue;
      for (std::size_t level = 0; level < path.size(); ++level) {
        if (path[level].type == type && !(function.is_swap && path[level].is_constant)) {
          found.emplace_back(&path, level);
        }
      }
    }
    if (found.empty()) {
      arguments->is_complete = false;
      return nullptr;
    }
    const auto [path, level] = found[input_.below(found.size())];
    if (function.is_swap) {
      arguments->other = path;
      arguments->other_level = level;
    }
    return (*path)[level].address;
  }

  static std::pair<int, std::string> written(const Function& marshal, void* object) {
    std::ostringstream stream;
    lmx::c_xml_writer writer(stream, lmx::c_xml_writer::include_xml_decl, "", "");
    const Value arguments[] = {{object}, {&writer}};
    const Value code = marshal.call->function.call(marshal.call->function.function, arguments);
    return {static_cast<int>(code.number), stream.str()};
  }

  static void compare_copy(const Handle& object) {
    const Class& type = *object.type;
    if (type.marshal == nullptr || type.copy == nullptr) return;
    const Value argument{object.address};
    const Value made =
        type.copy->call->function.call(type.copy->call->function.function, &argument);
    auto* const copy = const_cast<void*>(made.pointer);
    const auto of_object = written(*type.marshal, object.address);
    const auto of_copy = written(*type.marshal, copy);
    // Copying completes what is not.
    if (of_object.first == lmx::elmx_ok && of_copy != of_object) {
      std::fprintf(stderr, "%s\n%s\n", of_object.second.c_str(), of_copy.second.c_str());
      fail("differs from its copy", *type.marshal->call);
    }
    end({{copy, object.type}});
  }

  static void end(const Path& path) {
    const Call& end = *path[0].type->end->call;
    const Value argument{path[0].address};
    end.function.call(end.function.function, &argument);
  }

  [[noreturn]] static void fail(const char* what, const Call& call) {
    std::fprintf(stderr, "%s %s\n", call.name, what);
    std::abort();
  }

  // To see what an input does.
  const bool is_traced_ = std::getenv("ZOL_FUZZ_TRACE") != nullptr;
  Input input_;
  std::vector<Path> paths_;
  unsigned copies_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Session(data, size).run();
  return 0;
}
