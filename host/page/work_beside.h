// SPDX-License-Identifier: MIT
// The work beside a session's dialog, each kind of it in an order of its own.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "host/page/page_work.h"

namespace glyphmotion {

/// All functions return at once; the destructor ends what can be cancelled and waits for the rest.
class WorkBeside {
 public:
  explicit WorkBeside(WorkPlace place);
  ~WorkBeside();
  WorkBeside(const WorkBeside&) = delete;
  WorkBeside& operator=(const WorkBeside&) = delete;

  /// Builds this document after a pause, unless another one comes; gives up the one before.
  void Build(BuildOrder order);
  void CancelBuild();
  /// One after the other. Forgets what was wished before and not begun.
  void MakePictures(std::deque<PictureWish> wishes);
  /// `built`: a revision whose finished GIF is this very file.
  void Export(ExportOrder order, std::optional<int> built);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace glyphmotion
