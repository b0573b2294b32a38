// SPDX-License-Identifier: MIT
// The sessions of a server: each on a thread of its own, with the messages that wait for its page.
#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "host/page/page_server.h"
#include "host/page/page_session.h"

namespace glyphmotion {

/// Messages on their way to one page, which comes and goes.
class Outbox {
 public:
  /// Never waits; when a page takes nothing for long, what it has missed is dropped and it gets a fresh snapshot.
  void Put(const PageMessage& message);
  /// The next message as bytes of the stream, a beat when none comes for a while; empty when another page has taken the
  /// box over, or it is closed.
  std::string Next(int page);
  /// A page begins to listen; the one before ends.
  int Open();
  void Close();
  bool Overflowed();

 private:
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::string> waiting_;
  std::size_t bytes_ = 0;
  int page_ = 0;
  bool closed_ = false, overflowed_ = false;
};

class SessionHall {
 public:
  static constexpr std::size_t kMost = 16;

  SessionHall(const PageServices& services, const PageServerOptions& options)
      : services_(services), options_(options), store_(options.storeFolder) {}
  ~SessionHall();

  struct Member {
    Outbox outbox;
    std::unique_ptr<PageSession> session;
    std::thread thread;
    int listeners = 0;
    std::chrono::steady_clock::time_point alone{};  ///< since when nobody listens
    bool leaving = false;
    bool spare = false;  ///< made before anybody asked for it
    std::atomic<bool> over{false};
  };

  /// Makes the first session before its page is there, which then finds all that it shows.
  void Prepare();
  /// An old session, or with an unknown key a new one; its key, empty when there are too many.
  std::string Enter(const std::string& key);
  std::shared_ptr<Member> Find(const std::string& key);
  void Listen(const std::shared_ptr<Member>& member, bool listens);
  void Leave(const std::string& key);
  void EndAll();
  /// Ends the sessions that nobody came back to. False when the last one has gone.
  bool Sweep();

 private:
  void Start(const std::string& key, bool spare);

  const PageServices& services_;
  const PageServerOptions& options_;
  DocumentStore store_;
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<Member>> members_;
  bool hadOne_ = false, gaveFirst_ = false;
};

}  // namespace glyphmotion
