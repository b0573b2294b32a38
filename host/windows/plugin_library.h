// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "glyphmotion/host_contract.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// A plug-in that has been loaded, ours or a stranger's. Let go when it dies.
struct PluginLibrary {
  std::string path;  ///< whole, UTF-8
  std::string name;  ///< as the plug-in calls itself
  std::string attribution;
  std::string version;  ///< of the file; empty when it says none
  HMODULE module = nullptr;
  int (*getParams)(PluginInfoRecord*) = nullptr;
  int (*doBuild)(void*, const HostCallTable*) = nullptr;

  PluginLibrary() = default;
  PluginLibrary(PluginLibrary&& other) noexcept { *this = std::move(other); }
  PluginLibrary& operator=(PluginLibrary&& other) noexcept;
  ~PluginLibrary();
  explicit operator bool() const { return module != nullptr; }
  std::string Folder() const;  ///< with its backslash
};

/// Loads a library and asks it what it is. Empty, with one sentence in `error`, when it cannot be loaded or lacks one
/// of the two exports.
PluginLibrary LoadPlugin(const std::string& path, std::string& error);

}  // namespace glyphmotion
