// SPDX-License-Identifier: MIT
// The parts of reading the command line, in the order in which they run. Each throws UsageError.
#pragma once

#include <string>

#include "host/options/arguments.h"
#include "host/options/typed_words.h"

namespace glyphmotion {

/// What the parts read and fill.
struct Reading {
  TypedWords typed;
  Arguments arguments;
  const Catalogue& catalogue;
  std::vector<Look::Entry> look = {};  ///< what a look gave and the command line did not

  /// The whole number that an option holds, within the range of its row.
  long Number(const std::string& option) const;
  /// Adds a setting that stands for an option.
  void Set(const std::string& key, const std::string& value, const std::string& option);
};

void ReadLookOption(Reading& reading);  ///< adds a look's options to those that were typed
void ReadFormat(Reading& reading);      ///< output and its format
void ReadLoop(Reading& reading);        ///< how often it plays, and from where
void ReadHost(Reading& reading);        ///< what the host claims and refuses
void ReadAction(Reading& reading);      ///< build, test, sample or nothing
void AddDefaults(Reading& reading);     ///< what the program wants unless the files say otherwise
void ReadPalette(Reading& reading);
void ReadLookSettings(Reading& reading);  ///< the look's table of settings
void ReadControls(Reading& reading);      ///< times and every option that sets one control
void KeepLook(Reading& reading);          ///< what --save-look writes

void AddSetting(Reading& reading, const std::string& pair);  ///< "KEY=VALUE"
/// The sentence with the look's file and line before it, if it is about an option of the look.
std::string WithOrigin(const Reading& reading, std::string sentence);

}  // namespace glyphmotion
