// SPDX-License-Identifier: MIT
#include "host/page/session_hall.h"

#include <algorithm>
#include <exception>
#include <vector>

#include "platform/ascii.h"

namespace glyphmotion {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostWaiting = std::size_t{256} << 20;  // bytes
constexpr auto kBeat = std::chrono::seconds(2);

void AppendLength(std::string& bytes, std::size_t length) {
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(length >> shift & 0xFF);
}

std::string BytesOf(const PageMessage& message) {
  const std::string json = message.json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string bytes;
  bytes.reserve(8 + json.size() + message.payload.size());
  AppendLength(bytes, json.size());
  AppendLength(bytes, message.payload.size());
  bytes += json;
  bytes.append(reinterpret_cast<const char*>(message.payload.data()), message.payload.size());
  return bytes;
}

}  // namespace

void Outbox::Put(const PageMessage& message) {
  std::string bytes = BytesOf(message);
  const std::lock_guard<std::mutex> lock(mutex_);
  if (overflowed_ || bytes_ + bytes.size() > kMostWaiting) {
    overflowed_ = true;
    waiting_.clear();
    bytes_ = 0;
    return;
  }
  bytes_ += bytes.size();
  waiting_.push_back(std::move(bytes));
  wake_.notify_all();
}

std::string Outbox::Next(int page) {
  std::unique_lock<std::mutex> lock(mutex_);
  wake_.wait_for(lock, kBeat, [&] { return closed_ || page != page_ || !waiting_.empty(); });
  if (page != page_ || (closed_ && waiting_.empty())) return {};
  if (waiting_.empty()) return BytesOf({{{"type", "beat"}}, {}});
  std::string next = std::move(waiting_.front());
  waiting_.pop_front();
  bytes_ -= next.size();
  return next;
}

int Outbox::Open() {
  const std::lock_guard<std::mutex> lock(mutex_);
  waiting_.clear();
  bytes_ = 0;
  overflowed_ = false;
  wake_.notify_all();
  return ++page_;
}

void Outbox::Close() {
  const std::lock_guard<std::mutex> lock(mutex_);
  closed_ = true;
  wake_.notify_all();
}

void SessionHall::EndAll() {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (auto& [key, member] : members_) {
    member->session->End();
    member->outbox.Close();
  }
}

SessionHall::~SessionHall() {
  EndAll();
  for (auto& [key, member] : members_) member->thread.join();
}

void SessionHall::Start(const std::string& key, bool spare) {
  const auto made = std::make_shared<Member>();
  Member& member = *made;
  member.spare = spare;
  PageSession::Start start;
  start.key = key;
  start.words = options_.words;
  start.looks = options_.looks;
  if (!std::exchange(gaveFirst_, true)) start.path = options_.path;
  Outbox& outbox = member.outbox;
  member.session = std::make_unique<PageSession>(services_, store_, std::move(start),
                                                 [&outbox](const PageMessage& message) { outbox.Put(message); });
  member.alone = Clock::now();
  member.thread = std::thread([this, key, &member] {
    try {
      member.session->Run();
    } catch (const std::exception&) {  // out of memory: the page hears that its session is gone, and opens another
    }
    store_.Release(key);
    member.over = true;
    member.outbox.Close();
  });
  members_[key] = made;
}

std::string SessionHall::Enter(const std::string& key) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = members_.find(key);
  if (found != members_.end() && !found->second->over) {
    found->second->leaving = false;
    found->second->alone = Clock::now();
    return key;
  }
  if (members_.size() >= kMost) return {};
  const auto spare =
      std::find_if(members_.begin(), members_.end(), [](const auto& each) { return each.second->spare; });
  const bool known = key.size() == 16 && key.find_first_not_of(kSmallHexDigits) == std::string::npos;
  const bool returns = known && found == members_.end();
  std::string fresh = returns ? key : spare != members_.end() ? spare->first : RandomKey(8);
  hadOne_ = true;
  if (spare == members_.end()) return Start(fresh, false), fresh;
  // Who comes back from an earlier program has a document of his own; the first page's goes with it.
  Member& first = *spare->second;
  first.spare = false;
  first.alone = returns ? Clock::time_point{} : Clock::now();
  if (returns) {
    gaveFirst_ = false;
    Start(fresh, false);
  }
  return fresh;
}

void SessionHall::Prepare() {
  const std::lock_guard<std::mutex> lock(mutex_);
  Start(RandomKey(8), true);
}

std::shared_ptr<SessionHall::Member> SessionHall::Find(const std::string& key) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = members_.find(key);
  return found == members_.end() || found->second->over ? nullptr : found->second;
}

void SessionHall::Listen(const std::shared_ptr<Member>& member, bool listens) {
  const std::lock_guard<std::mutex> lock(mutex_);
  member->listeners += listens ? 1 : -1;
  member->alone = Clock::now();
}

void SessionHall::Leave(const std::string& key) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = members_.find(key);
  if (found != members_.end()) found->second->leaving = true;
}

bool SessionHall::Sweep() {
  std::vector<std::shared_ptr<Member>> gone;
  bool some = true;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (auto at = members_.begin(); at != members_.end();) {
      Member& member = *at->second;
      const auto grace =
          std::chrono::milliseconds(member.leaving ? options_.graceMilliseconds / 2 : options_.graceMilliseconds);
      const bool late = !member.spare && member.listeners == 0 && Clock::now() - member.alone > grace;
      if (!late && !member.over) {
        ++at;
        continue;
      }
      gone.push_back(at->second);
      at = members_.erase(at);
    }
    some = !members_.empty() || !hadOne_;
  }
  for (const auto& member : gone) {
    member->session->End();
    member->outbox.Close();
    member->thread.join();
  }
  return some;
}

}  // namespace glyphmotion
