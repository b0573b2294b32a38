// SPDX-License-Identifier: MIT
// A finished animation as a host with a window keeps it: copies of everything that arrived. What it checks it checks as
// if the plug-in were a stranger's.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "glyphmotion/host_contract.h"
#include "image/colour.h"

namespace glyphmotion {

struct AnimationFrame {
  std::vector<std::uint8_t> dib;  ///< a packed DIB that ReadDib accepts
  int delay = 0;                  ///< milliseconds
  int transparentIndex = -1;      ///< below 9 bits; -1: none
  bool standAlone = false;        ///< nothing of the frames before it stays
};

struct Animation {
  int width = 0, height = 0;  ///< pixels, 1 to 65535: no frame is larger
  bool test = false;          ///< of a Test: to be looked at, not to be kept
  Colour background = kNoColour;
  std::string comment;  ///< UTF-8
  std::vector<AnimationFrame> frames;
};

/// The whole file of an animation as a GIF. Frames with all colours get one palette for all of them; what is less than
/// half opaque becomes transparent. Empty, with one sentence in `error`, when there is no frame or out of memory.
std::vector<std::uint8_t> GifOf(const Animation& animation, std::string& error);

/// Puts an animation together from the calls of one task. Each function answers as HostCall has to: false for
/// anything out of order or out of form, and then nothing has changed.
class TaskReceiver {
 public:
  /// `delayUnit`: milliseconds in one unit of a delay.
  explicit TaskReceiver(int delayUnit) : delayUnit_(delayUnit) {}

  bool Open(const HostTaskRecord* record, bool test);
  /// `task` is what came as the first argument of the call. `dib` are the bytes behind the record's handle.
  bool AddImage(const void* task, const HostImageRecord* record, std::span<const std::uint8_t> dib);
  bool SetBackground(const void* task, std::uint64_t kind, std::uint64_t value);
  bool AddComment(const void* task, const char* text);
  /// The animation when an image came and the plug-in is content; nothing otherwise. The task is closed.
  std::optional<Animation> End(const void* task, bool finished);

  bool IsOpen() const { return task_ != nullptr; }

 private:
  int delayUnit_;
  const void* task_ = nullptr;        ///< the record's address, for comparison only
  std::uint32_t imagesPromised_ = 0;  ///< fewer may come, not more
  Palette palette_{};
  Animation animation_;
};

}  // namespace glyphmotion
