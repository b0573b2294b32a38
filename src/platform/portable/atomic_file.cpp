// SPDX-License-Identifier: MIT
// Files that get their name when they are complete. A file opened with O_TMPFILE has no name and vanishes with its
// process. linkat() names it at the end, but only with an unused name. So a file that replaces another gets a temporary
// name first, and rename() follows immediately.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files.h"
#include "platform/portable/descriptors.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 16;
constexpr int kAttempts = 100;

/// Skips names that exist.
Descriptor OpenNamed(const std::string& folder, std::string& name) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    name = TemporaryName(folder);
    Descriptor file = OpenFile(name, O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (file) return file;
    if (errno != EEXIST) break;
  }
  name.clear();
  return Descriptor();
}

/// Keeps the owner if this user may change it; set-user-id and similar bits are not passed to another owner.
bool TakeRights(int descriptor, const struct stat& old) {
  const bool same = fchown(descriptor, old.st_uid, old.st_gid) == 0;
  if (!same) (void)!fchown(descriptor, static_cast<uid_t>(-1), old.st_gid);
  return fchmod(descriptor, old.st_mode & (same ? 07777 : 0777)) == 0;
}

/// Whether `target` can be replaced or created; `exists` says which. A file without any write permission counts as
/// read-only for the superuser too.
bool MayWrite(const std::string& target, struct stat& status, bool& exists, std::string& why) {
  exists = stat(target.c_str(), &status) == 0;
  if (!exists) {
    if (errno == ENOENT) return true;
    why = ReasonOf(errno);
  } else if (S_ISDIR(status.st_mode)) {
    why = "it is a folder; name a file";
  } else if (!S_ISREG(status.st_mode)) {
    why = "it is not a regular file";
  } else if (!(status.st_mode & 0222) || faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
    why = "the file is read-only; make it writable or choose another name";
  } else {
    return true;
  }
  return false;
}

}  // namespace

struct AtomicFile::State {
  std::string target, folder;
  std::string name;  ///< the temporary name; empty if there is none
  Descriptor file;
  std::string buffer;
  int error = 0;

  ~State() { Forget(); }
  void Forget() noexcept {
    if (!name.empty()) unlink(name.c_str());
    name.clear();
  }
  bool Flush() noexcept {
    if (!error && !WriteAll(*file, buffer)) error = errno;
    buffer.clear();
    return !error;
  }
  bool Rename() noexcept {
    if (std::rename(name.c_str(), target.c_str()) != 0) return false;
    name.clear();
    return true;
  }
  bool GiveName();
};

bool AtomicFile::State::GiveName() {
  if (!name.empty()) return Rename();
  if (NameFile(*file, target)) return true;
  for (int attempt = 0; errno == EEXIST && attempt < kAttempts; ++attempt) {
    name = TemporaryName(folder);
    if (NameFile(*file, name)) return Rename();
    name.clear();
  }
  return false;
}

void AtomicFile::Closer::operator()(State* state) const noexcept { delete state; }

AtomicFile::Owner AtomicFile::Open(const std::string& path, std::string& why) {
  Owner state(new State);
  state->target = TargetOfLinks(path);
  struct stat old;
  bool exists = false;
  if (state->target.empty()) {
    why = ReasonOf(ELOOP);
    return {};
  }
  if (!MayWrite(state->target, old, exists, why)) return {};
  state->folder = FolderOf(state->target);
  state->buffer.reserve(kBuffer);
  ClearStaleTemporaries(state->folder);
  state->file = OpenUnnamed(state->folder);
  if (!state->file) state->file = OpenNamed(state->folder, state->name);
  if (state->file) HoldTemporary(*state->file);
  if (!state->file || (exists && !TakeRights(*state->file, old))) {
    why = ReasonOf(errno);
    return {};
  }
  return state;
}

bool AtomicFile::Write(std::string_view bytes) noexcept {
  if (!state_ || state_->error) return false;
  if (bytes.size() > kBuffer - state_->buffer.size() && !state_->Flush()) return false;
  if (bytes.size() < kBuffer) {
    state_->buffer.append(bytes);  // which has enough capacity
  } else if (!WriteAll(*state_->file, bytes)) {
    state_->error = errno;
  }
  return !state_->error;
}

std::string AtomicFile::Trouble() const { return state_ && state_->error ? ReasonOf(state_->error) : ""; }

bool AtomicFile::Finish(State& state, std::string& why) {
  if (!state.Flush() || fsync(*state.file) != 0 || !state.GiveName()) {
    const int error = state.error ? state.error : errno;
    state.Forget();
    why = ReasonOf(error);
    return false;
  }
  // Flushing the folder makes the name durable. Some file systems cannot do that; the file is kept all the same.
  if (const Descriptor folder = OpenFile(state.folder, O_RDONLY | O_DIRECTORY)) (void)fsync(*folder);
  return true;
}

}  // namespace glyphmotion
