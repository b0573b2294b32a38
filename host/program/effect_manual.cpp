// SPDX-License-Identifier: MIT
#include "host/program/effect_manual.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace glyphmotion {
namespace {

// "Shadow enable" for "<b>Shadow enable</b>".
std::string WithoutTags(std::string_view text) {
  std::string plain;
  bool inTag = false;
  for (const char c : text) {
    if (c == '<' || c == '>') {
      inTag = c == '<';
    } else if (!inTag) {
      plain += c;
    }
  }
  return plain;
}

// Letters and digits of a caption, in small letters, with one space between words.
std::string Normalised(std::string_view caption) {
  std::string name;
  for (const char c : Lowered(std::string(caption))) {
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      name += c;
    } else if (!name.empty() && name.back() != ' ') {
      name += ' ';
    }
  }
  if (name.ends_with(' ')) name.pop_back();
  return name;
}

// "Beam 1 to 5" is five names; "Shadow offset, shadow direction" two.
std::vector<std::string> NamesOf(std::string_view term) {
  std::vector<std::string> names;
  const std::size_t size = term.size();
  if (size > 6 && term.substr(size - 5, 4) == " to ") {
    for (char digit = term[size - 6]; digit <= term[size - 1]; ++digit)
      names.push_back(Normalised(std::string(term.substr(0, size - 6)) + digit));
    return names;
  }
  for (std::size_t begin = 0; begin < size;) {
    const std::size_t end = std::min(term.find(',', begin), size);
    names.push_back(Normalised(term.substr(begin, end - begin)));
    begin = end + 1;
  }
  return names;
}

// The next "<tag ...>...</tag>" from `at` on, which moves behind it.
std::optional<std::string_view> NextElement(std::string_view page, std::string_view tag, std::size_t& at) {
  const std::string open = "<" + std::string(tag), close = "</" + std::string(tag) + ">";
  for (std::size_t begin = at; (begin = page.find(open, begin)) != std::string_view::npos; ++begin) {
    const char after = begin + open.size() < page.size() ? page[begin + open.size()] : '\0';
    if (after != '>' && after != ' ') continue;
    const std::size_t text = page.find('>', begin), end = page.find(close, begin);
    if (text == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
    at = end + close.size();
    return page.substr(text + 1, end - text - 1);
  }
  return std::nullopt;
}

}  // namespace

EffectManual EffectManual::Shipped() {
  for (const std::string& folder : ShippedFolders()) {
    if (const auto page = ReadWholeFile(JoinPath(folder, "TLMPLGM4.HTML"))) return EffectManual(*page);
  }
  return EffectManual({});
}

EffectManual::EffectManual(const std::string& page) {
  std::size_t at = 0;
  while (const auto section = NextElement(page, "section", at)) {
    std::size_t place = 0;
    const auto heading = NextElement(*section, section->find("<h3>") == std::string_view::npos ? "h2" : "h3", place);
    if (!heading) continue;
    const std::string name = Normalised(WithoutTags(*heading));
    std::string about;
    for (std::size_t p = place; const auto paragraph = NextElement(*section, "p", p);)
      about += (about.empty() ? "" : " ") + WithoutTags(*paragraph);
    sentences_[name] = about;
    for (std::size_t d = place; const auto term = NextElement(*section, "dt", d);) {
      const auto words = NextElement(*section, "dd", d);
      for (const std::string& option : NamesOf(WithoutTags(*term))) {
        sentences_[name + "/" + option] = words ? WithoutTags(*words) : "";
        sentences_.emplace("/" + option, words ? WithoutTags(*words) : "");
      }
    }
  }
}

const std::string& EffectManual::Find(const std::string& name) const {
  static const std::string none;
  const auto found = sentences_.find(name);
  return found == sentences_.end() ? none : found->second;
}

const std::string& EffectManual::About(const std::string& effect) const { return Find(Normalised(effect)); }

const std::string& EffectManual::OwnOption(const std::string& effect, const std::string& caption) const {
  return Find(Normalised(effect) + "/" + Normalised(caption));
}

const std::string& EffectManual::SharedOption(const std::string& caption) const {
  return Find("/" + Normalised(caption));
}

}  // namespace glyphmotion
