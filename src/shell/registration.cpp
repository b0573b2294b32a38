// SPDX-License-Identifier: MIT
#include "shell/registration.h"

#include <string_view>

#include "controls/editor_services.h"
#include "controls/skin.h"
#include "platform/run_state.h"
#include "resources/box_templates.h"

namespace glyphmotion {
namespace {

using namespace BoxControl;

constexpr int kLongest = 260;

// The open dialog.
struct OpenRegistration {
  Registration* asked = nullptr;
};
Registration*& Asked() { return CurrentRun().Member<OpenRegistration>().asked; }

/// The typed text, trimmed, since a pasted code may have blanks around it.
std::string Typed(const Dialog& dialog, int field) {
  const std::string text = GetText(dialog, field);
  const std::size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
  return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

void EnableOk(Dialog& dialog) {
  Enable(dialog, Ok, !Typed(dialog, Field).empty() && !Typed(dialog, SecondField).empty());
}

void Initialise(Dialog& dialog) {
  for (const int field : {Field, SecondField}) LimitText(dialog, field, kLongest);
  SetText(dialog, Field, Asked()->name);
  SetText(dialog, SecondField, Asked()->code);
  EnableOk(dialog);
  SetFocus(dialog, Field);
}

void OnCommand(Dialog& dialog, int id) {
  if (id == Field || id == SecondField) EnableOk(dialog);
  if (id == Cancel) EndDialog(dialog, 0);
  if (id != Ok || !IsEnabled(dialog, Ok)) return;
  *Asked() = {Typed(dialog, Field), Typed(dialog, SecondField)};
  EndDialog(dialog, 1);
}

std::int64_t RegistrationProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  switch (message.number) {
    case kMessageInitialise:
      Asked() = PointerOf<Registration>(message.b);
      Initialise(dialog);
      return 0;
    case kMessageHelp:
      ShowHelpTopic(dialog, "PREFACE");
      return 1;
    case kMessageCommand:
      OnCommand(dialog, static_cast<int>(message.a));
      return 1;
    default:
      return 0;
  }
}

}  // namespace

bool AskRegistration(Dialog& owner, Registration& registration) {
  const bool accepted = RunModal(kRegistrationDialog, owner, RegistrationProcedure, &registration) == 1;
  Asked() = nullptr;
  return accepted;
}

}  // namespace glyphmotion
