// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "host/encoders/screen.h"
#include "host/recording/animation.h"

namespace glyphmotion {

/// Plays an animation in a loop. It has no clock: the owner passes the time, in milliseconds from any origin, never
/// decreasing. Delays of 10 ms or less last 100 ms, as in browsers and viewers.
class Player {
 public:
  /// Shows the first frame, running. The animation has at least one frame.
  Player(std::shared_ptr<const Animation> animation, std::int64_t now);

  /// Advances to the frame that is due. True when the screen has changed.
  bool Advance(std::int64_t now);
  void Pause(bool pause, std::int64_t now);
  /// Steps one frame forwards or backwards, wrapping around, and pauses.
  void Step(int direction);

  bool IsPaused() const { return paused_; }
  int Frame() const { return frame_; }
  int FrameCount() const { return static_cast<int>(animation_->frames.size()); }
  const Animation& Shown() const { return *animation_; }
  const Screen& Picture() const { return screen_; }

 private:
  std::int64_t DelayOf(int frame) const;
  void ShowNext();

  std::shared_ptr<const Animation> animation_;
  Screen screen_;
  int frame_ = 0;
  std::int64_t since_ = 0;  ///< when the frame was first shown; while paused: how long it has been shown
  bool paused_ = false;
};

}  // namespace glyphmotion
