// zol check: whether the measurements of a document's quality-control records pass.
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "colorimetry/evaluation.h"
#include "facade/files.h"
#include "model/Zol.h"
#include "port/files.h"
#include "tools/batch.h"
#include "tools/colour_text.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/json.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

using zol_v2::colorimetry::Computed;
using zol_v2::colorimetry::Evaluation;
using zol_v2::colorimetry::FunctionPlace;
using zol_v2::colorimetry::PartVerdict;
using zol_v2::colorimetry::Source;
using zol_v2::colorimetry::Status;
using zol_v2::colorimetry::Verdict;

struct Options : BatchOptions {
  std::string output;
  bool json = false;
  bool csv = false;
  bool fill = false;
  bool force = false;
  bool warnings_fail = false;
  bool unjudged_fail = false;

  std::string task() const {
    return std::string("check") + (warnings_fail ? " --warn-as-fail" : "") +
           (unjudged_fail ? " --unjudged-as-fail" : "");
  }
};

// What is said of one document.
struct Checked {  // NOLINT(bugprone-exception-escape): to move JSON throws nothing
  ExitStatus status = ExitStatus::ok;
  ::Verdict loading;
  bool is_cut = false;
  std::string text;
  Json json;
  // For --fill.
  std::unique_ptr<zol_v2::Zol> document;
  Evaluation evaluation;
};

// --- Names -------------------------------------------------------------------------------------

std::string numbered(const char* what, unsigned index) {
  return std::string(what) + ' ' + std::to_string(index + 1);
}

// The names of the places that a verdict is about.
struct Names {
  std::string record, standard, measurement, tolerance;
};

Names names_of(const zol_v2::Zol& document, const Computed& computed) {
  const FunctionPlace& place = computed.place;
  const zol_v2::ColorQualityControlType& record = document.get_ColorQualityControl(place.record);
  Names names;
  names.record = first_text(
      {utf8(record.get_Name()), utf8(record.get_UniqueID()), numbered("record", place.record)});
  if (place.pair == FunctionPlace::k_all) return names;
  const zol_v2::StandardAndMeasurementType& pair = record.get_StandardAndMeasurement(place.pair);
  names.standard = numbered("standard", place.pair);
  if (!pair.get_Standard().isnil_Standard()) {
    names.standard = first_text(
        {utf8(pair.get_Standard().get_Color().get_ColorName()), std::move(names.standard)});
  }
  if (place.measurement == FunctionPlace::k_all) return names;
  const zol_v2::ColorType& measured = pair.get_Measurement(place.measurement).get_Color();
  const std::string name = utf8(measured.get_ColorName());
  names.measurement =
      first_text({utf8(measured.get_ColorNumber()), name == names.standard ? "" : name,
                  numbered("measurement", place.measurement)});
  return names;
}

std::string tolerance_name(const Verdict& verdict) {
  return first_text({utf8(verdict.tolerance->get_Name()), utf8(verdict.tolerance->get_UniqueID()),
                     numbered("tolerance", verdict.tolerance_index)});
}

std::string formula_text(const Computed& computed) {
  return formula_with_factors(computed.formula, computed.factors);
}

std::string conditions_text(const Computed& computed) {
  if (!computed.conditions) return "";
  std::string text = text_of(*computed.conditions);
  if (computed.test_light) text += " and " + computed.test_light->name();
  return computed.has_default_conditions ? text + " by default" : text;
}

const char* source_name(Source source) {
  switch (source) {
    case Source::spectrum:
      return "spectrum";
    case Source::profile:
      return "profile";
    case Source::rgb:
      return "RGB";
    default:
      return "coordinates";
  }
}

std::string basis_text(const Computed& computed) {
  if (!computed.value) return "";
  const std::string standard = source_name(computed.standard_source);
  const std::string measured = source_name(computed.measurement_source);
  return standard == measured ? measured : measured + " against " + standard;
}

std::string stored_text(const Computed& computed) {
  return "stored result " + number_text(*computed.stored) + " disagrees with " +
         rounded(*computed.value);
}

// --- For people ----------------------------------------------------------------------------------

// In one cell, for a program.
std::string remarks_on(const Verdict& verdict) {
  std::string remarks = verdict.reason;
  for (const PartVerdict& part : verdict.parts) {
    if (!remarks.empty()) remarks += "; ";
    remarks +=
        std::string(part.name) + ' ' + rounded(part.value) + " of " + limits_text(part.limits);
    if (!part.is_held) remarks += " fails";
  }
  return remarks;
}

std::string summary_text(const Evaluation& evaluation) {
  if (evaluation.verdicts.empty()) return "no tolerance to hold a measurement to";
  std::string text = counted(evaluation.verdicts.size(), "verdict", "verdicts") + ": ";
  const std::size_t start = text.size();
  for (const Status status :
       {Status::passed, Status::warning, Status::failed, Status::not_judged}) {
    const std::size_t count = evaluation.count(status);
    if (count == 0) continue;
    if (text.size() > start) text += ", ";
    text += std::to_string(count) + ' ' + std::string(name_of(status));
  }
  return text;
}

void add_rows(const Verdict& verdict, const Names& names, TextTable* table) {
  std::string limits = limits_text(verdict.limits);
  if (verdict.warning_level) {
    limits += (limits.empty() ? "warning " : ", warning ") + number_text(*verdict.warning_level);
  }
  const std::string basis = basis_text(verdict);
  std::string remarks = verdict.reason;
  if (verdict.is_stored_wrong) remarks = stored_text(verdict);
  table->add({"  " + std::string(name_of(verdict.status)), one_line(names.measurement),
              one_line(tolerance_name(verdict)), formula_text(verdict),
              verdict.value ? rounded(*verdict.value) : "", std::move(limits),
              one_line(conditions_text(verdict)), basis == "coordinates" ? "" : basis,
              one_line(remarks)});
  for (const PartVerdict& part : verdict.parts) {
    table->add({"", "", "", "  " + std::string(part.name), rounded(part.value),
                limits_text(part.limits), "", "", part.is_held ? "" : "fails"});
  }
}

std::string text_of(const std::string& file, const zol_v2::Zol& document,
                    const Evaluation& evaluation) {
  TextTable table({{"  Verdict"},
                   {"Measurement"},
                   {"Tolerance"},
                   {"Formula"},
                   {"Value", true},
                   {"Limits"},
                   {"Conditions"},
                   {"From"},
                   {"Remarks"}});
  std::string title;
  for (const Verdict& verdict : evaluation.verdicts) {
    const Names names = names_of(document, verdict);
    const std::string place =
        one_line(names.record + (names.standard.empty() ? "" : ", " + names.standard));
    if (place != title) table.add_title(place);
    title = place;
    add_rows(verdict, names, &table);
  }
  std::string text;
  if (!table.empty()) text = table.text();
  for (const Computed& result : evaluation.results) {
    if (!result.is_stored_wrong) continue;
    const Names names = names_of(document, result);
    text += one_line(names.record + ", " + names.standard + ", " + names.measurement) + ": " +
            formula_text(result) + ": " + stored_text(result) + '\n';
  }
  return text + one_line(file) + ": " + summary_text(evaluation) + '\n';
}

// --- For programs ------------------------------------------------------------------------------

Json json_of(const Computed& computed, const Names& names) {
  Json object;
  object["record"] = names.record;
  if (!names.standard.empty()) object["standard"] = names.standard;
  if (!names.measurement.empty()) object["measurement"] = names.measurement;
  object["place"] = {{"record", computed.place.record + 1}};
  if (computed.place.pair != FunctionPlace::k_all) {
    object["place"]["standard"] = computed.place.pair + 1;
  }
  if (computed.place.measurement != FunctionPlace::k_all) {
    object["place"]["measurement"] = computed.place.measurement + 1;
  }
  object["formula"] = formula_text(computed);
  object["source"] = std::string(source_of(computed.formula));
  object["value"] = json_number(computed.value);
  if (computed.conditions) {
    object["illuminant"] = computed.conditions->light.name();
    object["observer"] = std::string(name_of(computed.conditions->observer));
    object["defaultConditions"] = computed.has_default_conditions;
  }
  if (computed.test_light) object["testIlluminant"] = computed.test_light->name();
  if (computed.value) {
    object["standardFrom"] = source_name(computed.standard_source);
    object["measurementFrom"] = source_name(computed.measurement_source);
  }
  if (!computed.reason.empty()) object["reason"] = computed.reason;
  if (computed.stored) {
    object["stored"] = json_number(computed.stored);
    object["storedDisagrees"] = computed.is_stored_wrong;
  }
  return object;
}

Json json_of(const zol_v2::Zol& document, const Verdict& verdict) {
  Json object = {{"verdict", std::string(name_of(verdict.status))},
                 {"tolerance", tolerance_name(verdict)}};
  object.update(json_of(verdict, names_of(document, verdict)));
  object["low"] = json_number(verdict.limits.low);
  object["high"] = json_number(verdict.limits.high);
  object["warningLevel"] = json_number(verdict.warning_level);
  if (!verdict.parts.empty()) object["parts"] = Json::array();
  for (const PartVerdict& part : verdict.parts) {
    object["parts"].push_back({{"name", std::string(part.name)},
                               {"value", json_number(part.value)},
                               {"low", json_number(part.limits.low)},
                               {"high", json_number(part.limits.high)},
                               {"holds", part.is_held}});
  }
  return object;
}

Json json_of(const std::string& file, const zol_v2::Zol& document, const Evaluation& evaluation) {
  Json object = {{"file", file}};
  object["summary"] = {{"pass", evaluation.count(Status::passed)},
                       {"warning", evaluation.count(Status::warning)},
                       {"fail", evaluation.count(Status::failed)},
                       {"notJudged", evaluation.count(Status::not_judged)},
                       {"storedDisagree", evaluation.wrong_count()}};
  object["verdicts"] = Json::array();
  for (const Verdict& verdict : evaluation.verdicts) {
    object["verdicts"].push_back(json_of(document, verdict));
  }
  object["results"] = Json::array();
  for (const Computed& result : evaluation.results) {
    object["results"].push_back(json_of(result, names_of(document, result)));
  }
  return object;
}

void print_csv_header() {
  print(comma_separated({"File", "Verdict", "Record", "Standard", "Measurement", "Tolerance",
                         "Formula", "Value", "Low", "High", "WarningLevel", "Illuminant",
                         "Observer", "TestIlluminant", "StandardFrom", "MeasurementFrom", "Stored",
                         "StoredDisagrees", "Remarks"}));
}

std::string csv_of(const std::string& file, const zol_v2::Zol& document,
                   const Evaluation& evaluation) {
  std::string text;
  const auto number = [](const std::optional<double>& value) {
    return value ? number_text(*value) : std::string();
  };
  for (const Verdict& verdict : evaluation.verdicts) {
    const Names names = names_of(document, verdict);
    const bool has_light = verdict.conditions.has_value();
    text += comma_separated(
        {file, std::string(name_of(verdict.status)), names.record, names.standard,
         names.measurement, tolerance_name(verdict), formula_text(verdict), number(verdict.value),
         number(verdict.limits.low), number(verdict.limits.high), number(verdict.warning_level),
         has_light ? verdict.conditions->light.name() : "",
         has_light ? std::string(name_of(verdict.conditions->observer)) : "",
         verdict.test_light ? verdict.test_light->name() : "",
         verdict.value ? source_name(verdict.standard_source) : "",
         verdict.value ? source_name(verdict.measurement_source) : "", number(verdict.stored),
         verdict.stored ? (verdict.is_stored_wrong ? "true" : "false") : "", remarks_on(verdict)});
  }
  return text;
}

// --- The command -------------------------------------------------------------------------------

// A fault of the argument OUT, or an empty text.
std::string check_output(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  const std::string suffix = dot == std::string::npos ? "" : path.substr(dot);
  return suffix == ".zol" || suffix == ".zolz" ? "" : "the name must end in .zol or .zolz";
}

ExitStatus fill(const Options& options, zol_v2::Zol& document, const Evaluation& evaluation) {
  std::uint32_t attributes = 0;
  if (!options.force && zol::port::get_attributes(wide_path(options.output), attributes)) {
    complain(options.output, "exists; --force replaces it");
    return ExitStatus::trouble;
  }
  const std::size_t count = store_results(document, evaluation);
  zol_v2::SaveReport report;
  {
    const Progress progress("Writing " + options.output);
    (void)zol_v2::saveFile(document, wide_path(options.output), &report);
  }
  if (!report.message.empty()) complain(options.output, report.message);
  if (report.code != lmx::elmx_ok) return ExitStatus::trouble;
  if (!options.json && !options.csv) {
    print(one_line(options.output) + ": " + counted(count, "result", "results") + " stored\n");
  }
  return ExitStatus::ok;
}

ExitStatus judge(const Options& options, const Evaluation& evaluation) {
  const bool is_fault = evaluation.count(Status::failed) != 0 ||
                        (options.warnings_fail && evaluation.count(Status::warning) != 0) ||
                        (options.unjudged_fail && evaluation.count(Status::not_judged) != 0);
  return is_fault ? ExitStatus::fault : ExitStatus::ok;
}

Checked check(const std::string& file, const Options& options) {
  Checked checked;
  auto document = std::make_unique<zol_v2::Zol>();
  DocumentSource source(file);
  checked.loading = try_load(source, *document);
  checked.status = checked.loading.status;
  if (checked.status != ExitStatus::ok) return checked;
  Evaluation evaluation = zol_v2::colorimetry::evaluate(*document);
  checked.status = judge(options, evaluation);
  checked.is_cut = evaluation.is_cut;
  if (checked.is_cut) checked.status = ExitStatus::trouble;
  if (options.json) {
    checked.json = json_of(file, *document, evaluation);
  } else {
    checked.text =
        options.csv ? csv_of(file, *document, evaluation) : text_of(file, *document, evaluation);
  }
  if (options.fill) {
    checked.document = std::move(document);
    checked.evaluation = std::move(evaluation);
  }
  return checked;
}

ExitStatus run(const Options& options) {
  ExitStatus status = ExitStatus::ok;
  JsonArrayOutput entries(0);
  if (options.json) entries.begin();
  // A table that is taken up again has its header.
  if (options.csv && !has_journal(options.journal)) print_csv_header();
  const ExitStatus ended = run_batch<Checked>(
      options, options.task(), [&](const std::string& file) { return check(file, options); },
      [&](const Checked& checked) {
        complain_of(checked.loading);
        if (checked.is_cut) {
          complain(checked.loading.file,
                   "more verdicts than can be held; those that were reached follow");
        }
        if (options.json && !checked.json.is_null()) entries.print(checked.json);
        print(checked.text);
        status = worse(status, checked.status);
        if (checked.document == nullptr) return;
        status = worse(status, fill(options, *checked.document, checked.evaluation));
      },
      [&](ExitStatus known) { status = worse(status, known); });
  if (options.json) {
    entries.end();
    print("\n");
  }
  return worse(status, ended);
}

}  // namespace

void add_check(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("check", "Judge the measurements of quality-control records");
  add_batch_options(*command, options.get());
  auto* const json = command->add_flag("--json", options->json, "Print JSON");
  command->add_flag("--csv", options->csv, "Print comma-separated values")->excludes(json);
  command->add_flag("--warn-as-fail", options->warnings_fail, "Exit with 1 for a warning, too");
  command->add_flag("--unjudged-as-fail", options->unjudged_fail,
                    "Exit with 1 for what can't be judged, too");
  auto* const fill =
      command->add_flag("--fill", options->fill, "Store what was computed in the document, as OUT");
  auto* const out = command->add_option("-o,--output", options->output, "File for --fill to write")
                        ->needs(fill)
                        ->check(CLI::Validator(check_output, "OUT"));
  fill->needs(out);
  command->add_flag("-f,--force", options->force, "Replace OUT if it exists")->needs(fill);
  add_resume(*command, options.get())->excludes(json)->excludes(fill);
  command->footer("Exit status: 0 if nothing fails, 1 if something does, 2 for trouble.");
  command->callback([options, status] {
    if (options->fill && !options->is_single()) {
      throw CLI::ValidationError("--fill", "takes one FILE");
    }
    *status = run(*options);
  });
}
