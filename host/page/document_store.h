// SPDX-License-Identifier: MIT
// Documents that the program keeps for people: the last ones opened or saved, and those that were not saved when the
// program died. One file each, so that several programs may share the folder.
#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "host/page/page_message.h"

namespace glyphmotion {

struct KeptDocument {
  std::string name;      ///< "opening.gm4"
  std::string path;      ///< where it was opened from; empty: only its contents are known
  std::string document;  ///< its text
  std::string text, effect;
  std::string options;  ///< PictureOptions::Lines
};

/// Any thread may call it. A folder that cannot be written keeps nothing, and nobody is bothered.
class DocumentStore {
 public:
  /// `owner` begins the names of its unsaved documents, one word; empty: a word of this process's own.
  explicit DocumentStore(std::string folder, std::string owner = {});
  DocumentStore(const DocumentStore&) = delete;
  DocumentStore& operator=(const DocumentStore&) = delete;
  ~DocumentStore();

  /// Arrays of {key, name, text, effect}, the last one first.
  Json Recent() const;
  Json Rescued() const;
  std::optional<KeptDocument> Find(const std::string& key) const;

  /// The options of the last document with this text that was opened or saved; empty: none.
  std::string OptionsOf(const std::string& document) const;

  void Remember(const KeptDocument& document);
  /// Keeps a session's unsaved document until it is dropped; `session` is a word of letters and digits. False when it
  /// cannot be written.
  bool KeepUnsaved(const std::string& session, const KeptDocument& document);
  void DropUnsaved(const std::string& session);
  /// A session begins: what an earlier one of its name left unsaved. While it goes on, that is not offered to others.
  std::optional<KeptDocument> TakeUp(const std::string& session);
  void Release(const std::string& session);
  void Forget(const std::string& key);

  /// Keeps a font file for the documents that use it, the last ones only; its path, or nothing when the disk is full.
  /// `name` is a plain file name, and that of the path ends with it.
  std::string KeepFont(const std::string& name, const std::string& bytes);

 private:
  std::string UnsavedPath(const std::string& session) const;
  Json List(const std::string& sub, std::size_t most) const;
  bool IsOfTheDead(const std::string& fileName) const;

  const std::string folder_;
  std::string own_;
  int lock_ = -1;  ///< held for as long as the process lives
  std::set<std::string> active_;
  mutable std::mutex mutex_;
};

}  // namespace glyphmotion
