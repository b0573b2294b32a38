// SPDX-License-Identifier: MIT
// The variables are in an array in table order. A key is found by binary search in a list of row numbers sorted by key.
#include "controls/variables.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <numeric>
#include <vector>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

void GiveDefault(Variable& variable) {
  variable.number = variable.row->defaultNumber;
  variable.text = variable.row->defaultText;
}

struct Store {
  std::vector<Variable> variables;   // never resized after construction, so pointers stay valid
  std::vector<std::uint16_t> byKey;  // row numbers, sorted by key
  std::map<int, Variable> unsaved;   // by control
  Store() : variables(SettingsTable().size()), byKey(SettingsTable().size()) {
    for (std::size_t i = 0; i < variables.size(); ++i) {
      variables[i].row = &SettingsTable()[i];
      GiveDefault(variables[i]);
    }
    std::iota(byKey.begin(), byKey.end(), std::uint16_t{0});
    std::sort(byKey.begin(), byKey.end(), [](std::uint16_t a, std::uint16_t b) { return KeyOf(a) < KeyOf(b); });
  }
  static std::string_view KeyOf(std::size_t row) { return SettingsTable()[row].key; }
};

Store& TheStore() { return CurrentRun().Member<Store>(); }

// Passed from one dialog of the process to the next: the numbers without a key, by control.
struct Legacy {
  std::mutex mutex;
  std::map<int, std::uint32_t> numbers;
};

Legacy& TheLegacy() {
  static Legacy& legacy = *new Legacy;
  return legacy;
}

}  // namespace

Variable* FindVariable(std::string_view key) noexcept {
  Store& store = TheStore();
  const auto at =
      std::lower_bound(store.byKey.begin(), store.byKey.end(), key,
                       [](std::uint16_t row, std::string_view wanted) { return Store::KeyOf(row) < wanted; });
  if (at == store.byKey.end() || Store::KeyOf(*at) != key) return nullptr;
  return &store.variables[*at];
}

Variable& VariableAt(std::size_t i) noexcept { return TheStore().variables[i]; }

Variable& UnsavedVariable(int control, std::uint32_t initial) {
  const auto [at, isNew] = TheStore().unsaved.try_emplace(control);
  if (isNew) at->second.number = initial;
  return at->second;
}

void RecallUnsavedVariables() {
  Legacy& legacy = TheLegacy();
  const std::lock_guard lock(legacy.mutex);
  for (const auto& [control, number] : legacy.numbers) UnsavedVariable(control, number);
}

void LeaveUnsavedVariables() {
  Legacy& legacy = TheLegacy();
  const std::lock_guard lock(legacy.mutex);
  for (const auto& [control, variable] : TheStore().unsaved) legacy.numbers[control] = variable.number;
}

void ResetVariables() {
  ResetSavedVariables();
  TheStore().unsaved.clear();
}

void ResetSavedVariables() {
  for (Variable& variable : TheStore().variables) GiveDefault(variable);
}

std::uint32_t NumberVariable(std::string_view key) noexcept {
  const Variable* variable = FindVariable(key);
  return variable ? variable->number : 0;
}

const std::string& TextVariable(std::string_view key) noexcept {
  static const std::string none;
  const Variable* variable = FindVariable(key);
  return variable ? variable->text : none;
}

}  // namespace glyphmotion
