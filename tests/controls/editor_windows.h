// SPDX-License-Identifier: MIT
// Editors' windows, driven in memory: a scratch home, a dialog that owns the editor, and what the desktop was asked.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "controls/editor_services.h"
#include "platform/dialog_driver.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

class EditorWindows : public testing::Test {
 protected:
  using Script = std::function<void(Dialog&)>;

  std::filesystem::path home =
      std::filesystem::temp_directory_path() / ("glyphmotion-editors-" + std::to_string(getpid()));
  std::vector<std::string> messages;
  std::optional<std::uint32_t> colour;
  std::vector<std::uint32_t> coloursAsked;
  int menuChoice = 0;
  std::vector<std::string> menu;  // the last one
  std::map<int, Script> scripts;  // by template
  static inline std::string topic;

  void SetUp() override {
    std::filesystem::create_directories(home / "data");
    SetFolderOverrides({{}, home.string(), (home / "data").string()});
    UiResponder responder;
    responder.message = [this](Dialog*, const std::string& text, MessageButtons) {
      messages.push_back(text);
      return true;
    };
    responder.colour = [this](Dialog*, std::uint32_t start) {
      coloursAsked.push_back(start);
      return colour;
    };
    responder.menu = [this](Dialog*, std::span<const MenuItem> items) {
      menu.clear();
      for (const MenuItem& item : items) menu.push_back(item.text);
      return menuChoice;
    };
    SetUiResponder(responder);
    topic.clear();
    SetEditorServices({[](Dialog&, const char* asked) { topic = asked; }, nullptr});
  }
  void TearDown() override {
    SetEditorServices({});
    SetUiResponder({});
    SetFolderOverrides({});
    std::filesystem::remove_all(home);
    ExpectNothingAlive();
  }
  static void ExpectNothingAlive() {
    EXPECT_EQ(LiveBlocks().blocks, 0u);
    EXPECT_EQ(LiveBlocks().locks, 0u);
  }

  /// Runs `body` within an owner; dialogs that it opens are played by their scripts.
  void WithOwner(
      const Script& body, const DialogTemplate& owner = {1, "Owner", 200, 100, {}},
      DialogProcedure procedure = [](Dialog&, const Message&) -> std::int64_t { return 0; }) {
    const ModalDriver before = SetModalDriver([&](Dialog& dialog, int id) {
      if (id == owner.id) return body(dialog);
      if (const auto script = scripts.find(id); script != scripts.end()) script->second(dialog);
    });
    RunModal(owner, nullptr, procedure, nullptr);
    SetModalDriver(before);
  }

  /// Runs `body` with each of its block allocations failing in turn; nothing may stay behind.
  static void FailEachAllocation(const std::function<void()>& body) {
    FailAllocation(0);
    body();
    const std::uint64_t asked = AllocationsAsked();
    ASSERT_GT(asked, 2u);
    for (std::uint64_t n = 1; n <= asked; ++n) {
      FailAllocation(n);
      body();
      FailAllocation(0);
      ASSERT_EQ(LiveBlocks().blocks, 0u) << "allocation " << n;
      ASSERT_EQ(LiveBlocks().locks, 0u) << "allocation " << n;
    }
  }

  /// A control, or an item of a list, as it looks.
  struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> bytes;
    std::uint32_t At(int x, int y) const {
      const std::uint8_t* p = &bytes[3 * static_cast<std::size_t>(y * width + x)];
      return static_cast<std::uint32_t>(p[2] | p[1] << 8 | p[0] << 16);
    }
    bool operator==(const Picture&) const = default;
  };
  static Picture Paint(Dialog& dialog, int id, int width = 0, int height = 0, int item = -1, bool selected = false) {
    const ControlRectangle place = RectangleOf(dialog, id);
    Picture picture{width ? width : place.right - place.left, height ? height : place.bottom - place.top, {}};
    picture.bytes.resize(static_cast<std::size_t>(picture.width * picture.height) * 3);
    DrawRequest request{picture.bytes.data(), picture.width, picture.height, std::ptrdiff_t{3} * picture.width};
    request.item = item;
    request.selected = request.focused = selected;
    EXPECT_TRUE(PaintControl(dialog, id, request));
    return picture;
  }
};

}  // namespace glyphmotion
