// zp dxf: drawings from metafiles, and drawings read back.

#include "tools/commands.h"

#include <climits>
#include <memory>

#include "tools/drawing/dxf_commands.h"
#include "tools/number_option.h"
#include "tools/program.h"

void AddDrawingCommands(CLI::App & app, int & status)
{
  CLI::App * const command =
      app.add_subcommand("dxf", "Turn a Windows metafile into a DXF drawing: zp dxf IN.wmf OUT.dxf, or zp dxf --to FOLDER IN...");
  auto const options = std::make_shared<DxfOptions>();
  command->add_option("FILE", options->files, "A metafile and the drawing that is written, - for standard input or output")
      ->required();
  CLI::Option * const to = RequireNamed(
      command->add_option("--to", options->to, "Convert every FILE, and the *.wmf in every folder, into this folder"));
  CLI::Option * const check =
      command->add_flag("--check", options->check, "Every FILE is a drawing: read it back and tell what is broken in it");
  CLI::Option * const height =
      command
          ->add_option("--height", options->height,
                       "The y from which the drawing's y is counted upwards; by default the lower edge of the metafile")
          ->transform(WholeNumber(INT_MIN, INT_MAX));
  CLI::Option * const stats = command->add_flag("--stats", options->stats, "Name and count what was written and skipped");
  RequireNamed(command->add_option("--svg", options->svg, "Also draw what the drawing holds into this SVG file"));
  RequireNamed(command->add_option("--png", options->png, "The same as PNG"));
  command->add_flag("--json", options->json, "Print JSON");
  AddExample(*command, "zp dxf flowsheet.wmf flowsheet.dxf");
  for (CLI::Option * const other : {to, height, stats}) check->excludes(other);
  command->callback([options, &status] { options->check ? CheckDrawings(*options, status) : ConvertFiles(*options, status); });
}
