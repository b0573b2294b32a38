// SPDX-License-Identifier: MIT
#include "host/page/event_queue.h"

#include <chrono>

namespace glyphmotion {

void EventQueue::Post(Json event) {
  const std::lock_guard<std::mutex> lock(mutex_);
  events_.push_back(std::move(event));
  wake_.notify_all();
}

void EventQueue::End() {
  const std::lock_guard<std::mutex> lock(mutex_);
  ending_ = true;
  wake_.notify_all();
}

std::optional<Json> EventQueue::Next(int milliseconds) {
  std::unique_lock<std::mutex> lock(mutex_);
  wake_.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] { return ending_ || !events_.empty(); });
  if (ending_ || events_.empty()) return std::nullopt;
  Json event = std::move(events_.front());
  events_.pop_front();
  return event;
}

}  // namespace glyphmotion
