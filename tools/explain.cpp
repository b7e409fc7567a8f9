// zol explain: what the library knows of a place in documents.
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "facade/faults.h"
#include "model/Zol.h"
#include "model/reflection.h"
#include "tools/commands.h"
#include "tools/output.h"
#include "tools/paths.h"
#include "tools/text.h"
#include "tools/tree.h"

namespace {

using zol_v2::reflection::End;
using zol_v2::reflection::Kind;
using zol_v2::reflection::Row;
using zol_v2::reflection::Step;
using zol_v2::reflection::Type;

struct Options {
  std::string path;
  bool paths = false;
};

// A place that the schema has.
struct SchemaPlace {
  Type parent;    // none for the root
  RowPlace rows;  // none for a type by itself
  Type type;      // none for a value
};

Type root_type() { return zol_v2::Zol::k_class; }

// A member of a family may be of any type that it can name.
bool descend(const Step& step, SchemaPlace* place) {
  const auto enter = [&](Type type) {
    const RowPlace rows = find_row(type, step);
    if (!rows) return false;
    *place = {type, rows, rows.row.type()};
    return true;
  };
  if (enter(place->type)) return true;
  for (const Type type : place->type.named_types()) {
    if (enter(type)) return true;
  }
  return false;
}

// Empty, or what is wrong with the path.
std::string find_place(std::string_view path, SchemaPlace* place) {
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    const std::string_view text = path.substr(begin, end - begin);
    Step step;
    if (!parse_step(text, &step)) {
      return '\'' + one_line(text) + "' is no step of a path: NAME, NAME[NUMBER], @NAME or text()";
    }
    if (begin == 0) {
      place->type =
          step.is_attribute || step.is_content ? Type() : zol_v2::reflection::find_type(step.name);
      if (!place->type) {
        std::vector<std::string> names;
        for (const Type type : zol_v2::reflection::all_types()) names.emplace_back(type.name());
        const std::string nearest = zol_v2::nearestName(step.name, names);
        return "A path begins with " + std::string(root_type().name()) +
               " or the name of another type, not with '" + one_line(text) + '\'' +
               (nearest.empty() ? "" : ", " + nearest + " is probably meant");
      }
    } else if (!place->type) {
      return std::string(path.substr(0, begin - 1)) + " is a value with nothing below it";
    } else if (!descend(step, place)) {
      return unknown_step(place->type, text);
    }
    begin = end + 1;
  }
  return "";
}

std::string kind_text(Row row) {
  switch (row.kind()) {
    case Kind::text:
      return "text";
    case Kind::enumerated:
      return "one of a list of words";
    case Kind::real:
      return "number";
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return "whole number";
    case Kind::truth:
      return "true or false";
    case Kind::datetime:
      return "date and time";
    case Kind::binary:
      return "bytes, in base64";
    case Kind::foreign:
      return "any element of another namespace";
    case Kind::mark:
      return "empty element";
    default:
      return "element of type " + std::string(row.type().name());
  }
}

std::string range_text(Row row) {
  std::string text;
  if (row.lower()) {
    text = (row.lower().end == End::strict ? "more than " : "at least ") +
           number_text(row.lower().value);
  }
  if (row.upper()) {
    text += (text.empty() ? "" : ", ") +
            std::string(row.upper().end == End::strict ? "less than " : "at most ") +
            number_text(row.upper().value);
  }
  return text;
}

std::string occurrence_text(const RowPlace& rows) {
  const bool is_alternative = rows.row.place() == zol_v2::reflection::Place::alternative;
  const Row way = rows.way;
  if (is_alternative && way == rows.row) return "one of the alternatives";
  const std::string text = way.is_list() ? (way.is_required() ? "once or more" : "any number")
                                         : (way.is_required() ? "once" : "once or not at all");
  return text + (is_alternative ? ", as one of the alternatives" : "");
}

// What an object has that was never given the value; the zeros are no defaults anybody chose.
std::string default_text(Type parent, Row row) {
  if (!row.is_simple() || row.is_list() || row.place() == zol_v2::reflection::Place::alternative) {
    return "";
  }
  const std::string text = exact_text(parent.untouched().value(row));
  return text == "0" || text == "false" || row.kind() == Kind::datetime ? "" : text;
}

void print_fact(const std::string& name, const std::string& text) {
  constexpr std::size_t k_width = 14;
  if (text.empty()) return;
  std::string line = "  " + name;
  line.resize(k_width, ' ');
  print(line + text + '\n');
}

void print_rows(Type type) {
  struct Line {
    std::string step, text;
  };
  std::vector<Line> lines;
  const auto add = [&lines](const RowPlace& rows) {
    std::string text = kind_text(rows.row) + ", " + occurrence_text(rows);
    if (!rows.row.unit().empty()) text += ", in " + std::string(rows.row.unit());
    lines.push_back({step_of(rows.row), std::move(text)});
  };
  for (const Row row : type.rows()) {
    if (!row.is_transparent()) {
      add({row, row});
      continue;
    }
    for (const Row alternative : row.type().rows()) add({row, alternative});
  }
  std::size_t width = 0;
  for (const Line& line : lines) width = std::max(width, line.step.size());
  if (!lines.empty()) print("  Below it:\n");
  for (Line& line : lines) {
    line.step.resize(width + 2, ' ');
    print("    " + line.step + line.text + '\n');
  }
}

// Each with what it means.
void print_words(zol_v2::reflection::EnumValues values) {
  std::size_t width = 0;
  for (const std::string_view value : values) width = std::max(width, value.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::string word(values[i]);
    word.resize(width + 2, ' ');
    print("    " + word + std::string(values.note(i)) + '\n');
  }
}

ExitStatus explain(const std::string& path) {
  SchemaPlace place;
  const std::string fault = find_place(path, &place);
  if (!fault.empty()) {
    complain(path, fault);
    return ExitStatus::fault;
  }
  print(path + '\n');
  const Row row = place.rows.row;
  if (row) {
    print_fact("Meaning", std::string(row.note()));
    print_fact("Kind", kind_text(row));
    print_fact("Unit", std::string(row.unit()));
    print_fact("Range", range_text(row));
    if (row.length() != 0) {
      print_fact("Length", "exactly " + counted(row.length(), "character", "characters"));
    }
    print_fact("White space", row.kind() == Kind::text && row.collapses() ? "collapsed" : "");
    print_fact("Occurs", occurrence_text(place.rows));
    print_fact("Default", default_text(place.parent, row));
    if (!row.values().empty()) {
      print("  Words:\n");
      print_words(row.values());
    }
  }
  if (place.type) {
    std::string text(place.type.name());
    if (!row || row.note() != place.type.note()) text.append(": ").append(place.type.note());
    print_fact("Type", text);
    print_fact("Nil", place.type.is_nillable() ? "allowed" : "");
    print_rows(place.type);
  }
  return ExitStatus::ok;
}

// Every step that may follow, for completion in a shell: what has more below it ends in a slash.
ExitStatus print_paths(const std::string& prefix) {
  const std::size_t slash = prefix.rfind('/');
  const std::string head = slash == std::string::npos ? "" : prefix.substr(0, slash + 1);
  const std::string_view tail = std::string_view(prefix).substr(head.size());
  const auto offer = [&](const std::string& step, bool has_more) {
    if (step.compare(0, tail.size(), tail) == 0) print(head + step + (has_more ? "/\n" : "\n"));
  };
  if (head.empty()) {
    offer(std::string(root_type().name()), true);
    return ExitStatus::ok;
  }
  SchemaPlace place;
  if (!find_place(prefix.substr(0, slash), &place).empty() || !place.type) return ExitStatus::fault;
  for (const std::string& step : steps_below(place.type)) {
    Step parsed;
    SchemaPlace below = place;
    if (parse_step(step, &parsed) && descend(parsed, &below)) {
      offer(step, static_cast<bool>(below.type));
    }
  }
  return ExitStatus::ok;
}

}  // namespace

void add_explain(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("explain", "Tell what may stand at a path, and what it means");
  command->add_option("PATH", options->path, "Such as Zol/Color/ColorSpaceCIELab/L, or a type")
      ->required();
  command->add_flag("--paths", options->paths,
                    "Print every path that PATH may be continued to, a step further");
  command->callback([options, status] {
    *status = options->paths ? print_paths(options->path) : explain(options->path);
  });
}
