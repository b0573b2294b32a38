// SPDX-License-Identifier: MIT
// A host that loads the library and records what reaches it, and misbehaves as a test asks.
#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "glyphmotion/host_contract.h"

namespace glyphmotion::test {

using Bytes = std::vector<std::uint8_t>;

struct ReceivedImage {
  Bytes record;  ///< as sent
  Bytes dib;     ///< a copy of the block
  HGLOBAL handle = nullptr;
};

/// What came, in order, and how the host answers.
struct Host {
  std::vector<std::uint32_t> operations;
  std::vector<std::string> stages;
  Bytes task;  ///< the last task's record, as sent
  std::vector<ReceivedImage> images;
  int ended = -1;  ///< the first argument of the task's end, -1 before it

  bool refuseTask = false;
  int refuseImage = 0;  ///< the number of the image, from 1
  /// Asked before anything else; an answer is the host's answer, and nothing more is done.
  std::function<std::optional<std::uint64_t>(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b)>
      instead;

  int Count(std::uint32_t operation) const;
};

/// The host of the run at hand; every test begins with a new one.
extern Host host;

/// The library; loaded by the first to ask.
HMODULE Library();
const std::string& LibraryPath();
void SetLibraryPath(const std::string& path);
int GetParams(PluginInfoRecord* record);
int DoBuild(void* owner, const HostCallTable* table);

constexpr std::uint32_t kPalette = HostFlagPaletteFormat, kTrueColour = HostFlagTrueColorFormat;
constexpr std::uint32_t kBothFormats = kPalette | kTrueColour;

/// A table of this host.
HostCallTable TableOf(std::uint32_t flags);

/// The settings file, in the folder that GLYPHMOTION_HOME names; and all that runs before have left there.
std::string SettingsPath();
void ForgetSettings();

/// A number at an offset of a record.
template <typename T>
T At(const Bytes& record, std::size_t offset) {
  T value{};
  if (offset + sizeof value <= record.size()) std::memcpy(&value, record.data() + offset, sizeof value);
  return value;
}

}  // namespace glyphmotion::test
