// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <utility>

namespace glyphmotion {
namespace {

/// An open file, closed when it goes.
struct OpenFile {
  int descriptor;
  explicit OpenFile(int opened) : descriptor(opened) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor >= 0) close(descriptor);
  }
  explicit operator bool() const { return descriptor >= 0; }
};

int OpenRetrying(const char* path, int flags, mode_t mode = 0) {
  int descriptor;
  do {
    descriptor = open(path, flags | O_CLOEXEC, mode);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

/// A new, empty file beside `path`; its name goes to `name`. Names that exist are passed over.
int CreateBeside(const std::string& path, std::string& name) {
  static std::atomic<unsigned> count{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    name = FolderOf(path) + ".glyphmotion-" + std::to_string(getpid()) + "-" + std::to_string(count++) + ".tmp";
    const int descriptor = OpenRetrying(name.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
  return -1;
}

bool WriteInPlace(const std::string& path, std::string_view bytes) {
  const OpenFile file(OpenRetrying(path.c_str(), O_WRONLY));
  return file && WriteAll(file.descriptor, bytes);
}

/// Fills and flushes the new file. Closing can fail too: some network disks report a full disk only then.
bool FillAndClose(OpenFile& file, std::string_view bytes, const struct stat* old) {
  if (old && fchmod(file.descriptor, old->st_mode & 07777) != 0) return false;
  if (!WriteAll(file.descriptor, bytes) || fsync(file.descriptor) != 0) return false;
  return close(std::exchange(file.descriptor, -1)) == 0;
}

bool Replace(const std::string& path, std::string_view bytes, const struct stat* old) {
  std::string name;
  OpenFile file(CreateBeside(path, name));
  if (!file) return false;
  if (!FillAndClose(file, bytes, old) || std::rename(name.c_str(), path.c_str()) != 0) {
    unlink(name.c_str());
    return false;
  }
  // The rename itself is on the disk once its folder is. Some file systems cannot flush a folder; the file stands then.
  const OpenFile folder(OpenRetrying(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY));
  if (folder) (void)fsync(folder.descriptor);
  return true;
}

std::optional<std::string> ReadAll(int descriptor, std::size_t limit) {
  std::string bytes;
  struct stat status;
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    if (static_cast<std::uintmax_t>(status.st_size) > limit) return std::nullopt;
    bytes.reserve(static_cast<std::size_t>(status.st_size));
  }
  char piece[16384];
  for (;;) {
    const ssize_t count = read(descriptor, piece, sizeof piece);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) return bytes;
    if (static_cast<std::size_t>(count) > limit - bytes.size()) return std::nullopt;
    bytes.append(piece, static_cast<std::size_t>(count));
  }
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit) noexcept try {
  if (path.empty() || path.find('\0') != std::string::npos) return std::nullopt;
  const OpenFile file(OpenRetrying(path.c_str(), O_RDONLY));
  return file ? ReadAll(file.descriptor, limit) : std::nullopt;
} catch (const std::exception&) {
  return std::nullopt;
}

bool AtomicWriteFile(const std::string& path, std::string_view bytes) noexcept try {
  if (path.empty() || path.find('\0') != std::string::npos) return false;
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return errno == ENOENT && Replace(path, bytes, nullptr);
  if (S_ISDIR(status.st_mode)) return false;
  if (!S_ISREG(status.st_mode)) return WriteInPlace(path, bytes);
  // A file that may not be written stays as it is, although a rename could replace it.
  if (access(path.c_str(), W_OK) != 0) return false;
  const std::unique_ptr<char, decltype(&std::free)> target(realpath(path.c_str(), nullptr), &std::free);
  return target && Replace(target.get(), bytes, &status);
} catch (const std::exception&) {
  return false;
}

std::string_view LineEnd() noexcept { return "\n"; }

}  // namespace glyphmotion
