// SPDX-License-Identifier: MIT
#include "host/encoders/webm_file.h"

#include <algorithm>
#include <bit>

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Element ids, with their length markers.
enum Id : std::uint32_t {
  kEbml = 0x1A45DFA3,
  kEbmlVersion = 0x4286,
  kEbmlReadVersion = 0x42F7,
  kEbmlMaxIdLength = 0x42F2,
  kEbmlMaxSizeLength = 0x42F3,
  kDocType = 0x4282,
  kDocTypeVersion = 0x4287,
  kDocTypeReadVersion = 0x4285,
  kSegment = 0x18538067,
  kInfo = 0x1549A966,
  kTimecodeScale = 0x2AD7B1,
  kDuration = 0x4489,
  kMuxingApp = 0x4D80,
  kWritingApp = 0x5741,
  kTracks = 0x1654AE6B,
  kTrackEntry = 0xAE,
  kTrackNumber = 0xD7,
  kTrackUid = 0x73C5,
  kTrackType = 0x83,
  kFlagLacing = 0x9C,
  kCodecId = 0x86,
  kVideo = 0xE0,
  kPixelWidth = 0xB0,
  kPixelHeight = 0xBA,
  kAlphaMode = 0x53C0,
  kMaxBlockAdditionId = 0x55EE,
  kCluster = 0x1F43B675,
  kTimecode = 0xE7,
  kBlockGroup = 0xA0,
  kBlock = 0xA1,
  kBlockDuration = 0x9B,
  kReferenceBlock = 0xFB,
  kBlockAdditions = 0x75A1,
  kBlockMore = 0xA6,
  kBlockAddId = 0xEE,
  kBlockAdditional = 0xA5,
};

constexpr int kLongestCluster = 30000;  // milliseconds; a block's offset within it has 16 bits with a sign

void PutBigEndian(Bytes& out, std::uint64_t value, int bytes) {
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

int BytesOf(std::uint64_t value) { return std::max(1, (static_cast<int>(std::bit_width(value)) + 7) / 8); }

void Put(Bytes& out, Id id, const Bytes& content) {
  PutBigEndian(out, id, BytesOf(id));
  out.push_back(0x01);  // a size of seven bytes
  PutBigEndian(out, content.size(), 7);
  out.insert(out.end(), content.begin(), content.end());
}
void Put(Bytes& out, Id id, std::uint64_t number) {
  Bytes content;
  PutBigEndian(content, number, BytesOf(number));
  Put(out, id, content);
}
void Put(Bytes& out, Id id, const char* text) {
  const std::string content = text;
  Put(out, id, Bytes(content.begin(), content.end()));
}
void PutReal(Bytes& out, Id id, double value) {
  Bytes content;
  PutBigEndian(content, std::bit_cast<std::uint64_t>(value), 8);
  Put(out, id, content);
}

Bytes Head() {
  Bytes head, out;
  Put(head, kEbmlVersion, 1);
  Put(head, kEbmlReadVersion, 1);
  Put(head, kEbmlMaxIdLength, 4);
  Put(head, kEbmlMaxSizeLength, 8);
  Put(head, kDocType, "webm");
  Put(head, kDocTypeVersion, 4);
  Put(head, kDocTypeReadVersion, 2);
  Put(out, kEbml, head);
  return out;
}

Bytes TracksOf(int width, int height, bool alpha) {
  Bytes video, entry, tracks;
  Put(video, kPixelWidth, static_cast<std::uint64_t>(width));
  Put(video, kPixelHeight, static_cast<std::uint64_t>(height));
  if (alpha) Put(video, kAlphaMode, 1);
  Put(entry, kTrackNumber, 1);
  Put(entry, kTrackUid, 1);
  Put(entry, kTrackType, 1);
  Put(entry, kFlagLacing, std::uint64_t{0});
  Put(entry, kCodecId, "V_VP9");
  if (alpha) Put(entry, kMaxBlockAdditionId, 1);
  Put(entry, kVideo, video);
  Put(tracks, kTrackEntry, entry);
  return tracks;
}

// `offset` is that from the cluster's time; `before` the time that the frame before was shown.
Bytes GroupOf(const WebmFrame& frame, int offset, int before) {
  Bytes block = {0x81};  // track 1
  PutBigEndian(block, static_cast<std::uint64_t>(offset), 2);
  block.push_back(0);
  block.insert(block.end(), frame.picture.begin(), frame.picture.end());
  Bytes group;
  Put(group, kBlock, block);
  if (!frame.alpha.empty()) {
    Bytes more, additions;
    Put(more, kBlockAddId, 1);
    Put(more, kBlockAdditional, frame.alpha);
    Put(additions, kBlockMore, more);
    Put(group, kBlockAdditions, additions);
  }
  Put(group, kBlockDuration, static_cast<std::uint64_t>(frame.time));
  if (!frame.key) {
    Bytes reference;
    PutBigEndian(reference, static_cast<std::uint32_t>(-before), 4);
    Put(group, kReferenceBlock, reference);
  }
  return group;
}

}  // namespace

Bytes WebmFileOf(int width, int height, const std::vector<WebmFrame>& frames) {
  Bytes info, segment, cluster, out = Head();
  std::uint64_t total = 0, begin = 0, now = 0;
  for (const WebmFrame& frame : frames) total += static_cast<std::uint64_t>(frame.time);
  Put(info, kTimecodeScale, 1000000);  // milliseconds
  PutReal(info, kDuration, static_cast<double>(total));
  Put(info, kMuxingApp, "glyphmotion");
  Put(info, kWritingApp, "glyphmotion");
  Put(segment, kInfo, info);
  Put(segment, kTracks, TracksOf(width, height, !frames.empty() && !frames.front().alpha.empty()));
  int before = 0;
  for (const WebmFrame& frame : frames) {
    if (cluster.empty() || now - begin > kLongestCluster) {
      if (!cluster.empty()) Put(segment, kCluster, cluster);
      cluster.clear();
      begin = now;
      Put(cluster, kTimecode, begin);
    }
    Put(cluster, kBlockGroup, GroupOf(frame, static_cast<int>(now - begin), before));
    before = frame.time;
    now += static_cast<std::uint64_t>(frame.time);
  }
  if (!cluster.empty()) Put(segment, kCluster, cluster);
  Put(out, kSegment, segment);
  return out;
}

}  // namespace glyphmotion
