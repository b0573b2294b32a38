// SPDX-License-Identifier: MIT
#include "host/windows/plugin_library.h"

#include <cstring>
#include <utility>
#include <vector>

#include "platform/encoding.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kInfoBytes = 1024;  // larger than the record, for plug-ins with a longer one

std::wstring WholePath(const std::string& path) {
  const std::wstring wide = WideOf(path);
  wchar_t whole[1024];
  const DWORD length = GetFullPathNameW(wide.c_str(), 1024, whole, nullptr);
  return length && length < 1024 ? std::wstring(whole, length) : wide;
}

std::string WhyNotLoaded(const std::string& path, DWORD error) {
  const std::string file = "'" + path + "' ";
  switch (error) {
    case ERROR_MOD_NOT_FOUND:
      return file + "needs another library that is missing; install the plug-in again";
    case ERROR_BAD_EXE_FORMAT:
      return file + "is not a 64-bit library; choose another file";
    case ERROR_DLL_INIT_FAILED:
      return file + "refuses to be loaded by this program; choose another file";
    case ERROR_ACCESS_DENIED:
      return file + "cannot be read; check its permissions";
    default:
      return file + "cannot be loaded (error " + std::to_string(error) + "); choose another file";
  }
}

std::string VersionOf(const std::wstring& path) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &unused);
  std::vector<std::uint8_t> bytes(size);
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  if (!size || !GetFileVersionInfoW(path.c_str(), 0, size, bytes.data()) ||
      !VerQueryValueW(bytes.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) || length < sizeof *fixed)
    return {};
  return std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." + std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
         std::to_string(HIWORD(fixed->dwFileVersionLS));
}

template <typename Function>
void Find(HMODULE module, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

template <std::size_t N>
std::string FieldText(const char (&field)[N]) {
  return TextFromBytes(std::string_view(field, strnlen(field, N)));
}

void AskParams(PluginLibrary& plugin) {
  std::vector<std::uint8_t> bytes(kInfoBytes);
  auto* record = reinterpret_cast<PluginInfoRecord*>(bytes.data());
  record->size = kInfoBytes;
  plugin.getParams(record);
  plugin.name = FieldText(record->name);
  plugin.attribution = FieldText(record->attribution);
  if (plugin.name.empty()) plugin.name = "Unnamed plug-in";
}

}  // namespace

PluginLibrary& PluginLibrary::operator=(PluginLibrary&& other) noexcept {
  std::swap(path, other.path);
  std::swap(name, other.name);
  std::swap(attribution, other.attribution);
  std::swap(version, other.version);
  std::swap(module, other.module);
  std::swap(getParams, other.getParams);
  std::swap(doBuild, other.doBuild);
  return *this;
}

PluginLibrary::~PluginLibrary() {
  if (module) FreeLibrary(module);
}

std::string PluginLibrary::Folder() const { return path.substr(0, path.find_last_of("\\/") + 1); }

PluginLibrary LoadPlugin(const std::string& path, std::string& error) {
  const std::wstring whole = WholePath(path);
  PluginLibrary plugin;
  plugin.path = NarrowOf(whole);
  const DWORD attributes = GetFileAttributesW(whole.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || attributes & FILE_ATTRIBUTE_DIRECTORY) {
    error = "the plug-in '" + plugin.path + "' does not exist; choose its file, or put it beside this program";
    return {};
  }
  // The library's dependencies are beside it, not beside this program.
  plugin.module = LoadLibraryExW(whole.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!plugin.module) {
    error = WhyNotLoaded(plugin.path, GetLastError());
    return {};
  }
  Find(plugin.module, "PLUGIN16GetPluginParams", plugin.getParams);
  Find(plugin.module, "PLUGIN16DoBuild", plugin.doBuild);
  if (!plugin.getParams || !plugin.doBuild) {
    error = "'" + plugin.path + "' is not a plug-in for this program: it does not export " +
            (plugin.getParams ? "PLUGIN16DoBuild" : "PLUGIN16GetPluginParams") + "; choose another file";
    return {};
  }
  plugin.version = VersionOf(whole);
  AskParams(plugin);
  return plugin;
}

}  // namespace glyphmotion
