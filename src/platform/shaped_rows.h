// SPDX-License-Identifier: MIT
// Texts that a run has shaped, by key and by the codes of their clusters.
#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include "platform/text_engine.h"
#include "platform/text_run.h"
#include "platform/text_scripts.h"

namespace glyphmotion {

/// All that a row of the current run depends on.
inline std::string RowKey(const FontRequest& font, std::u32string_view text) {
  std::string key = font.family;
  key += '\0';
  key.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char32_t));
  for (const int value :
       {font.cellHeight, int{font.bold}, int{font.italic}, static_cast<int>(CurrentTextRun().options.direction)}) {
    key += ' ' + std::to_string(value);
  }
  return key;
}

/// Whether a text of the current run has to be shaped.
inline bool WantsShaping(std::u32string_view text) {
  return CurrentTextRun().options.direction == TextDirection::RightToLeft || NeedsShaping(text);
}

/// `take` gets each line of a text, between the breaks.
template <typename Take>
void ForEachLine(std::u32string_view text, Take take) {
  for (std::size_t begin = 0;;) {
    const std::size_t end = text.find(kLineBreak, begin);
    take(text.substr(begin, end == text.npos ? end : end - begin));
    if (end == text.npos) return;
    begin = end + 1;
  }
}

/// `Row` has a `key` of all that it depends on, `clusters`, the `text` and the code of its `first` cluster. Codes are
/// given once and never again, so that what remembers pictures by code never shows another's. Any thread may ask.
template <typename Row>
class ShapedRows {
 public:
  using Cluster = typename decltype(Row::clusters)::value_type;

  /// The cluster of a code, which keeps its row alive; null for other codes.
  std::shared_ptr<const Cluster> Find(char32_t code) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& row : rows_) {
      if (code >= row->first && code - row->first < row->clusters.size())
        return std::shared_ptr<const Cluster>(row, &row->clusters[code - row->first]);
    }
    return nullptr;
  }

  bool FindByKey(const std::string& key, ShapedText& text) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& row : rows_) {
      if (row->key != key) continue;
      text = row->text;
      return true;
    }
    return false;
  }

  /// Gives the clusters their codes; in the row's text they are indices until then.
  ShapedText Keep(Row row) {
    const std::lock_guard<std::mutex> lock(mutex_);
    row.first = next_;
    next_ += static_cast<char32_t>(row.clusters.size());
    for (char32_t& code : row.text.codes) {
      if (code != kLineBreak) code += row.first;
    }
    ShapedText text = row.text;
    rows_.push_front(std::make_shared<Row>(std::move(row)));
    if (rows_.size() > kMost) rows_.pop_back();
    return text;
  }

 private:
  static constexpr std::size_t kMost = 32;
  std::mutex mutex_;
  std::deque<std::shared_ptr<Row>> rows_;  // the newest first
  char32_t next_ = kFirstCluster;
};

}  // namespace glyphmotion
