// SPDX-License-Identifier: MIT
// Threads that share a loop. The thread that starts the loop is one of them, so that one thread means none beside it.
#pragma once

#include <functional>
#include <memory>

namespace glyphmotion {

class Workers {
 public:
  /// The most threads that can be chosen.
  static constexpr int kMost = 256;

  /// threads 1 to kMost, the caller's included; 0: as many as the machine has cores. They start when they are first
  /// needed; if the system refuses some, the loop goes on with the others.
  explicit Workers(int threads = 0);
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  /// Not while a loop runs.
  ~Workers();

  /// The number of threads, the caller's included.
  int Lanes() const noexcept;

  /// Calls work(lane, i) for each i from 0 on, several at once, and take(i) on the calling thread, in order, each after
  /// its own work; work is at most a few i ahead of take. `lane` is below Lanes(), the same for everything that one
  /// thread does, and 0 on the calling thread. Each thread works for the caller's run.
  ///
  /// Returns  false once take has; what was begun is awaited, the rest dropped.
  /// Throws   what take throws, and in place of take(i) what work of i has thrown.
  ///
  /// A loop within a loop runs on its own thread alone.
  bool InOrder(int count, const std::function<void(int lane, int i)>& work, const std::function<bool(int i)>& take);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The threads of the current run: one, unless SetRunThreads was called before their first use.
Workers& RunWorkers();

/// As in Workers(threads).
void SetRunThreads(int threads);

}  // namespace glyphmotion
