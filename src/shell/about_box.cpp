// SPDX-License-Identifier: MIT
#include "shell/about_box.h"

#include "controls/editor_services.h"
#include "controls/skin.h"
#include "glyphmotion/version.h"
#include "platform/run_state.h"
#include "resources/box_templates.h"
#include "resources/strings.h"
#include "shell/about_animation.h"

namespace glyphmotion {
namespace {

using namespace BoxControl;

constexpr int kTimer = 1;

struct AboutBox {
  AboutLetters letters;
  unsigned tick = 0;
};

// The open box.
struct OpenAboutBox {
  AboutBox* box = nullptr;
};
AboutBox*& Box() { return CurrentRun().Member<OpenAboutBox>().box; }

void Initialise(Dialog& dialog) {
  SetText(dialog, MessageText, FormatText(kTextAbout, GLYPHMOTION_VERSION));
  PaintInScreenPixels(dialog, Picture);
  SetFocus(dialog, Ok);
  SetTimer(dialog, kTimer, kAboutMilliseconds);
}

std::int64_t AboutProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  AboutBox* const box = Box();
  switch (message.number) {
    case kMessageInitialise:
      Box() = PointerOf<AboutBox>(message.b);
      Initialise(dialog);
      return 0;
    case kMessageDrawItem:
      if (box) PaintAboutPicture(*PointerOf<const DrawRequest>(message.b), box->letters, box->tick);
      return 1;
    case kMessageTimer:
      if (box) ++box->tick;
      RunAboutTimer(dialog, kTimer, Picture);
      return 1;
    case kMessageHelp:
      ShowHelpTopic(dialog, "PREFACE");
      return 1;
    case kMessageCommand:
      if (message.a == Ok || message.a == Cancel) EndDialog(dialog, 1);
      return 1;
    case kMessageDestroy:
      KillTimer(dialog, kTimer);
      return 1;
    default:
      return 0;
  }
}

}  // namespace

void ShowAboutBox(Dialog& owner) {
  AboutBox state;
  RunModal(kAboutBox, owner, AboutProcedure, &state);
  Box() = nullptr;
}

}  // namespace glyphmotion
