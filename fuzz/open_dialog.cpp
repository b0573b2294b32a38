// SPDX-License-Identifier: MIT
#include "fuzz/open_dialog.h"

#include <thread>
#include <utility>

#include "host/page/document_history.h"
#include "platform/dialog_driver.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/workers.h"
#include "shell/documents.h"
#include "shell/main_dialog.h"

namespace glyphmotion::fuzz {

OpenDialog::OpenDialog(std::uint32_t hostFlags, HostEntry entry, Work nested) : nested_(std::move(nested)) {
  table_.version = HostInterfaceVersion;
  table_.HostCall = entry;
  table_.hostFlags = hostFlags;
  std::thread([this] {
    for (;;) Run();
  }).detach();
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return isReady_; });
}

void OpenDialog::Do(const Work& work) {
  std::unique_lock lock(mutex_);
  work_ = &work;
  isReady_ = false;
  changed_.notify_all();
  changed_.wait(lock, [&] { return isReady_; });
}

void OpenDialog::Restore(Dialog& dialog) const {
  TakeDocumentText(dialog, LinesThatDiffer(DocumentText(dialog), blank_));
  Pump(dialog);
}

void OpenDialog::Run() {
  RunState run;
  const RunScope scope(run);
  FolderOverrides folders = CurrentFolderOverrides();
  folders.settingsFile = "";
  SetFolderOverrides(std::move(folders));
  SetRunThreads(1);
  isOpen_ = false;
  SetModalDriver([this](Dialog& dialog, int) {
    if (!isOpen_) return Serve(dialog);
    if (nested_) nested_(dialog);
  });
  RunMainDialog(nullptr, &table_);
}

void OpenDialog::Serve(Dialog& dialog) {
  isOpen_ = true;
  Pump(dialog);
  blank_ = DocumentText(dialog);
  while (!HasEnded(dialog)) {
    std::unique_lock lock(mutex_);
    isReady_ = true;
    changed_.notify_all();
    changed_.wait(lock, [&] { return work_ != nullptr; });
    (*std::exchange(work_, nullptr))(dialog);
  }
}

}  // namespace glyphmotion::fuzz
