// SPDX-License-Identifier: MIT
// The sentences of the shipped manual about effects and their options, for the help on the command line.
#pragma once

#include <map>
#include <string>

namespace glyphmotion {

class EffectManual {
 public:
  /// Reads the manual that ships with the program. Without it there are no sentences.
  static EffectManual Shipped();
  /// Reads the text of a manual: sections with a heading, paragraphs and a list of options.
  explicit EffectManual(const std::string& page);

  /// What the effect does, with its notes; empty if the manual does not have it.
  const std::string& About(const std::string& effect) const;
  /// What an option does, by its caption in the dialog; empty if the manual does not have it. Options that most effects
  /// share have one sentence for all.
  const std::string& OwnOption(const std::string& effect, const std::string& caption) const;
  const std::string& SharedOption(const std::string& caption) const;

 private:
  const std::string& Find(const std::string& name) const;

  std::map<std::string, std::string> sentences_;  // "vortex", "vortex/rotation", and "/frames" for all effects
};

}  // namespace glyphmotion
