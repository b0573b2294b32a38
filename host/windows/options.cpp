// SPDX-License-Identifier: MIT
#include "host/windows/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "glyphmotion/version.h"

namespace glyphmotion {

ParsedOptions ParseHostOptions(std::vector<std::string> words) {
  static const std::map<std::string, std::uint32_t> kKinds = {
      {"palette", HostFlagPaletteFormat},
      {"truecolor", HostFlagTrueColorFormat},
      {"both", HostFlagPaletteFormat | HostFlagTrueColorFormat},
  };
  CLI::App app("Runs the dialog of an animation plug-in, plays what it builds and saves it as a GIF.",
               "glyphmotion-host");
  HostOptions options;
  std::string kind = "palette";
  app.add_option("--plugin", options.plugin, "The plug-in library (default: tlmplgm4.dll beside this program)")
      ->type_name("FILE");
  app.add_option("-o,--output", options.output, "Write every finished animation to this file without asking")
      ->type_name("FILE.gif");
  app.add_option("--record", options.recordFolder, "Write every call of the plug-in and every image into this folder")
      ->type_name("FOLDER");
  app.add_option("--host", kind, "What the file format supports: palette, truecolor or both")->type_name("KIND");
  app.add_flag("--skin", options.skin, "Ask the plug-in for its skinned buttons");
  app.add_flag("--once", options.once, "Run the dialog once and exit: 0 when a GIF was written, 1 when not");
  app.add_flag("--no-dialog", options.noDialog, "Open the window only; Ctrl+N opens the dialog");
  app.set_version_flag("--version", "glyphmotion-host " GLYPHMOTION_VERSION);
  ParsedOptions parsed;
  try {
    std::reverse(words.begin(), words.end());  // CLI11 takes them last first
    app.parse(words);
    const auto found = kKinds.find(kind);
    if (found == kKinds.end())
      throw CLI::ValidationError("--host", "'" + kind + "' is not allowed; use palette, truecolor or both");
    if (options.once && options.noDialog)
      throw CLI::ValidationError("--once", "it has nothing to run with --no-dialog; leave one of them out");
    options.hostFlags = found->second;
    parsed.options = options;
  } catch (const CLI::CallForHelp&) {
    parsed.text = app.help();
  } catch (const CLI::CallForVersion& version) {
    parsed.text = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    parsed.text = std::string(error.what()) + " (--help lists the options)";
    parsed.wrong = true;
  }
  return parsed;
}

}  // namespace glyphmotion
