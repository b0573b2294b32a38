// SPDX-License-Identifier: MIT
#include "host/program/gallery.h"

#include <cstdio>
#include <filesystem>

#include "host/program/arguments.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

// A line of the gallery: what the effect does, and the options that show it well. The page prints them as a command to
// copy.
struct Exhibit {
  const char* effect;
  const char* says;
  const char* text;
  std::vector<std::string> options;
};

const std::vector<Exhibit>& Exhibits() {
  static const std::vector<Exhibit> exhibits = {
      {"background-hyperspace", "Stars rush past behind the text.", "Warp speed", {}},
      {"background-iris", "Backgrounds open into one another behind the text.", "Grand opening", {}},
      {"breaker",
       "A whirl rolls along the letters like a breaking wave.",
       "Surf's up",
       {"--fill", "texture:Water", "--outline", "#10405c"}},
      {"cubist", "Hollow squares grow and shrink inside the letters.", "Cubist", {}},
      {"elastic",
       "The material ripples as if it had been plucked.",
       "Elastic",
       {"--fill", "texture:Marble", "--set", "Style012Energy=60"}},
      {"event-horizon", "The text rises out of a flat line and falls back.", "Event horizon", {}},
      {"fuse", "Two materials slide through each other in leaves.", "Fuse", {"--set", "Style009Size=4"}},
      {"gumdrops", "Round sweets swell and shrink inside the letters.", "Gumdrops", {}},
      {"hyperspace", "Stars streak through the inside of the letters.", "Hyperspace", {}},
      {"iris", "Fills open into one another inside the letters.", "Iris", {}},
      {"laser", "A beam lights the letters as it sweeps across.", "Laser", {}},
      {"nebula", "The text condenses out of a cloud and dissolves again.", "Nebula", {"--fill", "#5a3fa0"}},
      {"phasers-on-stun", "Coloured rays flash across the letters.", "Stun", {}},
      {"pinch", "A pinch passes along the text.", "Pinch", {}},
      {"pulse", "The text swells like a beating heart.", "Pulse", {"--fill", "#c8203c", "--outline", "#50101c"}},
      {"ripple", "A bump passes along the text.", "Ripple", {}},
      {"radar", "A sweep with a fading trail turns inside the letters.", "Radar", {}},
      {"simple", "The text scrolls through and rests.", "Simple", {}},
      {"singularity", "A whirlpool swallows the text and lets it go.", "Singularity", {}},
      {"vortex",
       "The text twists like water going down a drain.",
       "Vortex",
       {"--fill", "gradient:linear,#2a9d8f-#264653"}},
      {"white-noise", "Snowy television between two fills.", "No signal", {}},
  };
  return exhibits;
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

// The effect's name as the dialog shows it.
std::string Title(const std::string& effect) {
  for (const std::string& name : EffectNames()) {
    if (OptionForm(name) == effect) return name;
  }
  return effect;
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
    "<h1>Glyphmotion</h1>\n<p>Twenty-one ways to set a line of text in motion. Each picture is one "
    "command.</p>\n<main>\n";

// The folders of a path that were not there. What stays empty goes again.
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
    for (const std::filesystem::path& path : made_) std::filesystem::remove(path, error);  // only empty ones go
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
  if (!made.Make(folder, error)) return "the folder '" + folder + "' cannot be made: " + error.message();
  std::string page = kHead;
  for (const Exhibit& exhibit : Exhibits()) {
    const std::string picture = std::string(exhibit.effect) + ".webp";
    std::vector<std::string> words = {exhibit.text, "-e", exhibit.effect};
    words.insert(words.end(), exhibit.options.begin(), exhibit.options.end());
    std::string command = "glyphmotion";
    for (const std::string& word : words) command += ' ' + Quoted(word);
    words.insert(words.end(), {"-q", "-o", (std::filesystem::path(folder) / picture).string()});
    if (run(words) != 0) return std::string("the picture of ") + exhibit.effect + " could not be made; see above";
    page += "<figure><div><img src=\"" + picture + "\" alt=\"" + Escaped(exhibit.text) +
            "\" loading=\"lazy\"></div><figcaption><h2>" + Title(exhibit.effect) + "</h2><p>" + Escaped(exhibit.says) +
            "</p><code>" + Escaped(command + " -o " + exhibit.effect + ".webp") + "</code></figcaption></figure>\n";
  }
  page += "</main>\n</html>\n";
  const std::string path = (std::filesystem::path(folder) / "index.html").string();
  if (!AtomicWriteFile(path, page)) return "'" + path + "' cannot be written; check the folder";
  std::printf("%s\n", path.c_str());
  return {};
}

}  // namespace glyphmotion
