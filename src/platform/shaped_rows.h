// SPDX-License-Identifier: MIT
// Texts that a run has shaped, by key and by the codes of their clusters.
#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include "platform/text_engine.h"

namespace glyphmotion {

/// `Row` has a `key` of all that it depends on, `clusters`, the `text` and the code of its `first` cluster. Codes are
/// given once and never again, so that what remembers pictures by code never shows another's. Any thread may ask.
template <typename Row>
class ShapedRows {
 public:
  std::shared_ptr<Row> Find(char32_t code) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& row : rows_) {
      if (code >= row->first && code - row->first < row->clusters.size()) return row;
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
