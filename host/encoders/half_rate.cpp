// SPDX-License-Identifier: MIT
#include "host/encoders/half_rate.h"

#include <memory>
#include <utility>
#include <vector>

namespace glyphmotion {
namespace {

/// The image that waits for the delay of the next one.
struct Waiting {
  Encoder encoder;
  std::vector<std::uint8_t> dib;
  Image image;
  int added = 0;
  bool waits = false;

  std::string Pass() {
    if (!waits) return {};
    waits = false;
    image.dib = dib;
    image.number = added++;
    return encoder.add(image);
  }
  std::string Take(const Image& next) {
    if (waits) {
      image.delay += next.delay;
      return Pass();
    }
    image = next;
    dib.assign(next.dib.begin(), next.dib.end());
    waits = true;
    return {};
  }
};

}  // namespace

Encoder AtHalfRate(Encoder encoder) {
  auto waiting = std::make_shared<Waiting>();
  waiting->encoder = std::move(encoder);
  Encoder half;
  half.add = [waiting](const Image& image) { return waiting->Take(image); };
  half.comment = waiting->encoder.comment;
  half.finish = [waiting] {
    const std::string error = waiting->Pass();
    return error.empty() ? waiting->encoder.finish() : error;
  };
  return half;
}

}  // namespace glyphmotion
