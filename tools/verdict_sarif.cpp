// Verdicts as a log of the Static Analysis Results Interchange Format, SARIF 2.1.0, an OASIS
// standard of 2020.
#include <algorithm>
#include <map>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "tools/document_text.h"
#include "tools/json.h"
#include "tools/output.h"
#include "tools/verdict.h"

namespace {

using zol_v2::Fault;
using zol_v2::SourcePlace;

// The path as a reference of RFC 3986, byte by byte, and on Windows as RFC 8089, appendix E, spells
// drives and servers.
std::string uri_of(const std::string& given) {
  constexpr std::string_view k_plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
  constexpr char k_hex[] = "0123456789ABCDEF";
  std::string uri = given.compare(0, 1, "/") == 0 ? "file://" : "";
#if defined(_WIN32)
  std::string path = given;
  std::replace(path.begin(), path.end(), '\\', '/');
  if (path.compare(0, 2, "//") == 0) {
    uri = "file:";
  } else if (path.size() > 1 && path[1] == ':') {
    uri = "file:///" + path.substr(0, 2);
    path.erase(0, 2);
  }
#else
  const std::string& path = given;
#endif
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (k_plain.find(c) != std::string_view::npos) {
      uri += c;
    } else {
      uri += '%';
      uri += k_hex[byte >> 4];
      uri += k_hex[byte & 15];
    }
  }
  return uri;
}

Json artifact_of(const std::string& file) {
  if (file != k_standard_stream) return {{"uri", uri_of(file)}};
  return {{"description", {{"text", "standard input"}}}};
}

// Offsets count in the bytes of the document, which in an archive is not the file.
Json region_of(const SourcePlace& place, std::uint64_t length) {
  Json region = {{"startLine", place.line}, {"startColumn", place.column}};
  region["byteOffset"] = place.offset;
  if (length != 0) region["byteLength"] = length;
  return region;
}

Json location_of(const std::string& file, const SourcePlace& place, std::uint64_t length) {
  Json physical = {{"artifactLocation", artifact_of(file)}};
  if (place) physical["region"] = region_of(place, length);
  return {{"physicalLocation", std::move(physical)}};
}

const char* level_of(zol_v2::Severity severity) {
  return severity == zol_v2::Severity::warning ? "warning" : "error";
}

class SarifPrinter final : public VerdictPrinter {
 public:
  void begin() override {
    ::print(
        "{\n"
        "  \"$schema\": \"https://json.schemastore.org/sarif-2.1.0.json\",\n"
        "  \"version\": \"2.1.0\",\n"
        "  \"runs\": [\n"
        "    {\n"
        "      \"columnKind\": \"unicodeCodePoints\",\n"
        "      \"results\": ");
    results_.begin();
  }

  void print(const Verdict& verdict) override {
    if (verdict.status == ExitStatus::trouble) {
      complain(verdict.file, verdict.report.message);
      troubles_.push_back({{"level", "error"},
                           {"message", {{"text", verdict.report.message}}},
                           {"locations", {location_of(verdict.file, {}, 0)}}});
      return;
    }
    for (const Fault& fault : verdict.report.faults) results_.print(result_of(verdict, fault));
  }

  // The rules are known only now.
  void end() override {
    results_.end();
    Json rules = Json::array();
    for (const auto& [id, severity] : rules_) {
      rules.push_back({{"id", id}, {"defaultConfiguration", {{"level", level_of(severity)}}}});
    }
    const Json tool = {
        {"driver", {{"name", "zol"}, {"version", ZOL_VERSION}, {"rules", std::move(rules)}}}};
    Json invocation = {{"executionSuccessful", troubles_.empty()}};
    if (!troubles_.empty()) invocation["toolExecutionNotifications"] = std::move(troubles_);
    ::print(",\n      \"tool\": " + text_of(tool, 3) + ",\n      \"invocations\": " +
            text_of(Json::array({std::move(invocation)}), 3) + "\n    }\n  ]\n}\n");
  }

 private:
  Json result_of(const Verdict& verdict, const Fault& fault) {
    const std::string rule(fault.rule);
    rules_.emplace(rule, fault.severity);
    Json location = location_of(verdict.file, fault.place, fault.length);
    if (!fault.path.empty()) {
      Json logical = {{"fullyQualifiedName", fault.path}};
      if (!fault.object.empty()) logical["name"] = fault.object;
      location["logicalLocations"] = Json::array({std::move(logical)});
    }
    Json result = {{"ruleId", rule},
                   {"level", level_of(fault.severity)},
                   {"message", {{"text", fault.text()}}},
                   {"locations", Json::array({std::move(location)})}};
    if (fault.first) {
      result["relatedLocations"] = Json::array({location_of(verdict.file, fault.first, 0)});
    }
    Json properties = {{"code", static_cast<int>(fault.code)}};
    if (!fault.item.empty()) properties["item"] = fault.item;
    if (!fault.found.empty()) properties["found"] = fault.found;
    if (!fault.allowed.empty()) properties["allowed"] = fault.allowed;
    if (!fault.entry.empty()) properties["entry"] = fault.entry;
    result["properties"] = std::move(properties);
    return result;
  }

  JsonArrayOutput results_{3};
  std::map<std::string, zol_v2::Severity> rules_;
  Json troubles_ = Json::array();
};

}  // namespace

std::unique_ptr<VerdictPrinter> make_sarif_printer() { return std::make_unique<SarifPrinter>(); }
