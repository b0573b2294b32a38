// SPDX-License-Identifier: MIT
// Documents, settings and pictures.
#include <glyphmotion/host_contract.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "controls/variables.h"
#include "fuzz/readers.h"
#include "host/render/image_loader.h"
#include "platform/dialog_driver.h"
#include "platform/encoding.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "shell/documents.h"
#include "shell/main_dialog.h"
#include "shell/settings.h"

namespace glyphmotion::fuzz {
namespace {

/// The main dialog, open on a thread of its own.
class OpenDialog {
 public:
  OpenDialog() {
    std::thread([this] { Run(); }).detach();
  }
  void Do(const std::function<void(Dialog&)>& work) {
    std::unique_lock lock(mutex_);
    work_ = &work;
    changed_.notify_all();
    changed_.wait(lock, [&] { return !work_; });
  }

 private:
  void Run() {
    RunState run;
    const RunScope scope(run);
    SetModalDriver([this](Dialog& dialog, int) {
      for (;;) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return work_ != nullptr; });
        (*work_)(dialog);
        work_ = nullptr;
        changed_.notify_all();
      }
    });
    HostCallTable table{};
    table.version = HostInterfaceVersion;
    table.HostCall = [](void*, std::uint32_t, std::uint64_t, std::uint64_t) { return std::uint64_t{0}; };
    table.hostFlags = HostFlagPaletteFormat;
    RunMainDialog(nullptr, &table);
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  const std::function<void(Dialog&)>* work_ = nullptr;
};

}  // namespace

// Opening a dialog takes longer than reading a document: each input finds the dialog as the one before it left it.
void ReadDocuments(std::string_view input) {
  static OpenDialog& dialog = *new OpenDialog;  // as long as the process
  dialog.Do([&](Dialog& main) {
    const std::string text = TextFromBytes(std::string(input));
    SummariseDocumentText(text);
    if (!TakeDocumentText(main, text)) return;
    // What a dialog has taken it writes, and takes again.
    Require(TakeDocumentText(main, DocumentText(main)));
  });
}

void ReadPictures(std::string_view input) {
  std::string error;
  const PackedDib dib = LoadPicture(FileOf(input), error);
  Require(static_cast<bool>(dib) == error.empty());
}

void ReadSettings(std::string_view input) {
  FolderOverrides folders;
  folders.settingsFile = FileOf(input);
  SetFolderOverrides(folders);
  LoadSettings();
  ResetVariables();
  SummariseSettings(std::string(input));
}

}  // namespace glyphmotion::fuzz
