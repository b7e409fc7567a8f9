// zol schema: the XML Schema for editors and other validators.
#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/commands.h"
#include "tools/output.h"
#include "tools/schema_text.h"

void add_schema(CLI::App& app, ExitStatus* status) {
  CLI::App* const command =
      app.add_subcommand("schema", "Print the XML Schema of the format, zol.xsd");
  command->callback([status] {
    print(k_schema_text);
    *status = ExitStatus::ok;
  });
}
