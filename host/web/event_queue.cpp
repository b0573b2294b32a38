// SPDX-License-Identifier: MIT
// The session waits where the worker's messages come in: its stack is put aside meanwhile.
#include "host/page/event_queue.h"

#include <emscripten/emscripten.h>

// Until Module.wake is called, or for this long. (No arrow functions: the formatter takes them apart.)
EM_ASYNC_JS(void, WaitForPage, (int milliseconds), {
  const waiting = new Promise(function(resolve) {
    const timer = setTimeout(resolve, milliseconds);
    Module.wake = function() {
      clearTimeout(timer);
      resolve();
    };
  });
  Module.idle();
  await waiting;
});

namespace glyphmotion {

void EventQueue::Post(Json event) { events_.push_back(std::move(event)); }

void EventQueue::End() { ending_ = true; }

std::optional<Json> EventQueue::Next(int milliseconds) {
  if (events_.empty() && !ending_) WaitForPage(milliseconds);
  if (ending_ || events_.empty()) return std::nullopt;
  Json event = std::move(events_.front());
  events_.pop_front();
  return event;
}

}  // namespace glyphmotion
