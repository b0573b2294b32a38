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

/// What a window does with a run. All are called within the plug-in's calls: they draw at once, and pump no messages.
struct RunWatcher {
  std::function<void(const std::string&)> stage;                            ///< the name of what begins
  std::function<void(std::int64_t position, std::int64_t total)> progress;  ///< 0, 0 clears
  std::function<void()> beforeWork;                                         ///< Build or Test was pressed
  /// What the user has to know while the dialog is open; `owner` is the window in front.
  std::function<void(HWND owner, const std::string& sentence)> failed;
  /// A task came to its good end; `dialog` is the plug-in's window.
  std::function<void(Animation animation, HWND dialog)> finished;
};

struct RunSettings {
  HWND owner = nullptr;
  std::uint32_t hostFlags = HostFlagPaletteFormat;
  bool skin = false;
  Recorder* recorder = nullptr;
};

struct RunOutcome {
  bool ran = false;   ///< the plug-in answered 1
  RenderResult left;  ///< blocks and locks that the plug-in left behind of those that went over the boundary
};

/// Runs the plug-in's dialog and answers its calls until it ends. One run at a time.
RunOutcome RunPlugin(const PluginLibrary& plugin, const RunSettings& settings, const RunWatcher& watcher);

}  // namespace glyphmotion
