// SPDX-License-Identifier: MIT
#include "host/page/guarded_stream.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace glyphmotion {
namespace {

constexpr std::size_t kBuffer = 16384;
constexpr auto kWriteTimeout = std::chrono::seconds(5);

}  // namespace

bool GuardedStream::Wait(short events, std::chrono::milliseconds most) const {
  const auto until = Clock::now() + most;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    pollfd entry{socket_, events, 0};
    const int ready = ::poll(&entry, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
    if (ready > 0) return !(entry.revents & POLLNVAL);
    if (ready == 0 || errno != EINTR) return false;
  }
}

bool GuardedStream::AwaitRequest(std::chrono::milliseconds most) const {
  return taken_ < buffer_.size() || Wait(POLLIN, most);
}

bool GuardedStream::is_readable() const {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now());
  return taken_ < buffer_.size() || (left.count() > 0 && Wait(POLLIN, left));
}

bool GuardedStream::is_writable() const { return Wait(POLLOUT, kWriteTimeout); }

ssize_t GuardedStream::read(char* bytes, size_t size) {
  if (taken_ == buffer_.size()) {
    if (!is_readable()) return -1;
    buffer_.resize(kBuffer);
    const ssize_t got = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
    buffer_.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    taken_ = 0;
    if (got <= 0) return got;
  }
  const std::size_t count = std::min(size, buffer_.size() - taken_);
  std::memcpy(bytes, buffer_.data() + taken_, count);
  taken_ += count;
  return static_cast<ssize_t>(count);
}

ssize_t GuardedStream::write(const char* bytes, size_t size) {
  if (!is_writable()) return -1;
  return ::send(socket_, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
}

void GuardedStream::get_remote_ip_and_port(std::string& ip, int& port) const {
  ip = "127.0.0.1";
  port = 0;
}

}  // namespace glyphmotion
