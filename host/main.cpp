// SPDX-License-Identifier: MIT
#include <cstdio>

int main() {
  std::puts("glyphmotion " GLYPHMOTION_VERSION);
  return 0;
}
