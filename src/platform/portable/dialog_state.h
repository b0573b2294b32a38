// SPDX-License-Identifier: MIT
// The data of an in-memory dialog, shared by the two files that implement it: dialog.cpp (controls) and dialog_run.cpp
// (messages, the modal loop and the simulated user).
#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/dialog_driver.h"
#include "platform/dialog_parts.h"
#include "platform/run_state.h"

namespace glyphmotion {

struct ListItem {
  std::string text;
  std::uint64_t data = 0;
};

struct Control {
  ControlKind kind = ControlKind::Label;
  int id = -1;
  bool visible = true, enabled = true;
  bool check = false;
  int selection = -1;
  int limit = 0;                      ///< characters that can be typed; 0: any number
  ControlRange range;                 ///< of an up-down or a trackbar
  int itemWidth = 0, itemHeight = 0;  ///< of a picture list's items
  ControlRectangle place;
  std::string text;
  std::vector<ListItem> items;
  std::uint64_t data = 0;
  ControlProcedure procedure = nullptr;
  const void* family = nullptr;
};

struct Timer {
  int id = 0;
  int milliseconds = 0;
  std::uint64_t armed = 0;  ///< order in which it was armed; 0 once it has fired in this pump
  std::chrono::steady_clock::time_point due{};
};

struct Dialog {
  RunState* run = nullptr;  ///< the run that created it and handles its messages
  int templateId = 0;
  std::string title;
  DialogProcedure procedure = nullptr;
  std::deque<Control> controls;            ///< children in order; a deque keeps pointers valid
  std::unordered_map<int, Control*> byId;  ///< the first child of each id; none for -1
  std::vector<Timer> timers;
  std::int64_t result = 0;
  int focus = 0, capture = 0;  ///< control ids; 0: none
  bool visible = false, ended = false;
};

inline bool IsEdit(ControlKind kind) { return kind == ControlKind::Edit || kind == ControlKind::NumberEdit; }

/// Appends the controls of a template to the dialog; on std::bad_alloc none of them.
void AppendControls(Dialog& dialog, const DialogTemplate& dialogTemplate, bool visible);

/// Notifies the observer, if there is one.
void NotifyObserver(Dialog& dialog, DialogChange::What what, int id);

}  // namespace glyphmotion
