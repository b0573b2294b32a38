// SPDX-License-Identifier: MIT
#include "host/recording/player.h"

#include <utility>

#include "host/encoders/dib_reader.h"

namespace glyphmotion {

Player::Player(std::shared_ptr<const Animation> animation, std::int64_t now)
    : animation_(std::move(animation)), screen_(animation_->width, animation_->height), frame_(-1), since_(now) {
  ShowNext();
}

std::int64_t Player::DelayOf(int frame) const {
  const int delay = animation_->frames[static_cast<std::size_t>(frame)].delay;
  return delay <= 10 ? 100 : delay;
}

void Player::ShowNext() {
  frame_ = (frame_ + 1) % FrameCount();
  const AnimationFrame& frame = animation_->frames[static_cast<std::size_t>(frame_)];
  if (frame_ == 0) screen_.Clear();
  screen_.Show(ReadDib(frame.dib), frame.transparentIndex, frame.standAlone);
}

bool Player::Advance(std::int64_t now) {
  if (paused_ || FrameCount() < 2) return false;
  // After a long interval (a build ran, the machine slept) playback continues from here instead of catching up.
  constexpr std::int64_t kLongestGap = 2000;
  if (now - since_ > DelayOf(frame_) + kLongestGap) since_ = now - DelayOf(frame_);
  bool changed = false;
  while (now - since_ >= DelayOf(frame_)) {
    since_ += DelayOf(frame_);
    ShowNext();
    changed = true;
  }
  return changed;
}

void Player::Pause(bool pause, std::int64_t now) {
  if (pause != paused_) since_ = now - since_;
  paused_ = pause;
}

void Player::Step(int direction) {
  const int target = (frame_ + direction + FrameCount()) % FrameCount();
  if (!paused_) since_ = 0;
  paused_ = true;
  // A frame may depend on all previous ones.
  if (target <= frame_) frame_ = -1;
  do ShowNext();
  while (frame_ != target);
}

}  // namespace glyphmotion
