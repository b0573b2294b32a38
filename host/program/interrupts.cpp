// SPDX-License-Identifier: MIT
#include "host/program/interrupts.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <string_view>

namespace glyphmotion {
namespace {

constexpr unsigned kGraceSeconds = 1;

volatile std::sig_atomic_t interruptedBy = 0;
constinit std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);  // set by signal handlers

// Async-signal-safe.
[[noreturn]] void EndAtOnce() {
  constexpr std::string_view kMessage = "glyphmotion: error: interrupted; nothing was written\n";
  (void)!write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(128 + interruptedBy);
}

void Interrupt(int signal) {
  if (interruptedBy) EndAtOnce();
  interruptedBy = signal;
  interrupted = true;
  alarm(kGraceSeconds);
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;  // without SA_RESTART: a blocked call returns
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void CatchInterrupts() {
  for (const int signal : {SIGINT, SIGTERM}) Handle(signal, Interrupt);
  struct sigaction hangUp {};
  if (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) Handle(SIGHUP, Interrupt);  // nohup
  Handle(SIGALRM, [](int) {
    if (interruptedBy) EndAtOnce();
  });
  for (const int signal : {SIGPIPE, SIGXFSZ}) Handle(signal, SIG_IGN);
  // A parent may have blocked them, and the mask is inherited.
  sigset_t ours;
  sigemptyset(&ours);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGALRM}) sigaddset(&ours, signal);
  sigprocmask(SIG_UNBLOCK, &ours, nullptr);
}

void AllowToEnd(unsigned seconds) noexcept { alarm(seconds); }

int InterruptedCode() noexcept { return interruptedBy ? 128 + interruptedBy : 0; }

const std::atomic<bool>& InterruptRequest() noexcept { return interrupted; }

void OpenStandardStreams() noexcept {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // open() returns the lowest free number.
    if (fcntl(stream, F_GETFD) == -1) (void)!open("/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY);
  }
}

}  // namespace glyphmotion
