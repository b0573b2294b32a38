// SPDX-License-Identifier: MIT
#include "platform/portable/clusters.h"

#include <hb-ot.h>
#include <algorithm>
#include <climits>
#include <cstring>

#include "platform/shaped_rows.h"

namespace glyphmotion {

struct ClusterStore : ShapedRows<ClusterRow> {};

namespace {

constexpr double kMaxSide = 16384;  // pixels
constexpr int kNeighbours = 3;      // of a joined letter on each side that may reach into its columns

ClusterStore& Store() {
  std::shared_ptr<ClusterStore>& store = CurrentTextRun().clusters;
  if (!store) store = std::make_shared<ClusterStore>();
  return *store;
}

GlyphSpec SpecOf(const ClusterGlyph& glyph) {
  return {OpenFace(*glyph.face), glyph.code, glyph.em, glyph.embolden, glyph.slant};
}

/// Columns and rows of a box.
struct Area {
  int left = INT_MAX, top = INT_MAX, right = INT_MIN, bottom = INT_MIN;
  bool IsEmpty() const { return left >= right || top >= bottom; }
  void Add(double x0, double y0, double x1, double y1) {
    const auto whole = [](double v) { return static_cast<int>(std::clamp(v, -kMaxSide, kMaxSide)); };
    left = std::min(left, whole(std::floor(x0)));
    top = std::min(top, whole(std::floor(y0)));
    right = std::max(right, whole(std::ceil(x1)));
    bottom = std::max(bottom, whole(std::ceil(y1)));
  }
};

/// What a font may reach beyond the box at most, so that a hostile one cannot ask for any amount of memory.
void KeepNear(const Cluster& cluster, Area& area) {
  const double reach = std::min(4.0 * cluster.cellHeight + 64, kMaxSide);
  const auto within = [&](int value, double far) {
    return static_cast<int>(std::clamp<double>(value, -reach, std::min(far + reach, kMaxSide)));
  };
  area.left = within(area.left, cluster.advance);
  area.right = within(area.right, cluster.advance);
  area.top = within(area.top, cluster.cellHeight);
  area.bottom = within(area.bottom, cluster.cellHeight);
}

/// The place of a glyph's origin in the box of `cluster`.
double LeftIn(const Cluster& cluster, const ClusterGlyph& glyph) { return cluster.em / 6 + glyph.x - cluster.start; }

Area InkOf(const Cluster& cluster) {
  Area ink;
  for (const ClusterGlyph& glyph : cluster.glyphs) {
    const GlyphSpec glyphSource = SpecOf(glyph);
    hb_font_t* font = glyphSource.face ? ShaperOf(*glyphSource.face) : nullptr;
    hb_glyph_extents_t extents;
    if (!font || !hb_font_get_glyph_extents(font, glyph.code, &extents) || !extents.width || !extents.height) continue;
    const double scale = glyph.em / glyphSource.face->unitsPerEm,
                 x = LeftIn(cluster, glyph) + extents.x_bearing * scale;
    const double top = glyph.y - extents.y_bearing * scale;
    const double more = (glyph.embolden ? glyph.em * kBoldStrength : 0) + (glyph.slant ? glyph.em * kSlant : 0);
    ink.Add(x, top, x + extents.width * scale + more, top - extents.height * scale);
  }
  return ink;
}

/// Outlines of several glyphs as one, so that where they meet they cover once.
class JoinedOutline {
 public:
  void Add(const FT_Outline& outline) {
    const auto before = points_.size();
    if (before + static_cast<std::size_t>(outline.n_points) > SHRT_MAX) return;
    points_.insert(points_.end(), outline.points, outline.points + outline.n_points);
    tags_.insert(tags_.end(), outline.tags, outline.tags + outline.n_points);
    for (int i = 0; i < outline.n_contours; ++i) {
      contours_.push_back(static_cast<Contour>(outline.contours[i] + static_cast<long>(before)));
    }
    flags_ |= outline.flags;
  }
  /// Points into this object.
  FT_Outline Get() {
    FT_Outline outline{};
    outline.n_points = static_cast<short>(points_.size());
    outline.n_contours = static_cast<short>(contours_.size());
    outline.points = points_.data();
    outline.tags = tags_.data();
    outline.contours = contours_.data();
    outline.flags = flags_;
    return outline;
  }
  bool IsEmpty() const { return points_.empty(); }

 private:
  using Tag = std::remove_pointer_t<decltype(FT_Outline::tags)>;
  using Contour = std::remove_pointer_t<decltype(FT_Outline::contours)>;
  std::vector<FT_Vector> points_;
  std::vector<Tag> tags_;
  std::vector<Contour> contours_;
  int flags_ = 0;
};

void AddOutlines(const Cluster& of, const Cluster& box, JoinedOutline& all) {
  for (const ClusterGlyph& glyph : of.glyphs) {
    const GlyphSpec glyphSource = SpecOf(glyph);
    FT_Outline* outline = glyphSource.face && !glyphSource.face->picturesOnly ? LoadOutline(glyphSource) : nullptr;
    RequireMemory();
    if (!outline) continue;
    FT_Outline_Translate(outline, To26Dot6(LeftIn(box, glyph)), To26Dot6(-glyph.y));
    all.Add(*outline);
  }
}

}  // namespace

std::shared_ptr<const Cluster> FindCluster(char32_t code) {
  return IsCluster(code) && CurrentTextRun().clusters ? Store().Find(code) : nullptr;
}

bool FindRow(const std::string& key, ShapedText& text) { return Store().FindByKey(key, text); }

ShapedText KeepRow(ClusterRow row) { return Store().Keep(std::move(row)); }

GlyphBox BoxOf(const Cluster& cluster) {
  GlyphBox box;
  box.width = cluster.advance + cluster.em / 3;
  box.height = cluster.cellHeight;
  box.advance = cluster.advance;
  box.joined = cluster.joinsRight;
  box.blank = cluster.blank;
  box.picture = cluster.picture;
  Area ink = InkOf(cluster);
  if (ink.IsEmpty()) return box;
  KeepNear(cluster, ink);
  box.left = ink.left;
  box.top = ink.top;
  box.right = ink.right;
  box.bottom = ink.bottom;
  return box;
}

bool DrawCluster(const Cluster& cluster, bool antialias, double penWidth, GlyphBitmap& glyph) {
  JoinedOutline all;
  AddOutlines(cluster, cluster, all);
  const Cluster* other = &cluster;
  for (int i = 0; i < kNeighbours && other->joinsLeft; ++i) AddOutlines(*--other, cluster, all);
  other = &cluster;
  for (int i = 0; i < kNeighbours && other->joinsRight; ++i) AddOutlines(*++other, cluster, all);

  FT_Outline outline = all.Get();
  FT_BBox bounds{};
  if (!all.IsEmpty()) FT_Outline_Get_CBox(&outline, &bounds);
  const double pen = penWidth / 2;
  Area area;
  area.Add(static_cast<double>(bounds.xMin) / 64 - pen, -static_cast<double>(bounds.yMax) / 64 - pen,
           static_cast<double>(bounds.xMax) / 64 + pen, -static_cast<double>(bounds.yMin) / 64 + pen);
  KeepNear(cluster, area);
  // Columns of a letter that is joined are its own; at the ends of a word it may reach out.
  const int begin = static_cast<int>(std::lround(cluster.em / 6));
  if (cluster.joinsLeft) area.left = std::max(area.left, begin);
  if (cluster.joinsRight) area.right = std::min(area.right, begin + cluster.advance);
  glyph = {};
  glyph.width = glyph.height = 1;
  if (all.IsEmpty() || area.IsEmpty()) {
    glyph.coverage.assign(1, 0);
    return true;
  }
  glyph.left = area.left;
  glyph.top = area.top;
  glyph.width = area.right - area.left;
  glyph.height = area.bottom - area.top;
  glyph.coverage.assign(static_cast<std::size_t>(glyph.width) * static_cast<std::size_t>(glyph.height), 0);
  FT_Outline_Translate(&outline, -FT_Pos{area.left} * 64, FT_Pos{area.bottom} * 64);
  const bool drawn = penWidth > 0 ? Stroke(outline, penWidth, antialias, glyph) : Fill(outline, antialias, glyph);
  RequireMemory();
  return drawn;
}

bool RenderPictures(const FontRequest&, char32_t code, std::vector<GlyphPicture>& pictures) noexcept try {
  pictures.clear();
  const auto cluster = FindCluster(code);
  if (!cluster || !OpenEngine()) return false;
  for (const ClusterGlyph& glyph : cluster->glyphs) {
    const GlyphSpec glyphSource = SpecOf(glyph);
    GlyphPicture picture;
    if (!glyphSource.face || !LoadPicture(glyphSource, picture)) continue;
    RequireMemory();
    const double most = std::min(8.0 * cluster->cellHeight + 64, kMaxSide);
    if (picture.shownWidth > most || picture.shownHeight > most) continue;
    picture.left += LeftIn(*cluster, glyph);
    picture.top += glyph.y;
    pictures.push_back(std::move(picture));
  }
  return true;
} catch (const std::bad_alloc&) {
  return GiveUpFaces();
}

}  // namespace glyphmotion
