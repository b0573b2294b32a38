// SPDX-License-Identifier: MIT
// The C library ends the process when it lacks the memory to register the destructor of a thread_local object. So the
// state is plain storage, and a POSIX key destroys it: setting one of a process's first 32 keys allocates nothing.
#include <pthread.h>

#include <new>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

struct Storage {
  alignas(RunState) std::byte bytes[sizeof(RunState)];
  RunState* state;
};
constinit thread_local Storage storage{};

void Destroy(void*) noexcept {
  if (storage.state) storage.state->~RunState();
  storage.state = nullptr;
}

// The key ends before the code of Destroy is unloaded. A process's end runs no destructors of keys, so the thread that
// ends the process destroys its own state here.
class Key {
 public:
  Key() noexcept : made_(pthread_key_create(&key_, &Destroy) == 0) {}
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    Destroy(nullptr);
    if (made_) pthread_key_delete(key_);
  }
  // Without a key, or when it cannot be set, the state is just not destroyed at the thread's end.
  void WatchThread() const noexcept {
    if (made_) pthread_setspecific(key_, &storage);
  }

 private:
  pthread_key_t key_{};
  bool made_;
};

}  // namespace

RunState& ThreadState() noexcept {
  static const Key key;
  if (!storage.state) {
    storage.state = new (storage.bytes) RunState;
    key.WatchThread();
  }
  return *storage.state;
}

}  // namespace glyphmotion
