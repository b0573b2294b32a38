// SPDX-License-Identifier: MIT
// What a batch has made, for --resume.
//
// Outputs appear whole or not at all, so an existing output has been made, and a process that is killed at any moment
// leaves nothing that would be made twice. The journal beside the file of jobs tells from which line: after a change of
// the line the output is made again, and so is one that is older than the journal.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace glyphmotion {

class BatchJournal {
 public:
  /// Opens JOBS.jsonl.journal, or JOBS.jsonl.I-of-N.journal for a shard ("I-of-N"), and reads all journals of the file.
  /// Without a name of a file, or where it cannot be written, nothing is noted down.
  BatchJournal(const std::string& jobsFile, const std::string& shard);
  ~BatchJournal();
  BatchJournal(const BatchJournal&) = delete;

  /// A journal that could not be read; without it, old outputs would pass for those of changed lines. Empty: none.
  const std::string& Unread() const { return unread_; }
  /// True when the output exists and was made from this line.
  bool Made(const std::string& output, const std::string& line);
  /// Notes that the output has been made. May be called from several threads.
  void Add(const std::string& output, const std::string& line);

 private:
  void Load(const std::string& path);
  std::uint64_t DigestOfPlace(const std::string& output) const;

  int file_ = -1;
  std::string unread_;
  std::string folder_;                                     // of the file of jobs
  std::int64_t begun_ = INT64_MAX;                         // the first journal's time, in ticks of the file system
  std::unordered_map<std::uint64_t, std::uint64_t> made_;  // digests: output to line
};

/// The name of a file in one form, for comparison.
std::string PlaceOf(const std::string& path);

}  // namespace glyphmotion
