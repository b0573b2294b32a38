// SPDX-License-Identifier: MIT
// The animation of the current document, built beside the dialog: a little after the last change, given up at the next.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/page/page_message.h"
#include "host/page/page_services.h"
#include "host/page/wish_thread.h"

namespace glyphmotion {

class LiveBuild {
 public:
  /// `folder`: a private folder for the document and the picture under way.
  LiveBuild(const PageServices& services, SendMessage send, std::string folder);
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
  void Build(const Wanted& wanted);

  const PageServices& services_;
  const SendMessage send_;
  const std::string folder_;
  std::mutex mutex_;  ///< of what is finished
  int finishedRevision_ = -1;
  std::string finished_;
  WishThread<Wanted> thread_;  // the last member: it uses the others
};

}  // namespace glyphmotion
