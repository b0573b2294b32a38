// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <utility>

#include "platform/win32/patience.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {
namespace {

/// An open file, closed when it goes.
struct OpenFile {
  HANDLE handle;
  explicit OpenFile(HANDLE opened) : handle(opened) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { Close(); }
  explicit operator bool() const { return handle != INVALID_HANDLE_VALUE; }
  bool Close() {
    const HANDLE closing = std::exchange(handle, INVALID_HANDLE_VALUE);
    return closing == INVALID_HANDLE_VALUE || CloseHandle(closing);
  }
};

constexpr DWORD kPiece = DWORD{1} << 20;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool IsPath(const std::string& path) { return !path.empty() && path.find('\0') == std::string::npos; }

bool WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kPiece));
    DWORD written = 0;
    if (!WriteFile(file, bytes.data(), wanted, &written, nullptr) || !written) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

std::wstring FolderOf(const std::wstring& path) {
  const std::size_t slash = path.find_last_of(L"\\/:");
  return slash == std::wstring::npos ? L"" : path.substr(0, slash + 1);
}

/// A new, empty file beside `path`; its name goes to `name`. Names that exist are passed over.
HANDLE CreateBeside(const std::wstring& path, std::wstring& name) {
  static std::atomic<unsigned> count{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    name = FolderOf(path) + L".glyphmotion-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(count++) + L".tmp";
    const HANDLE file =
        CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return file;
  }
  return INVALID_HANDLE_VALUE;
}

/// ReplaceFile keeps the old file's permissions and attributes, but not every file system knows it.
bool PutInPlace(const std::wstring& name, const std::wstring& path, bool exists) {
  if (exists && ReplaceFileW(path.c_str(), name.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)) {
    return true;
  }
  return MoveFileExW(name.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

bool Replace(const std::wstring& path, std::string_view bytes, bool exists) {
  std::wstring name;
  OpenFile file(CreateBeside(path, name));
  if (!file) return false;
  const bool filled = WriteAll(file.handle, bytes) && FlushFileBuffers(file.handle);
  const bool closed = file.Close();
  if (filled && closed && InTime([&] { return PutInPlace(name, path, exists); })) return true;
  DeleteFileW(name.c_str());
  return false;
}

bool WriteInPlace(const std::wstring& path, std::string_view bytes) {
  OpenFile file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  return file && WriteAll(file.handle, bytes) && file.Close();
}

/// The file that a link leads to; the path itself when it is none.
std::wstring TargetOf(const std::wstring& path) {
  const OpenFile file(CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return path;
  const DWORD size = GetFinalPathNameByHandleW(file.handle, nullptr, 0, FILE_NAME_NORMALIZED);
  std::wstring target(size, L'\0');
  const DWORD length = size ? GetFinalPathNameByHandleW(file.handle, target.data(), size, FILE_NAME_NORMALIZED) : 0;
  if (!length || length >= size) return path;
  target.resize(length);
  return target;
}

std::optional<std::string> ReadAll(HANDLE file, std::size_t limit) {
  std::string bytes;
  LARGE_INTEGER size{};
  if (GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size)) {
    if (static_cast<unsigned long long>(size.QuadPart) > limit) return std::nullopt;
    bytes.reserve(static_cast<std::size_t>(size.QuadPart));
  }
  char piece[16384];
  for (;;) {
    DWORD count = 0;
    if (!ReadFile(file, piece, sizeof piece, &count, nullptr)) {
      if (GetLastError() != ERROR_BROKEN_PIPE) return std::nullopt;
      return bytes;
    }
    if (!count) return bytes;
    if (count > limit - bytes.size()) return std::nullopt;
    bytes.append(piece, count);
  }
}

}  // namespace

// Whoever replaces the file meanwhile, another of this program's dialogs say, is not kept from it.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit) noexcept try {
  if (!IsPath(path)) return std::nullopt;
  const OpenFile file(CreateFileW(WideOf(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  return file ? ReadAll(file.handle, limit) : std::nullopt;
} catch (const std::exception&) {
  return std::nullopt;
}

bool AtomicWriteFile(const std::string& path, std::string_view bytes) noexcept try {
  if (!IsPath(path)) return false;
  const std::wstring wide = WideOf(path);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    return GetLastError() == ERROR_FILE_NOT_FOUND && Replace(wide, bytes, false);
  }
  // A file that may not be written stays as it is, although a rename could replace it.
  if (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) return false;
  if (attributes & FILE_ATTRIBUTE_DEVICE) return WriteInPlace(wide, bytes);
  return Replace(attributes & FILE_ATTRIBUTE_REPARSE_POINT ? TargetOf(wide) : wide, bytes, true);
} catch (const std::exception&) {
  return false;
}

std::string_view LineEnd() noexcept { return "\r\n"; }

}  // namespace glyphmotion
