// SPDX-License-Identifier: MIT
#include "host/program/gallery.h"

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "effects/effect_table.h"
#include "host/options/names.h"
#include "host/options/names.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

// The words of an example's command: the text, the effect and the options that show it well.
std::vector<std::string> WordsOf(const EffectDescriptor& effect) {
  std::vector<std::string> words = {*effect.example.text ? effect.example.text : effect.name, "-e",
                                    OptionForm(effect.name)};
  std::istringstream options(effect.example.options);
  for (std::string word; options >> word;) words.push_back(word);
  return words;
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

constexpr const char* kHead =
    "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<meta name=\"viewport\" "
    "content=\"width=device-width\">\n"
    "<title>Glyphmotion: the effects</title>\n<style>\n"
    "body{font:16px/1.5 system-ui,sans-serif;margin:2rem auto;max-width:72rem;padding:0 "
    "1rem;background:#f4f5f7;color:#1d2430}\n"
    "main{display:grid;grid-template-columns:repeat(auto-fill,minmax(30rem,1fr));gap:1.25rem}\n"
    "@media(max-width:34rem){main{grid-template-columns:1fr}}\n"
    "figure{margin:0;background:#fff;border:1px solid #dde1e8;border-radius:10px;overflow:hidden}\n"
    "figure div{height:9rem;display:grid;place-items:center;background:#fff;border-bottom:1px solid #eceff3}\n"
    "img{max-width:94%;max-height:8.5rem}\nfigcaption{padding:.8rem "
    "1rem}\nh2{font-size:1.05rem;margin:0}\np{margin:.1rem 0 .5rem}\n"
    "code{display:block;font-size:.78rem;color:#4a5568;overflow-wrap:anywhere}\n</style>\n"
    "<h1>Glyphmotion</h1>\n<p>Every effect that sets a line of text in motion. Each picture is one "
    "command.</p>\n<main>\n";

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

}  // namespace

bool IsGallery(const std::vector<std::string>& words) {
  if (words.empty() || words[0] != "gallery") return false;
  return words.size() == 1 || (words.size() == 2 && !words[1].empty() && words[1][0] != '-');
}

std::string WriteGallery(const std::string& folder, const std::function<int(const std::vector<std::string>&)>& run) {
  NewFolders made;
  std::error_code error;
  if (!made.Make(folder, error)) return "the folder '" + folder + "' cannot be created: " + error.message();
  std::string page = kHead;
  for (const EffectDescriptor* effect : Effects()) {
    const std::string name = OptionForm(effect->name), picture = name + ".webp";
    std::vector<std::string> words = WordsOf(*effect);
    std::string command = "glyphmotion";
    for (const std::string& word : words) command += ' ' + Quoted(word);
    const std::string text = words.front();
    words.insert(words.end(), {"-q", "-o", (std::filesystem::path(folder) / picture).string()});
    if (run(words) != 0) return "the picture of " + name + " could not be made; see the error above";
    page += "<figure><div><img src=\"" + picture + "\" alt=\"" + Escaped(text) +
            "\" loading=\"lazy\"></div><figcaption><h2>" + effect->name + "</h2><p>" + Escaped(effect->summary) +
            "</p><code>" + Escaped(command + " -o " + picture) + "</code></figcaption></figure>\n";
  }
  page += "</main>\n</html>\n";
  const std::string path = (std::filesystem::path(folder) / "index.html").string();
  if (!AtomicWriteFile(path, page)) return "'" + path + "' cannot be written; check the folder and the free disk space";
  std::printf("%s\n", path.c_str());
  return {};
}

}  // namespace glyphmotion
