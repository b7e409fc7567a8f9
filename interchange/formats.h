// Documents in the formats of other programs, there and back.
//
//   const auto writer = make_writer(Format::csv, {});
//   writer->add(document, "red.zol");
//   std::string bytes;
//   const Report report = writer->finish(&bytes);
//
// JSON holds everything; what the others hold is in docs/interchange.md. What a format can't hold
// is in the report, by kind and count.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/export.h"
#include "interchange/records.h"
#include "interchange/report.h"

namespace zol_v2 {
class Zol;
}

namespace zol_v2::interchange {

// The formats of other programs.
enum class Format : unsigned char { json, csv, tsv, cgats, gpl, kpl, css, ase, sqlite };

// What a format is called and good for.
struct FormatInfo {
  Format format;                           // which it is
  std::string_view name;                   // "csv"
  std::vector<std::string_view> suffixes;  // ".csv"
  bool is_read;                            // into documents
  bool is_written;                         // from documents
  std::string_view holds;                  // for people
};

// Those that this build has.
ZOL_INTERCHANGE_API const std::vector<FormatInfo>& formats();
// By name, or by the suffix of a path, in whatever letters; null if there is none.
ZOL_INTERCHANGE_API const FormatInfo* find_format(std::string_view name);
ZOL_INTERCHANGE_API const FormatInfo* format_of_path(std::string_view path);

// How documents are written in another format.
struct WriteOptions {
  // Of tables: a line for each rendering in one space instead of one for each value.
  bool is_wide = false;
  // Of wide tables, without "ColorSpace"; empty for the one that most colours have.
  std::string space;
  char separator = 0;  // of tables: 0 for a comma or a tab, by the format
  char decimal = '.';  // of tables
  // Takes the bytes bit by bit, in their order, so that tidy tables and databases need no more
  // memory for many documents than for one. False ends it all: finish() has a fault then.
  std::function<bool(std::string_view)> sink;
};

// How another format is read.
struct ReadOptions {
  std::string source = "a file";  // for the document's Purpose
  std::string time;               // of all histories; empty for now
  // What the columns of a table mean, a line each: "COLUMN = TARGET", "COLUMN = TARGET / 100",
  // "COLUMN = -" to leave it out, or ":TARGET = TEXT" for all lines.
  std::string mapping;
  char separator = 0;     // of tables: 0 for a guess
  char decimal = 0;       // of tables: 0 for a guess
  Conditions conditions;  // of renderings that say nothing of theirs
};

// Takes documents one after the other.
class ZOL_INTERCHANGE_API Writer {
 public:
  // What was not finished is lost.
  virtual ~Writer();
  // `name` tells documents apart where there are several.
  virtual void add(const Zol& document, std::string_view name) = 0;
  // Appends the bytes, unless there is a fault; those that a sink has are not among them.
  virtual Report finish(std::string* bytes) = 0;
};

// Null for a format that this build does not write.
ZOL_INTERCHANGE_API std::unique_ptr<Writer> make_writer(Format format, const WriteOptions& options);

// Reads into a new document, which can be saved. After a fault part of it may be filled.
ZOL_INTERCHANGE_API Report read(std::string_view bytes, Format format, const ReadOptions& options,
                                Zol* document);

}  // namespace zol_v2::interchange
