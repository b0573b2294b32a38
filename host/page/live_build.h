// SPDX-License-Identifier: MIT
// The animation of the current document, built beside the dialog: a little after the last change, given up at the next.
// The last one is kept for a page that comes later, or comes back.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

#include "host/page/page_work.h"
#include "host/page/wish_thread.h"

namespace glyphmotion {

class LiveBuild {
 public:
  /// The place must outlive this.
  explicit LiveBuild(const WorkPlace& place);

  /// Builds this document after a pause, unless another one comes; sends again what has been built of it already.
  /// Returns at once. False where nothing new is to be built.
  bool Request(BuildOrder order);
  void Cancel();
  /// Waits while a build runs, but not for ever, and not where `cancel` becomes true.
  void AwaitPause(const std::atomic<bool>& cancel);
  /// The finished GIF of a revision, if it is the last one built.
  std::optional<std::string> GifOf(int revision);

 private:
  void Build(const BuildOrder& order);
  void Send(PageMessage message);

  const WorkPlace& place_;
  const WorkPlace watched_;  ///< the same place; what is sent goes through Send
  std::mutex mutex_;         ///< of all that follows
  std::condition_variable paused_;
  std::optional<BuildOrder> wanted_;
  std::optional<PageMessage> last_;  ///< about what is wanted: that it runs, or its frames where they are not too many
  bool running_ = false;
  int finishedRevision_ = -1;
  std::string finished_;
  WishThread<BuildOrder> thread_;  // the last member: it uses the others
};

}  // namespace glyphmotion
