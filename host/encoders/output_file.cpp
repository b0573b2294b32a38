// SPDX-License-Identifier: MIT
#include "host/encoders/output_file.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <random>
#include <utility>

namespace glyphmotion {
namespace fs = std::filesystem;
namespace {

std::string CannotWrite(const fs::path& path, const std::string& why) {
  return std::string("'").append(path.string()).append("' cannot be written: ").append(why);
}

// A hidden name beside the target, not in use.
fs::path TemporaryBeside(const fs::path& target) {
  std::random_device random;
  char tail[20];
  std::snprintf(tail, sizeof tail, ".%08x.part", static_cast<unsigned>(random()));
  return target.parent_path() / std::string(".").append(target.filename().string()).append(tail);
}

// A link is followed, so that the file it names is the one replaced.
fs::path Resolved(const std::string& target) {
  std::error_code error;
  fs::path path = target;
  for (int links = 0; links < 40 && fs::is_symlink(path, error); ++links) {  // one that leads nowhere yet as well
    const fs::path next = fs::read_symlink(path, error);
    if (!error) path = path.parent_path() / next;
  }
  if (path.filename().empty()) path = path.parent_path();  // "frames/" names the folder "frames"
  return path;
}

bool IsNumberedPicture(const fs::directory_entry& entry) {
  const std::string stem = entry.path().stem().string();
  return entry.is_regular_file() && entry.path().extension() == ".png" && stem.size() >= 4 &&
         std::all_of(stem.begin(), stem.end(), [](unsigned char c) { return std::isdigit(c); });
}

}  // namespace

Output Output::File(const std::string& target, std::string& error) {
  Output output;
  std::error_code code;
  output.target_ = Resolved(target);
  const fs::file_status status = fs::status(output.target_, code);
  if (fs::is_symlink(output.target_, code)) {
    error = CannotWrite(target, "it is a link that leads back to itself");
    return {};
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    error = CannotWrite(target, fs::is_directory(status) ? "it is a folder; name a file" : "it is no ordinary file");
    return {};
  }
  const fs::path temporary = TemporaryBeside(output.target_);
  output.file_ = std::fopen(temporary.string().c_str(), "wbx");
  if (!output.file_) {
    error = CannotWrite(target, std::string(std::strerror(errno)) + "; check the folder");
    return {};
  }
  output.temporary_ = temporary;
  if (fs::exists(status)) fs::permissions(temporary, status.permissions(), code);
  return output;
}

Output Output::Folder(const std::string& target, std::string& error) {
  Output output;
  std::error_code code;
  output.target_ = Resolved(target);
  output.folder_ = true;
  if (fs::exists(output.target_, code)) {
    if (!fs::is_directory(output.target_, code)) {
      error = CannotWrite(target, "it is a file; name a folder");
      return {};
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(output.target_, code)) {
      if (IsNumberedPicture(entry)) continue;
      error =
          CannotWrite(target, "the folder holds '" + entry.path().filename().string() + "'; name a new or empty one");
      return {};
    }
  }
  const fs::path temporary = TemporaryBeside(output.target_);
  if (!fs::create_directory(temporary, code)) {
    error = CannotWrite(target, code.message() + "; check the folder it is to stand in");
    return {};
  }
  output.temporary_ = temporary;
  return output;
}

Output::Output(Output&& other) noexcept { *this = std::move(other); }

Output& Output::operator=(Output&& other) noexcept {
  if (this == &other) return *this;
  Discard();
  target_ = std::exchange(other.target_, {});
  temporary_ = std::exchange(other.temporary_, {});
  file_ = std::exchange(other.file_, nullptr);
  folder_ = other.folder_;
  failed_ = other.failed_;
  return *this;
}

Output::~Output() { Discard(); }

void Output::Discard() noexcept {
  if (file_) std::fclose(std::exchange(file_, nullptr));
  std::error_code code;
  if (!temporary_.empty()) fs::remove_all(temporary_, code);
  temporary_.clear();
}

bool Output::Write(std::span<const std::uint8_t> bytes) {
  if (!file_ || std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) failed_ = true;
  return !failed_;
}

bool Output::WriteMember(const std::string& name, std::span<const std::uint8_t> bytes) {
  std::FILE* file = std::fopen((temporary_ / name).string().c_str(), "wb");
  bool good = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (file) good = std::fclose(file) == 0 && good;
  failed_ = failed_ || !good;
  return good;
}

std::string Output::Refusal() const { return CannotWrite(target_, "the disk is full or refuses; free some space"); }

std::string Output::Keep() {
  if (file_ && std::fclose(std::exchange(file_, nullptr)) != 0) failed_ = true;
  if (failed_ || temporary_.empty()) return Refusal();
  std::error_code code;
  fs::path old;
  if (folder_ && fs::exists(target_, code)) {
    old = TemporaryBeside(target_);
    fs::rename(target_, old, code);
    if (code) return CannotWrite(target_, code.message());
  }
  fs::rename(temporary_, target_, code);
  if (code) {
    const std::string why = code.message();
    if (!old.empty()) fs::rename(old, target_, code);
    return CannotWrite(target_, why);
  }
  temporary_.clear();
  if (!old.empty()) fs::remove_all(old, code);
  return {};
}

}  // namespace glyphmotion
