// SPDX-License-Identifier: MIT
#include "platform/folders.h"

#include <exception>

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_headers.h"
// After windows.h:
#include <shlobj.h>

namespace glyphmotion {
namespace {

// Where different Windows versions store the registered owner; the first value found counts.
constexpr const wchar_t* kVersions[] = {L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion",
                                        L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion"};
constexpr const wchar_t* kLogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";

void InThisModule() {}

std::string Environment(const wchar_t* name) {
  wchar_t value[MAX_PATH] = L"";
  const DWORD length = GetEnvironmentVariableW(name, value, MAX_PATH);
  return length && length < MAX_PATH ? NarrowOf(value) : "";
}

std::string WithSeparator(std::string folder) {
  if (!folder.empty() && folder.back() != '\\' && folder.back() != '/') folder += '\\';
  return folder;
}

/// One of the user's folders; empty when the system has none.
std::string SpecialFolder(int which) {
  wchar_t path[MAX_PATH] = L"";
  ITEMIDLIST* place = nullptr;
  if (FAILED(SHGetSpecialFolderLocation(nullptr, which, &place))) return {};
  const bool found = SHGetPathFromIDListW(place, path);
  CoTaskMemFree(place);
  return found ? WithSeparator(NarrowOf(path)) : "";
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::string RegistryText(const wchar_t* folder, const wchar_t* name) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, folder, 0, KEY_READ | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS) return {};
  wchar_t value[256] = L"";  // the last character is always a terminator
  DWORD type = 0, bytes = sizeof value - sizeof *value;
  const LSTATUS status = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(value), &bytes);
  RegCloseKey(key);
  return status == ERROR_SUCCESS && type == REG_SZ ? NarrowOf(value) : "";
}

std::string OfThisMachine(const wchar_t* name) {
  std::string text;
  for (const wchar_t* folder : kVersions) {
    if (text.empty()) text = RegistryText(folder, name);
  }
  return text;
}

}  // namespace

std::string SettingsFolder() {
  const std::string home = Environment(L"GLYPHMOTION_HOME");
  if (!home.empty()) return WithSeparator(home);
  const std::string applications = SpecialFolder(CSIDL_APPDATA);
  return applications.empty() ? "" : applications + "Tessaloom\\";
}

std::string DataFolder() {
  if (const auto& override = CurrentFolderOverrides().dataFolder) return WithSeparator(*override);
  const std::string settings = SettingsFolder();
  if (settings.empty()) return {};
  return settings + (Environment(L"GLYPHMOTION_HOME").empty() ? "Glyphmotion 4\\" : "data\\");
}

std::string DocumentsFolder() { return SpecialFolder(CSIDL_PERSONAL); }

std::string OwnFolder() {
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(flags, reinterpret_cast<const wchar_t*>(&InThisModule), &module);
  wchar_t path[MAX_PATH] = L"";
  const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
  if (!length || length >= MAX_PATH) return {};
  const std::wstring whole(path, length);
  return NarrowOf(whole.substr(0, whole.find_last_of(L"\\/") + 1));
}

std::vector<std::string> ShippedFolders() {
  std::vector<std::string> folders = {WithSeparator(Environment(L"GLYPHMOTION_DATA"))};
  if (const std::string own = OwnFolder(); !own.empty()) {
    for (const char* place : {"", "share\\glyphmotion\\", "..\\share\\glyphmotion\\"}) folders.push_back(own + place);
  }
  std::erase(folders, "");
  return folders;
}

std::string RegisteredOwner() {
  const std::string owner = OfThisMachine(L"RegisteredOwner");
  return owner.empty() ? RegistryText(kLogon, L"DefaultUserName") : owner;
}

std::string RegisteredOrganization() { return OfThisMachine(L"RegisteredOrganization"); }

bool EnsureFolder(const std::string& folder) noexcept try {
  std::wstring path = WideOf(folder);
  for (wchar_t& c : path) c = c == L'/' ? L'\\' : c;
  while (!path.empty() && path.back() == L'\\') path.pop_back();
  if (path.empty()) return false;
  if (IsFolder(path + L"\\")) return true;
  const std::size_t parent = path.find_last_of(L'\\');
  if (parent != std::wstring::npos && parent > 2 && !EnsureFolder(NarrowOf(path.substr(0, parent)))) return false;
  return CreateDirectoryW(path.c_str(), nullptr) || IsFolder(path);
} catch (const std::exception&) {
  return false;
}

}  // namespace glyphmotion
