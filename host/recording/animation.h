// SPDX-License-Identifier: MIT
// A finished animation as a host with a window keeps it: copies of everything that was received. All input is
// validated, because the plug-in may be anyone's.
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
  bool standAlone = false;        ///< nothing of the previous frames remains
};

struct Animation {
  int width = 0, height = 0;  ///< pixels, 1 to 65535: no frame is larger
  bool test = false;          ///< of a Test: shown, but not saved
  Colour background = kNoColour;
  std::string comment;  ///< UTF-8
  std::vector<AnimationFrame> frames;
};

/// The animation as a complete GIF file. True-colour frames share one palette; pixels less than half opaque become
/// transparent. Empty, with one sentence in `error`, without frames or when out of memory.
std::vector<std::uint8_t> GifOf(const Animation& animation, std::string& error);

/// Assembles an animation from the calls of one task. Each function returns what HostCall has to return: false, with
/// nothing changed, for a call that is out of order or malformed.
class TaskReceiver {
 public:
  /// `delayUnit`: milliseconds in one unit of a delay.
  explicit TaskReceiver(int delayUnit) : delayUnit_(delayUnit) {}

  bool Open(const HostTaskRecord* record, bool test);
  /// `task` is the first argument of the call. `dib` is the contents of the record's handle.
  bool AddImage(const void* task, const HostImageRecord* record, std::span<const std::uint8_t> dib);
  bool SetBackground(const void* task, std::uint64_t kind, std::uint64_t value);
  bool AddComment(const void* task, const char* text);
  /// Closes the task. The animation if it has an image and the plug-in reports success; otherwise nothing.
  std::optional<Animation> End(const void* task, bool finished);

  bool IsOpen() const { return task_ != nullptr; }

 private:
  int delayUnit_;
  const void* task_ = nullptr;        ///< the record's address, for comparison only
  std::uint32_t imagesPromised_ = 0;  ///< an upper limit
  Palette palette_{};
  Animation animation_;
};

}  // namespace glyphmotion
