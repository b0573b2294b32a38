// SPDX-License-Identifier: MIT
// The library's entry point. It refuses to load into one program only: the maker's host of a major version below 16,
// which lacks this interface. The program is identified by its version resource.
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <string_view>

#include "platform/win32/windows_headers.h"

namespace {

constexpr unsigned kMinimumMajorVersion = 16;
constexpr std::wstring_view kMakersHost = L"Framewright";

// The bytes of the program's version resource. They are part of its image, so nothing has to be loaded or freed, which
// would not be safe here.
std::string_view VersionResource() {
  const HMODULE program = GetModuleHandleW(nullptr);
  const HRSRC place = FindResourceW(program, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  const HGLOBAL loaded = place ? LoadResource(program, place) : nullptr;
  const void* bytes = loaded ? LockResource(loaded) : nullptr;
  return bytes ? std::string_view(static_cast<const char*>(bytes), SizeofResource(program, place)) : std::string_view();
}

unsigned MajorVersion(std::string_view resource) {
  const DWORD signature = VS_FFI_SIGNATURE;
  const std::size_t at = resource.find(std::string_view(reinterpret_cast<const char*>(&signature), sizeof signature));
  VS_FIXEDFILEINFO fixed;
  if (at == std::string_view::npos || resource.size() - at < sizeof fixed) return 0;
  std::memcpy(&fixed, resource.data() + at, sizeof fixed);
  return HIWORD(fixed.dwProductVersionMS);
}

// A string of the resource follows its name's terminator, at the next multiple of four bytes.
bool NamesMakersHost(std::string_view resource) {
  const std::wstring_view text(reinterpret_cast<const wchar_t*>(resource.data()), resource.size() / sizeof(wchar_t));
  constexpr std::wstring_view kName(L"ProductName\0", 12);
  std::size_t at = text.find(kName);
  if (at == std::wstring_view::npos) return false;
  at = text.find_first_not_of(L'\0', at + kName.size());
  return at != std::wstring_view::npos && text.compare(at, kMakersHost.size(), kMakersHost) == 0;
}

bool LoaderIsTooOld() {
  const std::string_view resource = VersionResource();
  return NamesMakersHost(resource) && MajorVersion(resource) < kMinimumMajorVersion;
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  DisableThreadLibraryCalls(module);
  return LoaderIsTooOld() ? FALSE : TRUE;
}
