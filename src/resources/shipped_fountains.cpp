// SPDX-License-Identifier: MIT
#include "resources/shipped_fountains.h"

namespace glyphmotion {

std::span<const ShippedFountain> ShippedFountains() noexcept {
  static constexpr ShippedFountain rows[] = {
      {"Sunrise", "#241352,#6b2a78@64,#d94a68@118,#ff8c4a@168,#ffc65e@212,#fff0b8"},
      {"Dusk", "#0b1030,#27275f@60,#6a3f7f@120,#c2627d@178,#f29d83@222,#ffd9b0"},
      {"Fire", "#1a0000,#7a0c00@52,#d63500@104,#ff8100@150,#ffc92e@202,#fffbd6"},
      {"Ocean", "#03122e,#0a3a6b@70,#1478a4@130,#3fb8c4@184,#a5e8dc@226,#f1fffa"},
      {"Ice", "#eefaff,#b7e3f7@52,#6fb6e4@110,#3d7fc0@160,#8cc8ee@208,#ffffff"},
      {"Forest", "#0d1f12,#1f4a26@72,#4a7a2c@132,#93a83f@190,#d9cf7a@228,#f6f0c4"},
      {"Aurora", "#06122b,#0b5f6b@58,#22c58b@112,#a6f08a@142,#5a8be6@190,#7a3fb8@224,#1c0f3d"},
      {"Berry", "#2a0a2e,#6e1450@70,#b81f63@128,#ee5b86@184,#ffb3c1@226,#fff0f0"},
      {"Gold", "#4a2f06,#9a6a14@44,#f0cf6a@92,#fff6c8@116,#d8a531@150,#8a5a10@194,#e6bf55@228,#fff2b0"},
      {"Chrome", "#e9f2fa,#9fb4c8@66,#f8fcff@112,#25384a@132,#5f7a91@164,#c7d6e2@214,#ffffff"},
      {"Copper", "#2b0f08,#7d3418@56,#c8703f@104,#ffd3ae@134,#b45c30@170,#6a2a14@216,#e09a6c"},
      {"Peacock", "#02222b,#006d77@64,#14b8a6@112,#f4d35e@150,#1d5fa8@196,#120a4a"},
      {"Candy", "#ff7eb6,#ffd1e3@52,#ffffff@96,#bfe6ff@140,#7ac7ff@188,#c39bff@226,#ff9ad5"},
      {"Pastel", "#f7c9d4,#fbe3c0@64,#f9f6c4@112,#cfeccd@160,#c2def2@208,#d9cdf0"},
      {"Neon", "#ff2e88,#ff5e3a@56,#ffe83a@106,#3aff8c@156,#2ad4ff@204,#a03aff"},
      {"Rainbow", "#e8362e,#f58b22@46,#f7d93b@92,#3fae4a@140,#2c7fd1@186,#5a3fb0@224,#8e3aa5"},
  };
  return rows;
}

}  // namespace glyphmotion
