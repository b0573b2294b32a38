// SPDX-License-Identifier: MIT
// What a page has sent and its session has not read.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "host/page/page_message.h"

namespace glyphmotion {

class EventQueue {
 public:
  /// From any thread; both return at once.
  void Post(Json event);
  void End();

  bool Ended() const { return ending_; }
  /// Waits for an event, at most this long; nothing when none has come or the queue has ended.
  std::optional<Json> Next(int milliseconds);

 private:
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Json> events_;
  std::atomic<bool> ending_{false};
};

}  // namespace glyphmotion
