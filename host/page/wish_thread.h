// SPDX-License-Identifier: MIT
// A thread that makes what a page wishes for, one wish after the other, beside the dialog.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace glyphmotion {

template <typename Wish>
class WishThread {
 public:
  using Clock = std::chrono::steady_clock;

  /// `make` is called on the thread; it ends early where Cancelled() becomes true.
  explicit WishThread(std::function<void(const Wish&)> make) : make_(std::move(make)), thread_([this] { Work(); }) {}
  ~WishThread() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      ending_ = true;
      cancelled_ = true;
    }
    wake_.notify_all();
    thread_.join();
  }
  WishThread(const WishThread&) = delete;
  WishThread& operator=(const WishThread&) = delete;

  /// Replaces the wishes that have not begun, and cancels the current one. The first begins at `due`.
  void Set(std::deque<Wish> wishes, Clock::time_point due = {}) {
    const std::lock_guard<std::mutex> lock(mutex_);
    cancelled_ = true;
    wishes_ = std::move(wishes);
    due_ = due;
    wake_.notify_all();
  }

  /// A request to end the current wish.
  const std::atomic<bool>& Cancelled() const { return cancelled_; }

 private:
  void Work() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!ending_) {
      if (wishes_.empty()) {
        wake_.wait(lock);
      } else if (Clock::now() < due_) {
        wake_.wait_until(lock, due_);
      } else {
        const Wish wish = std::move(wishes_.front());
        wishes_.pop_front();
        cancelled_ = false;
        lock.unlock();
        make_(wish);
        lock.lock();
      }
    }
  }

  const std::function<void(const Wish&)> make_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Wish> wishes_;
  Clock::time_point due_{};
  bool ending_ = false;
  std::atomic<bool> cancelled_{false};
  std::thread thread_;  // the last member: it uses the others
};

}  // namespace glyphmotion
