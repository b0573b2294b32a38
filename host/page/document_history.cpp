// SPDX-License-Identifier: MIT
#include "host/page/document_history.h"

#include <algorithm>
#include <unordered_set>

namespace glyphmotion {
namespace {

constexpr auto kOneStep = std::chrono::seconds(1);

std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

template <typename Lines>
std::string Joined(const Lines& lines) {
  std::string text;
  for (const auto& line : lines) text.append(*line).append("\n");
  return text;
}

}  // namespace

DocumentHistory::State DocumentHistory::StateOf(std::string_view text) const {
  const State* neighbour = states_.empty() ? nullptr : &states_[at_];
  State state;
  for (const std::string_view line : SplitLines(text)) {
    const std::size_t i = state.size();
    const bool same = neighbour && i < neighbour->size() && *(*neighbour)[i] == line;
    state.push_back(same ? (*neighbour)[i] : std::make_shared<const std::string>(line));
  }
  return state;
}

void DocumentHistory::Begin(std::string_view text) {
  states_.clear();
  at_ = 0;
  tag_.clear();
  states_.push_back(StateOf(text));
}

bool DocumentHistory::Record(std::string_view text, const std::string& tag, Clock::time_point now) {
  State state = StateOf(text);
  if (state == states_[at_]) return false;
  const bool goesOn = at_ > 0 && !CanRedo() && !tag.empty() && tag == tag_ && now - recorded_ < kOneStep;
  states_.resize(at_ + (goesOn ? 0 : 1));
  states_.push_back(std::move(state));
  at_ = states_.size() - 1;
  tag_ = tag;
  recorded_ = now;
  return true;
}

std::string DocumentHistory::GoTo(std::size_t to) {
  tag_.clear();
  const std::string from = Text();
  at_ = to;
  return LinesThatDiffer(from, Text());
}

std::string DocumentHistory::Undo() { return GoTo(at_ - 1); }
std::string DocumentHistory::Redo() { return GoTo(at_ + 1); }

std::string DocumentHistory::Text() const { return Joined(states_[at_]); }

std::string LinesThatDiffer(std::string_view from, std::string_view to) {
  const std::vector<std::string_view> before = SplitLines(from), after = SplitLines(to);
  const std::unordered_set<std::string_view> known(before.begin(), before.end());
  std::string text;
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (i == 0 || !known.contains(after[i])) text.append(after[i]).append("\n");
  }
  return text;
}

}  // namespace glyphmotion
