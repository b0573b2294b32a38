// SPDX-License-Identifier: MIT
#include "shell/operation_names.h"

#include "glyphmotion/host_contract.h"

namespace glyphmotion {
namespace {

struct NameRow {
  std::uint32_t operation;
  const char* name;
};
constexpr NameRow kNames[] = {{HostOpNewTask, "HostOpNewTask"},
                              {HostOpAddImage, "HostOpAddImage"},
                              {HostOpAddComment, "HostOpAddComment"},
                              {HostOpEndTask, "HostOpEndTask"},
                              {HostOpNewTestTask, "HostOpNewTestTask"},
                              {HostOpChooseImageFile, "HostOpChooseImageFile"},
                              {HostOpLoadImage, "HostOpLoadImage"},
                              {HostOpShowHelp, "HostOpShowHelp"},
                              {HostOpStatusText, "HostOpStatusText"},
                              {HostOpPickColor, "HostOpPickColor"},
                              {HostOpIsRegistered, "HostOpIsRegistered"},
                              {HostOpProgress, "HostOpProgress"},
                              {HostOpSetBackground, "HostOpSetBackground"},
                              {HostOpBeforeWork, "HostOpBeforeWork"},
                              {HostOpGetFileDialogSize, "HostOpGetFileDialogSize"}};

}  // namespace

const char* OperationName(std::uint32_t operation) noexcept {
  for (const NameRow& row : kNames) {
    if (row.operation == operation) return row.name;
  }
  return "";
}

}  // namespace glyphmotion
