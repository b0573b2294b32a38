// SPDX-License-Identifier: MIT
// The two functions that a host calls.
#include <cstring>

#include "controls/boxes.h"
#include "controls/variables.h"
#include "glyphmotion/host_contract.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "platform/workers.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "shell/main_dialog.h"
#include "text/draw_op.h"

namespace glyphmotion {
namespace {

constexpr const char* kName = "Glyphmotion #4";
constexpr const char* kAttribution = "Glyphmotion: animated text effects";
constexpr std::uint32_t kMinimumMajorVersion = 16;

static_assert(sizeof(PluginInfoRecord) == 333 && sizeof(HostTaskRecord) == 1080 && sizeof(HostImageRecord) == 112);
static_assert(sizeof(HostColorPickRecord) == 40 && sizeof(HostCallTable) == 40);
static_assert(offsetof(HostTaskRecord, palette) == 32 && offsetof(HostTaskRecord, imageCount) == 804 &&
              offsetof(HostTaskRecord, transparentIndex) == 1072);
static_assert(offsetof(HostImageRecord, delay) == 32 && offsetof(HostImageRecord, transparentIndex) == 40);
static_assert(offsetof(HostCallTable, HostCall) == 16 && offsetof(HostCallTable, hostFlags) == 32);

// The text engine runs while a dialog does.
struct TextEngineRun {
  TextEngineRun() {
    DrawOpRecord request;
    request.op = DrawOperation::StartUp;
    DrawOp(request);
  }
  ~TextEngineRun() {
    DrawOpRecord request;
    request.op = DrawOperation::ShutDown;
    DrawOp(request);
  }
};

}  // namespace

int RunMainDialog(void* ownerWindow, const HostCallTable* table) {
  UseOwnBoxes();
  if (((table->version >> 8) & 0xFF) < kMinimumMajorVersion) {
    ShowMessageOver(ownerWindow, LoadText(kTextNeedNewerHost));
    return 0;
  }
  const TextEngineRun textEngine;
  Variable* openPath = FindVariable("OpenPath");
  if (openPath && openPath->text.empty()) openPath->text = DocumentsFolder();
  RunModal(kMainDialogTemplate, ownerWindow, MainDialogProcedure, const_cast<HostCallTable*>(table));
  return 1;
}

}  // namespace glyphmotion

extern "C" {

int PLUGIN16GetPluginParams(PluginInfoRecord* record) {
  using namespace glyphmotion;
  if (!record) return 0;
  const std::uint32_t size = record->size;
  std::memset(record, 0, size);
  record->size = size;
  record->version = HostInterfaceVersion;
  std::strncpy(record->name, kName, sizeof record->name);
  std::strncpy(record->attribution, kAttribution, sizeof record->attribution - 1);
  record->attribution[sizeof record->attribution - 1] = 0;
  return 1;
}

int PLUGIN16DoBuild(void* ownerWindow, const HostCallTable* table) {
  if (!table) return 0;
  try {
    glyphmotion::RunState run;
    glyphmotion::TakeThreadSetup(run);
    const glyphmotion::RunScope scope(run);
    glyphmotion::SetRunThreads(run.Allocations().failAt ? 1 : 0);
    glyphmotion::RecallUnsavedVariables();
    const int result = glyphmotion::RunMainDialog(ownerWindow, table);
    glyphmotion::LeaveUnsavedVariables();
    return result;
  } catch (...) {  // exceptions must not cross this boundary; a dialog that cannot be created has built nothing
    return 1;
  }
}
}
