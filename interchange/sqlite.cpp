// Databases of SQLite: documents, colours, renderings, values, spectra, tolerances and verdicts,
// with an R*Tree over CIELAB.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <system_error>
#include <utility>

#include <sqlite3.h>

#include "interchange/internal/display.h"
#include "interchange/internal/values.h"
#include "interchange/internal/writers.h"
#include "model/Zol.h"
#include "model/reflection.h"

#if defined(ZOL_WITH_COLORIMETRY)
#include "colorimetry/evaluation.h"
#endif

namespace zol_v2::interchange::internal {

namespace {

using reflection::ConstRef;
using reflection::Row;

constexpr char k_schema[] = R"sql(
PRAGMA foreign_keys = ON;
CREATE TABLE documents (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL
);
CREATE TABLE colours (
  id INTEGER PRIMARY KEY,
  document INTEGER NOT NULL REFERENCES documents,
  place TEXT NOT NULL,    -- document, palette or record
  "group" TEXT NOT NULL,  -- the palette or the record
  part TEXT NOT NULL,     -- the colour set; Standard or Measurement
  pair INTEGER,           -- in a record, from 1
  name TEXT NOT NULL,
  number TEXT,
  unique_id TEXT,
  comments TEXT,
  l REAL, a REAL, b REAL, -- CIELAB under D50 for 2 degrees, where it is known
  srgb TEXT               -- "#rrggbb", where it is known; clipped
);
CREATE INDEX colours_by_document ON colours (document);
CREATE INDEX colours_by_name ON colours (name);
CREATE VIRTUAL TABLE lab USING rtree (id, min_l, max_l, min_a, max_a, min_b, max_b);
CREATE TABLE renderings (
  id INTEGER PRIMARY KEY,
  colour INTEGER NOT NULL REFERENCES colours,
  space TEXT NOT NULL,
  name TEXT,
  illuminant TEXT, observer TEXT, geometry TEXT, quantity TEXT, filter TEXT, polarization TEXT,
  emissive_type TEXT, emissive_mode TEXT, density_status TEXT, astm_table TEXT, gamma TEXT
);
CREATE INDEX renderings_by_colour ON renderings (colour);
CREATE INDEX renderings_by_space ON renderings (space);
CREATE TABLE colour_values (
  rendering INTEGER NOT NULL REFERENCES renderings,
  ordinal INTEGER NOT NULL,
  axis TEXT NOT NULL,
  value,                  -- a number or a text
  unit TEXT,
  PRIMARY KEY (rendering, ordinal)
) WITHOUT ROWID;
CREATE TABLE spectra (
  rendering INTEGER NOT NULL REFERENCES renderings,
  ordinal INTEGER NOT NULL,
  wavelength REAL NOT NULL,
  value REAL NOT NULL,
  PRIMARY KEY (rendering, ordinal)
) WITHOUT ROWID;
CREATE TABLE tolerances (
  id INTEGER PRIMARY KEY,
  document INTEGER NOT NULL REFERENCES documents,
  record INTEGER NOT NULL,  -- in the document, from 1
  pair INTEGER,             -- of a standard alone
  name TEXT,
  function TEXT,
  low REAL, high REAL, warning REAL,
  illuminant TEXT, observer TEXT
);
CREATE TABLE verdicts (
  id INTEGER PRIMARY KEY,
  tolerance INTEGER NOT NULL REFERENCES tolerances,
  standard INTEGER REFERENCES colours,
  measurement INTEGER REFERENCES colours,  -- none for what is computed over several
  formula TEXT,
  value REAL,
  status TEXT NOT NULL,  -- pass, warning, fail, not judged
  reason TEXT
);
CREATE TABLE attributes (
  id INTEGER PRIMARY KEY,
  document INTEGER NOT NULL REFERENCES documents,
  colour INTEGER REFERENCES colours,  -- of what belongs to a colour
  place TEXT NOT NULL,                -- a path in the document
  name TEXT NOT NULL,
  value                               -- a number or a text
);
CREATE INDEX attributes_by_document ON attributes (document);
CREATE INDEX attributes_by_name ON attributes (name);
CREATE INDEX verdicts_by_tolerance ON verdicts (tolerance);
CREATE INDEX verdicts_by_measurement ON verdicts (measurement);
BEGIN;
)sql";

// The row of a value that is empty holds nothing.
struct Nothing {};

class Statement {
 public:
  Statement(sqlite3* database, const char* text) {
    (void)sqlite3_prepare_v2(database, text, -1, &statement_, nullptr);
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { (void)sqlite3_finalize(statement_); }

  // A row of these values; false if it was not stored.
  template <class... Values>
  bool insert(const Values&... values) {
    int at = 0;
    (bind(++at, values), ...);
    const bool is_good = sqlite3_step(statement_) == SQLITE_DONE;
    (void)sqlite3_reset(statement_);
    return is_good;
  }

 private:
  void bind(int at, Nothing) { (void)sqlite3_bind_null(statement_, at); }
  void bind(int at, std::int64_t value) { (void)sqlite3_bind_int64(statement_, at, value); }
  void bind(int at, double value) { (void)sqlite3_bind_double(statement_, at, value); }
  void bind(int at, std::string_view text) {
    (void)sqlite3_bind_text64(statement_, at, text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8);
  }
  // What is not there is NULL.
  template <class T>
  void bind(int at, const std::optional<T>& value) {
    value ? bind(at, *value) : bind(at, Nothing());
  }

  sqlite3_stmt* statement_ = nullptr;
};

std::optional<std::string_view> unless_empty(const std::string& text) {
  if (text.empty()) return std::nullopt;
  return text;
}

struct DatabaseDeleter {
  void operator()(sqlite3* database) const { (void)sqlite3_close(database); }
};
using DatabasePointer = std::unique_ptr<sqlite3, DatabaseDeleter>;

// A folder of its own among the temporary files, for one database. Where the system lets go of the
// name of an open file, nothing is left of it even if the process is killed.
class Scratch {
 public:
  Scratch() {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path among = fs::temp_directory_path(error);
    constexpr int k_most_attempts = 100;
    for (int i = 0; !error && i < k_most_attempts && folder_.empty(); ++i) {
      std::random_device chance;
      const fs::path folder = among / ("zol-" + std::to_string(chance()));
      if (!fs::create_directory(folder, error)) continue;
      fs::permissions(folder, fs::perms::owner_all, error);
      folder_ = folder;
    }
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() { remove(); }

  // The name of a file that is not there; empty if there can be none.
  std::string file() const { return folder_.empty() ? "" : (folder_ / "database").u8string(); }
  void remove() const {
    std::error_code error;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, error);
  }

 private:
  std::filesystem::path folder_;
};

// No journal and nothing written through: of a database that fails nothing is kept.
constexpr char k_pragmas[] = R"sql(
PRAGMA journal_mode = OFF;
PRAGMA synchronous = OFF;
PRAGMA locking_mode = EXCLUSIVE;
PRAGMA cache_size = -32000;
)sql";

DatabasePointer open_database(const Scratch& scratch) {
  const std::string file = scratch.file();
  if (file.empty()) return nullptr;
  sqlite3* database = nullptr;
  (void)sqlite3_open(file.c_str(), &database);
  DatabasePointer owner(database);
  for (const char* const text : {k_pragmas, k_schema}) {
    if (sqlite3_exec(database, text, nullptr, nullptr, nullptr) != SQLITE_OK) return nullptr;
  }
  scratch.remove();
  return owner;
}

// Of a row that may not be there.
template <class Get>
std::optional<std::string> text_if(bool is_there, const Get& get) {
  if (!is_there) return std::nullopt;
  return narrow_text(get());
}

std::optional<std::string_view> viewed(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  return *text;
}

class Tables {
 public:
  explicit Tables(sqlite3* database)
      : database_(database),
        documents_(database, "INSERT INTO documents (name) VALUES (?)"),
        colours_(database, "INSERT INTO colours VALUES (NULL,?,?,?,?,?,?,?,?,?,?,?,?,?)"),
        lab_(database, "INSERT INTO lab VALUES (?,?,?,?,?,?,?)"),
        renderings_(database, "INSERT INTO renderings VALUES (NULL,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"),
        values_(database, "INSERT INTO colour_values VALUES (?,?,?,?,?)"),
        spectra_(database, "INSERT INTO spectra VALUES (?,?,?,?)"),
        tolerances_(database, "INSERT INTO tolerances VALUES (NULL,?,?,?,?,?,?,?,?,?,?)"),
        verdicts_(database, "INSERT INTO verdicts VALUES (NULL,?,?,?,?,?,?,?)"),
        attributes_(database, "INSERT INTO attributes VALUES (NULL,?,?,?,?,?)") {}

  bool is_good() const { return is_good_; }

  void begin_document(std::string_view name) {
    numbers_.clear();
    tolerance_numbers_.clear();
    is_good_ &= documents_.insert(name);
    document_ = last();
  }

  void add(const ColorRecord& record, const std::optional<std::array<double, 3>>& lab,
           const std::optional<std::array<double, 3>>& rgb) {
    const std::optional<std::string> hex = hex_text(rgb);
    constexpr std::string_view k_places[] = {"document", "palette", "record"};
    const auto part_of_lab = [&](std::size_t i) {
      return lab ? std::optional<double>((*lab)[i]) : std::nullopt;
    };
    const std::optional<std::int64_t> pair =
        record.pair != 0 ? std::optional<std::int64_t>(record.pair) : std::nullopt;
    is_good_ &= colours_.insert(document_, k_places[static_cast<std::size_t>(record.kind)],
                                std::string_view(record.group), std::string_view(record.part), pair,
                                std::string_view(record.name), unless_empty(record.number),
                                unless_empty(record.id), unless_empty(record.comments),
                                part_of_lab(0), part_of_lab(1), part_of_lab(2), viewed(hex));
    const std::int64_t colour = last();
    numbers_[record.color] = colour;
    if (lab) {
      const auto& [l, a, b] = *lab;
      is_good_ &= lab_.insert(colour, l, l, a, a, b, b);
    }
    for (const Rendering& rendering : record.renderings) add(rendering, colour);
  }

  // Custom attributes, wherever they are.
  void add_attributes(const Zol& document) {
    std::string path(ConstRef(document).type().name());
    add_attributes(document, std::nullopt, &path);
  }

  void add_tolerances(const Zol& document) {
    for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
      const ColorQualityControlType& record = document.get_ColorQualityControl(i);
      for (unsigned j = 0; j < record.size_Tolerance(); ++j) {
        add(record.get_Tolerance(j), i + 1, std::nullopt);
      }
      for (unsigned j = 0; j < record.size_StandardAndMeasurement(); ++j) {
        const Standard& standard = record.get_StandardAndMeasurement(j).get_Standard();
        if (standard.isnil_Standard()) continue;
        for (unsigned k = 0; k < standard.size_Tolerance(); ++k) {
          add(standard.get_Tolerance(k), i + 1, j + 1);
        }
      }
    }
  }

#if defined(ZOL_WITH_COLORIMETRY)
  void add_verdicts(const Zol& document) {
    using colorimetry::FunctionPlace;
    for (const colorimetry::Verdict& verdict : colorimetry::evaluate(document).verdicts) {
      const auto tolerance = tolerance_numbers_.find(verdict.tolerance);
      if (tolerance == tolerance_numbers_.end()) continue;
      const FunctionPlace& place = verdict.place;
      std::optional<std::int64_t> standard, measurement;
      if (place.pair != FunctionPlace::k_all) {
        const StandardAndMeasurementType& pair =
            document.get_ColorQualityControl(place.record).get_StandardAndMeasurement(place.pair);
        if (!pair.get_Standard().isnil_Standard()) {
          standard = number_of(pair.get_Standard().get_Color());
        }
        if (place.measurement != FunctionPlace::k_all) {
          measurement = number_of(pair.get_Measurement(place.measurement).get_Color());
        }
      }
      is_good_ &= verdicts_.insert(
          tolerance->second, standard, measurement, colorimetry::name_of(verdict.formula),
          verdict.value, colorimetry::name_of(verdict.status), unless_empty(verdict.reason));
    }
  }
#endif

 private:
  std::int64_t last() const { return sqlite3_last_insert_rowid(database_); }

  std::optional<std::int64_t> number_of(const ColorType& color) const {
    const auto found = numbers_.find(&color);
    if (found == numbers_.end()) return std::nullopt;
    return found->second;
  }

  static std::optional<std::string> hex_text(const std::optional<std::array<double, 3>>& rgb) {
    if (!rgb) return std::nullopt;
    std::string text = "#";
    for (const double part : *rgb) {
      constexpr char k_digits[] = "0123456789abcdef";
      const auto byte = static_cast<unsigned>(std::lround(part * 255));
      text += {k_digits[byte / 16], k_digits[byte % 16]};
    }
    return text;
  }

  void add_attributes(ConstRef object, std::optional<std::int64_t> colour, std::string* path) {
    if (const auto* const color = object.as<ColorType>()) {
      if (const auto number = number_of(*color)) colour = number;
    }
    const std::size_t length = path->size();
    for (const reflection::Item& item : object.children()) {
      const ConstRef child = item.object();
      if (!child) continue;
      if (const auto* const attribute = child.as<CustomAttributeType>()) {
        add(*attribute, colour, *path);
        continue;
      }
      if (child.type().content()) continue;  // a point of a spectrum, as most objects are
      item.append_step(path);
      add_attributes(child, colour, path);
      path->resize(length);
    }
  }

  void add(const CustomAttributeType& attribute, std::optional<std::int64_t> colour,
           const std::string& path) {
    const std::string name = narrow_text(attribute.get_Name());
    const ConstRef choice(attribute.get_ValueChoice());
    const Row chosen = choice.chosen();
    const auto store = [&](const auto& value) {
      is_good_ &= attributes_.insert(document_, colour, std::string_view(path),
                                     std::string_view(name), value);
    };
    if (!chosen) return store(Nothing());
    const reflection::Value value = choice.value(chosen);
    const std::string utf8 = utf8_of(value);
    if (chosen.kind() == reflection::Kind::text) return store(std::string_view(utf8));
    if (chosen.kind() == reflection::Kind::real) return store(value.number());
    store(value.integer());
  }

  void add(const Rendering& rendering, std::int64_t colour) {
    const auto& c = rendering.conditions.values;
    is_good_ &= renderings_.insert(
        colour, std::string_view(rendering.space), unless_empty(rendering.name), unless_empty(c[0]),
        unless_empty(c[1]), unless_empty(c[2]), unless_empty(c[3]), unless_empty(c[4]),
        unless_empty(c[5]), unless_empty(c[6]), unless_empty(c[7]), unless_empty(c[8]),
        unless_empty(c[9]), unless_empty(c[10]));
    const std::int64_t number = last();
    const bool is_spectrum = rendering.space == "Spectral" || rendering.space == "EmissiveSpectral";
    std::int64_t ordinal = 0;
    for (const Coordinate& coordinate : rendering.coordinates) {
      ++ordinal;
      double wavelength = 0;
      // What is no number has no place among them in SQLite, but as a text.
      const bool has_number = coordinate.is_number && !std::isnan(coordinate.number);
      if (is_spectrum && has_number && is_number(coordinate.axis, &wavelength)) {
        is_good_ &= spectra_.insert(number, ordinal, wavelength, coordinate.number);
      } else if (has_number) {
        is_good_ &= values_.insert(number, ordinal, std::string_view(coordinate.axis),
                                   coordinate.number, unless_empty(coordinate.unit));
      } else {
        is_good_ &=
            values_.insert(number, ordinal, std::string_view(coordinate.axis),
                           std::string_view(coordinate.text), unless_empty(coordinate.unit));
      }
    }
  }

  void add(const ToleranceType& tolerance, std::int64_t record, std::optional<std::int64_t> pair) {
    const auto name = text_if(tolerance.isset_Name(), [&] { return tolerance.get_Name(); });
    const auto illuminant = text_if(tolerance.isset_PrimaryIlluminant(),
                                    [&] { return tolerance.get_PrimaryIlluminant(); });
    const auto observer =
        text_if(tolerance.isset_FieldOfView(), [&] { return tolerance.get_FieldOfView(); });
    std::optional<double> low, high, warning;
    if (tolerance.isset_Limits()) {
      const LimitsType& limits = tolerance.get_Limits();
      high = limits.get_HighTolerance();
      if (limits.isset_LowTolerance()) low = limits.get_LowTolerance();
    }
    if (tolerance.isset_WarningLevel()) warning = tolerance.get_WarningLevel();
    const Row function = ConstRef(tolerance.get_Function()).chosen();
    std::optional<std::string_view> function_name;
    if (function) function_name = function.name();
    is_good_ &= tolerances_.insert(document_, record, pair, viewed(name), function_name, low, high,
                                   warning, viewed(illuminant), viewed(observer));
    tolerance_numbers_[&tolerance] = last();
  }

  sqlite3* database_;
  Statement documents_, colours_, lab_, renderings_, values_, spectra_, tolerances_, verdicts_,
      attributes_;
  bool is_good_ = true;
  // Of the document at hand.
  std::int64_t document_ = 0;
  std::map<const ColorType*, std::int64_t> numbers_;
  std::map<const ToleranceType*, std::int64_t> tolerance_numbers_;
};

class SqliteWriter : public RecordWriter {
 public:
  explicit SqliteWriter(const WriteOptions& options)
      : RecordWriter(options), database_(open_database(scratch_)) {
    if (database_) tables_.emplace(database_.get());
  }

 protected:
  void add_document(const Zol&, std::string_view name) override {
    display_.forget_document();
    if (tables_) tables_->begin_document(name);
  }

  void add_record(const ColorRecord& record, std::string_view) override {
    if (!tables_) return;
    Report clipped;  // the values themselves stand beside it
    tables_->add(record, display_.lab_of(record), display_.rgb_of(record, &clipped));
  }

  void end_document(const Zol& document) override {
    if (!tables_) return;
    tables_->add_tolerances(document);
    losses().take_back("Tolerance");
    tables_->add_attributes(document);
    losses().take_back("CustomAttribute");
#if defined(ZOL_WITH_COLORIMETRY)
    tables_->add_verdicts(document);
#endif
  }

  void finish_records(std::string* bytes) override {
    const bool is_good =
        tables_ && tables_->is_good() &&
        sqlite3_exec(database_.get(), "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
    tables_.reset();
    if (!is_good || !append_file(bytes)) {
      report().fail("no-database", "SQLite could not make the database");
    }
  }

 private:
  bool append_file(std::string* bytes) {
    sqlite3_file* file = nullptr;
    sqlite3_int64 size = 0;
    if (sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file) !=
            SQLITE_OK ||
        file->pMethods->xFileSize(file, &size) != SQLITE_OK) {
      return false;
    }
    constexpr sqlite3_int64 k_block = 1 << 20;
    for (sqlite3_int64 at = 0; at < size; at += k_block) {
      const auto count = static_cast<int>(std::min(k_block, size - at));
      const std::size_t begin = bytes->size();
      bytes->resize(begin + static_cast<std::size_t>(count));
      if (file->pMethods->xRead(file, bytes->data() + begin, count, at) != SQLITE_OK) return false;
      hand_over(bytes);
    }
    return true;
  }

  Scratch scratch_;
  DatabasePointer database_;
  std::optional<Tables> tables_;  // its statements end before the database
  Display display_;
};

}  // namespace

std::unique_ptr<Writer> make_sqlite_writer(const WriteOptions& options) {
  return std::make_unique<SqliteWriter>(options);
}

}  // namespace zol_v2::interchange::internal
