// SPDX-License-Identifier: MIT
// One run, one state. Whatever changes while a dialog or a job runs (the variables, the random generator, the desktop
// in memory, the windows that an editor opens, caches) is a member of that run's RunState, made on first use. So runs
// go on side by side in any number of threads, and a run within a run has a state of its own.
//
// A folder declares a plain struct for its own part and reaches it with CurrentRun().Member<Part>(); nothing here knows
// the parts. A thread works for one run at a time: the doors (PLUGIN16DoBuild, Render) enter their run with a RunScope,
// and a thread that helps a run enters it likewise. A thread that entered none works in a state of its own.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace glyphmotion {

/// The n-th allocation that fails, for tests and --fail-allocation; and how many were asked for.
struct AllocationCountdown {
  std::atomic<std::uint64_t> failAt{0}, asked{0};
};

class RunState {
 public:
  RunState() noexcept;
  RunState(const RunState&) = delete;
  RunState& operator=(const RunState&) = delete;
  /// Destroys the members, the last made first. No thread may be working for the run any more.
  ~RunState();

  /// The run's T, made (with its default values) on first use. Any thread of the run may ask; the T itself belongs to
  /// the run's own thread, the one that came through the door, unless it says otherwise. Throws what T's constructor
  /// throws.
  template <typename T>
  T& Member() {
    static const std::size_t slot = NewSlot();
    if (void* made = slots_[slot].load(std::memory_order_acquire)) return *static_cast<T*>(made);
    auto* node = new NodeOf<T>;
    return *static_cast<T*>(Keep(slot, node, &node->value, [](Node* old) { delete static_cast<NodeOf<T>*>(old); }));
  }

  /// A number that no other run of the process has.
  std::uint64_t Number() const noexcept { return number_; }

  /// Asks the run to end as soon as possible. Any thread may ask, and a request is never taken back.
  void RequestEnd() noexcept { endRequested_.store(true, std::memory_order_relaxed); }
  /// Whether it was asked to. Long loops look between frames and rows, and give up with an empty result.
  bool EndRequested() const noexcept {
    return endRequested_.load(std::memory_order_relaxed) ||
           (outerRequest_ && outerRequest_->load(std::memory_order_relaxed));
  }
  /// A flag of somebody else (a signal handler's, another thread's) that counts as a request while it is true; it
  /// outlives the run. Null for none.
  void WatchRequest(const std::atomic<bool>* request) noexcept { outerRequest_ = request; }

  /// The random generator's state, see random.h.
  std::uint32_t random = 1;

  AllocationCountdown& Allocations() noexcept { return *allocations_; }
  /// Counts this run's allocations with another's, which outlives it.
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
  /// Makes the node the slot's member, unless another thread was faster; the member.
  void* Keep(std::size_t slot, Node* node, void* value, void (*destroy)(Node*)) noexcept;

  std::atomic<bool> endRequested_{false};
  const std::atomic<bool>* outerRequest_ = nullptr;
  const std::uint64_t number_;
  AllocationCountdown ownAllocations_;
  AllocationCountdown* allocations_ = &ownAllocations_;
  std::array<std::atomic<void*>, kMostMembers> slots_{};
  std::atomic<Node*> last_{nullptr};
};

/// The calling thread's own state, in which it works outside of all runs. What is set there beforehand (folders, and
/// for dialogs in memory the driver, the observer and the responder) is where PLUGIN16DoBuild starts from.
RunState& ThreadState() noexcept;

/// The run that the calling thread works for.
RunState& CurrentRun() noexcept;

/// Whether the run that the calling thread works for was asked to end.
inline bool EndRequested() noexcept { return CurrentRun().EndRequested(); }

/// Lets the calling thread work for a run, and after that for the one before.
class RunScope {
 public:
  explicit RunScope(RunState& run) noexcept;
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;
  ~RunScope();

 private:
  RunState* before_;
};

/// Where dialogs are in memory, gives a new run what the calling thread has set up in its own state: the driver, the
/// observer, the responder, the folders and the allocation that is to fail. On Windows nothing is set up beforehand.
void TakeThreadSetup(RunState& run);

}  // namespace glyphmotion
