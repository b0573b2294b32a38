// SPDX-License-Identifier: MIT
#include "host/program/gallery.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <thread>

#include "effects/effect_table.h"
#include "host/options/looks.h"
#include "host/options/names.h"
#include "host/options/typed_words.h"
#include "host/program/progress.h"
#include "materials/gradient_text.h"
#include "materials/material_text.h"
#include "materials/texture_text.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

struct Request {
  std::string folder, text, look;  // no text: each picture its own
};

// One picture of the page: how it is made, and what a reader copies to make it.
struct Entry {
  std::string title, summary, command, file;
  std::vector<std::string> words;  // for the program, without the output
  bool fills = false;              // the picture fills its card
};

struct Section {
  const char* title;
  const char* about;
  std::vector<Entry> entries;
};

std::string Read(const std::vector<std::string>& words, Request& request) {
  if (words.size() == 1) return "gallery needs a folder; write gallery FOLDER";
  request.folder = words[1];
  for (std::size_t i = 2; i < words.size(); i += 2) {
    const bool known = words[i] == "--text" || words[i] == "--look";
    if (!known) return "gallery takes --text TEXT and --look NAME after its folder, not '" + words[i] + "'";
    if (i + 1 == words.size() || words[i + 1].empty()) return words[i] + " needs a value after it";
    (words[i] == "--text" ? request.text : request.look) = words[i + 1];
  }
  try {
    if (!request.look.empty()) ReadLook(request.look);
  } catch (const UsageError& error) {
    return error.sentence;
  }
  return {};
}

std::string Quoted(const std::string& word) {
  return word.find_first_of(" #'") == std::string::npos ? word : '"' + word + '"';
}

std::string Escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Glyphmotion: the gallery</title>
<style>
body{font:16px/1.5 system-ui,sans-serif;margin:2rem auto;max-width:76rem;padding:0 1rem;background:#f4f5f7;color:#1d2430}
nav{display:flex;flex-wrap:wrap;gap:.2rem 1rem}
h2{margin:2.2rem 0 0}
main{display:grid;gap:0 1.25rem}
.cards{display:grid;grid-template-columns:repeat(auto-fill,minmax(min(21rem,100%),1fr));gap:1.25rem}
.small{grid-template-columns:repeat(auto-fill,minmax(min(10rem,45%),1fr));gap:1rem}
figure{margin:0;background:#fff;border:1px solid #dde1e8;border-radius:10px;overflow:hidden}
figure div{height:8.5rem;display:grid;place-items:center;border-bottom:1px solid #eceff3}
.small div{height:5rem}
img{max-width:94%;max-height:8rem}
img.fills{width:100%;height:100%;max-width:none;max-height:none;object-fit:cover}
figcaption{padding:.7rem 1rem .9rem}
.small figcaption{padding:.5rem .6rem .7rem}
h3{font-size:1.05rem;margin:0}
p{margin:.1rem 0 .5rem}
button{font:.78rem ui-monospace,monospace;color:#4a5568;background:none;border:1px solid #dde1e8;border-radius:6px;
padding:.2rem .4rem;text-align:left;cursor:copy;user-select:text}
button span{display:inline-block;max-width:100%;overflow-wrap:anywhere}
button:hover,button:focus-visible{border-color:#7a8699}
@media(prefers-color-scheme:dark){body{background:#14171c;color:#e6e9ee}figure{background:#1d2229;border-color:#343b46}
figure div{border-color:#2a303a}button{color:#b6c0cf;border-color:#343b46}a{color:#8ab4f8}}
</style>
<h1>Glyphmotion</h1>
<p>Click on a command or a name to copy it.</p>
)";

constexpr const char* kTail = R"(<script>
document.addEventListener("click", async (event) => {
  const button = event.target.closest("button");
  if (!button) return;
  const words = button.innerHTML;
  try {
    await navigator.clipboard.writeText(button.textContent);
    button.textContent = "copied";
    setTimeout(() => { button.innerHTML = words; }, 700);
  } catch { getSelection().selectAllChildren(button); }
});
</script>
</html>
)";

// The folders of a path that did not exist. Those that stay empty are removed again.
class NewFolders {
 public:
  bool Make(const std::filesystem::path& folder, std::error_code& error) {
    for (std::filesystem::path path = folder; !path.empty() && !std::filesystem::exists(path, error);
         path = path.parent_path())
      made_.push_back(path);
    error.clear();
    std::filesystem::create_directories(folder, error);
    return !error;
  }
  NewFolders() = default;
  NewFolders(const NewFolders&) = delete;
  NewFolders& operator=(const NewFolders&) = delete;
  ~NewFolders() {
    std::error_code error;
    for (const std::filesystem::path& path : made_) std::filesystem::remove(path, error);  // removes empty ones only
  }

 private:
  std::vector<std::filesystem::path> made_;  // innermost first
};

Entry EffectEntry(const EffectDescriptor& effect, const Request& request) {
  const std::string name = OptionForm(effect.name);
  const std::string text = !request.text.empty()  ? request.text
                           : *effect.example.text ? effect.example.text
                                                  : effect.name;
  Entry entry{effect.name, effect.summary, "", name + ".webp", {text, "-e", name}, !request.look.empty()};
  if (!request.look.empty()) {
    entry.words.insert(entry.words.end(), {"--look", request.look});
  } else {
    std::istringstream options(effect.example.options);
    for (std::string word; options >> word;) entry.words.push_back(word);
  }
  return entry;
}

Entry LookEntry(const std::string& name, const std::string& summary, const Request& request) {
  std::string title = name;
  if (title[0] >= 'a' && title[0] <= 'z') title[0] = static_cast<char>(title[0] - 'a' + 'A');
  return {title, summary, "", "look-" + name + ".webp", {request.text.empty() ? title : request.text, "--look", name},
          true};
}

// A material as an option names it.
Entry MaterialEntry(const std::string& kind, const std::string& name) {
  std::string word = kind + ":" + name;
  std::replace(word.begin(), word.end(), ' ', '-');
  return {name, "", word, kind + "-" + OptionForm(name) + ".png", {"swatch", word, "--width", "240", "--height", "96"},
          true};
}

// "#1 64 x 64 Bricks"; one without a name goes by its number.
std::string TileName(const std::string& line) {
  std::istringstream words(line);
  std::string number, skipped, name;
  words >> number >> skipped >> skipped >> skipped >> std::ws;
  std::getline(words, name);
  return name.empty() ? number : name;
}

std::vector<Section> Sections(const Request& request) {
  std::vector<Section> sections = {{"Effects", "What sets the text in motion: -e NAME.", {}},
                                   {"Looks", "Finished styles: --look NAME. Options override any part of one.", {}},
                                   {"Textures", "For --fill, --shadow and --background.", {}},
                                   {"Tiles", "For the same options; a tile repeats.", {}},
                                   {"Fountains", "For the same options: gradients of many colours.", {}}};
  for (const EffectDescriptor* effect : Effects()) sections[0].entries.push_back(EffectEntry(*effect, request));
  for (const auto& [name, summary] : Looks()) sections[1].entries.push_back(LookEntry(name, summary, request));
  for (const std::string& name : TextureNames()) sections[2].entries.push_back(MaterialEntry("texture", name));
  for (const std::string& line : TileNames()) sections[3].entries.push_back(MaterialEntry("tile", TileName(line)));
  for (const std::string& name : FountainNames()) sections[4].entries.push_back(MaterialEntry("fountain", name));
  for (Section& section : sections) {
    for (Entry& entry : section.entries) {
      if (!entry.command.empty()) continue;
      entry.command = "glyphmotion";
      for (const std::string& word : entry.words) entry.command += ' ' + Quoted(word);
      entry.command += " -o " + entry.file;
      // The look in the shape of its card; the command makes it as large as the text.
      if (entry.fills) entry.words.insert(entry.words.end(), {"--width", "440", "--height", "168"});
      entry.words.insert(entry.words.end(), {"-q", "--threads", "1"});
    }
  }
  return sections;
}

// Each word in an element of its own, so that lines break between words alone.
std::string WordsOf(const std::string& command) {
  std::istringstream words(command);
  std::string marked;
  for (std::string word; words >> word;) marked += (marked.empty() ? "<span>" : " <span>") + Escaped(word) + "</span>";
  return marked;
}

std::string PageOf(const std::vector<Section>& sections) {
  std::string page = kHead, links = "<nav>";
  for (const Section& section : sections)
    links += std::string("<a href=\"#") + section.title + "\">" + section.title + "</a>";
  page += links + "</nav>\n<main>\n";
  for (const Section& section : sections) {
    const bool small = !section.entries.empty() && section.entries[0].file.ends_with(".png");
    page += std::string("<section><h2 id=\"") + section.title + "\">" + section.title + "</h2>\n<p>" + section.about +
            "</p>\n<div class=\"cards" + (small ? " small" : "") + "\">\n";
    for (const Entry& entry : section.entries) {
      page += std::string("<figure><div><img") + (entry.fills ? " class=\"fills\"" : "") + " src=\"" + entry.file +
              "\" alt=\"" + Escaped(entry.title) + "\" loading=\"lazy\"></div><figcaption><h3>" + Escaped(entry.title) +
              "</h3>" + (entry.summary.empty() ? "" : "<p>" + Escaped(entry.summary) + "</p>") + "<button>" +
              WordsOf(entry.command) + "</button></figcaption></figure>\n";
    }
    page += "</div></section>\n";
  }
  return page + "</main>\n" + kTail;
}

// The pictures, one after another on each core. The sentence of the first that fails.
class Workers {
 public:
  Workers(const std::vector<Section>& sections, std::string folder,
          const std::function<std::string(const std::vector<std::string>&)>& run, const std::function<bool()>& stop)
      : folder_(std::move(folder)), run_(run), stop_(stop) {
    for (const Section& section : sections) {
      for (const Entry& entry : section.entries) entries_.push_back(&entry);
    }
  }

  std::string Work() {
    std::vector<std::thread> threads;
    try {
      for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i)
        threads.emplace_back([this] { Take(nullptr); });
    } catch (const std::exception&) {  // fewer threads do as well
    }
    bar_.Stage("Gallery");
    Take(&bar_);
    for (std::thread& thread : threads) thread.join();
    bar_.Clear();
    return trouble_;
  }

 private:
  void Take(ProgressBar* bar) {
    for (std::size_t i; !failed_ && !stop_() && (i = next_++) < entries_.size();) {
      if (bar) bar->At(static_cast<std::int64_t>(i), static_cast<std::int64_t>(entries_.size()));
      const Entry& entry = *entries_[i];
      std::vector<std::string> words = entry.words;
      words.insert(words.end(), {"-o", (std::filesystem::path(folder_) / entry.file).string()});
      const std::string trouble = run_(words);
      if (trouble.empty() || failed_.exchange(true)) continue;
      trouble_ = "the picture " + entry.file + " could not be made: " + trouble;
    }
  }

  std::vector<const Entry*> entries_;
  std::string folder_;
  const std::function<std::string(const std::vector<std::string>&)>& run_;
  const std::function<bool()>& stop_;
  std::atomic<std::size_t> next_{0};
  std::atomic<bool> failed_{false};
  std::string trouble_;  // of the thread that set failed_
  ProgressBar bar_{ErrorsGoToTerminal()};
};

}  // namespace

bool IsGallery(const std::vector<std::string>& words) {
  if (words.empty() || words[0] != "gallery") return false;
  return words.size() == 1 || (!words[1].empty() && words[1][0] != '-');
}

std::string WriteGallery(const std::vector<std::string>& words,
                         const std::function<std::string(const std::vector<std::string>&)>& run,
                         const std::function<bool()>& stop, bool& badUsage) {
  Request request;
  std::string trouble = Read(words, request);
  badUsage = !trouble.empty();
  if (badUsage) return trouble;
  NewFolders made;
  std::error_code error;
  if (!made.Make(request.folder, error))
    return "the folder '" + request.folder + "' cannot be created: " + error.message();
  const std::vector<Section> sections = Sections(request);
  trouble = Workers(sections, request.folder, run, stop).Work();
  if (!trouble.empty() || stop()) return trouble;
  const std::string path = (std::filesystem::path(request.folder) / "index.html").string();
  if (!AtomicWriteFile(path, PageOf(sections)))
    return "'" + path + "' cannot be written; check the folder and the free disk space";
  std::printf("%s\n", path.c_str());
  return {};
}

}  // namespace glyphmotion
