// SPDX-License-Identifier: MIT
// The desktop services without a desktop: the driver's responder answers, and the colours are constants, so that faces
// painted into bitmaps look the same everywhere.
#include "platform/shell_ui.h"

#include <utility>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

UiResponder& Responder() { return CurrentRun().Member<UiResponder>(); }

/// A copy, since a call may replace the responder.
template <typename Member>
auto Answerer(Member member) {
  return Responder().*member;
}

}  // namespace

bool ShowMessage(Dialog* owner, const std::string& text, MessageButtons buttons) {
  const auto answer = Answerer(&UiResponder::message);
  return answer ? answer(owner, text, buttons) : buttons == MessageButtons::Ok;
}

void ShowInformation(Dialog* owner, const std::string& text) { ShowMessage(owner, text); }
void ShowMessageOver(void*, const std::string& text) { ShowMessage(nullptr, text); }

void SetDesktopBoxes(const DesktopBoxes&) {}
void Beep(MessageIcon) {}
void CopyToClipboard(Dialog&, const std::string&) {}

std::optional<std::string> AskFile(Dialog* owner, FileQuestion& question) {
  const auto answer = Answerer(&UiResponder::file);
  return answer ? answer(owner, question) : std::nullopt;
}

std::optional<std::uint32_t> AskColour(Dialog* owner, std::uint32_t start) {
  const auto answer = Answerer(&UiResponder::colour);
  return answer ? answer(owner, start) : std::nullopt;
}

std::optional<std::string> AskName(Dialog* owner, const std::string& title, const std::string& start) {
  const auto answer = Answerer(&UiResponder::name);
  return answer ? answer(owner, title, start) : std::nullopt;
}

int PopupMenu(Dialog* owner, int, int, int, std::span<const MenuItem> items) {
  const auto answer = Answerer(&UiResponder::menu);
  return answer ? answer(owner, items) : 0;
}

void SetWaitCursor(bool) {}

bool IsShiftDown() { return Responder().shiftDown; }
bool IsHighContrast() { return Responder().highContrast; }

std::uint32_t GetSystemColour(SystemColour colour) {
  switch (colour) {
    case SystemColour::ButtonFace:
      return 0xF0F0F0;
    case SystemColour::ButtonShadow:
      return 0xA0A0A0;
    case SystemColour::DarkShadow:
      return 0x696969;
    case SystemColour::Light3D:
      return 0xE3E3E3;
    case SystemColour::Highlight:
    case SystemColour::Window:
    case SystemColour::SelectionText:
      return 0xFFFFFF;
    case SystemColour::ButtonText:
    case SystemColour::WindowText:
      return 0x000000;
    case SystemColour::Selection:
      return 0xD77800;
  }
  return 0;
}

int GetSystemSize(const Dialog&, SystemSize size) { return size == SystemSize::DialogFrame ? 3 : 17; }

void ScreenSize(int& width, int& height) {
  width = 1920;
  height = 1080;
}

UiResponder SetUiResponder(UiResponder responder) { return std::exchange(Responder(), std::move(responder)); }

}  // namespace glyphmotion
