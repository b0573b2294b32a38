// SPDX-License-Identifier: MIT
// A connection with time limits of its own: a client that sends a byte a second, or takes none, is dropped.
#pragma once

#include <httplib.h>

#include <chrono>

namespace glyphmotion {

class GuardedStream : public httplib::Stream {
 public:
  using Clock = std::chrono::steady_clock;

  explicit GuardedStream(socket_t socket) : socket_(socket) {}

  /// Waits for the first byte of another request; false when none comes in time.
  bool AwaitRequest(std::chrono::milliseconds most) const;
  /// Whether bytes have come that nobody has read.
  bool HasRest() const { return taken_ < buffer_.size(); }
  /// From now on a whole request has to arrive within this time.
  void BeginRequest(std::chrono::milliseconds most) { deadline_ = Clock::now() + most; }

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* bytes, size_t size) override;
  ssize_t write(const char* bytes, size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string&, int&) const override {}
  socket_t socket() const override { return socket_; }

 private:
  bool Wait(short events, std::chrono::milliseconds most) const;

  const socket_t socket_;
  Clock::time_point deadline_{};
  std::string buffer_;
  std::size_t taken_ = 0;
};

}  // namespace glyphmotion
