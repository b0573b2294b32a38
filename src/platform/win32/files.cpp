// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <algorithm>
#include <atomic>
#include <cwchar>
#include <exception>
#include <utility>

#include "platform/special_file.h"
#include "platform/win32/retry.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {
namespace {

/// Owns an open file handle.
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

constexpr std::wstring_view kNameStart = L".glyphmotion-", kNameEnd = L".tmp";

/// The process id in ".glyphmotion-PID-N.tmp"; 0 for other names.
DWORD ProcessOf(const std::wstring& name) {
  if (!name.starts_with(kNameStart) || !name.ends_with(kNameEnd)) return 0;
  return static_cast<DWORD>(wcstoul(name.c_str() + kNameStart.size(), nullptr, 10));
}

bool IsAlive(DWORD process) {
  const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, process);
  if (!handle) return GetLastError() == ERROR_ACCESS_DENIED;
  const bool alive = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
  CloseHandle(handle);
  return alive;
}

/// Removes unfinished files of dead processes from the folder. A file that is open cannot be removed.
void ClearStaleTemporaries(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  const HANDLE search =
      FindFirstFileW((folder + std::wstring(kNameStart) + L"*" + std::wstring(kNameEnd)).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const DWORD process = ProcessOf(found.cFileName);
    if (process && !IsAlive(process)) DeleteFileW((folder + found.cFileName).c_str());
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

/// Creates an empty file in `folder` and stores its name in `name`. Skips names that exist.
HANDLE CreateIn(const std::wstring& folder, std::wstring& name) {
  static std::atomic<unsigned> count{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    name = folder + std::wstring(kNameStart) + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(count++) + std::wstring(kNameEnd);
    const HANDLE file =
        CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) return file;
    if (GetLastError() != ERROR_FILE_EXISTS) break;
  }
  name.clear();
  return INVALID_HANDLE_VALUE;
}

/// The reason for an error as the second half of a sentence.
std::string ReasonOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return "there is no such file or folder";
    case ERROR_ACCESS_DENIED:
      return "permission denied";
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return "the disk is full; free some space";
    case ERROR_SHARING_VIOLATION:
      return "another program is using it";
    default:
      return "system error " + std::to_string(error);
  }
}

void Say(std::string* why, const std::string& reason) {
  if (why) *why = reason;
}

/// ReplaceFile keeps the old file's permissions and attributes, but not every file system supports it.
bool PutInPlace(const std::wstring& name, const std::wstring& path, bool exists) {
  if (exists && ReplaceFileW(path.c_str(), name.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)) {
    return true;
  }
  return MoveFileExW(name.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

/// The target of a link; the path itself if it is not a link.
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

std::optional<std::string> ReadAll(HANDLE file, std::size_t limit, std::string* why) {
  LARGE_INTEGER size{};
  if (GetFileType(file) != FILE_TYPE_DISK || !GetFileSizeEx(file, &size)) {
    Say(why, "it is not a regular file");
    return std::nullopt;
  }
  if (static_cast<unsigned long long>(size.QuadPart) > limit) {
    Say(why, "it is larger than " + std::to_string(limit) + " bytes");
    return std::nullopt;
  }
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(size.QuadPart));
  char piece[16384];
  for (;;) {
    DWORD count = 0;
    if (!ReadFile(file, piece, sizeof piece, &count, nullptr)) {
      Say(why, ReasonOf(GetLastError()));
      return std::nullopt;
    }
    if (!count) return bytes;
    if (count > limit - bytes.size()) return std::nullopt;
    bytes.append(piece, count);
  }
}

}  // namespace

struct AtomicFile::State {
  std::wstring target, name;
  bool exists = false;
  DWORD error = 0;
  OpenFile file{INVALID_HANDLE_VALUE};

  ~State() {
    file.Close();
    if (!name.empty()) DeleteFileW(name.c_str());
  }
};

void AtomicFile::Closer::operator()(State* state) const noexcept { delete state; }

AtomicFile::Owner AtomicFile::Open(const std::string& path, std::string& why) {
  Owner state(new State);
  state->target = WideOf(path);
  const DWORD attributes = GetFileAttributesW(state->target.c_str());
  state->exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (!state->exists && GetLastError() != ERROR_FILE_NOT_FOUND) {
    why = ReasonOf(GetLastError());
    return {};
  }
  if (state->exists && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DEVICE))) {
    why = attributes & FILE_ATTRIBUTE_DIRECTORY  ? "it is a folder; name a file"
          : attributes & FILE_ATTRIBUTE_READONLY ? "the file is read-only; make it writable or choose another name"
                                                 : "it is not a regular file";
    return {};
  }
  if (state->exists && (attributes & FILE_ATTRIBUTE_REPARSE_POINT)) state->target = TargetOf(state->target);
  const std::wstring folder = FolderOf(state->target);
  ClearStaleTemporaries(folder);
  state->file.handle = CreateIn(folder, state->name);
  if (state->file) return state;
  why = ReasonOf(GetLastError());
  return {};
}

bool AtomicFile::Write(std::string_view bytes) noexcept {
  if (!state_ || state_->error) return false;
  if (WriteAll(state_->file.handle, bytes)) return true;
  state_->error = GetLastError() ? GetLastError() : ERROR_DISK_FULL;
  return false;
}

std::string AtomicFile::Trouble() const { return state_ && state_->error ? ReasonOf(state_->error) : ""; }

bool AtomicFile::Finish(State& state, std::string& why) {
  const bool whole = !state.error && FlushFileBuffers(state.file.handle);
  const bool closed = state.file.Close();
  if (whole && closed && RetryBriefly([&] { return PutInPlace(state.name, state.target, state.exists); })) {
    state.name.clear();
    return true;
  }
  why = ReasonOf(state.error ? state.error : GetLastError());
  return false;
}

// Others, such as another dialog of this program, may replace the file meanwhile.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit, std::string* why) noexcept try {
  if (!IsPath(path)) {
    Say(why, "it is not a file name");
    return std::nullopt;
  }
  const OpenFile file(CreateFileW(WideOf(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file) return ReadAll(file.handle, limit, why);
  Say(why, ReasonOf(GetLastError()));
  return std::nullopt;
} catch (const std::exception&) {
  if (why) why->assign(kNoMemoryReason);
  return std::nullopt;
}

ReadableFile OpenToRead(const std::string& path) noexcept try {
  return ReadableFile(_wfopen(WideOf(path).c_str(), L"rb"));
} catch (const std::exception&) {
  return {};
}

bool IsSpecialFile(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(WideOf(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DEVICE);
}

bool WriteSpecialFile(const std::string& path, std::string_view bytes, std::string& why) {
  OpenFile file(CreateFileW(WideOf(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  const bool written = file && WriteAll(file.handle, bytes) && file.Close();
  if (!written) why = ReasonOf(GetLastError());
  return written;
}

std::string_view LineEnd() noexcept { return "\r\n"; }

}  // namespace glyphmotion
