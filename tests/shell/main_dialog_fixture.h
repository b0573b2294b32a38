// SPDX-License-Identifier: MIT
// The main dialog with a host and a person before it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "controls/variables.h"
#include "platform/dialog_driver.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/shell_ui.h"
#include "platform/text_engine.h"
#include "resources/templates.h"
#include "shell/main_controls.h"
#include "shell/main_dialog.h"
#include "temporary_folder.h"

namespace glyphmotion {

struct HostCallSeen {
  std::uint32_t operation;
  std::uint64_t a, b;
};

// What the host of a test saw and answers.
struct TestHost {
  std::vector<HostCallSeen> calls;
  std::function<std::uint64_t(std::uint32_t, std::uint64_t, std::uint64_t)> answer;
  int Count(std::uint32_t operation) const {
    int count = 0;
    for (const HostCallSeen& call : calls) count += call.operation == operation;
    return count;
  }
};
inline TestHost host;

inline std::uint64_t HostCall(void*, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  host.calls.push_back({operation, a, b});
  return host.answer ? host.answer(operation, a, b) : 0;
}

template <typename T>
T* At(std::uint64_t address) {
  return reinterpret_cast<T*>(static_cast<std::uintptr_t>(address));
}

class MainDialogTest : public ::testing::Test {
 protected:
  MainDialogTest() {
    FolderOverrides overrides;
    overrides.settingsFile = Path("settings.ini");
    overrides.perControlFolder = "";
    overrides.dataFolder = "";
    SetFolderOverrides(overrides);
    host = {};
    StartTextEngine();
    responder_.message = [this](Dialog*, const std::string& text, MessageButtons) {
      messages_.push_back(text);
      return true;
    };
  }
  ~MainDialogTest() override {
    StopTextEngine();
    SetFolderOverrides({});
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  /// Runs the dialog with this driver; nothing is left behind. RunModal's result.
  std::int64_t RunDialog(std::uint32_t hostFlags, const std::function<void(Dialog&)>& driver) {
    HostCallTable table{};
    table.version = HostInterfaceVersion;
    table.HostCall = withoutHostCall_ ? nullptr : HostCall;
    table.hostFlags = hostFlags;
    table.skinSwitch = skinned_;
    const BlockCounters before = LiveBlocks();
    const UiResponder oldResponder = SetUiResponder(responder_);
    const ModalDriver oldDriver = SetModalDriver([&](Dialog& dialog, int templateId) {
      if (templateId == kMainDialogTemplate.id) return driver(dialog);
      if (inner_) inner_(dialog, templateId);
    });
    const std::int64_t result = RunModal(kMainDialogTemplate, nullptr, MainDialogProcedure, &table);
    SetModalDriver(oldDriver);
    SetUiResponder(oldResponder);
    EXPECT_EQ(LiveBlocks().blocks, before.blocks);
    EXPECT_EQ(LiveBlocks().locks, before.locks);
    return result;
  }

  const TemporaryFolder scratch_;
  const std::filesystem::path folder_ = scratch_.path;
  UiResponder responder_;
  std::vector<std::string> messages_;
  std::function<void(Dialog&, int)> inner_;  ///< drives the dialogs over the main one
  bool withoutHostCall_ = false, skinned_ = false;
};

constexpr std::uint32_t kPaletteHost = HostFlagPaletteFormat, kColourHost = HostFlagTrueColorFormat,
                        kBothHost = HostFlagPaletteFormat | HostFlagTrueColorFormat;

}  // namespace glyphmotion
