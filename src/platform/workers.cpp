// SPDX-License-Identifier: MIT
#include "platform/workers.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kAheadOfEach = 3;  // how much more than one i a thread may be ahead of take

/// One loop. Everything but the constants is guarded by the mutex of its owner.
struct Loop {
  struct Outcome {
    bool done = false;
    std::exception_ptr error;
  };

  const std::function<void(int, int)>& work;
  RunState& run;
  int end;                        ///< none from here on is begun
  int next = 0, taken = 0;        ///< the first that nobody has begun, and that has not been taken
  int busy = 0;                   ///< begun and not done
  std::vector<Outcome> outcomes;  ///< of i, at i modulo the size

  Loop(int count, const std::function<void(int, int)>& task, int ahead)
      : work(task), run(CurrentRun()), end(count), outcomes(static_cast<std::size_t>(ahead)) {}
  bool MayBegin() const { return next < end && next - taken < static_cast<int>(outcomes.size()); }
  Outcome& Of(int i) { return outcomes[static_cast<std::size_t>(i) % outcomes.size()]; }
};

}  // namespace

struct Workers::State {
  int lanes;
  std::mutex mutex;
  std::condition_variable mayBegin, done;
  Loop* loop = nullptr;
  bool ending = false;
  std::atomic<bool> looping{false};
  std::vector<std::jthread> threads;

  explicit State(int wanted) : lanes(wanted) {}
  ~State() {
    {
      const std::lock_guard lock(mutex);
      ending = true;
    }
    mayBegin.notify_all();
  }

  void Start() noexcept {
    try {
      while (static_cast<int>(threads.size()) < lanes - 1) {
        const int lane = static_cast<int>(threads.size()) + 1;
        threads.emplace_back([this, lane] { Serve(lane); });
      }
    } catch (...) {  // the system has no more threads, or no memory for them: those that started do
    }
  }

  void Serve(int lane) {
    std::unique_lock lock(mutex);
    for (;;) {
      mayBegin.wait(lock, [&] { return ending || (loop && loop->MayBegin()); });
      if (ending) return;
      Perform(*loop, lane, lock);
    }
  }

  /// Does the next i. The lock is held before and after, not during the work.
  void Perform(Loop& current, int lane, std::unique_lock<std::mutex>& lock) {
    const int i = current.next++;
    ++current.busy;
    lock.unlock();
    std::exception_ptr error;
    try {
      const RunScope scope(current.run);
      current.work(lane, i);
    } catch (...) {
      error = std::current_exception();
    }
    lock.lock();
    current.Of(i) = {true, std::move(error)};
    --current.busy;
    done.notify_one();
  }

  /// Waits for i, working meanwhile. Then rethrows what its work has thrown.
  void Await(Loop& current, int i) {
    std::unique_lock lock(mutex);
    while (!current.Of(i).done) {
      if (current.MayBegin())
        Perform(current, 0, lock);
      else
        done.wait(lock);
    }
    const Loop::Outcome outcome = std::exchange(current.Of(i), {});
    if (outcome.error) std::rethrow_exception(outcome.error);
  }

  void Taken(Loop& current) {
    {
      const std::lock_guard lock(mutex);
      ++current.taken;
    }
    mayBegin.notify_one();
  }

  void Open(Loop& current) {
    Start();
    {
      const std::lock_guard lock(mutex);
      loop = &current;
    }
    mayBegin.notify_all();
  }

  void Close(Loop& current) {
    std::unique_lock lock(mutex);
    current.end = 0;
    done.wait(lock, [&] { return current.busy == 0; });
    loop = nullptr;
  }
};

Workers::Workers(int threads) {
  if (threads == 0) threads = static_cast<int>(std::thread::hardware_concurrency());
  state_ = std::make_unique<State>(std::clamp(threads, 1, kMost));
}

Workers::~Workers() = default;

int Workers::Lanes() const noexcept { return state_->lanes; }

bool Workers::InOrder(int count, const std::function<void(int, int)>& work, const std::function<bool(int)>& take) {
  State& state = *state_;
  Loop loop(count, work, state.lanes * (1 + kAheadOfEach));
  if (state.lanes == 1 || count < 2 || state.looping.exchange(true)) {
    for (int i = 0; i < count; ++i) {
      work(0, i);
      if (!take(i)) return false;
    }
    return true;
  }
  struct Session {
    State& state;
    Loop& loop;
    Session(State& owner, Loop& opened) : state(owner), loop(opened) { state.Open(loop); }
    ~Session() {
      state.Close(loop);
      state.looping = false;
    }
  } session(state, loop);
  for (int i = 0; i < count; ++i) {
    state.Await(loop, i);
    if (!take(i)) return false;
    state.Taken(loop);
  }
  return true;
}

namespace {

struct ThreadsOfRun {
  int wanted = 1;
  std::unique_ptr<Workers> workers;
};

}  // namespace

Workers& RunWorkers() {
  auto& own = CurrentRun().Member<ThreadsOfRun>();
  if (!own.workers) own.workers = std::make_unique<Workers>(own.wanted);
  return *own.workers;
}

void SetRunThreads(int threads) { CurrentRun().Member<ThreadsOfRun>().wanted = threads; }

}  // namespace glyphmotion
