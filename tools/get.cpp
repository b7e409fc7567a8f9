// zol get: values and subtrees by their paths.
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/json.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/paths.h"
#include "tools/text.h"
#include "tools/tree.h"

namespace {

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Found;
using zol_v2::reflection::Item;

struct Options : BatchOptions {
  std::string file;
  std::vector<std::string> paths;
  bool json = false;
  bool null = false;
};

// What is got from one document.
struct Got {
  ExitStatus status = ExitStatus::ok;
  Verdict verdict;
  std::string text;
  std::vector<std::string> faults;
  std::vector<Json> entries;
};

class Getter {
 public:
  Getter(const Options& options, const std::string& file, Got* got)
      : options_(options), file_(file), got_(*got) {}

  void get(ConstRef root, const std::string& path) {
    if (get_nil(root, path)) return;
    const Found found = find(root, path);
    if (!found) {
      got_.faults.push_back(path + ": " + path_fault(root, path, found));
      got_.status = worse(got_.status, ExitStatus::fault);
    } else if (options_.json) {
      add_entry(path, json_of(found.item));
    } else if (!found.item.object()) {
      append(exact_text(found.item.value()));
    } else {
      for_each_value(
          found.item, path,
          [this](const std::string& inner, const Item& value) {
            append(inner + '=' + exact_text(value.value()));
            return true;
          },
          [this](const std::string& inner) {
            append(inner + '/' + std::string(k_nil_step) + "=true");
          });
    }
  }

 private:
  // Whether the path asks if an object is nil, of one that is there and may be.
  bool get_nil(ConstRef root, const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || path.substr(slash + 1) != k_nil_step) return false;
    const Found found = find(root, std::string_view(path).substr(0, slash));
    const ConstRef object = found ? found.item.object() : ConstRef();
    if (!object || !object.type().is_nillable()) return false;
    if (options_.json) {
      add_entry(path, object.is_nil());
    } else {
      append(object.is_nil() ? "true" : "false");
    }
    return true;
  }

  void add_entry(const std::string& path, Json value) {
    Json entry;
    if (!options_.is_single()) entry["file"] = file_;
    entry["path"] = path;
    entry["value"] = std::move(value);
    got_.entries.push_back(std::move(entry));
  }

  void append(const std::string& text) {
    if (!options_.is_single()) got_.text += one_line(file_) + ": ";
    got_.text += text + (options_.null ? '\0' : '\n');
  }

  const Options& options_;
  const std::string& file_;
  Got& got_;
};

Got get(const std::string& file, const Options& options) {
  Got got;
  zol_v2::Zol document;
  DocumentSource source(file);
  got.verdict = try_load(source, document);
  got.status = got.verdict.status;
  if (got.status != ExitStatus::ok) return got;
  Getter getter(options, file, &got);
  for (const std::string& path : options.paths) getter.get(document, path);
  return got;
}

ExitStatus run(const Options& options) {
  ExitStatus status = ExitStatus::ok;
  JsonArrayOutput entries(0);
  if (options.json) entries.begin();
  const ExitStatus ended = run_batch<Got>(
      options, "get", [&](const std::string& file) { return get(file, options); },
      [&](const Got& got) {
        complain_of(got.verdict);
        print(got.text);
        for (const Json& entry : got.entries) entries.print(entry);
        for (const std::string& fault : got.faults) complain(got.verdict.file, fault);
        status = worse(status, got.status);
      },
      [](ExitStatus) {});
  if (options.json) {
    entries.end();
    print("\n");
  }
  return worse(status, ended);
}

}  // namespace

void add_get(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("get", "Print values, or all that stands below an object, by path");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
  command->add_option("PATH", options->paths, "Such as Zol/Color[3]/ColorSpaceCIELab/L")
      ->required();
  CLI::Option* const json =
      command->add_flag("--json", options->json, "Print a JSON array with an object for each PATH");
  command
      ->add_flag("-0,--null", options->null,
                 "End each value with a zero byte, since a text may have lines")
      ->excludes(json);
  add_recursive(*command, &options->recursive);
  add_jobs(*command, &options->jobs);
  command->footer(
      "Of an object each value below it is printed as PATH=VALUE, as zol set takes it.\n"
      "Exit status: 1 if there is nothing at a path.");
  command->callback([options, status] {
    options->files = {options->file};
    *status = run(*options);
  });
}
