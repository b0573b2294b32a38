// SPDX-License-Identifier: MIT
// The effect of docs/new-effect.md, compiled from the page (see tests/CMakeLists.txt) and run in a dialog.
#include <cctype>
#include <cstring>
#include <set>

#include "controls/families.h"
#include "controls/material_control.h"
#include "new_effect/wobble.cpp"
#include "shell/main_dialog_fixture.h"

namespace glyphmotion {
namespace {

void InstallPanel(Dialog& dialog, const Panel& panel) {
  ASSERT_TRUE(AddControls(dialog, panel, ControlId::Effect));
  for (const ControlTemplate& control : panel.controls) {
    if (control.kind == ControlKind::NumberEdit) SetNumber(dialog, control.id, 8);
    if (control.kind != ControlKind::MaterialButton) continue;
    InstallFamily(dialog, control.id, kMaterialFamily, nullptr);
    InitialiseMaterial(dialog, control.id, control.initial);
  }
}

TEST_F(MainDialogTest, TheEffectOfThePageRuns) {
  std::set<int> letters;
  for (const DialogTemplate* shown : {&kMainDialogTemplate, static_cast<const DialogTemplate*>(kWobble.panel)}) {
    for (const ControlTemplate& control : shown->controls) {
      const char* mark = std::strchr(control.caption, '&');
      EXPECT_TRUE(!mark || letters.insert(std::tolower(mark[1])).second) << control.caption;
    }
  }
  RunDialog(kBothHost, [&](Dialog& dialog) {
    InstallPanel(dialog, *kWobble.panel);
    FrameList frames;
    RunCache cache;
    EffectContext context;
    context.dialog = &dialog;
    context.frames = &frames;
    context.cache = &cache;
    EXPECT_EQ(kWobble.buildFunction(context), 1) << context.failure;
    ASSERT_EQ(frames.count, 8);
    std::set<std::string> pictures;
    for (int i = 0; i < frames.count; ++i) {
      const LockedFrame frame(frames, i);
      EXPECT_EQ(frame->delay, 4);
      const LockedBlock<char> bytes(frame->image);
      pictures.emplace(bytes.get(), BlockSize(frame->image));
    }
    EXPECT_EQ(pictures.size(), 5u) << "the places of a sine in eight steps";
    FreeFrames(frames);
  });
}

}  // namespace
}  // namespace glyphmotion
