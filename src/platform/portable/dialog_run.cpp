// SPDX-License-Identifier: MIT
// Messages, timers and the modal loop of in-memory dialogs, and the simulated user who drives them. All dialogs of a
// run share one queue of posted messages, as on a desktop: while an inner dialog runs, the outer one still gets its
// messages and timers. Messages queued for a destroyed dialog are dropped. A nested run has its own queue; the outer
// one waits. A message is always handled by the run of the dialog it is sent to.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "platform/folders.h"
#include "platform/portable/dialog_state.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

using Clock = std::chrono::steady_clock;

struct QueuedMessage {
  Dialog* dialog = nullptr;
  int control = 0;  ///< 0: for the dialog itself
  Message message;
};

/// Belongs to a run.
struct Desktop {
  std::deque<QueuedMessage> queue;
  std::vector<Dialog*> dialogs;  ///< outermost first; only the last accepts user input
  ModalDriver driver;
  DialogObserver observer;
  std::uint64_t sequence = 0;  ///< of the last timer armed
  const Dialog* tickingDialog = nullptr;
  int tickingTimer = 0;  ///< the timer whose message is being handled
  bool byTheClock = false;
};

Desktop& CurrentDesktop() { return CurrentRun().Member<Desktop>(); }
Desktop& DesktopOf(const Dialog& dialog) { return dialog.run->Member<Desktop>(); }

void Deliver(const QueuedMessage& queued) {
  if (queued.control) {
    SendToControl(*queued.dialog, queued.control, queued.message);
  } else {
    Send(*queued.dialog, queued.message);
  }
}

void PumpPosted(Dialog& dialog) {
  auto& queue = DesktopOf(dialog).queue;
  while (!dialog.ended && !queue.empty()) {
    const QueuedMessage next = queue.front();
    queue.pop_front();
    Deliver(next);
  }
}

/// The first timer due, with its dialog; null when none is left.
Timer* NextTimer(const Desktop& desktop, Dialog*& owner) {
  Timer* next = nullptr;
  const auto now = Clock::now();
  for (Dialog* dialog : desktop.dialogs) {
    for (Timer& timer : dialog->timers) {
      if (!timer.armed || (desktop.byTheClock && timer.due > now)) continue;
      if (next && (next->milliseconds < timer.milliseconds ||
                   (next->milliseconds == timer.milliseconds && next->armed < timer.armed))) {
        continue;
      }
      next = &timer;
      owner = dialog;
    }
  }
  return next;
}

/// Sends the timer's message. A timer fires at most once per pump. If its own message sets it again, it waits for the
/// next pump; if another message does, it is due again.
void Tick(Dialog& dialog, Timer& timer) {
  Desktop& desktop = DesktopOf(dialog);
  struct Restore {
    Desktop& desktop;
    const Dialog* dialog;
    int timer;
    ~Restore() {
      desktop.tickingDialog = dialog;
      desktop.tickingTimer = timer;
    }
  } restore{desktop, desktop.tickingDialog, desktop.tickingTimer};
  timer.armed = 0;
  timer.due = Clock::now() + std::chrono::milliseconds(timer.milliseconds);
  desktop.tickingDialog = &dialog;
  desktop.tickingTimer = timer.id;
  Send(dialog, {kMessageTimer, static_cast<std::uint64_t>(timer.id), 0});
}

/// Everything from the first message to the last before kMessageDestroy.
void RunDialog(Dialog& dialog, void* parameter) {
  NotifyObserver(dialog, DialogChange::Created, 0);
  Send(dialog, {kMessageInitialise, 0, PointerArgument(parameter)});
  if (dialog.ended) return;
  dialog.visible = true;
  NotifyObserver(dialog, DialogChange::Visible, 0);
  Pump(dialog);
  if (!dialog.ended) {
    const ModalDriver driver = DesktopOf(dialog).driver;
    if (driver) driver(dialog, dialog.templateId);
  }
  PumpPosted(dialog);
  if (!dialog.ended) EndDialog(dialog, 0);
}

/// Sends kMessageDestroy: to the dialog's procedure first, while its controls exist, then to the controls in order. All
/// of them get it, even if one throws; `error` keeps the first exception.
void DestroyDialog(Dialog& dialog, std::exception_ptr& error) {
  dialog.ended = true;
  dialog.visible = false;
  const auto guarded = [&](const auto& call) {
    try {
      call();
    } catch (...) {
      if (!error) error = std::current_exception();
    }
  };
  guarded([&] { Send(dialog, {kMessageDestroy, 0, 0}); });
  for (std::size_t i = 0; i < dialog.controls.size(); ++i) {
    Control& control = dialog.controls[i];
    if (control.procedure) guarded([&] { control.procedure(dialog, control.id, {kMessageDestroy, 0, 0}); });
  }
  Desktop& desktop = DesktopOf(dialog);
  std::erase_if(desktop.queue, [&](const QueuedMessage& queued) { return queued.dialog == &dialog; });
  std::erase(desktop.dialogs, &dialog);
}

std::unique_ptr<Dialog> MakeDialog(const DialogTemplate& dialogTemplate, DialogProcedure procedure) {
  try {
    auto dialog = std::make_unique<Dialog>();
    dialog->run = &CurrentRun();
    dialog->templateId = dialogTemplate.id;
    dialog->title = dialogTemplate.title ? dialogTemplate.title : "";
    dialog->procedure = procedure;
    AppendControls(*dialog, dialogTemplate, true);
    CurrentDesktop().dialogs.push_back(dialog.get());
    return dialog;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

/// The control, if it accepts user input now.
Control* Reachable(Dialog& dialog, int id) {
  const auto& dialogs = DesktopOf(dialog).dialogs;
  Control* control = FindControl(dialog, id);
  const bool reachable = control && control->visible && control->enabled && !dialog.ended && dialogs.back() == &dialog;
  return reachable ? control : nullptr;
}

void SendCommand(Dialog& dialog, int id, int code) {
  Send(dialog, {kMessageCommand, static_cast<std::uint64_t>(id), code});
}

/// A radio's group is the contiguous run of radios around it.
void CheckRadio(Dialog& dialog, const Control& chosen) {
  auto at = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                         [&](const Control& control) { return &control == &chosen; });
  while (at != dialog.controls.begin() && std::prev(at)->kind == ControlKind::Radio) --at;
  for (; at != dialog.controls.end() && at->kind == ControlKind::Radio; ++at) {
    const bool checked = &*at == &chosen;
    if (at->check != checked) SetCheck(dialog, at->id, checked);
  }
}

/// Drawn controls that handle the pointer themselves; a click on them is a press and a release at their centre.
bool TakesMouse(ControlKind kind) {
  return kind == ControlKind::MaterialButton || kind == ControlKind::FountainButton ||
         kind >= ControlKind::ShadowDirection;
}

/// No more than `limit` characters of UTF-8, and one line.
std::string CutToLine(const std::string& text, int limit) {
  std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  int characters = 0;
  for (std::size_t i = 0; limit && i < end; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && ++characters > limit) end = i;
  }
  return text.substr(0, end);
}

/// Up and down in a number edit, whose up-down directly follows it.
bool StepNumber(Dialog& dialog, const Control& edit, int step) {
  for (std::size_t i = 0; i + 1 < dialog.controls.size(); ++i) {
    const Control& partner = dialog.controls[i + 1];
    if (&dialog.controls[i] != &edit || partner.kind != ControlKind::UpDown) continue;
    const std::int64_t value = GetNumber(dialog, edit.id, partner.range.minimum < 0) + step;
    SetNumber(dialog, edit.id, std::clamp<std::int64_t>(value, partner.range.minimum, partner.range.maximum));
    return true;
  }
  return false;
}

void PressListKey(Dialog& dialog, const Control& list, KeyCode key) {
  if (key == kKeyDelete) SendCommand(dialog, list.id, kDeletePressed);
  if (key == kKeyF2) SendCommand(dialog, list.id, kRenamePressed);
  if (key == kKeyMenu && list.selection >= 0) SendCommand(dialog, list.id, kItemMenuByKey);
}

/// Selects an item of a list and then clicks it again, or with the other button.
bool ChooseAndTell(Dialog& dialog, int id, int index, CommandCode code) {
  if (!IsList(KindOf(dialog, id)) || !Choose(dialog, id, index) || dialog.ended) return false;
  SendCommand(dialog, id, code);
  Pump(dialog);
  return true;
}

}  // namespace

void NotifyObserver(Dialog& dialog, DialogChange::What what, int id) {
  const auto& observer = DesktopOf(dialog).observer;
  if (observer) observer(dialog, {what, id});
}

void TakeThreadSetup(RunState& run) {
  RunState& thread = ThreadState();
  run.ShareAllocations(thread);
  run.Member<FolderOverrides>() = thread.Member<FolderOverrides>();
  run.Member<UiResponder>() = thread.Member<UiResponder>();
  const Desktop& from = thread.Member<Desktop>();
  Desktop& to = run.Member<Desktop>();
  to.driver = from.driver;
  to.observer = from.observer;
}

ModalDriver SetModalDriver(ModalDriver driver) { return std::exchange(CurrentDesktop().driver, std::move(driver)); }

void SetDialogObserver(DialogObserver observer) { CurrentDesktop().observer = std::move(observer); }

std::int64_t RunModal(const DialogTemplate& dialogTemplate, void*, DialogProcedure procedure, void* parameter) {
  const std::unique_ptr<Dialog> dialog = MakeDialog(dialogTemplate, procedure);
  if (!dialog) return -1;
  std::exception_ptr error;
  try {
    RunDialog(*dialog, parameter);
  } catch (...) {
    error = std::current_exception();
  }
  DestroyDialog(*dialog, error);
  if (error) std::rethrow_exception(error);
  return dialog->result;
}

void EndDialog(Dialog& dialog, std::int64_t result) {
  dialog.result = result;
  dialog.visible = false;
  if (std::exchange(dialog.ended, true)) return;
  NotifyObserver(dialog, DialogChange::Ended, 0);
}

bool HasEnded(const Dialog& dialog) { return dialog.ended; }

std::int64_t SendToControl(Dialog& dialog, int id, const Message& message) {
  const RunScope scope(*dialog.run);
  const Control* control = FindControl(dialog, id);
  return control && control->procedure ? control->procedure(dialog, id, message) : 0;
}

std::int64_t Send(Dialog& dialog, const Message& message) {
  const RunScope scope(*dialog.run);
  return dialog.procedure ? dialog.procedure(dialog, message) : 0;
}

void Post(Dialog& dialog, const Message& message) { DesktopOf(dialog).queue.push_back({&dialog, 0, message}); }

void PostCommand(Dialog& dialog, int id, int code) {
  Post(dialog, {kMessageCommand, static_cast<std::uint64_t>(id), code});
}

void PostToControl(Dialog& dialog, int id, const Message& message) {
  if (FindControl(dialog, id)) DesktopOf(dialog).queue.push_back({&dialog, id, message});
}

void SetTimer(Dialog& dialog, int timer, int milliseconds) {
  Desktop& desktop = DesktopOf(dialog);
  const bool ticking = desktop.tickingDialog == &dialog && desktop.tickingTimer == timer;
  KillTimer(dialog, timer);
  const auto due = Clock::now() + std::chrono::milliseconds(milliseconds);
  dialog.timers.push_back({timer, milliseconds, ticking ? 0 : ++desktop.sequence, due});
}

void KillTimer(Dialog& dialog, int timer) {
  std::erase_if(dialog.timers, [&](const Timer& each) { return each.id == timer; });
}

void Invalidate(Dialog& dialog, int id) {
  if (id == 0 || FindControl(dialog, id)) NotifyObserver(dialog, DialogChange::Repaint, id);
}

void RepaintNow(Dialog&, int) {}

void CaptureMouse(Dialog& dialog, int id) {
  if (FindControl(dialog, id)) dialog.capture = id;
}

void ReleaseMouse(Dialog& dialog) { dialog.capture = 0; }

bool IsPointerOver(const Dialog&, int) { return true; }

bool HasCapture(const Dialog& dialog, int id) { return dialog.capture == id && FindControl(dialog, id); }

void Pump(Dialog& dialog) {
  Desktop& desktop = DesktopOf(dialog);
  for (Dialog* each : desktop.dialogs) {
    for (Timer& timer : each->timers) {
      if (!timer.armed) timer.armed = ++desktop.sequence;
    }
  }
  PumpPosted(dialog);
  Dialog* owner = nullptr;
  for (Timer* timer = nullptr; !dialog.ended && (timer = NextTimer(desktop, owner));) {
    Tick(*owner, *timer);
    PumpPosted(dialog);
  }
}

void FireTimersByTheClock() { CurrentDesktop().byTheClock = true; }

int MillisecondsToNextTimer() {
  std::int64_t next = -1;
  for (const Dialog* dialog : CurrentDesktop().dialogs) {
    for (const Timer& timer : dialog->timers) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(timer.due - Clock::now()).count();
      if (next < 0 || left < next) next = std::max<std::int64_t>(left, 0);
    }
  }
  return static_cast<int>(next);
}

bool Click(Dialog& dialog, int id) {
  Control* control = Reachable(dialog, id);
  if (!control) return false;
  if (TakesMouse(control->kind)) {
    const int x = (control->place.right - control->place.left) / 2;
    const int y = (control->place.bottom - control->place.top) / 2;
    return Mouse(dialog, id, kMessageLeftDown, x, y) && (HasEnded(dialog) || Mouse(dialog, id, kMessageLeftUp, x, y));
  }
  if (control->kind == ControlKind::Check) SetCheck(dialog, id, !control->check);
  if (control->kind == ControlKind::Radio) CheckRadio(dialog, *control);
  SendCommand(dialog, id, kClicked);
  Pump(dialog);
  return true;
}

bool Type(Dialog& dialog, int id, const std::string& text) {
  Control* control = Reachable(dialog, id);
  if (!control) return false;
  if (control->kind == ControlKind::Trackbar) {
    const int asked = std::atoi(text.c_str());
    SetNumber(dialog, id, std::clamp(asked, control->range.minimum, control->range.maximum));
    SendCommand(dialog, id, kEditChanged);
  } else if (IsEdit(control->kind)) {
    SetText(dialog, id, CutToLine(text, control->limit));
  } else {
    return false;
  }
  Pump(dialog);
  return true;
}

bool Choose(Dialog& dialog, int id, int index) {
  Control* control = Reachable(dialog, id);
  if (!control || index < 0 || index >= static_cast<int>(control->items.size())) return false;
  SetSelection(dialog, id, index);
  SendCommand(dialog, id, kSelectionChanged);
  Pump(dialog);
  return true;
}

bool DoubleClick(Dialog& dialog, int id, int index) { return ChooseAndTell(dialog, id, index, kDoubleClicked); }
bool RightClick(Dialog& dialog, int id, int index) { return ChooseAndTell(dialog, id, index, kItemMenu); }

bool PressKey(Dialog& dialog, int id, KeyCode key) {
  Control* control = Reachable(dialog, id);
  if (!control) return false;
  if (key == kKeyF1) {
    Send(dialog, {kMessageHelp, static_cast<std::uint64_t>(id), 0});
  } else if (control->procedure) {
    SendToControl(dialog, id, {kMessageKeyDown, static_cast<std::uint64_t>(key), 0});
  }
  if (IsList(control->kind)) PressListKey(dialog, *control, key);
  if (control->kind == ControlKind::NumberEdit && (key == kKeyUp || key == kKeyDown)) {
    StepNumber(dialog, *control, key == kKeyUp ? 1 : -1);
  }
  Pump(dialog);
  return true;
}

bool Mouse(Dialog& dialog, int id, MessageNumber what, int x, int y) {
  Control* control = Reachable(dialog, id);
  if (!control) return false;
  const Control* captor = dialog.capture ? FindControl(dialog, dialog.capture) : nullptr;
  if (captor) {
    x += control->place.left - captor->place.left;
    y += control->place.top - captor->place.top;
    id = captor->id;
  }
  SendToControl(dialog, id, {what, static_cast<std::uint64_t>(static_cast<std::int64_t>(x)), y});
  Pump(dialog);
  return true;
}

void StealMouse(Dialog& dialog) {
  const int captor = std::exchange(dialog.capture, 0);
  if (captor) SendToControl(dialog, captor, {kMessageCaptureLost, 0, 0});
  Pump(dialog);
}

bool PaintControl(Dialog& dialog, int id, const DrawRequest& request) {
  const Control* control = FindControl(dialog, id);
  if (!control || !request.pixels || request.width < 1 || request.height < 1) return false;
  DrawRequest copy = request;
  const bool isItem = IsPictureList(control->kind) && request.item >= 0 && request.item < ItemCount(dialog, id);
  if (control->kind == ControlKind::OwnerDrawn || isItem) {
    Send(dialog, {kMessageDrawItem, static_cast<std::uint64_t>(id), PointerArgument(&copy)});
    return true;
  }
  const bool isButton = control->kind == ControlKind::Button || control->kind == ControlKind::DefaultButton;
  if ((control->kind < ControlKind::ColourButton && !isButton) || !control->procedure) return false;
  SendToControl(dialog, id, {kMessagePaint, 0, PointerArgument(&copy)});
  return true;
}

}  // namespace glyphmotion
