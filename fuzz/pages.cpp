// SPDX-License-Identifier: MIT
// What a page sends: events into a session, requests into the server.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "fuzz/readers.h"
#include "host/page/event_fields.h"
#include "host/page/page_server.h"
#include "host/page/page_session.h"
#include "host/program/program.h"
#include "host/render/image_loader.h"
#include "materials/material.h"

namespace glyphmotion::fuzz {
namespace {

const PageServices& Services() {
  static const PageServices services = {
      JobOf, [](const std::vector<std::string>&, const std::atomic<bool>&) { return std::string("no"); }, LoadPicture};
  return services;
}

std::string Home() { return std::string(std::getenv("GLYPHMOTION_HOME")) + "/"; }

// A session with its dialog on a thread of its own, and the page that listens to it.
class OpenPage {
 public:
  explicit OpenPage(const Json& start)
      : store_(EmptyFolder(FlagIn(start, "keep"))),
        session_(Services(), store_, StartOf(start), [this](const PageMessage& message) { Hear(message); }),
        thread_([this] { Run(); }) {
    HasShownAll();
    AwaitBuild();
  }
  ~OpenPage() {
    session_.End();
    thread_.join();
  }

  void Do(const std::string& op, Json event) {
    if (op == "upload") {
      const std::string text = TextIn(event, "text");
      const MovableBlock bytes = HexDecode(text, text.size() / 2);
      const LockedBlock<char> locked(bytes.Handle());
      session_.Upload(locked ? std::string(locked.get(), text.size() / 2) : text);
    } else if (op == "wait") {
      if (Settle()) AwaitBuild();
    } else if (op != "snapshot") {
      // Questions are numbered from the input's first.
      if (op == "answer") event["ask"] = asked_ + NumberIn(event, "ask", 1);
      session_.Post(std::move(event));
    }
  }

  // Returns once the session has done everything, nothing is asked and only the main dialog is open; false when that is
  // not to be had.
  bool Settle() {
    constexpr int kMostDialogs = 16;
    for (int i = 0; i < kMostDialogs; ++i) {
      if (HasAnswered()) return true;
      if (!HasShownAll()) return false;
      std::unique_lock lock(mutex_);
      Json event;
      if (question_) {
        event = {{"op", "answer"}, {"ask", question_}, {"value", nullptr}};
      } else if (level_ > 1) {
        event = {{"op", "click"}, {"id", 2}, {"level", level_}};
      }
      lock.unlock();
      if (!event.is_null()) session_.Post(std::move(event));
    }
    return false;
  }

  void Begin() {
    asked_ = lastQuestion_;
    session_.Post({{"op", "new"}});
  }

 private:
  static std::string EmptyFolder(bool keep) {
    std::error_code error;
    if (!keep) std::filesystem::remove_all(Home() + "page", error);
    return Home() + "page/";
  }
  static PageSession::Start StartOf(const Json& start) {
    PageSession::Start made;
    made.key = "0123456789abcdef";
    made.looks = Json::array({{{"name", "neon"}, {"about", "Neon"}}});
    made.words = {"--set", "MainText=I", "--size", "6", "--shadow", "none", "--outline", "none"};
    if (const auto words = start.find("words"); words != start.end() && words->is_array()) {
      made.words.clear();
      for (const Json& word : *words) made.words.push_back(word.is_string() ? word.get<std::string>() : "");
    }
    if (start.contains("document")) made.path = FileOf(TextIn(start, "document"), ".gm4");
    return made;
  }

  // An option that does not exist is answered by a sentence that cites it, but by the main dialog alone.
  bool HasAnswered() {
    const std::string name = "settle" + std::to_string(++settles_);
    session_.Post({{"op", "option"}, {"name", name}, {"value", "1"}});
    std::unique_lock lock(mutex_);
    const auto isCited = [&] { return notice_.find("'" + name + "'") != std::string::npos; };
    heard_.wait(lock, [&] { return isCited() || question_ || level_ > 1 || hasEnded_; });
    return isCited();
  }

  // A snapshot, which comes even while something is asked. False when the main dialog has ended.
  bool HasShownAll() {
    session_.Post({{"op", "snapshot"}});
    std::unique_lock lock(mutex_);
    ++snapshots_;
    heard_.wait(lock, [this] { return hellos_ == snapshots_ || hasEnded_; });
    return !hasEnded_;
  }

  void AwaitBuild() {
    std::unique_lock lock(mutex_);
    heard_.wait_for(lock, std::chrono::seconds(1), [this] { return !builds_ || hasEnded_; });
  }

  void Run() {
    session_.Run();
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    heard_.notify_all();
  }

  void Hear(const PageMessage& message) {
    const std::string type = TextIn(message.json, "type");
    const std::lock_guard lock(mutex_);
    if (type == "hello") ++hellos_;
    if (type == "dialog") level_ = NumberIn(message.json, "level");
    if (type == "ended") level_ = NumberIn(message.json, "level") - 1;
    if (type == "ask") lastQuestion_ = question_ = NumberIn(message.json, "ask");
    if (type == "answered") question_ = 0;
    if (type == "notice") notice_ = TextIn(message.json, "text");
    if (type == "build") builds_ = TextIn(message.json, "state") == "running";
    heard_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable heard_;
  int hellos_ = 0, snapshots_ = 1, level_ = 0, question_ = 0,
      lastQuestion_ = 0;  // under the mutex; a dialog begins with a snapshot
  bool builds_ = true, hasEnded_ = false;
  std::string notice_;
  int asked_ = 0, settles_ = 0;  // questions before the input; the fuzzer's thread alone
  DocumentStore store_;
  PageSession session_;
  std::thread thread_;
};

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
      options.graceMilliseconds = 1000;
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

// What the server answers to the bytes; of a stream, its first ones. Nothing when no server listens any more.
std::optional<std::string> Exchange(int port, const std::string& bytes) {
  const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  std::optional<std::string> answer;
  if (::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    answer.emplace();
    timeval most{10, 0};
    ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &most, sizeof most);
    ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    ::shutdown(connection, SHUT_WR);
    char part[4096];
    for (int parts = 0; parts < 16; ++parts) {
      const ssize_t got = ::recv(connection, part, sizeof part, 0);
      if (got <= 0) break;
      answer->append(part, static_cast<std::size_t>(got));
      if (answer->find("octet-stream") != std::string::npos) break;
    }
  }
  ::close(connection);
  return answer;
}

}  // namespace

// Sessions are kept for some inputs each: the next one finds a new document. "op":"start" begins another session, with
// `words` and a `document` on disk; "upload" uploads its `text`, bytes in hexadecimal; "wait" waits for an animation.
void ReadPageEvents(std::string_view input) {
  static std::unique_ptr<OpenPage> page;
  static int inputs = 0;
  constexpr int kInputsOfSession = 64;
  if (!page || ++inputs % kInputsOfSession == 0) {
    page.reset();
    page = std::make_unique<OpenPage>(Json::object());
  } else {
    page->Begin();
  }
  while (!input.empty()) {
    const std::size_t end = input.find('\n');
    Json event = Json::parse(input.substr(0, end), nullptr, false);
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    const std::string op = event.is_object() ? TextIn(event, "op") : "";
    if (op == "start") {
      page.reset();
      page = std::make_unique<OpenPage>(event);
    } else {
      page->Do(op, std::move(event));
    }
  }
  if (!page->Settle()) page.reset();
}

// The bytes of a connection; {TOKEN} and {PORT} become the server's own, {SESSION} a session that exists. It is closed,
// or answered, in the end.
void ReadRequests(std::string_view input) {
  static const Server server;
  static std::string session;
  // A server that ends with its last session takes no connection until the next one has its address.
  const auto ask = [&](const std::string& bytes) {
    for (;;) {
      const auto [port, token] = server.Address();
      std::string text = bytes;
      ReplaceAll(text, "{TOKEN}", token);
      ReplaceAll(text, "{PORT}", std::to_string(port));
      ReplaceAll(text, "{SESSION}", session);
      if (const std::size_t at = text.find("{LARGE}"); at != std::string::npos)
        text.replace(at, 7, std::string((std::size_t{4} << 20) + 1, '1'));
      if (auto answer = Exchange(port, text)) return *std::move(answer);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  };
  const std::string bytes(input);
  if (bytes.find("{SESSION}") == std::string::npos) return void(ask(bytes));
  constexpr std::string_view key = "\"session\":\"";
  for (int tries = 0; tries < 2; ++tries) {  // the session may have ended since
    if (session.empty()) {
      const std::string answer =
          ask("POST /api/session HTTP/1.1\r\nHost: 127.0.0.1:{PORT}\r\nX-Glyphmotion-Token: {TOKEN}\r\n"
              "Content-Length: 2\r\n\r\n{}");
      const std::size_t at = answer.find(key);
      if (at != std::string::npos)
        session = answer.substr(at + key.size(), answer.find('"', at + key.size()) - at - key.size());
    }
    const std::string answer = ask(bytes);
    if (!answer.empty() && answer.find(" 404 ") == std::string::npos) return;
    session.clear();
  }
}

}  // namespace glyphmotion::fuzz
