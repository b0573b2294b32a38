// SPDX-License-Identifier: MIT
#include "platform/portable/descriptors.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <system_error>

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNameStart = ".glyphmotion-", kNameEnd = ".tmp";

/// Keeps SIGXFSZ from ending the host process: blocks it for this thread and consumes one that a write has raised.
class FileSizeSignalBlocked {
 public:
  FileSizeSignalBlocked() noexcept {
    sigemptyset(&signal_);
    sigaddset(&signal_, SIGXFSZ);
    before_ = IsPending();
    pthread_sigmask(SIG_BLOCK, &signal_, &mask_);
  }
  FileSizeSignalBlocked(const FileSizeSignalBlocked&) = delete;
  FileSizeSignalBlocked& operator=(const FileSizeSignalBlocked&) = delete;
  ~FileSizeSignalBlocked() {
    int taken = 0;
    if (!before_ && IsPending()) sigwait(&signal_, &taken);
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
  }

 private:
  static bool IsPending() noexcept {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
  }
  sigset_t signal_, mask_;
  bool before_;
};

std::array<char, 32> LinkName(int descriptor) noexcept {
  std::array<char, 32> name;
  std::snprintf(name.data(), name.size(), "/proc/self/fd/%d", descriptor);
  return name;
}

/// The process id in ".glyphmotion-PID-N.tmp"; 0 for other names.
pid_t ProcessOf(std::string_view name) noexcept {
  if (!name.starts_with(kNameStart) || !name.ends_with(kNameEnd)) return 0;
  name.remove_prefix(kNameStart.size());
  pid_t process = 0;
  const auto number = std::from_chars(name.data(), name.data() + name.size(), process);
  return number.ec == std::errc{} && *number.ptr == '-' && process > 0 ? process : 0;
}

/// A live process holds a lock on the file that it writes. Its id is not enough: it may have been reused, and processes
/// of other containers are invisible.
void RemoveUnlessHeld(int folder, const std::string& path, const char* name) {
  const Descriptor file(openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status;
  if (!file || fstat(*file, &status) != 0) return;
  if (flock(*file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return;
  std::error_code error;
  if (S_ISREG(status.st_mode)) unlinkat(folder, name, 0);
  if (S_ISDIR(status.st_mode)) fs::remove_all(path + name, error);
}

}  // namespace

Descriptor::~Descriptor() {
  if (number_ >= 0) close(number_);
}

Descriptor OpenFile(const std::string& path, int flags, mode_t mode) noexcept {
  int descriptor;
  do {
    descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
  } while (descriptor < 0 && errno == EINTR);
  return Descriptor(descriptor);
}

Descriptor OpenUnnamed([[maybe_unused]] const std::string& folder) noexcept {
#ifdef O_TMPFILE
  Descriptor file = OpenFile(folder, O_TMPFILE | O_WRONLY, 0666);
  if (file && access(LinkName(*file).data(), F_OK) == 0) return file;
#endif
  return Descriptor();
}

bool NameFile(int descriptor, const std::string& path) noexcept {
  return linkat(AT_FDCWD, LinkName(descriptor).data(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

bool WriteAll(int descriptor, std::string_view bytes) noexcept {
  const FileSizeSignalBlocked blocked;
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written == 0) errno = EIO;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string ReasonOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return "there is no such file or folder";
    case EACCES:
    case EPERM:
      return "permission denied";
    case ENOSPC:
      return "the disk is full; free some space";
    case EDQUOT:
      return "the disk quota is used up; free some space";
    case EFBIG:
      return "the file is larger than this process may write; raise its limit (ulimit -f)";
    case EROFS:
      return "the disk is read-only";
    case ENAMETOOLONG:
      return "the name is too long";
    case ELOOP:
      return "it is a link that leads back to itself";
    case ENOMEM:
      return "out of memory";
    default:
      return std::generic_category().message(error);
  }
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string TargetOfLinks(const std::string& path) {
  std::error_code error;
  fs::path target = path;
  for (int links = 0; fs::is_symlink(target, error); ++links) {
    if (links == 40) return {};
    const fs::path next = fs::read_symlink(target, error);
    if (!error) target = target.parent_path() / next;
  }
  return target.string();
}

std::string TemporaryName(const std::string& folder) {
  static std::atomic<unsigned> count{0};
  return folder + std::string(kNameStart) + std::to_string(getpid()) + "-" + std::to_string(count++) +
         std::string(kNameEnd);
}

void HoldTemporary(int descriptor) noexcept { (void)flock(descriptor, LOCK_EX | LOCK_NB); }

void ClearStaleTemporaries(const std::string& folder) noexcept try {
  const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), closedir);
  while (const dirent* entry = open ? readdir(open.get()) : nullptr) {
    const pid_t process = ProcessOf(entry->d_name);
    if (!process || (process != getpid() && (kill(process, 0) == 0 || errno != ESRCH))) continue;
    RemoveUnlessHeld(dirfd(open.get()), folder, entry->d_name);
  }
} catch (const std::exception&) {  // left for the next write
}

}  // namespace glyphmotion
