// SPDX-License-Identifier: MIT
#include "platform/atomic_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <filesystem>

#include "platform/portable/descriptors.h"

namespace glyphmotion {
namespace {

/// Replaces the folder `target` by `name`; an existing target gets the name `name`. Where the system cannot exchange
/// names, two renames leave a moment without a target.
bool Exchange(const std::string& name, const std::string& target) {
#ifdef RENAME_EXCHANGE
  if (renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
#endif
  const std::string aside = TemporaryName(FolderOf(target));
  if (std::rename(target.c_str(), aside.c_str()) != 0) return false;
  if (std::rename(name.c_str(), target.c_str()) == 0) return std::rename(aside.c_str(), name.c_str()) == 0;
  const int error = errno;
  (void)std::rename(aside.c_str(), target.c_str());
  errno = error;
  return false;
}

}  // namespace

struct AtomicFolder::State {
  std::string target, name;
  Descriptor hold;
  int error = 0;

  ~State() {
    std::error_code ignored;
    if (!name.empty()) std::filesystem::remove_all(name, ignored);
  }
};

AtomicFolder::AtomicFolder() noexcept = default;
AtomicFolder::AtomicFolder(AtomicFolder&&) noexcept = default;
AtomicFolder& AtomicFolder::operator=(AtomicFolder&&) noexcept = default;
AtomicFolder::~AtomicFolder() = default;

AtomicFolder AtomicFolder::Begin(const std::string& path, std::string& why) noexcept try {
  AtomicFolder begun;
  auto state = std::make_unique<State>();
  const std::size_t end = path.find_last_not_of('/');  // "frames/" names the folder "frames"
  state->target = TargetOfLinks(path.substr(0, end == std::string::npos ? 1 : end + 1));
  const std::string parent = FolderOf(state->target);
  ClearStaleTemporaries(parent);
  std::string name = TemporaryName(parent);
  if (state->target.empty() || mkdir(name.c_str(), 0777) != 0) {
    why = ReasonOf(state->target.empty() ? ELOOP : errno);
    return {};
  }
  state->name = std::move(name);
  state->hold = OpenFile(state->name, O_RDONLY | O_DIRECTORY);
  if (state->hold) HoldTemporary(*state->hold);
  begun.state_ = std::move(state);
  return begun;
} catch (const std::exception&) {
  why.assign("out of memory");
  return {};
}

bool AtomicFolder::WriteMember(const std::string& name, std::string_view bytes) noexcept try {
  if (!state_ || state_->error) return false;
  const Descriptor file = OpenFile(state_->name + "/" + name, O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (file && WriteAll(*file, bytes) && fsync(*file) == 0) return true;
  state_->error = errno;
  return false;
} catch (const std::exception&) {
  state_->error = ENOMEM;
  return false;
}

std::string AtomicFolder::Trouble() const { return state_ && state_->error ? ReasonOf(state_->error) : ""; }

bool AtomicFolder::Keep(std::string& why) noexcept try {
  const auto state = std::move(state_);
  if (!state) return false;
  if (!state->error && state->hold) (void)fsync(*state->hold);
  bool kept = !state->error && std::rename(state->name.c_str(), state->target.c_str()) == 0;
  if (kept) {
    state->name.clear();
  } else if (!state->error) {
    // rename() replaces anything but a folder with files in it; those are deleted together with `state`.
    kept = (errno == ENOTEMPTY || errno == EEXIST) && Exchange(state->name, state->target);
  }
  if (!kept) why = ReasonOf(state->error ? state->error : errno);
  if (const Descriptor parent = OpenFile(FolderOf(state->target), O_RDONLY | O_DIRECTORY)) (void)fsync(*parent);
  return kept;
} catch (const std::exception&) {
  why.assign("out of memory");
  return false;
}

}  // namespace glyphmotion
