// SPDX-License-Identifier: MIT
// What a page sends: events into a session, requests into the server.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <thread>

#include "fuzz/readers.h"
#include "host/page/page_server.h"
#include "host/page/page_session.h"
#include "host/program/program.h"
#include "host/render/image_loader.h"

namespace glyphmotion::fuzz {
namespace {

const PageServices& Services() {
  static const PageServices services = {JobOf, [](const std::vector<std::string>&) { return std::string("no"); },
                                        LoadPicture};
  return services;
}

std::string Home() { return std::string(std::getenv("GLYPHMOTION_HOME")) + "/"; }

// A server for as long as the process lives: it ends with its last session, and then there is another.
class Server {
 public:
  Server() {
    std::filesystem::create_directories(Home() + "web");
    FileOf("<!doctype html>", "index.html");
    std::filesystem::copy_file(FileOf("<!doctype html>", ".html"), Home() + "web/index.html",
                               std::filesystem::copy_options::overwrite_existing);
    std::thread([this] { Serve(); }).detach();
  }

  // The port and the token of the moment.
  std::pair<int, std::string> Address() const {
    for (;;) {
      {
        const std::lock_guard lock(mutex_);
        if (!address_.empty()) {
          const std::size_t colon = address_.rfind(':'), mark = address_.find('#');
          return {std::atoi(address_.c_str() + colon + 1), address_.substr(mark + 1)};
        }
      }
      std::this_thread::yield();
    }
  }

 private:
  void Serve() {
    for (;;) {
      PageServerOptions options;
      options.webFolder = Home() + "web/";
      options.storeFolder = Home() + "page/";
      options.graceMilliseconds = 200;
      options.interrupted = [] { return false; };
      options.ready = [this](const std::string& address) {
        const std::lock_guard lock(mutex_);
        address_ = address;
      };
      ServePage(Services(), std::move(options));
      const std::lock_guard lock(mutex_);
      address_.clear();
    }
  }

  mutable std::mutex mutex_;
  std::string address_;
};

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
}

}  // namespace

// An event a line. The session ends once it has answered the last one.
void ReadPageEvents(std::string_view input) {
  static DocumentStore store(Home() + "page/");
  PageSession* open = nullptr;
  std::atomic<int> hellos = 0;
  PageSession::Start start;
  start.key = "0123456789abcdef";
  start.looks = Json::array({{{"name", "neon"}, {"about", "Neon"}}});
  PageSession session(Services(), store, std::move(start), [&](const PageMessage& message) {
    if (message.json.value("type", "") == "hello" && ++hellos == 2) open->End();
  });
  open = &session;
  session.Post({{"op", "snapshot"}});
  while (!input.empty()) {
    const std::size_t end = input.find('\n');
    Json event = Json::parse(input.substr(0, end), nullptr, false);
    if (event.is_object() && event.value("op", Json()) != "snapshot") session.Post(std::move(event));
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  }
  session.Post({{"op", "snapshot"}});
  session.Run();
}

// The bytes of a connection; {TOKEN} and {PORT} become the server's own. It is closed, or answered, in the end.
void ReadRequests(std::string_view input) {
  static const Server server;
  const auto [port, token] = server.Address();
  std::string bytes(input);
  ReplaceAll(bytes, "{TOKEN}", token);
  ReplaceAll(bytes, "{PORT}", std::to_string(port));
  const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    timeval most{2, 0};  // a stream of messages does not end
    ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &most, sizeof most);
    ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    ::shutdown(connection, SHUT_WR);
    char answer[4096];
    // Its first bytes will do for a stream.
    for (int parts = 0; parts < 16 && ::recv(connection, answer, sizeof answer, 0) > 0; ++parts) {
    }
  }
  ::close(connection);
}

}  // namespace glyphmotion::fuzz
