// SPDX-License-Identifier: MIT
// One run, one state. Everything that changes while a dialog or a job runs (the variables, the random generator, the
// in-memory desktop, the windows that an editor opens, caches) is a member of that run's RunState, created on first
// use. So runs are independent in any number of threads, and a nested run has a state of its own. A folder declares a
// plain struct for its own part and accesses it with CurrentRun().Member<Part>(); this file knows none of the parts. A
// thread works for one run at a time: the entry points (PLUGIN16DoBuild, Render) enter their run with a RunScope, and
// so do the worker threads of a run. A thread that has not entered a run works in a state of its own.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace glyphmotion {

/// The n-th allocation that fails, for tests and --fail-allocation, and the number of allocations so far.
struct AllocationCountdown {
  std::atomic<std::uint64_t> failAt{0}, asked{0};
};

/// The random generator of random.h.
struct RandomGenerator {
  std::uint32_t state = 1;
  bool seeded = false;  ///< since it was made
};

class RunState {
 public:
  RunState() noexcept;
  RunState(const RunState&) = delete;
  RunState& operator=(const RunState&) = delete;
  /// Destroys the members in reverse order. No thread may be working for the run any more.
  ~RunState();

  /// The run's T, created with default values on first use. Any thread of the run may call this; the T itself belongs
  /// to the run's main thread, the one that called the entry point, unless documented otherwise. Throws what T's
  /// constructor throws.
  template <typename T>
  T& Member() {
    static const std::size_t slot = NewSlot();
    if (void* made = slots_[slot].load(std::memory_order_acquire)) return *static_cast<T*>(made);
    auto* node = new NodeOf<T>;
    return *static_cast<T*>(Keep(slot, node, &node->value, [](Node* old) { delete static_cast<NodeOf<T>*>(old); }));
  }

  /// Unique within the process.
  std::uint64_t Number() const noexcept { return number_; }

  /// Asks the run to end as soon as possible. May be called on any thread; cannot be withdrawn.
  void RequestEnd() noexcept { endRequested_.store(true, std::memory_order_relaxed); }
  /// Whether RequestEnd was called. Long loops check between frames and rows, and return an empty result.
  bool EndRequested() const noexcept {
    return endRequested_.load(std::memory_order_relaxed) ||
           (outerRequest_ && outerRequest_->load(std::memory_order_relaxed));
  }
  /// An external flag (set by a signal handler or another thread) that counts as a request while it is true; it must
  /// outlive the run. Null for none.
  void WatchRequest(const std::atomic<bool>* request) noexcept { outerRequest_ = request; }

  /// What the run's main thread draws from.
  RandomGenerator random;

  AllocationCountdown& Allocations() noexcept { return *allocations_; }
  /// Counts this run's allocations together with another's, which must outlive it.
  void ShareAllocations(RunState& other) noexcept { allocations_ = &other.Allocations(); }

 private:
  static constexpr std::size_t kMostMembers = 64;
  struct Node {
    Node* earlier = nullptr;
    void (*destroy)(Node*) = nullptr;
  };
  template <typename T>
  struct NodeOf : Node {
    T value{};
  };

  static std::size_t NewSlot() noexcept;
  /// Installs the node as the slot's member unless another thread was first; returns the member.
  void* Keep(std::size_t slot, Node* node, void* value, void (*destroy)(Node*)) noexcept;

  std::atomic<bool> endRequested_{false};
  const std::atomic<bool>* outerRequest_ = nullptr;
  const std::uint64_t number_;
  AllocationCountdown ownAllocations_;
  AllocationCountdown* allocations_ = &ownAllocations_;
  std::array<std::atomic<void*>, kMostMembers> slots_{};
  std::atomic<Node*> last_{nullptr};
};

/// The calling thread's own state, used outside of all runs. PLUGIN16DoBuild starts from the settings there (folders,
/// and for in-memory dialogs the driver, the observer and the responder).
RunState& ThreadState() noexcept;

/// The run that the calling thread works for.
RunState& CurrentRun() noexcept;

/// What the calling thread draws from: its run's generator, or the one that it brought into its RunScope.
RandomGenerator& CurrentRandom() noexcept;

/// Whether the calling thread's run was asked to end.
inline bool EndRequested() noexcept { return CurrentRun().EndRequested(); }

/// Makes a run the calling thread's current one; the destructor restores the previous run. `random`: a generator for
/// this thread alone, which outlives the scope; null: the run's.
class RunScope {
 public:
  explicit RunScope(RunState& run, RandomGenerator* random = nullptr) noexcept;
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;
  ~RunScope();

 private:
  RunState* before_;
  RandomGenerator* randomBefore_;
};

/// For in-memory dialogs: copies to a new run what the calling thread has set in its own state: the driver, the
/// observer, the responder, the folders and the allocation that is to fail. Does nothing on Windows.
void TakeThreadSetup(RunState& run);

}  // namespace glyphmotion
