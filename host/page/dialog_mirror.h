// SPDX-License-Identifier: MIT
// Mirrors the open dialogs to a page: each one whole when it opens, afterwards what has changed, and the faces that the
// page has subscribed to. Belongs to the session's thread.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/page/control_facts.h"

namespace glyphmotion {

class DialogMirror {
 public:
  explicit DialogMirror(SendMessage send) : send_(std::move(send)) {}

  void Opened(Dialog& dialog, int templateId);
  void Closed();
  /// The dialog's observer; cheap, since Flush does the work.
  void Changed(const Dialog& dialog, const DialogChange& change);
  /// Sends what has changed.
  void Flush();
  /// Sends all dialogs again.
  void Snapshot();

  /// From now on the face of a control goes to the page at this size whenever it changes; the face of an item goes
  /// once.
  void Subscribe(int id, int item, int width, int height);

  int Level() const { return static_cast<int>(levels_.size()); }
  Dialog* Top() const { return levels_.empty() ? nullptr : levels_.back().dialog; }
  /// The dialog below all others, whose document it is.
  Dialog* Main() const { return levels_.empty() ? nullptr : levels_.front().dialog; }
  int TopTemplate() const { return levels_.empty() ? 0 : levels_.back().templateId; }

 private:
  struct Size {
    int width, height;
  };
  struct OpenDialog {
    Dialog* dialog;
    int templateId;
    std::vector<ControlPlace> places;
    std::vector<Json> shown;       ///< what the page knows, a control each
    std::map<int, int> indexOfId;  ///< into the two above
    std::set<int> changed, repaint;
    std::map<int, Size> faces;
    bool titleChanged = false, focusChanged = false;
  };

  void Read(OpenDialog& open);
  void SendDialog(const OpenDialog& open, int level) const;
  void SendFace(const OpenDialog& open, int level, int id, int item, Size size) const;
  void SendChanges(OpenDialog& open, int level);

  SendMessage send_;
  std::vector<OpenDialog> levels_;
};

}  // namespace glyphmotion
