// SPDX-License-Identifier: MIT
// A scratch home, a dialog that owns the controls with fills or an editor, and a scripted user for the dialogs behind
// them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "controls/editor_services.h"
#include "materials/shipped.h"
#include "platform/dialog_driver.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/shell_ui.h"
#include "temporary_folder.h"

namespace glyphmotion {

class EditorDialog : public testing::Test {
 protected:
  using Script = std::function<void(Dialog&)>;

  const TemporaryFolder scratch;
  const std::filesystem::path home = scratch.path;
  std::vector<std::string> messages;
  MessageButtons buttons = MessageButtons::Ok;  ///< of the last message
  bool yes = true;                              ///< the answer to every question
  std::optional<std::string> newName = "Mine";
  std::optional<std::uint32_t> colour;
  std::vector<std::uint32_t> coloursAsked;
  int menuChoice = 0, menus = 0;
  std::vector<std::string> menuItems;  ///< of the last menu
  std::map<int, Script> scripts;       ///< what the person does, by template
  UiResponder responder;

  void SetUp() override {
    std::filesystem::create_directories(home / "data");
    SetFolderOverrides({{}, (home / "kept").string(), (home / "data").string()});  // "kept" is made by the first save
    responder.message = [this](Dialog*, const std::string& text, MessageButtons offered) {
      buttons = offered;
      messages.push_back(text);
      return yes;
    };
    responder.name = [this](Dialog*, const std::string&, const std::string&) { return newName; };
    responder.colour = [this](Dialog*, std::uint32_t start) {
      coloursAsked.push_back(start);
      return colour;
    };
    responder.menu = [this](Dialog*, std::span<const MenuItem> items) {
      ++menus;
      menuItems.clear();
      for (const MenuItem& item : items) menuItems.push_back(item.text);
      return menuChoice;
    };
    SetUiResponder(responder);
  }
  void TearDown() override {
    SetEditorServices({});
    SetUiResponder({});
    SetFolderOverrides({});
    SetModalDriver({});
    FailAllocation(0);
    ExpectNothingAlive();
  }
  static void ExpectNothingAlive() {
    EXPECT_EQ(LiveBlocks().blocks, 0u);
    EXPECT_EQ(LiveBlocks().locks, 0u);
  }

  void HoldShift(bool down) {
    responder.shiftDown = down;
    SetUiResponder(responder);
  }
  /// A click with Shift held.
  bool ShiftClick(Dialog& dialog, int id) {
    HoldShift(true);
    const bool done = Click(dialog, id);
    HoldShift(false);
    return done;
  }
  std::string LastMessage() const { return messages.empty() ? "" : messages.back(); }
  std::string Data(const std::string& name) const { return (home / "data" / name).string(); }
  /// The user's own copy of a shipped library, as an edit makes it.
  std::string OwnCopy(const std::string& name) const {
    std::filesystem::copy_file(ShippedLibraryPath(name), Data(name));
    return Data(name);
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

  static std::vector<std::string> Items(const Dialog& dialog, int id) {
    std::vector<std::string> items;
    for (int i = 0; i < ItemCount(dialog, id); ++i) items.push_back(ItemText(dialog, id, i));
    return items;
  }

  /// What a control, or an item of it, looks like.
  struct Face {
    int width = 0, height = 0;
    std::vector<std::uint8_t> pixels;
    std::uint32_t At(int x, int y) const {
      const std::uint8_t* p = pixels.data() + 3 * (y * width + x);
      return p[2] | p[1] << 8 | static_cast<std::uint32_t>(p[0]) << 16;
    }
    friend bool operator==(const Face&, const Face&) = default;
  };
  static Face Paint(Dialog& dialog, int id, int width = 0, int height = 0, int item = -1, bool selected = false,
                    bool focused = false) {
    const ControlRectangle place = RectangleOf(dialog, id);
    Face face{width ? width : place.right - place.left, height ? height : place.bottom - place.top, {}};
    face.pixels.resize(static_cast<std::size_t>(face.width) * static_cast<std::size_t>(face.height) * 3);
    EXPECT_TRUE(PaintControl(
        dialog, id,
        {face.pixels.data(), face.width, face.height, std::ptrdiff_t{3} * face.width, item, selected, focused}));
    return face;
  }
};

}  // namespace glyphmotion
