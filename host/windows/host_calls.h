// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "host/recording/animation.h"
#include "host/recording/recorder.h"
#include "host/windows/plugin_library.h"

namespace glyphmotion {

/// A window's reactions to a run. All are called within the plug-in's calls: they must draw at once and must not pump
/// messages.
struct RunWatcher {
  std::function<void(const std::string&)> stage;                            ///< the name of the stage that begins
  std::function<void(std::int64_t position, std::int64_t total)> progress;  ///< 0, 0 clears
  std::function<void()> beforeWork;                                         ///< the user pressed Build or Test
  /// Reports an error while the dialog is open; `owner` is the foreground window.
  std::function<void(HWND owner, const std::string& sentence)> failed;
  /// A task finished successfully; `dialog` is the plug-in's window.
  std::function<void(Animation animation, HWND dialog)> finished;
};

struct RunSettings {
  HWND owner = nullptr;
  std::uint32_t hostFlags = HostFlagPaletteFormat;
  bool skin = false;
  Recorder* recorder = nullptr;
};

struct RunOutcome {
  bool ran = false;   ///< the plug-in returned 1
  RenderResult left;  ///< blocks and locks passed over the boundary that the plug-in leaked
};

/// Runs the plug-in's dialog and handles its calls until it ends. One run at a time.
RunOutcome RunPlugin(const PluginLibrary& plugin, const RunSettings& settings, const RunWatcher& watcher);

}  // namespace glyphmotion
