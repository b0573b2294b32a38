// SPDX-License-Identifier: MIT
#include "host/render/job_fields.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

struct FieldSetting {
  const char* field;
  const char* key;
  std::optional<std::string> value;
};

std::optional<std::string> Text(const std::optional<int>& number) {
  return number ? std::optional(std::to_string(*number)) : std::nullopt;
}
std::optional<std::string> Text(const std::optional<bool>& on, bool negated = false) {
  return on ? std::optional<std::string>(*on != negated ? "1" : "0") : std::nullopt;
}
// In the output's unit, to the nearest.
std::optional<std::string> Text(const std::optional<std::chrono::milliseconds>& time, bool hundredths) {
  return time ? std::optional(std::to_string(hundredths ? (time->count() + 5) / 10 : time->count())) : std::nullopt;
}

// Control 14, Custom palette, and the number of the fixed one.
std::optional<std::string> IsCustom(Job::Palette palette) {
  return palette == Job::Palette::Dialog ? std::nullopt
                                         : std::optional<std::string>(palette <= Job::Palette::Custom ? "1" : "0");
}
std::optional<std::string> FixedNumber(Job::Palette palette) {
  if (palette <= Job::Palette::Custom) return std::nullopt;
  return std::to_string(static_cast<int>(palette) - static_cast<int>(Job::Palette::BlackAndWhite));
}

// The dialog's letters are bold at first; a style in the font's name says what it wants.
std::optional<bool> BoldOf(const Job& job) {
  if (!job.bold && job.font && IsStyledFontName(*job.font)) return false;
  return job.bold;
}

std::vector<FieldSetting> FieldSettings(const Job& job) {
  return {{"font", "MainFontName", job.font},
          {"size", "MainFontSize", Text(job.size)},
          {"pad", "MainPadding", Text(job.pad)},
          {"space", "MainFontSpace", Text(job.space)},
          {"bold", "MainFontBold", Text(BoldOf(job))},
          {"italic", "MainFontItalic", Text(job.italic)},
          {"antialias", "MainAntialias", Text(job.antialias)},
          {"delay", "MainDelay", Text(job.delay, job.paletteFormat)},
          {"pause", "MainPause", Text(job.pause, job.paletteFormat)},
          {"frames", "@frames", Text(job.frames)},
          {"seed", "@seed", Text(job.seed)},
          {"direction", "@scroll", job.direction},
          {"softness", "@soft", Text(job.softness)},
          {"stillText", "MainRolling", Text(job.stillText, true)},
          {"palette", "14", IsCustom(job.palette)},
          {"palette", "MainPalette", FixedNumber(job.palette)},
          {"trueColour", "Truecolour", Text(job.trueColour)},
          {"dither", "MainDither", Text(job.dither)},
          {"supercompress", "MainSupercompress", Text(job.supercompress)},
          {"transparent", "MainTransparent", Text(job.transparent)},
          {"maskBackground", "MainMaskBackground", Text(job.maskBackground)},
          {"alpha", "MainAlphaTrans", Text(job.alpha)},
          {"alphaBackground", "UseAlphaGreyBack", Text(job.alphaBackground)},
          {"comment", "AddDescriptiveCommentBlock", Text(job.comment)}};
}

}  // namespace

Job WithFieldsAsSettings(Job job) {
  std::vector<Job::Setting> settings;
  for (FieldSetting& row : FieldSettings(job)) {
    if (row.value) settings.emplace_back(row.key, std::move(*row.value));
  }
  job.settings.insert(job.settings.begin(), settings.begin(), settings.end());
  return job;
}

std::string InFieldTerms(std::string sentence, const Job& job) {
  for (const FieldSetting& row : FieldSettings(job)) {
    const std::string key = row.key, quoted = "'" + key + "'";
    if (!row.value) continue;
    if (const std::size_t at = sentence.find(quoted); at != std::string::npos)
      return sentence.replace(at, quoted.size(), row.field);
    if (!sentence.starts_with(key + " ")) continue;
    const bool hundredths = job.paletteFormat && (key == "MainDelay" || key == "MainPause");
    return sentence.replace(0, key.size(), row.field) + (hundredths ? ", in 1/100 s" : "");
  }
  return sentence;
}

}  // namespace glyphmotion
