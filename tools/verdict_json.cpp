// Verdicts for programs.
#include <string>

#include "tools/json.h"
#include "tools/output.h"
#include "tools/verdict.h"

namespace {

using zol_v2::Fault;
using zol_v2::SourcePlace;

Json json_of(const SourcePlace& place) {
  return {{"line", place.line}, {"column", place.column}, {"offset", place.offset}};
}

// Everything that is known; what has nothing to say is left out, but for the first members.
Json json_of(const Fault& fault) {
  Json json = {
      {"severity", fault.severity == zol_v2::Severity::warning ? "warning" : "error"},
      {"code", static_cast<int>(fault.code)},
      {"rule", fault.rule},
      {"message", fault.text()},
      {"path", fault.path},
      {"item", fault.item},
  };
  if (fault.place) {
    json.update(json_of(fault.place));
    json["length"] = fault.length;
  }
  if (fault.first) json["first"] = json_of(fault.first);
  const std::pair<const char*, const std::string&> texts[] = {{"object", fault.object},
                                                              {"found", fault.found},
                                                              {"expected", fault.expected},
                                                              {"entry", fault.entry}};
  for (const auto& [name, text] : texts) {
    if (!text.empty()) json[name] = text;
  }
  if (!fault.allowed.empty()) json["allowed"] = fault.allowed;
  return json;
}

class JsonPrinter final : public VerdictPrinter {
 public:
  void begin() override { files_.begin(); }

  void print(const Verdict& verdict) override {
    Json json = {{"file", verdict.file}};
    if (verdict.status == ExitStatus::trouble) {
      complain(verdict.file, verdict.report.message);
      json["trouble"] = verdict.report.message;
    } else {
      json["valid"] = verdict.status == ExitStatus::ok;
      json["complete"] =
          verdict.report.is_complete && verdict.report.fault_count == verdict.report.faults.size();
      json["faultCount"] = verdict.report.fault_count;
      Json faults = Json::array();
      for (const Fault& fault : verdict.report.faults) faults.push_back(json_of(fault));
      json["faults"] = std::move(faults);
    }
    files_.print(json);
  }

  void end() override {
    files_.end();
    ::print("\n");
  }

 private:
  JsonArrayOutput files_{0};
};

}  // namespace

std::unique_ptr<VerdictPrinter> make_json_printer() { return std::make_unique<JsonPrinter>(); }
