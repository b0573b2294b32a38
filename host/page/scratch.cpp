// SPDX-License-Identifier: MIT
#include "host/page/scratch.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

constexpr char kPrefix[] = "glyphmotion-", kLock[] = "lock";

// Locked as long as the process lives; -1 when another one holds it.
int LockIn(const fs::path& folder, int flags) {
  const int file = open((folder / kLock).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, 0600);
  if (file >= 0 && flock(file, LOCK_EX | LOCK_NB) == 0) return file;
  if (file >= 0) close(file);
  return -1;
}

// Removes what killed processes of this user have left.
void ClearStale(const fs::path& parent) {
  std::error_code error;
  for (fs::directory_iterator at(parent, error), end; !error && at != end; at.increment(error)) {
    const fs::path& folder = at->path();
    struct stat about {};
    if (!folder.filename().string().starts_with(kPrefix) || lstat(folder.c_str(), &about) != 0 ||
        !S_ISDIR(about.st_mode) || about.st_uid != getuid()) {
      continue;
    }
    const int lock = LockIn(folder, 0);
    if (lock < 0) continue;
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    close(lock);
  }
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  if (error) return;
  ClearStale(parent);
  std::string pattern = (parent / (std::string(kPrefix) + "XXXXXX")).string();
  if (!::mkdtemp(pattern.data())) return;
  path_ = pattern;
  lock_ = LockIn(path_, O_CREAT);
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  if (!path_.empty()) fs::remove_all(path_, error);
  if (lock_ >= 0) close(lock_);
}

}  // namespace glyphmotion
