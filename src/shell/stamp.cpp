// SPDX-License-Identifier: MIT
#include "shell/stamp.h"

#include "image/packed_dib.h"

namespace glyphmotion {
namespace {

// One string per pixel row, six columns per letter.
constexpr int kRows = 7, kColumns = 71;
constexpr const char* kStamp[kRows] = {"#   # #   # ####  #####  ###  ###  #### ##### ##### ####  ##### ####  ",
                                       "#   # ##  # #   # #     #   #  #  #       #   #     #   # #     #   # ",
                                       "#   # # # # #   # #     #      #  #       #   #     #   # #     #   # ",
                                       "#   # # # # ####  ####  #  ##  #   ###    #   ####  ####  ####  #   # ",
                                       "#   # # # # # #   #     #   #  #      #   #   #     # #   #     #   # ",
                                       "#   # #  ## #  #  #     #   #  #      #   #   #     #  #  #     #   # ",
                                       " ###  #   # #   # #####  ###  ### ####    #   ##### #   # ##### ####  "};

}  // namespace

bool StampFrame(BlockHandle image) noexcept {
  const DibView view(image);
  if (!view) return false;
  const int left = (view.Width() - kColumns) / 2, top = (view.Height() - kRows) / 2;
  for (int y = 0; y < kRows; ++y) {
    for (int x = 0; kStamp[y][x]; ++x) {
      if (kStamp[y][x] != '#') continue;
      view.SetPixel(left + x, top + y, view.GetPixel(left + x, top + y) ^ 0xFFFFFF);
    }
  }
  return true;
}

}  // namespace glyphmotion
