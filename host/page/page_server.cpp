// SPDX-License-Identifier: MIT
#include "host/page/page_server.h"

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

#include "host/page/event_fields.h"
#include "host/page/guarded_stream.h"
#include "host/page/session_hall.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

using Request = httplib::Request;
using Response = httplib::Response;

constexpr std::size_t kMostEvents = std::size_t{4} << 20, kMostUpload = std::size_t{32} << 20;  // bytes
constexpr std::size_t kThreads = 3 * SessionHall::kMost + 8;
constexpr auto kIdle = std::chrono::seconds(15), kWholeRequest = std::chrono::seconds(10);

constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob: data:; connect-src 'self'; font-src "
    "'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

// No time is saved where the first difference ends the comparison.
bool SameSecret(const std::string& a, const std::string& b) {
  unsigned difference = static_cast<unsigned>(a.size() ^ b.size());
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) difference |= static_cast<unsigned char>(a[i] ^ b[i]);
  return difference == 0;
}

class Server : public httplib::Server {
 private:
  // An idle connection does not keep the program from ending.
  bool Await(const GuardedStream& stream) const {
    constexpr auto slice = std::chrono::milliseconds(100);
    for (auto waited = slice; is_running() && waited < kIdle; waited += slice) {
      if (stream.AwaitRequest(slice)) return true;
    }
    return false;
  }
  bool process_and_close_socket(socket_t socket) override {
    GuardedStream stream(socket);
    bool whole = true, closed = false;
    while (whole && !closed && Await(stream)) {
      stream.BeginRequest(kWholeRequest);
      // What a refused request leaves unread is not the next one. Compression costs the loopback far more than it
      // saves: 20 ms for a module, 80 ms for the stylesheet.
      whole = process_request(stream, false, closed, [](Request& each) { each.headers.erase("Accept-Encoding"); }) &&
              !stream.HasRest();
    }
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return whole;
  }
};

class PageServer {
 public:
  PageServer(const PageServices& services, PageServerOptions options)
      : options_(std::move(options)), token_(RandomKey(16)), hall_(services, options_) {}

  std::string Serve();

 private:
  bool IsOwn(const Request& request) const;
  bool IsTrusted(const Request& request) const;
  httplib::Server::HandlerResponse Admit(const Request& request, Response& response) const;
  void Route();
  void OpenSession(const Request& request, Response& response);
  void Stream(const std::shared_ptr<SessionHall::Member>& member, Response& response);
  void Events(const Request& request, Response& response);
  std::shared_ptr<SessionHall::Member> MemberOf(const Request& request, Response& response);

  const PageServerOptions options_;
  const std::string token_;
  SessionHall hall_;
  Server server_;
  int port_ = 0;
};

// The name under which it was called must be its own: a name of someone else's that leads here is not.
bool PageServer::IsOwn(const Request& request) const {
  const std::string port = ":" + std::to_string(port_);
  const std::string host = request.get_header_value("Host");
  if (request.get_header_value_count("Host") != 1) return false;
  if (host != "127.0.0.1" + port && host != "localhost" + port) return false;
  if (request.has_header("Origin") && request.get_header_value("Origin") != "http://" + host) return false;
  const std::string site = request.get_header_value("Sec-Fetch-Site");
  return site.empty() || site == "same-origin" || site == "none" || (site == "cross-site" && request.path == "/") ||
         (site == "same-site" && request.path == "/");
}

bool PageServer::IsTrusted(const Request& request) const {
  return request.get_header_value_count("X-Glyphmotion-Token") == 1 &&
         SameSecret(request.get_header_value("X-Glyphmotion-Token"), token_);
}

httplib::Server::HandlerResponse PageServer::Admit(const Request& request, Response& response) const {
  response.set_header("Content-Security-Policy", kPolicy);
  response.set_header("X-Content-Type-Options", "nosniff");
  response.set_header("Referrer-Policy", "no-referrer");
  response.set_header("Cross-Origin-Opener-Policy", "same-origin");
  response.set_header("Cross-Origin-Resource-Policy", "same-origin");
  response.set_header("Cache-Control", "no-store");
  const bool api = request.path.starts_with("/api/");
  if (IsOwn(request) && (!api || IsTrusted(request))) return httplib::Server::HandlerResponse::Unhandled;
  response.status = 403;
  response.set_header("Connection", "close");
  response.set_content("This address serves one person's own browser.\n", "text/plain");
  return httplib::Server::HandlerResponse::Handled;
}

void PageServer::OpenSession(const Request& request, Response& response) {
  const Json wish = Json::parse(request.body, nullptr, false);
  const bool named = wish.is_object() && wish.contains("session") && wish["session"].is_string();
  const std::string key = hall_.Enter(named ? wish["session"].get<std::string>() : std::string());
  if (key.empty()) {
    response.status = 503;
    return response.set_content("{\"error\":\"16 tabs are open, the most allowed; close one\"}", "application/json");
  }
  response.set_header("X-Glyphmotion-Session", key);
  const auto member = FlagIn(wish, "listen") ? hall_.Find(key) : nullptr;
  if (member) return Stream(member, response);
  response.set_content(Json{{"session", key}}.dump(), "application/json");
}

std::shared_ptr<SessionHall::Member> PageServer::MemberOf(const Request& request, Response& response) {
  auto member = hall_.Find(request.get_param_value("session"));
  if (!member) {
    response.status = 404;
    response.set_content("{\"error\":\"this session has ended\"}", "application/json");
  }
  return member;
}

void PageServer::Stream(const std::shared_ptr<SessionHall::Member>& member, Response& response) {
  const int page = member->outbox.Open();
  hall_.Listen(member, true);
  member->session->Post({{"op", "snapshot"}});
  response.set_chunked_content_provider(
      "application/octet-stream",
      [this, member, page](std::size_t, httplib::DataSink& sink) {
        const std::string bytes = server_.is_running() ? member->outbox.Next(page) : std::string();
        if (bytes.empty()) return sink.done(), true;
        return sink.write(bytes.data(), bytes.size());
      },
      [this, member](bool) { hall_.Listen(member, false); });
}

void PageServer::Events(const Request& request, Response& response) {
  const auto member = MemberOf(request, response);
  if (!member) return;
  Json events = Json::parse(request.body, nullptr, false);
  if (!events.is_array()) {
    response.status = 400;
    return;
  }
  for (Json& event : events) member->session->Post(std::move(event));
  response.status = 204;
}

void PageServer::Route() {
  server_.set_pre_routing_handler(
      [this](const Request& request, Response& response) { return Admit(request, response); });
  server_.set_mount_point("/", options_.webFolder);
  server_.set_file_extension_and_mimetype_mapping("js", "text/javascript");
  server_.Get("/help", [this](const Request&, Response& response) {
    response.set_content(ReadWholeFile(options_.helpFile).value_or(std::string()), "text/html");
  });
  server_.Post("/api/session", [this](const Request& q, Response& r) { OpenSession(q, r); });
  server_.Get("/api/stream", [this](const Request& q, Response& r) {
    if (const auto member = MemberOf(q, r)) Stream(member, r);
  });
  server_.Post("/api/events", [this](const Request& q, Response& r) {
    if (q.body.size() > kMostEvents) {
      r.status = 413;
      return;
    }
    Events(q, r);
  });
  server_.Post("/api/upload", [this](const Request& q, Response& r) {
    if (const auto member = MemberOf(q, r))
      r.set_content(Json{{"upload", member->session->Upload(q.body)}}.dump(), "application/json");
  });
  server_.Post("/api/leave", [this](const Request& q, Response& r) {
    hall_.Leave(q.get_param_value("session"));
    r.status = 204;
  });
}

std::string PageServer::Serve() {
  std::error_code code;
  if (!std::filesystem::is_regular_file(options_.webFolder + "index.html", code))
    return "the page's files are missing: there is no '" + options_.webFolder + "index.html'; install them again";
  server_.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  server_.set_payload_max_length(kMostUpload);
  server_.set_tcp_nodelay(true);
  Route();
  const bool bound = options_.port ? server_.bind_to_port("127.0.0.1", options_.port)
                                   : (port_ = server_.bind_to_any_port("127.0.0.1")) > 0;
  if (!bound) return "port " + std::to_string(options_.port) + " is in use; choose another one, or leave --port out";
  if (options_.port) port_ = options_.port;
  std::thread listener([this] { server_.listen_after_bind(); });
  while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  hall_.Prepare();
  options_.ready("http://127.0.0.1:" + std::to_string(port_) + "/#" + token_);
  while (!options_.interrupted() && hall_.Sweep()) std::this_thread::sleep_for(std::chrono::milliseconds(100));
  hall_.EndAll();
  server_.stop();
  listener.join();
  return {};
}

}  // namespace

std::string RandomKey(int bytes) {
  std::random_device source;
  std::string key;
  for (int i = 0; i < bytes; ++i) {
    AppendHex(key, static_cast<std::uint8_t>(source() & 0xFF), kSmallHexDigits);
  }
  return key;
}

std::string ServePage(const PageServices& services, PageServerOptions options) {
  return PageServer(services, std::move(options)).Serve();
}

}  // namespace glyphmotion
