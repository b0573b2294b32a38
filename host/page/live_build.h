// SPDX-License-Identifier: MIT
// The animation of the current document, built beside the dialog: a little after the last change, given up at the next.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "host/page/page_message.h"
#include "host/page/page_services.h"

namespace glyphmotion {

class LiveBuild {
 public:
  /// `folder`: a private folder for the document and the picture under way.
  LiveBuild(const PageServices& services, SendMessage send, std::string folder);
  ~LiveBuild();
  LiveBuild(const LiveBuild&) = delete;
  LiveBuild& operator=(const LiveBuild&) = delete;

  struct Wanted {
    int revision;
    std::string document;
    std::vector<std::string> words;  ///< more options of the command line
  };
  /// Builds this document after a pause, unless another one comes. Returns at once.
  void Request(Wanted wanted, bool hasText);
  /// The finished GIF of a revision, if it is the last one built.
  std::optional<std::string> GifOf(int revision);

 private:
  void Work();
  void Build(const Wanted& wanted);

  const PageServices& services_;
  const SendMessage send_;
  const std::string folder_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::optional<Wanted> wanted_;
  std::chrono::steady_clock::time_point due_{};
  bool ending_ = false;
  int finishedRevision_ = -1;
  std::string finished_;
  std::atomic<bool> cancel_{false};
  std::thread thread_;
};

}  // namespace glyphmotion
