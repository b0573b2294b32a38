// SPDX-License-Identifier: MIT
#include "host/program/edit.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "host/options/arguments.h"
#include "host/options/looks.h"
#include "host/page/page_server.h"
#include "host/page/scratch.h"
#include "host/page/welcome.h"
#include "host/program/program.h"
#include "host/render/image_loader.h"
#include "platform/folders.h"

namespace glyphmotion {
namespace {

struct EditWords {
  std::string path;
  int port = 0;
  bool open = true;
};

std::optional<EditWords> Read(const std::vector<std::string>& words, std::string& error) {
  EditWords read;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i] == "--no-open") {
      read.open = false;
    } else if (words[i] == "--port" && i + 1 < words.size()) {
      const std::string& port = words[++i];
      read.port =
          port.size() < 6 && port.find_first_not_of("0123456789") == std::string::npos ? std::atoi(port.c_str()) : 0;
      if (read.port < 1 || read.port > 65535) error = "--port takes a number from 1 to 65535, not '" + port + "'";
    } else if (words[i].starts_with("-") || !read.path.empty()) {
      error = "'" + words[i] + "' is not understood; write: glyphmotion edit [FILE.GM4] [--port N] [--no-open]";
    } else {
      read.path = words[i];
    }
    if (!error.empty()) return std::nullopt;
  }
  std::error_code code;
  if (!read.path.empty()) read.path = std::filesystem::absolute(read.path, code).string();
  if (!read.path.empty() && !std::filesystem::is_regular_file(read.path, code)) {
    error = "the document '" + read.path + "' cannot be found; check its name";
    return std::nullopt;
  }
  return read;
}

// The token must not show among the arguments of a process, which all users see: a page of this user's own leads there.
void OpenBrowser(const std::string& address, const std::string& folder) {
  const std::string path = folder + "/open.html";
  if (!WriteScratchFile(path,
                        "<!doctype html><meta charset=utf-8><title>Glyphmotion</title><meta http-equiv=refresh "
                        "content='0;url=" +
                            address + "'><a href='" + address + "'>Glyphmotion</a>\n")) {
    return;
  }
  const pid_t child = ::fork();
  if (child == 0) {
    const int null = ::open("/dev/null", O_RDWR);
    for (int descriptor = 0; descriptor < 3; ++descriptor) ::dup2(null, descriptor);
    const char* browser = std::getenv("BROWSER");
    for (const char* command : {browser ? browser : "xdg-open", "xdg-open", "open"})
      ::execlp(command, command, path.c_str(), static_cast<char*>(nullptr));
    ::_exit(1);
  }
  if (child > 0) std::thread([child] { ::waitpid(child, nullptr, 0); }).detach();
}

// The first of the places of shipped files that holds the page.
std::string FolderOfPage() {
  std::error_code error;
  for (const std::string& folder : ShippedFolders()) {
    if (std::filesystem::is_regular_file(JoinPath(folder, "web/index.html"), error)) return JoinPath(folder, "");
  }
  return {};
}

}  // namespace

bool IsEdit(const std::vector<std::string>& words) { return !words.empty() && words[0] == "edit"; }

std::string Edit(const std::vector<std::string>& words, const std::function<bool()>& interrupted, bool& usage) {
  std::string error;
  const auto read = Read(words, error);
  usage = !read;
  if (!read) return error;
  PageServices services;
  services.job = [](const std::vector<std::string>& line, std::string& sentence) { return JobOf(line, sentence); };
  services.run = RunWords;
  services.picture = LoadPicture;
  const ScratchFolder scratch;
  PageServerOptions options;
  const std::string shipped = FolderOfPage();
  options.port = read->port;
  options.webFolder = shipped + "web/";
  options.helpFile = shipped + "TLMPLGM4.HTML";
  options.storeFolder = SettingsFolder() + "page/";
  options.path = read->path;
  options.words = WelcomeWords();
  for (const auto& [name, about] : Looks()) options.looks.push_back({{"name", name}, {"about", about}});
  options.interrupted = interrupted;
  options.ready = [&](const std::string& address) {
    std::printf("%s\n", address.c_str());
    std::fflush(stdout);
    if (read->open) OpenBrowser(address, scratch.Path());
  };
  return ServePage(services, std::move(options));
}

}  // namespace glyphmotion
