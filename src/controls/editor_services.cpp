// SPDX-License-Identifier: MIT
#include "controls/editor_services.h"

namespace glyphmotion {
namespace {

EditorServices editorServices;

}  // namespace

void SetEditorServices(const EditorServices& services) noexcept { editorServices = services; }

void ShowHelpTopic(Dialog& owner, const char* topic) {
  if (editorServices.showHelp) editorServices.showHelp(owner, topic);
}

PackedDib ChoosePicture(Dialog& owner) {
  return editorServices.choosePicture ? editorServices.choosePicture(owner) : PackedDib();
}

}  // namespace glyphmotion
