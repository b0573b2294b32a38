// SPDX-License-Identifier: MIT
#include "host/page/picture_options.h"

#include <algorithm>

#include "host/options/option_table.h"
#include "host/options/typed_words.h"
#include "host/options/values.h"

namespace glyphmotion {
namespace {

using Use = PictureOptions::Use;

struct Offer {
  const char* name;
  const char* label;
  const char* group;
  const char* initial;                        ///< the value that changes nothing
  Use from;                                   ///< the first use that knows it
  const char* needs[2] = {nullptr, nullptr};  ///< one of these must be set
  bool gifOnly = false;
  const char* words = nullptr;  ///< in place of the table's
};

constexpr const char *kCanvas = "canvas", *kLines = "lines", *kFile = "file", *kOfLooks = "";
constexpr const char* kFontFile = "font-file";
constexpr Offer kOffers[] = {
    {"width", "Width", kCanvas, "", Use::Stage},
    {"height", "Height", kCanvas, "", Use::Stage},
    {"fit", "If too large", kCanvas, "shrink", Use::Stage, {"width", "height"}},
    {"align", "Across", kCanvas, "", Use::Stage},
    {"valign", "Up and down", kCanvas, "middle", Use::Stage, {"height", "height"}},
    {"line-space", "Line spacing", kLines, "100", Use::Stage},
    {"text-direction", "Direction", kLines, "auto", Use::Thumbnail},
    {"emoji", "Emoji", kLines, "color", Use::Thumbnail},
    {"font-variation", "", kOfLooks, "", Use::Thumbnail},
    {"dither", "", kOfLooks, "", Use::Stage, {}, true},
    {"palette", "Palette", kFile, "", Use::Stage, {}, true, "best,auto"},
    {"colors", "Most colors", kFile, "256", Use::Stage, {}, true},
    {"lossy", "GIF loss", kFile, "0", Use::File, {}, true},
    {"max-bytes", "Most bytes", kFile, "", Use::File, {}, true},
    {"loop", "Plays", kFile, "0", Use::File},
    {"start", "First frame", kFile, "", Use::File, {}, true, "rest"},
};

const Offer* OfferOf(const std::string& name) {
  const auto* found =
      std::find_if(std::begin(kOffers), std::end(kOffers), [&](const Offer& each) { return name == each.name; });
  return found == std::end(kOffers) ? nullptr : found;
}

Json WordList(const Offer& offer) {
  OptionRow row = *FindOption(offer.name);
  if (offer.words) row.words = offer.words;
  Json words = WordsOf(row);
  if (!words.empty() && std::find(words.begin(), words.end(), Json(offer.initial)) == words.end())
    words.insert(words.begin(), offer.initial);
  return words;
}

// Whether the format can express it.
bool IsTakenBy(const Offer& offer, std::string_view extension) {
  if (offer.gifOnly) return extension == ".gif";
  return std::string_view(offer.name) != "loop" || extension == ".gif" || extension == ".png" || extension == ".webp";
}

}  // namespace

bool PictureOptions::IsUsable(const char* const (&needs)[2]) const {
  return !needs[0] || values_.contains(needs[0]) || values_.contains(needs[1]);
}

std::string PictureOptions::Set(const std::string& name, const std::string& value) {
  const Offer* offer = OfferOf(name);
  if (!offer) return "there is no option '" + name + "'";
  if (value.empty() || value == offer->initial) return values_.erase(name), std::string();
  try {
    CheckValue(*FindOption(name), value);
  } catch (const UsageError& error) {
    return error.sentence;
  }
  const Json words = WordList(*offer);
  if (!words.empty() && std::find(words.begin(), words.end(), Json(value)) == words.end())
    return "--" + name + " does not take '" + value + "' here";
  values_[name] = value;
  return {};
}

std::string PictureOptions::Value(const std::string& name) const {
  const auto value = values_.find(name);
  return value == values_.end() ? std::string() : value->second;
}

void PictureOptions::SetFontFile(const std::string& path) {
  values_.erase(kFontFile);
  if (!path.empty()) values_[kFontFile] = path;
}

std::vector<std::string> PictureOptions::Words(Use use, std::string_view extension) const {
  std::vector<std::string> words;
  if (!FontFile().empty()) words = {"--font-file", FontFile()};
  for (const Offer& offer : kOffers) {
    const auto value = values_.find(offer.name);
    if (value == values_.end() || offer.from > use || !IsUsable(offer.needs) || !IsTakenBy(offer, extension)) continue;
    const std::string name = std::string("--") + offer.name;
    if (FindOption(offer.name)->form) {
      words.insert(words.end(), {name, value->second});
    } else {
      words.push_back(name + "=" + value->second);
    }
  }
  return words;
}

Json PictureOptions::Facts() const {
  Json list = Json::array();
  for (const Offer& offer : kOffers) {
    if (offer.group == kOfLooks) continue;
    const OptionRow& row = *FindOption(offer.name);
    const auto value = values_.find(offer.name);
    Json facts = {{"name", offer.name},
                  {"label", offer.label},
                  {"group", offer.group},
                  {"help", row.help},
                  {"initial", offer.initial},
                  {"value", value == values_.end() ? offer.initial : value->second},
                  {"enabled", IsUsable(offer.needs)}};
    if (Json words = WordList(offer); !words.empty()) {
      facts["words"] = std::move(words);
    } else {
      facts["range"] = {row.minimum, row.maximum};
    }
    list.push_back(std::move(facts));
  }
  return list;
}

std::string PictureOptions::Lines() const {
  std::string lines;
  for (const auto& [name, value] : values_) lines.append(";;").append(name).append("=").append(value).append("\n");
  return lines;
}

PictureOptions PictureOptions::OfLines(std::string_view text) {
  PictureOptions options;
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (!line.starts_with(";;") || equals == std::string_view::npos) continue;
    const std::string name(line.substr(2, equals - 2)), value(line.substr(equals + 1));
    name == kFontFile ? options.SetFontFile(value) : void(options.Set(name, value));
  }
  return options;
}

}  // namespace glyphmotion
