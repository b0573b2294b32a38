// SPDX-License-Identifier: MIT
// A scratch home and a person for the dialogs behind a material button.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "materials/shipped.h"
#include "platform/dialog_driver.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

class EditorDialog : public testing::Test {
 protected:
  std::filesystem::path home =
      std::filesystem::temp_directory_path() / ("glyphmotion-editors-" + std::to_string(getpid()));
  std::vector<std::string> messages;
  bool yes = true;  ///< the answer to every question
  std::optional<std::string> newName = "Mine";
  std::optional<std::uint32_t> colour;
  int menuChoice = 0;
  std::vector<std::string> menuItems;
  UiResponder responder;

  void SetUp() override {
    std::filesystem::create_directories(home / "data");
    SetFolderOverrides({{}, home.string(), (home / "data").string()});
    responder.message = [this](Dialog*, const std::string& text, MessageButtons) {
      messages.push_back(text);
      return yes;
    };
    responder.name = [this](Dialog*, const std::string&, const std::string&) { return newName; };
    responder.colour = [this](Dialog*, std::uint32_t) { return colour; };
    responder.menu = [this](Dialog*, std::span<const MenuItem> items) {
      for (const MenuItem& item : items) menuItems.push_back(item.text);
      return menuChoice;
    };
    SetUiResponder(responder);
  }
  void TearDown() override {
    SetUiResponder({});
    SetFolderOverrides({});
    SetModalDriver({});
    FailAllocation(0);
    std::filesystem::remove_all(home);
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

  /// Runs `call` in a dialog of the kind that owns editors; `person` uses each dialog that opens over it.
  static void OverOwner(const std::function<void(Dialog&)>& call, const std::function<void(Dialog&, int)>& person) {
    static constexpr DialogTemplate kOwner{1, "Owner", 100, 100, {}};
    const ModalDriver before = SetModalDriver([&](Dialog& dialog, int id) {
      if (id == kOwner.id) {
        call(dialog);
      } else {
        person(dialog, id);
      }
    });
    RunModal(
        kOwner, nullptr, [](Dialog&, const Message&) -> std::int64_t { return 0; }, nullptr);
    SetModalDriver(before);
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
  static Face Paint(Dialog& dialog, int id, int width = 0, int height = 0, int item = -1, bool selected = false) {
    const ControlRectangle place = RectangleOf(dialog, id);
    Face face{width ? width : place.right - place.left, height ? height : place.bottom - place.top, {}};
    face.pixels.resize(static_cast<std::size_t>(face.width) * static_cast<std::size_t>(face.height) * 3);
    PaintControl(dialog, id, {face.pixels.data(), face.width, face.height, face.width * 3, item, selected});
    return face;
  }
};

}  // namespace glyphmotion
