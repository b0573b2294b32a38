// SPDX-License-Identifier: MIT
// On threads: one builds, one makes pictures when that one rests, and each export has its own.
#include "host/page/work_beside.h"

#include <thread>
#include <vector>

#include "host/page/live_build.h"
#include "host/page/wish_thread.h"

namespace glyphmotion {

struct WorkBeside::State {
  WorkPlace place;
  LiveBuild build{place};
  WishThread<PictureWish> pictures{[this](const PictureWish& wish) { Make(wish); }};
  std::vector<std::thread> exports;

  explicit State(WorkPlace given) : place(std::move(given)) {}
  // The cores are the large picture's while it is built.
  void Make(const PictureWish& wish) {
    build.AwaitPause(pictures.Cancelled());
    if (!pictures.Cancelled()) MakePicture(place, wish, pictures.Cancelled());
  }
  ~State() {
    for (std::thread& each : exports) each.join();
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
  state_->exports.emplace_back([place = &state_->place, order = std::move(order)] { MakeExport(*place, order); });
}

}  // namespace glyphmotion
