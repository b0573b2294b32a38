// SPDX-License-Identifier: MIT
#include "host/page/dialog_mirror.h"

#include <algorithm>
#include <utility>

#include "controls/face_painting.h"
#include "controls/fountain_control.h"
#include "controls/material_control.h"

namespace glyphmotion {
namespace {

constexpr int kLongestFace = 4096;  // pixels
constexpr std::uint8_t kPaper = 0xF0;

}  // namespace

void DialogMirror::Read(OpenDialog& open) {
  open.places = PlacesOf(*open.dialog, open.templateId);
  open.shown.clear();
  open.indexOfId.clear();
  for (int i = 0; i < ControlCount(*open.dialog); ++i) {
    open.shown.push_back(FactsOf(*open.dialog, i, open.places[static_cast<std::size_t>(i)]));
    open.indexOfId.emplace(ControlAt(*open.dialog, i).id, i);
  }
  open.changed.clear();
}

void DialogMirror::SendDialog(const OpenDialog& open, int level) const {
  Json controls = Json::array();
  for (const Json& facts : open.shown) {
    if (!facts.is_null()) controls.push_back(facts);
  }
  send_({{{"type", "dialog"},
          {"level", level},
          {"template", open.templateId},
          {"title", DialogTitle(*open.dialog)},
          {"focus", FocusOf(*open.dialog)},
          {"controls", std::move(controls)}},
         {}});
}

void DialogMirror::Opened(Dialog& dialog, int templateId) {
  Flush();
  levels_.push_back({&dialog, templateId, {}, {}, {}, {}, {}, {}, false, false});
  Read(levels_.back());
  SendDialog(levels_.back(), Level());
}

void DialogMirror::Closed() {
  Flush();
  send_({{{"type", "ended"}, {"level", Level()}}, {}});
  levels_.pop_back();
}

void DialogMirror::Snapshot() {
  for (std::size_t i = 0; i < levels_.size(); ++i) {
    levels_[i].faces.clear();
    Read(levels_[i]);
    SendDialog(levels_[i], static_cast<int>(i) + 1);
  }
}

void DialogMirror::Changed(const Dialog& dialog, const DialogChange& change) {
  for (OpenDialog& open : levels_) {
    if (open.dialog != &dialog) continue;
    if (change.what == DialogChange::Focus) open.focusChanged = true;
    if (change.what == DialogChange::Text && change.id == 0) open.titleChanged = true;
    if (change.id == 0) {
      for (const auto& [id, size] : open.faces) open.repaint.insert(id);
      return;
    }
    open.changed.insert(change.id);
    open.repaint.insert(change.id);
  }
}

void DialogMirror::Subscribe(int id, int item, int width, int height) {
  if (levels_.empty() || width < 1 || height < 1) return;
  OpenDialog& open = levels_.back();
  const Size size{std::min(width, kLongestFace), std::min(height, kLongestFace)};
  if (item >= 0) return SendFace(open, Level(), id, item, size);
  open.faces[id] = size;
  open.repaint.insert(id);
}

namespace {

// What a fill or a fountain looks like, without the button around it.
PackedDib PictureOf(const Dialog& dialog, int id, int width, int height) {
  if (KindOf(dialog, id) == ControlKind::FountainButton) {
    const auto fountain = LockFountain(dialog, id);
    return fountain ? FountainToBitmap(*fountain, width, height) : PackedDib();
  }
  const auto held = LockMaterial(dialog, id);
  if (!held) return {};
  Material material = *held;
  return MaterialToBitmap(material, width, height);
}

bool PaintPicture(const Dialog& dialog, int id, const DrawRequest& request) {
  const PackedDib picture = PictureOf(dialog, id, request.width, request.height);
  const DibView view(picture);
  if (!view) return false;
  PaintBitmap(request, WholeOf(request), view);
  return true;
}

}  // namespace

void DialogMirror::SendFace(const OpenDialog& open, int level, int id, int item, Size size) const {
  const auto width = static_cast<std::size_t>(size.width), height = static_cast<std::size_t>(size.height);
  std::vector<std::uint8_t> rows(width * height * 3, kPaper);
  DrawRequest request;
  request.pixels = rows.data();
  request.width = size.width;
  request.height = size.height;
  request.stride = static_cast<std::ptrdiff_t>(width * 3);
  request.item = item;
  request.selected = item >= 0 && item == GetSelection(*open.dialog, id);
  const ControlKind kind = KindOf(*open.dialog, id);
  const bool plain = kind == ControlKind::MaterialButton || kind == ControlKind::FountainButton;
  if (plain ? !PaintPicture(*open.dialog, id, request) : !PaintControl(*open.dialog, id, request)) return;
  PageMessage message{{{"type", "face"}, {"level", level}, {"id", id}, {"width", size.width}, {"height", size.height}},
                      {}};
  if (item >= 0) message.json["item"] = item;
  message.payload.resize(width * height * 4);
  for (std::size_t i = 0; i < width * height; ++i) {
    message.payload[4 * i] = rows[3 * i + 2];
    message.payload[4 * i + 1] = rows[3 * i + 1];
    message.payload[4 * i + 2] = rows[3 * i];
    message.payload[4 * i + 3] = 255;
  }
  send_(std::move(message));
}

void DialogMirror::SendChanges(OpenDialog& open, int level) {
  Json controls = Json::array();
  for (const int id : std::exchange(open.changed, {})) {
    const auto found = open.indexOfId.find(id);
    if (found == open.indexOfId.end()) continue;
    const auto index = static_cast<std::size_t>(found->second);
    Json now = FactsOf(*open.dialog, found->second, open.places[index]);
    if (now.is_null() || now == open.shown[index]) continue;
    Json difference = {{"id", id}};
    for (const auto& [key, value] : now.items()) {
      if (!open.shown[index].contains(key) || open.shown[index][key] != value) difference[key] = value;
    }
    if (open.shown[index].contains("pressed") && !now.contains("pressed")) difference["pressed"] = false;
    open.shown[index] = std::move(now);
    controls.push_back(std::move(difference));
  }
  const bool title = std::exchange(open.titleChanged, false), focus = std::exchange(open.focusChanged, false);
  if (controls.empty() && !title && !focus) return;
  PageMessage message{{{"type", "changes"}, {"level", level}, {"controls", std::move(controls)}}, {}};
  if (title) message.json["title"] = DialogTitle(*open.dialog);
  if (focus) message.json["focus"] = FocusOf(*open.dialog);
  send_(std::move(message));
}

void DialogMirror::Flush() {
  for (std::size_t i = 0; i < levels_.size(); ++i) {
    OpenDialog& open = levels_[i];
    if (HasEnded(*open.dialog)) continue;
    const int level = static_cast<int>(i) + 1;
    if (ControlCount(*open.dialog) != static_cast<int>(open.shown.size())) {
      Read(open);
      SendDialog(open, level);
    }
    SendChanges(open, level);
    // Painting may set texts, which another flush sends.
    for (const int id : std::exchange(open.repaint, {})) {
      const auto face = open.faces.find(id);
      if (face != open.faces.end()) SendFace(open, level, id, -1, face->second);
    }
  }
}

}  // namespace glyphmotion
