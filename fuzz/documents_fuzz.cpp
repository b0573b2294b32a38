// SPDX-License-Identifier: MIT
#include <glyphmotion/render.h>
#include "fuzz/fuzz_file.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Job job;
  job.documentFile = fuzz::FileOf(data, size);
  job.action = Job::Action::None;
  const RenderResult result = Render(job, {});
  if (result.blocks || result.locks) __builtin_trap();
  return 0;
}
