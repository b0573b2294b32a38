// SPDX-License-Identifier: MIT
#include "host/page/document_store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <vector>

#include "platform/digest.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostRecent = 12, kMostRescued = 20, kMostFonts = 24;

bool IsPlainName(const std::string& name) {
  return !name.empty() && name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-/") == std::string::npos &&
         std::count(name.begin(), name.end(), '/') == 1;
}

Json JsonOf(const KeptDocument& kept) {
  return {{"name", kept.name}, {"path", kept.path},     {"document", kept.document},
          {"text", kept.text}, {"effect", kept.effect}, {"options", kept.options}};
}

std::optional<KeptDocument> Read(const fs::path& path) {
  const auto bytes = ReadWholeFile(path.string());
  const Json json = bytes ? Json::parse(*bytes, nullptr, false) : Json();
  if (!json.is_object() || !json.contains("document") || !json["document"].is_string()) return std::nullopt;
  const auto text = [&](const char* key) {
    return json.contains(key) && json[key].is_string() ? json[key].get<std::string>() : std::string();
  };
  return KeptDocument{text("name"), text("path"), text("document"), text("text"), text("effect"), text("options")};
}

/// What a folder has with this ending, the newest first.
std::vector<fs::path> Newest(const fs::path& folder, const char* ending = ".json") {
  std::vector<std::pair<fs::file_time_type, fs::path>> found;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().extension() == ending) found.emplace_back(entry.last_write_time(error), entry.path());
  }
  std::sort(found.rbegin(), found.rend());
  std::vector<fs::path> paths;
  for (auto& each : found) paths.push_back(std::move(each.second));
  return paths;
}

std::string Stamp() {
  return std::to_string(std::chrono::system_clock::now().time_since_epoch() / std::chrono::microseconds(1));
}

}  // namespace

DocumentStore::DocumentStore(std::string folder, std::string owner)
    : folder_(std::move(folder)), own_(std::move(owner)) {
  for (const char* sub : {"recent/", "unsaved/"}) EnsureFolder(folder_ + sub);
  if (own_.empty()) own_ = std::to_string(::getpid()) + "x" + Stamp();
  lock_ = ::open((folder_ + "unsaved/" + own_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (lock_ >= 0) ::flock(lock_, LOCK_EX | LOCK_NB);
}

DocumentStore::~DocumentStore() {
  if (lock_ < 0) return;
  ::unlink((folder_ + "unsaved/" + own_ + ".lock").c_str());
  ::close(lock_);
}

// Who made it holds a lock for as long as he lives, however he dies.
bool DocumentStore::IsOfTheDead(const std::string& fileName) const {
  const std::string owner = fileName.substr(0, fileName.find('-'));
  if (owner == own_) return !active_.contains(fileName.substr(std::min(own_.size() + 1, fileName.size())));
  const std::string lockPath = folder_ + "unsaved/" + owner + ".lock";
  const int lock = ::open(lockPath.c_str(), O_RDWR | O_CLOEXEC);
  if (lock < 0) return true;
  const bool dead = ::flock(lock, LOCK_EX | LOCK_NB) == 0;
  ::close(lock);
  return dead;
}

Json DocumentStore::List(const std::string& sub, std::size_t most) const {
  Json list = Json::array();
  for (const fs::path& path : Newest(folder_ + sub)) {
    const std::string name = path.stem().string();
    if (list.size() >= most || (sub == "unsaved/" && !IsOfTheDead(name))) continue;
    const auto kept = Read(path);
    if (!kept) continue;
    list.push_back({{"key", sub + name}, {"name", kept->name}, {"text", kept->text}, {"effect", kept->effect}});
  }
  return list;
}

Json DocumentStore::Recent() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return List("recent/", kMostRecent);
}

Json DocumentStore::Rescued() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return List("unsaved/", kMostRescued);
}

std::optional<KeptDocument> DocumentStore::Find(const std::string& key) const {
  if (!IsPlainName(key)) return std::nullopt;
  const std::lock_guard<std::mutex> lock(mutex_);
  return Read(folder_ + key + ".json");
}

std::string DocumentStore::OptionsOf(const std::string& document) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (const fs::path& path : Newest(folder_ + "recent/")) {
    if (const auto kept = Read(path); kept && kept->document == document) return kept->options;
  }
  return {};
}

void DocumentStore::Remember(const KeptDocument& document) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const std::vector<fs::path> paths = Newest(folder_ + "recent/");
  // First the new one: a process that is killed in between leaves a document twice, not none.
  const std::string added = folder_ + "recent/" + Stamp() + ".json";
  if (!AtomicWriteFile(added, JsonOf(document).dump(-1, ' ', false, Json::error_handler_t::replace))) return;
  std::error_code error;
  // Also newest when the clock has been set back.
  const auto newest = paths.empty() ? fs::file_time_type::min() : fs::last_write_time(paths.front(), error);
  if (fs::last_write_time(added, error) <= newest)
    fs::last_write_time(added, newest + std::chrono::microseconds(1), error);
  std::size_t left = 1;
  for (const fs::path& path : paths) {
    const auto other = Read(path);
    const bool same = other && other->name == document.name && other->path == document.path;
    if (same || ++left > kMostRecent) fs::remove(path, error);
  }
}

std::string DocumentStore::UnsavedPath(const std::string& session) const {
  return folder_ + "unsaved/" + own_ + "-" + session + ".json";
}

bool DocumentStore::KeepUnsaved(const std::string& session, const KeptDocument& document) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return AtomicWriteFile(UnsavedPath(session), JsonOf(document).dump(-1, ' ', false, Json::error_handler_t::replace));
}

void DocumentStore::DropUnsaved(const std::string& session) {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::error_code error;
  fs::remove(UnsavedPath(session), error);
}

std::optional<KeptDocument> DocumentStore::TakeUp(const std::string& session) {
  const std::lock_guard<std::mutex> lock(mutex_);
  active_.insert(session);
  return Read(UnsavedPath(session));
}

void DocumentStore::Release(const std::string& session) {
  const std::lock_guard<std::mutex> lock(mutex_);
  active_.erase(session);
}

void DocumentStore::Forget(const std::string& key) {
  if (!IsPlainName(key)) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  std::error_code error;
  fs::remove(folder_ + key + ".json", error);
}

// A folder for each content, so that the file keeps its name, which commands show.
std::string DocumentStore::KeepFont(const std::string& name, const std::string& bytes) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const fs::path fonts = folder_ + "fonts", folder = fonts / std::to_string(DigestOf(bytes));
  std::string path = (folder / name).string();
  if (!EnsureFolder(folder.string() + "/") || !AtomicWriteFile(path, bytes)) return {};
  std::error_code error;
  const std::vector<fs::path> kept = Newest(fonts, "");
  for (std::size_t i = kMostFonts; i < kept.size(); ++i) fs::remove_all(kept[i], error);
  return path;
}

}  // namespace glyphmotion
