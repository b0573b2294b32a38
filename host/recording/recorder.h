// SPDX-License-Identifier: MIT
// --record: writes every call of the plug-in as a line of JSON and every image as a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "glyphmotion/render.h"

namespace glyphmotion {

/// Writes FOLDER/calls.jsonl and FOLDER/0000.dib and so on. Files of an earlier recording are replaced. The folder's
/// name is UTF-8.
class Recorder {
 public:
  /// Makes the folder. `error` gets one sentence when that fails.
  Recorder(const std::string& folder, std::string& error);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void Call(const HostCallEvent& event);
  /// Writes the last line; call after everything has been freed. Returns an empty text, or one sentence on failure.
  std::string End(const RenderResult& result);

 private:
  void Line(const std::string& text);

  std::string name_;
  std::filesystem::path folder_;
  std::ofstream calls_;
  bool failed_ = false;
};

/// The line of one call, without a line end. `imageFile` names the file of its image; empty: none.
std::string CallLine(const HostCallEvent& event, const std::string& imageFile);

}  // namespace glyphmotion
