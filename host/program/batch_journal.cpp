// SPDX-License-Identifier: MIT
#include "host/program/batch_journal.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

#include "glyphmotion/version.h"
#include "platform/digest.h"

namespace glyphmotion {
namespace fs = std::filesystem;
namespace {

constexpr const char* kEnding = ".journal";

// Another version may draw another picture.
std::uint64_t DigestOfLine(const std::string& line) { return DigestOf(GLYPHMOTION_VERSION "\n" + line); }

std::int64_t TimeOf(const fs::path& path) {
  std::error_code error;
  const auto time = fs::last_write_time(path, error);
  return error ? INT64_MIN : static_cast<std::int64_t>(time.time_since_epoch().count());
}

// One write each: what a killed process leaves is whole.
void Append(int file, std::uint64_t first, std::uint64_t second) {
  char text[40];
  const int size = std::snprintf(text, sizeof text, "%016" PRIx64 " %016" PRIx64 "\n", first, second);
  (void)!write(file, text, static_cast<std::size_t>(size));
}

}  // namespace

std::string PlaceOf(const std::string& path) {
  std::error_code error;
  const fs::path place = fs::weakly_canonical(fs::absolute(path, error), error);
  return error ? path : (place.has_filename() ? place : place.parent_path()).string();
}

BatchJournal::BatchJournal(const std::string& jobsFile, const std::string& shard) {
  if (jobsFile.empty()) return;
  const std::string own = jobsFile + (shard.empty() ? "" : "." + shard) + kEnding;
  file_ = open(own.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  std::error_code error;
  // The first line holds the time of the file system's clock at which the journal began.
  if (file_ >= 0 && fs::file_size(own, error) == 0) Append(file_, 0, static_cast<std::uint64_t>(TimeOf(own)));
  // A full disk or a lost machine may have left half a line.
  if (file_ >= 0) (void)!write(file_, "\n", 1);
  const fs::path place = fs::path(PlaceOf(jobsFile));
  folder_ = place.parent_path().string();
  std::vector<fs::path> journals;
  for (const auto& entry : fs::directory_iterator(place.parent_path(), error)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(place.filename().string()) && name.ends_with(kEnding)) journals.push_back(entry.path());
  }
  std::sort(journals.begin(), journals.end(), [](const auto& a, const auto& b) { return TimeOf(a) < TimeOf(b); });
  for (const fs::path& journal : journals) Load(journal.string());
}

BatchJournal::~BatchJournal() {
  if (file_ >= 0) close(file_);
}

void BatchJournal::Load(const std::string& path) {
  std::ifstream file(path);
  std::uint64_t output = 0, line = 0;
  for (std::string text; std::getline(file, text);) {
    if (std::sscanf(text.c_str(), "%" SCNx64 " %" SCNx64, &output, &line) != 2) continue;
    if (output == 0) {
      begun_ = std::min(begun_, static_cast<std::int64_t>(line));
    } else {
      made_[output] = line;
    }
  }
  if (!file.is_open() || file.bad()) unread_ = path;
}

// By its place beside the journal, so that the entries hold after the folder has been moved or copied.
std::uint64_t BatchJournal::DigestOfPlace(const std::string& output) const {
  return DigestOf(fs::path(PlaceOf(output)).lexically_relative(folder_).generic_string());
}

bool BatchJournal::Made(const std::string& output, const std::string& line) {
  std::error_code error;
  if (!fs::exists(output, error)) return false;
  const auto entry = made_.find(DigestOfPlace(output));
  if (entry != made_.end()) return entry->second == DigestOfLine(line);
  // Made without an entry: the process was killed in between, or there is no journal.
  if (begun_ != INT64_MAX && TimeOf(output) < begun_) return false;
  Add(output, line);
  return true;
}

void BatchJournal::Add(const std::string& output, const std::string& line) {
  if (file_ >= 0) Append(file_, DigestOfPlace(output), DigestOfLine(line));
}

}  // namespace glyphmotion
