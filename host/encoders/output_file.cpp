// SPDX-License-Identifier: MIT
#include "host/encoders/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "platform/ascii.h"

namespace glyphmotion {
namespace fs = std::filesystem;
namespace {

std::string CannotWrite(const std::string& path, const std::string& why) {
  return "'" + path + "' cannot be written: " + why;
}

std::string_view TextOf(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool IsOfAnimation(const fs::directory_entry& entry) {
  const std::string name = entry.path().filename().string();
  if (name == kTimingFile || name == kConcatFile) return entry.is_regular_file();
  const std::string stem = entry.path().stem().string();
  return entry.is_regular_file() && entry.path().extension() == ".png" && stem.size() >= 4 &&
         std::all_of(stem.begin(), stem.end(), IsDigit);
}

// Why a folder must not be replaced; empty when replacing it is safe.
std::string FolderTrouble(const std::string& target) {
  std::error_code code;
  if (!fs::exists(target, code)) return {};
  if (!fs::is_directory(target, code)) return "it is a file; name a folder";
  for (const fs::directory_entry& entry : fs::directory_iterator(target, code)) {
    if (!IsOfAnimation(entry))
      return "the folder contains '" + entry.path().filename().string() + "'; name a new or empty one";
  }
  return {};
}

}  // namespace

Output Output::File(const std::string& target, std::string& error) {
  Output output;
  std::string why;
  output.target_ = target;
  output.file_ = AtomicFile::Begin(target, why);
  if (!output) error = CannotWrite(target, why);
  return output;
}

Output Output::Folder(const std::string& target, std::string& error) {
  Output output;
  output.target_ = target;
  std::string why = FolderTrouble(target);
  if (why.empty()) output.folder_ = AtomicFolder::Begin(target, why);
  if (!output) error = CannotWrite(target, why);
  return output;
}

Output Output::Stream() {
  Output output;
  output.target_ = "standard output";
  output.stream_ = true;
  return output;
}

Output Output::Memory(std::vector<std::uint8_t>& bytes) {
  Output output;
  output.memory_ = &bytes;
  return output;
}

bool Output::Write(std::span<const std::uint8_t> bytes) {
  bytes_ += bytes.size();
  if (memory_) {
    memory_->insert(memory_->end(), bytes.begin(), bytes.end());
    return true;
  }
  if (!stream_) return file_.Write(TextOf(bytes));
  errno = 0;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (!written) streamTrouble_ = std::strerror(errno ? errno : EIO);
  return written;
}

bool Output::WriteMember(const std::string& name, std::span<const std::uint8_t> bytes) {
  bytes_ += bytes.size();
  return folder_.WriteMember(name, TextOf(bytes));
}

std::string Output::Refusal() const {
  if (stream_) return target_ + " cannot be written: " + streamTrouble_;
  return CannotWrite(target_, file_ ? file_.Trouble() : folder_.Trouble());
}

std::string Output::Keep() {
  std::string why;
  if (memory_) return {};
  if (stream_) {
    errno = 0;
    if (std::fflush(stdout) == 0) return {};
    streamTrouble_ = std::strerror(errno ? errno : EIO);
    return Refusal();
  }
  const bool kept = file_ ? file_.Keep(why) : folder_.Keep(why);
  return kept ? "" : CannotWrite(target_, why);
}

}  // namespace glyphmotion
