// SPDX-License-Identifier: MIT
// File formats: a table with one row per format, looked up by the extension of the output's name.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "glyphmotion/render.h"
#include "host/encoders/output_file.h"

namespace glyphmotion {

/// Used in place of an extension when -o names a folder of pictures.
constexpr const char* kFolderExtension = "folder";

struct EncoderSettings {
  int width = 0, height = 0;  ///< pixels, from the task
  int imageCount = 1;         ///< images to expect
  int delayUnit = 10;         ///< milliseconds in one unit of Image::delay
  double lossyQuality = -1;   ///< 0 to 100 where the format has lossy coding; below 0: lossless
  int loops = 0;              ///< plays of the animation, 0 to 65535; 0: for ever
  int threads = 0;            ///< as in Workers; the bytes do not depend on it
  int loss = 0;               ///< of a GIF: 0 (none) to 200
  int effort = 6;             ///< time for size, 0 to 9: libwebp's settings, attempts at a GIF's frames, zlib's level
  /// Once this is true the encoder gives up as soon as it can; what it then returns means nothing. Null: not used.
  const std::atomic<bool>* stop = nullptr;
};

/// One encoding in progress. Each function returns an empty text on success, otherwise one sentence.
struct Encoder {
  std::function<std::string(const Image&)> add;
  std::function<void(const std::string&)> comment;  ///< empty where the format has no place for it
  std::function<std::string()> finish;              ///< completes the bytes; the output can then be kept
};

struct EncoderFormat {
  const char* extension;  ///< ".gif"
  bool paletteFormat;     ///< pictures are palette indices, delays are in 1/100 s
  Encoder (*open)(Output& output, const EncoderSettings& settings);
  const char* lacks = nullptr;  ///< the library without which this was built, so that it cannot write the format
};

/// Refuses an image that ReadDib cannot read.
inline constexpr char kBadImage[] = "received an image that is not a packed bitmap; please report this";

/// Writes bytes of the file; an empty text, or why that failed.
std::string KeepWriting(Output& output, std::span<const std::uint8_t> bytes);

/// All rows.
std::span<const EncoderFormat> Formats();
/// The row of an extension (lower case, with its dot, or kFolderExtension), or null.
const EncoderFormat* FindFormat(const std::string& extension);

}  // namespace glyphmotion
