// SPDX-License-Identifier: MIT
// The states of a document for undo and redo. A state is the document's text, kept as lines that neighbours share, so
// that thousands of them cost little.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace glyphmotion {

class DocumentHistory {
 public:
  using Clock = std::chrono::steady_clock;

  /// Forgets everything; `text` is the only state.
  void Begin(std::string_view text);
  /// A new state after the current one; what was undone is forgotten. Changes with the same tag that follow one another
  /// within a second are one step; an empty tag is a step of its own. False when nothing differs.
  bool Record(std::string_view text, const std::string& tag, Clock::time_point now = Clock::now());

  bool CanUndo() const { return at_ > 0; }
  bool CanRedo() const { return at_ + 1 < states_.size(); }
  /// The lines that bring the neighbouring state back, as a document's text; `from` is what the dialog holds.
  std::string Undo();
  std::string Redo();

  std::string Text() const;

 private:
  using Line = std::shared_ptr<const std::string>;
  using State = std::vector<Line>;

  State StateOf(std::string_view text) const;
  std::string GoTo(std::size_t to);

  std::vector<State> states_;
  std::size_t at_ = 0;
  std::string tag_;
  Clock::time_point recorded_{};
};

/// The lines of `to` that `from` does not have, between the first line of `to` and its last: taking them turns a dialog
/// that holds `from` into one that holds `to`.
std::string LinesThatDiffer(std::string_view from, std::string_view to);

}  // namespace glyphmotion
