// SPDX-License-Identifier: MIT
// The checks of glyphmotion-conformance: a name, and the sentence of docs/hosting.md that it holds.
#pragma once

#include <cstdio>
#include <cstring>
#include <mutex>
#include <span>
#include <vector>

namespace conformance {

struct Check {
  const char* name;
  const char* sentence;
};

constexpr Check kLibraryChecks[] = {
    {"params-null", "`PLUGIN16GetPluginParams` returns 0 for a null record."},
    {"params-fields",
     "It fills `version`, `name` and `attribution`, both ended by a zero, and clears the rest of the record's `size`."},
    {"params-bounds", "It touches nothing past the record's `size`, which is at least 333."},
    {"build-null", "`PLUGIN16DoBuild` returns 0 for a null table."},
    {"build-old-host", "It returns 0 for a version below 16, without a call to the host."},
    {"build-returns", "It returns 1 once the dialog has ended, whether or not anything was built."},
    {"table-kept", "The table stays as the host filled it."},
    {"dialog-size", "The first call of a run is `HostOpGetFileDialogSize`."},
    {"before-work", "`HostOpBeforeWork` is sent once for each Build or Test, before anything else of it."},
    {"calls-known", "Only operations of the header are sent."},
    {"task-once", "A Build opens one task, once all frames are finished."},
    {"task-order", "Within a task the order is background, images, comment, end."},
    {"task-pointer", "Calls of a task carry the address of its record; all others carry null."},
    {"task-kept", "The task's record stays as it is until the task has ended."},
    {"task-record", "The task's record has 1080 bytes, version 0x1000, and zeros where it is reserved."},
    {"task-depth", "A task announces 1 to 8 or 24 bits per pixel."},
    {"task-size", "A task announces the width and height of the largest image."},
    {"task-count", "A task announces as many images as follow."},
    {"image-record", "An image's record has 112 bytes, version 0x1000, and zeros where it is reserved."},
    {"image-number", "Images are numbered from 0, in order."},
    {"image-block", "An image is a live block that holds its whole bitmap."},
    {"image-header", "A bitmap has a header of 40 bytes, one plane, no compression and a positive size."},
    {"image-bits",
     "Images have 1, 4, 8 or 24 bits, or 32 with alpha; a host with HostFlagPaletteFormat gets none of 32."},
    {"image-index", "An image's transparent index is -1 or within its colour table; in an alpha run it is 0."},
    {"image-alone", "Images of a Transparent or alpha run stand alone."},
    {"image-delay", "A delay is the number that the user typed, in the host's own unit."},
    {"background", "The background is a colour for kind 100 and a palette index for kind 101."},
    {"comment", "A comment is UTF-8 and sent only if the user wants one."},
    {"stages", "Stages are Building, Quantizing, Supercompressing or Remapping."},
    {"progress", "A position of the progress is within its total; 0, 0 clears the bar."},
    {"refused-task", "After a refused task nothing more of it is sent, and the dialog stays open."},
    {"refused-image", "After a refused image the next call of the task is its end, with `a` 0."},
    {"test-run", "A Test opens its task by `HostOpNewTestTask`, and the dialog stays open."},
    {"cancel", "A cancelled dialog opens no task."},
    {"no-driver", "A dialog without a driver is cancelled at once."},
    {"thread", "All calls of a run are made on the thread that called `PLUGIN16DoBuild`."},
    {"repeatable", "The same input gives the same bytes."},
    {"concurrent", "Runs in several threads give the bytes of a run alone."},
    {"nested", "A run within a host call gives the bytes of a run alone."},
    {"blocks", "No block and no lock is left after a run."},
    {"dead-handle", "`GlyphmotionLockBlock` returns null for a handle that is not a live block."},
    {"new-block", "`GlyphmotionAllocateBlock` gives a zeroed block of the size asked for."},
    {"unknown-control", "Setting a control that does not exist, or is disabled, returns 0."},
    {"text-cut", "`GlyphmotionGetText` cuts the text to the buffer and ends it by a zero."},
};

constexpr Check kHostChecks[] = {
    {"host-driver", "A host off Windows sets a driver before it builds."},
    {"host-version", "A table's `version` is 16 or more in its byte 1."},
    {"host-call", "A table has a `HostCall`."},
    {"host-flags", "A table's `hostFlags` has known bits only, and one at least."},
    {"host-reserved", "The reserved fields of a table are zero."},
    {"host-table", "The table stays alive and unchanged until `PLUGIN16DoBuild` returns."},
    {"host-dialog-size", "A host writes two positive numbers for `HostOpGetFileDialogSize`, or leaves them."},
    {"host-task", "A host accepts a task by a number that is not zero."},
    {"host-task-kept", "A host leaves the task's record as it is."},
    {"host-images", "A host accepts every image of the formats that its flags name."},
    {"host-image-kept", "A host leaves an image's record and pixels as they are."},
    {"host-locks", "A host unlocks each block as often as it locked it before its call returns."},
    {"host-unlocks", "A host unlocks no block that it has not locked."},
    {"host-path", "A path for `HostOpChooseImageFile` ends within its 261 bytes."},
    {"host-no-image", "`HostOpLoadImage` returns 0 for a file that does not exist."},
    {"host-colour", "A picked colour is 0x00BBGGRR."},
    {"host-unknown", "A host returns 0 for an operation that it does not know."},
    {"host-again", "A host takes a second task after the first, and after one that was abandoned."},
};

/// Thread-safe. A check that nothing asked about counts as not reached, which is a failure.
class Results {
 public:
  explicit Results(std::span<const Check> checks) : checks_(checks), asked_(checks.size()), failed_(checks.size()) {}

  void Hold(const char* name, bool holds) {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < checks_.size(); ++i) {
      if (std::strcmp(checks_[i].name, name) != 0) continue;
      asked_[i] = true;
      failed_[i] = failed_[i] || !holds;
      return;
    }
    std::fprintf(stderr, "there is no check '%s'\n", name);
  }

  /// True when all hold.
  bool Print(std::FILE* out) const {
    std::size_t held = 0;
    for (std::size_t i = 0; i < checks_.size(); ++i) {
      const bool good = asked_[i] && !failed_[i];
      held += good;
      std::fprintf(out, "%-11s %-16s %s\n",
                   good        ? "ok"
                   : asked_[i] ? "FAILED"
                               : "not reached",
                   checks_[i].name, good ? "" : checks_[i].sentence);
    }
    std::fprintf(out, "%zu of %zu checks hold\n", held, checks_.size());
    return held == checks_.size();
  }

 private:
  std::span<const Check> checks_;
  std::vector<bool> asked_, failed_;
  std::mutex mutex_;
};

}  // namespace conformance
