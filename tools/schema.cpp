// zol schema: the XML Schema for editors and other validators, and the JSON Schema.
#include <memory>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/commands.h"
#include "tools/output.h"
#include "tools/schema_text.h"

void add_schema(CLI::App& app, ExitStatus* status) {
  CLI::App* const command =
      app.add_subcommand("schema", "Print the XML Schema of the format, zol.xsd");
  const auto is_json = std::make_shared<bool>(false);
  command->add_flag("--json", *is_json, "The JSON Schema of documents as JSON instead");
  command->callback([is_json, status] {
    print(*is_json ? k_json_schema_text : k_schema_text);
    *status = ExitStatus::ok;
  });
}
