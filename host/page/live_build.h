// SPDX-License-Identifier: MIT
// The animation of the current document, built beside the dialog: a little after the last change, given up at the next.
#pragma once

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

  /// Builds this document after a pause, unless another one comes. Returns at once.
  void Request(BuildOrder order);
  void Cancel() { thread_.Set({}); }
  /// The finished GIF of a revision, if it is the last one built.
  std::optional<std::string> GifOf(int revision);

 private:
  void Build(const BuildOrder& order);

  const WorkPlace& place_;
  std::mutex mutex_;  ///< of what is finished
  int finishedRevision_ = -1;
  std::string finished_;
  WishThread<BuildOrder> thread_;  // the last member: it uses the others
};

}  // namespace glyphmotion
