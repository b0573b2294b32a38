// SPDX-License-Identifier: MIT
#include "platform/atomic_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <utility>
#include <vector>

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

// Members have no names until Keep, where the system can do that: they vanish with a process that is killed. Many of
// them would use up the process's descriptors, so that the hidden folder is made after so many.
constexpr std::size_t kMostUnnamed = 64;

struct AtomicFolder::State {
  std::string target, parent;
  std::string name;  ///< of the hidden folder; empty until there is one
  Descriptor hold;
  std::vector<std::pair<std::string, Descriptor>> unnamed;
  int error = 0;

  bool MakeFolder() {
    std::string wanted = TemporaryName(parent);
    if (mkdir(wanted.c_str(), 0777) != 0) return false;
    name = std::move(wanted);
    hold = OpenFile(name, O_RDONLY | O_DIRECTORY);
    if (hold) HoldTemporary(*hold);
    return true;
  }
  /// The hidden folder with all members so far; errno has the reason if it cannot be made.
  bool Settle() {
    if (name.empty() && !MakeFolder()) return false;
    for (const auto& [member, file] : unnamed) {
      if (!NameFile(*file, name + "/" + member)) return false;
    }
    unnamed.clear();
    return true;
  }
  bool Write(const std::string& member, std::string_view bytes) {
    if (name.empty() && unnamed.size() < kMostUnnamed) {
      Descriptor file = OpenUnnamed(parent);
      if (file) {
        if (!WriteAll(*file, bytes) || fsync(*file) != 0) return false;
        unnamed.emplace_back(member, std::move(file));
        return true;
      }
    }
    if (!Settle()) return false;
    const Descriptor file = OpenFile(name + "/" + member, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    return file && WriteAll(*file, bytes) && fsync(*file) == 0;
  }

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
  state->parent = FolderOf(state->target);
  ClearStaleTemporaries(state->parent);
  if (state->target.empty() || (!OpenUnnamed(state->parent) && !state->MakeFolder())) {
    why = ReasonOf(state->target.empty() ? ELOOP : errno);
    return {};
  }
  begun.state_ = std::move(state);
  return begun;
} catch (const std::exception&) {
  why.assign("out of memory");
  return {};
}

bool AtomicFolder::WriteMember(const std::string& name, std::string_view bytes) noexcept try {
  if (!state_ || state_->error) return false;
  if (state_->Write(name, bytes)) return true;
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
  if (!state->error && !state->Settle()) state->error = errno;
  if (!state->error && state->hold) (void)fsync(*state->hold);
  bool kept = !state->error && std::rename(state->name.c_str(), state->target.c_str()) == 0;
  if (kept) {
    state->name.clear();
  } else if (!state->error) {
    // rename() replaces anything but a folder with files in it; those are deleted together with `state`.
    kept = (errno == ENOTEMPTY || errno == EEXIST) && Exchange(state->name, state->target);
  }
  if (!kept) why = ReasonOf(state->error ? state->error : errno);
  if (const Descriptor parent = OpenFile(state->parent, O_RDONLY | O_DIRECTORY)) (void)fsync(*parent);
  return kept;
} catch (const std::exception&) {
  why.assign("out of memory");
  return false;
}

}  // namespace glyphmotion
