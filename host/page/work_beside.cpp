// SPDX-License-Identifier: MIT
// On threads: one builds, one makes pictures when that one rests, and each export has its own.
#include "host/page/work_beside.h"

#include <atomic>
#include <list>
#include <thread>

#include "host/page/live_build.h"
#include "host/page/wish_thread.h"

namespace glyphmotion {

struct WorkBeside::State {
  WorkPlace place;
  LiveBuild build{place};
  WishThread<PictureWish> pictures{[this](const PictureWish& wish) { Make(wish); }};
  struct ExportThread {
    std::atomic<bool> done{false};
    std::thread thread;
  };
  std::list<ExportThread> exports;
  std::atomic<bool> ending{false};

  explicit State(WorkPlace given) : place(std::move(given)) {}
  // The cores are the large picture's while it is built.
  void Make(const PictureWish& wish) {
    build.AwaitPause(pictures.Cancelled());
    if (!pictures.Cancelled()) MakePicture(place, wish, pictures.Cancelled());
  }
  void Begin(ExportOrder order) {
    ReapExports();
    std::list<ExportThread> fresh(1);  // joins the others once its thread runs: one that cannot start leaves nothing
    ExportThread& made = fresh.front();
    made.thread = std::thread([this, &made, order = std::move(order)] {
      MakeExport(place, order, ending);
      made.done = true;
    });
    exports.splice(exports.end(), fresh);
  }
  // Those that are done; a session may go on for days.
  void ReapExports() {
    exports.remove_if([](ExportThread& each) {
      if (!each.done) return false;
      each.thread.join();
      return true;
    });
  }
  ~State() {
    ending = true;
    for (ExportThread& each : exports) each.thread.join();
  }
};

WorkBeside::WorkBeside(WorkPlace place) : state_(std::make_unique<State>(std::move(place))) {}
WorkBeside::~WorkBeside() = default;

void WorkBeside::Build(BuildOrder order) {
  if (state_->build.Request(std::move(order))) state_->pictures.Set({});  // they show what the document was
}

void WorkBeside::CancelBuild() { state_->build.Cancel(); }

void WorkBeside::MakePictures(std::deque<PictureWish> wishes) { state_->pictures.Set(std::move(wishes)); }

void WorkBeside::Export(ExportOrder order, std::optional<int> built) {
  if (order.format == "gif" && built) {
    if (const auto gif = state_->build.GifOf(*built)) return SendGif(state_->place.send, order, *gif);
  }
  state_->Begin(std::move(order));
}

}  // namespace glyphmotion
