// SPDX-License-Identifier: MIT
// The letters' own font file: a copy that the program keeps, beside the document, which names only the font's family.
#include <algorithm>
#include <filesystem>

#include "host/page/event_fields.h"
#include "host/page/page_session.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/font_files.h"
#include "platform/text_engine.h"
#include "platform/text_run.h"
#include "shell/documents.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 100;  // bytes

bool IsFontName(const std::string& name) {
  const std::string ending = Lowered(fs::path(name).extension().string());
  const bool plain =
      !name.starts_with('.') && name.size() <= kLongestName && std::none_of(name.begin(), name.end(), [](char c) {
        return c == '/' || c == '\\' || c == '#' || static_cast<unsigned char>(c) < ' ';
      });
  return plain && (ending == ".ttf" || ending == ".otf" || ending == ".ttc" || ending == ".otc");
}

}  // namespace

void PageSession::ChooseFont(Dialog& dialog, const std::string& family) {
  int index = SelectText(dialog, ControlId::Font, family);
  if (index < 0) index = AddItem(dialog, ControlId::Font, family);
  Choose(dialog, ControlId::Font, index);
}

void PageSession::SetFont(Dialog& dialog, const Json& event) {
  const std::string name = TextIn(event, "name");
  if (name.empty()) return ChooseFont(dialog, SummariseDocumentText(blank_).font);
  if (!IsFontName(name)) return Notice("'" + name + "' is not a font file; give a TTF, OTF or TTC file");
  std::optional<std::string> bytes;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto upload = uploads_.find(TextIn(event, "upload"));
    if (upload != uploads_.end()) bytes = ReadWholeFile(upload->second);
  }
  if (!bytes) return Notice("the font file did not arrive; add it again");
  const std::string path = store_.KeepFont(name, *bytes);
  if (path.empty()) return Notice("there is no room for the font; is the disk full?");
  FontFile file;
  std::string trouble;
  if (!OpenFontFile(path, file, trouble)) {
    std::error_code error;
    fs::remove_all(fs::path(path).parent_path(), error);
    if (const std::size_t at = trouble.find(path); at != std::string::npos) trouble.replace(at, path.size(), name);
    return Notice(trouble);
  }
  PictureOptions options = options_;
  options.SetFontFile(path);
  if (!TakeOptions(std::move(options))) return;
  ChooseFont(dialog, CurrentTextRun().fontFile.family);
  // The file is one style of its family.
  for (const int id : {ControlId::Bold, ControlId::Italic}) {
    if (GetCheck(dialog, id)) Click(dialog, id);
  }
}

// Another font has been chosen.
void PageSession::DropUnusedFont(const Dialog& dialog) {
  if (options_.FontFile().empty() || GetText(dialog, ControlId::Font) == CurrentTextRun().fontFile.family) return;
  PictureOptions options = options_;
  options.SetFontFile({});
  TakeOptions(std::move(options));
}

PictureOptions PageSession::WithoutLostFont(PictureOptions options) {
  const std::string path = options.FontFile();
  std::error_code error;
  if (path.empty() || fs::is_regular_file(path, error)) return options;
  Notice("the font file '" + fs::path(path).filename().string() + "' is no longer kept; add it again");
  options.SetFontFile({});
  return options;
}

// A font file alone is neither bold nor italic; the document's checks say more.
std::vector<std::string> PageSession::OptionWords(PictureOptions::Use use, std::string_view extension) const {
  std::vector<std::string> words = options_.Words(use, extension);
  if (!options_.FontFile().empty())
    words.insert(words.end(), {bold_ ? "--bold" : "--no-bold", italic_ ? "--italic" : "--no-italic"});
  return words;
}

}  // namespace glyphmotion
