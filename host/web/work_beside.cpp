// SPDX-License-Identifier: MIT
// In other workers, which the page opens and ends: an order is a message of the type "work".
#include "host/page/work_beside.h"

#include "host/web/orders.h"

namespace glyphmotion {

struct WorkBeside::State {
  WorkPlace place;

  void Send(const char* work, Json orders) {
    place.send({{{"type", "work"}, {"work", work}, {"orders", std::move(orders)}}, {}});
  }
};

WorkBeside::WorkBeside(WorkPlace place) : state_(new State{std::move(place)}) {}
WorkBeside::~WorkBeside() = default;

void WorkBeside::Build(BuildOrder order) { state_->Send("build", Json::array({JsonOf(order)})); }

void WorkBeside::CancelBuild() { state_->Send("build", Json::array()); }

void WorkBeside::MakePictures(std::deque<PictureWish> wishes) {
  Json orders = Json::array();
  for (const PictureWish& wish : wishes) orders.push_back(JsonOf(wish));
  state_->Send("picture", std::move(orders));
}

void WorkBeside::Export(ExportOrder order, std::optional<int>) { state_->Send("export", Json::array({JsonOf(order)})); }

}  // namespace glyphmotion
