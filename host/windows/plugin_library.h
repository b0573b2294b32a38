// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "glyphmotion/host_contract.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// A loaded plug-in, ours or another maker's. Unloaded by the destructor.
struct PluginLibrary {
  std::string path;  ///< absolute, UTF-8
  std::string name;  ///< from the plug-in's info record
  std::string attribution;
  std::string version;  ///< of the file; empty when it has none
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

/// Loads a library and reads its info record. Empty, with one sentence in `error`, when it cannot be loaded or lacks
/// one of the two exports.
PluginLibrary LoadPlugin(const std::string& path, std::string& error);

}  // namespace glyphmotion
