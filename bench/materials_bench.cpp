// SPDX-License-Identifier: MIT
// Fills of 512 x 512 pixels. Aims on one thread: fractals of four layers under 15 ms at matrix 64 and 60 ms at 256,
// craters under 50 ms, perturbation under 40 ms, gradients under 3 ms, tiles at memory speed.
#include <benchmark/benchmark.h>

#include "materials/material.h"

using namespace glyphmotion;

namespace {

constexpr int kSide = 512;

void Render(benchmark::State& state, Material& material) {
  for (auto _ : state) benchmark::DoNotOptimize(MaterialToBitmap(material, kSide, kSide));
  state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

void BM_Gradient(benchmark::State& state) {
  Material material;
  DefaultMaterial(material, 0);
  material.Kind = kGradient;
  material.Gradient.GradientType = static_cast<std::uint32_t>(state.range(0));
  material.Gradient.Rotation = 30;
  material.Gradient.TwoColor = static_cast<std::uint32_t>(state.range(1));
  Render(state, material);
}
BENCHMARK(BM_Gradient)->ArgsProduct({{0, 1, 2, 3}, {1, 0}})->ArgNames({"type", "two"});

void BM_Texture(benchmark::State& state) {
  Material material;
  DefaultMaterial(material, 0);
  material.Kind = kTexture;
  material.Texture.TextureType = static_cast<std::uint32_t>(state.range(0));
  material.Texture.MatrixSize = static_cast<std::uint32_t>(state.range(1));
  Render(state, material);
}
BENCHMARK(BM_Texture)
    ->ArgsProduct({{0, 3}, {64, 256}})
    ->Args({4, 64})
    ->ArgsProduct({{5}, {64, 1024}})
    ->ArgNames({"type", "matrix"});

void BM_Tile(benchmark::State& state) {
  Material material;
  DefaultMaterial(material, 0);
  material.Kind = kTile;
  Render(state, material);
}
BENCHMARK(BM_Tile);

}  // namespace
