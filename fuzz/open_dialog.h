// SPDX-License-Identifier: MIT
// The main dialog, open as long as the process lives: opening one takes longer than reading an input.
#pragma once

#include <glyphmotion/host_contract.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>

#include "platform/dialog.h"

namespace glyphmotion::fuzz {

/// Never destroyed: its thread serves until the process ends. A dialog that ends is opened anew.
class OpenDialog {
 public:
  using Work = std::function<void(Dialog&)>;
  using HostEntry = decltype(HostCallTable::HostCall);
  /// `nested` plays the user of the dialogs over the main one. Both are called on the dialog's thread.
  explicit OpenDialog(std::uint32_t hostFlags = HostFlagPaletteFormat, HostEntry entry = SayNo, Work nested = {});
  /// Runs `work` on the dialog's thread, and returns once the dialog waits again.
  void Do(const Work& work);
  /// Gives every control that a document knows the value that it had when the dialog opened. On the dialog's thread.
  void Restore(Dialog& dialog) const;

 private:
  static std::uint64_t SayNo(void*, std::uint32_t, std::uint64_t, std::uint64_t) { return 0; }
  void Run();
  void Serve(Dialog& dialog);

  HostCallTable table_{};
  const Work nested_;
  std::string blank_;
  std::mutex mutex_;
  std::condition_variable changed_;
  const Work* work_ = nullptr;
  bool isReady_ = false;  // under the mutex, with `work_`
  bool isOpen_ = false;   // the dialog's thread alone
};

}  // namespace glyphmotion::fuzz
