// SPDX-License-Identifier: MIT
#include "plugin_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace glyphmotion::test {
namespace {

std::string libraryPath = "tlmplgm4.dll";

using GetParamsFunction = int (*)(PluginInfoRecord*);
using DoBuildFunction = int (*)(void*, const HostCallTable*);

template <typename Function>
Function Export(const char* name) {
  const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(Library(), name)));
  if (function) return function;
  std::printf("The library has no function %s.\n", name);
  std::exit(2);
}

Bytes Copy(const void* from, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(from);
  return {bytes, bytes + size};
}

std::uint64_t OpenTask(std::uint64_t record) {
  host.task = Copy(reinterpret_cast<const void*>(record), sizeof(HostTaskRecord));
  return !host.refuseTask;
}

// Copies the image as a host does: by the system's own calls on the handle.
std::uint64_t AddImage(std::uint64_t address) {
  ReceivedImage image;
  image.record = Copy(reinterpret_cast<const void*>(address), sizeof(HostImageRecord));
  image.handle = reinterpret_cast<HGLOBAL>(At<std::uint64_t>(image.record, 8));
  EXPECT_EQ(GlobalFlags(image.handle) & GMEM_LOCKCOUNT, 0u) << "an image is unlocked when it comes";
  if (const void* memory = GlobalLock(image.handle)) {
    image.dib = Copy(memory, GlobalSize(image.handle));
    EXPECT_EQ(GlobalFlags(image.handle) & GMEM_LOCKCOUNT, 1u);
    GlobalUnlock(image.handle);
  }
  host.images.push_back(std::move(image));
  return static_cast<int>(host.images.size()) != host.refuseImage;
}

std::uint64_t HostCall(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  host.operations.push_back(operation);
  if (host.instead) {
    if (const auto answer = host.instead(task, operation, a, b)) return *answer;
  }
  switch (operation) {
    case HostOpNewTask:
    case HostOpNewTestTask:
      return OpenTask(b);
    case HostOpAddImage:
      return AddImage(b);
    case HostOpEndTask:
      host.ended = static_cast<int>(a);
      return 1;
    case HostOpStatusText:
      host.stages.emplace_back(reinterpret_cast<const char*>(b));
      return 1;
    default:
      return 0;
  }
}

std::string Home() {
  const char* home = std::getenv("GLYPHMOTION_HOME");
  if (home && *home) return home;
  std::printf("Set GLYPHMOTION_HOME to a folder that the tests may empty.\n");
  std::exit(2);
}

}  // namespace

Host host;

int Host::Count(std::uint32_t operation) const {
  return static_cast<int>(std::count(operations.begin(), operations.end(), operation));
}

HMODULE Library() {
  static const HMODULE library = LoadLibraryA(libraryPath.c_str());
  return library;
}

const std::string& LibraryPath() { return libraryPath; }
void SetLibraryPath(const std::string& path) { libraryPath = path; }

int GetParams(PluginInfoRecord* record) { return Export<GetParamsFunction>("PLUGIN16GetPluginParams")(record); }
int DoBuild(void* owner, const HostCallTable* table) {
  return Export<DoBuildFunction>("PLUGIN16DoBuild")(owner, table);
}

std::string SettingsPath() { return Home() + "\\tlmplgm4.ini"; }

void ForgetSettings() {
  std::error_code error;
  std::filesystem::remove_all(Home(), error);
}

HostCallTable TableOf(std::uint32_t flags) {
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  table.HostCall = HostCall;
  table.hostFlags = flags;
  return table;
}

}  // namespace glyphmotion::test
