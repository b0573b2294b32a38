// SPDX-License-Identifier: MIT
#include "host/windows/picture_file.h"

#include <vector>

#include "image/packed_dib.h"
#include "platform/win32/wide_text.h"
// After windows.h:
#include <wincodec.h>

namespace glyphmotion {
namespace {

constexpr UINT kMaxSide = 8192;

/// Owns one COM interface.
template <typename Interface>
struct Counted {
  Interface* pointer = nullptr;
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() {
    if (pointer) pointer->Release();
  }
  Interface** operator&() { return &pointer; }
  Interface* operator->() const { return pointer; }
};

/// Blue, green, red, alpha, rows top down.
bool Decode(const std::wstring& path, std::vector<std::uint8_t>& pixels, UINT& width, UINT& height) {
  Counted<IWICImagingFactory> factory;
  Counted<IWICBitmapDecoder> decoder;
  Counted<IWICBitmapFrameDecode> frame;
  Counted<IWICBitmapSource> converted;
  if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                              reinterpret_cast<void**>(&factory))) ||
      FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                &decoder)) ||
      FAILED(decoder->GetFrame(0, &frame)) || FAILED(frame->GetSize(&width, &height)))
    return false;
  if (width < 1 || width > kMaxSide || height < 1 || height > kMaxSide) return false;
  pixels.resize(std::size_t{4} * width * height);
  return SUCCEEDED(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, frame.pointer, &converted)) &&
         SUCCEEDED(converted->CopyPixels(nullptr, width * 4, static_cast<UINT>(pixels.size()), pixels.data()));
}

}  // namespace

HGLOBAL LoadPictureFile(const std::string& path) {
  std::vector<std::uint8_t> pixels;
  UINT width = 0, height = 0;
  if (!Decode(WideOf(path), pixels, width, height)) return nullptr;
  const int columns = static_cast<int>(width), rows = static_cast<int>(height);
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, DibSize(columns, rows, 24));
  auto* bytes = block ? static_cast<std::uint8_t*>(GlobalLock(block)) : nullptr;
  if (!bytes) return GlobalFree(block);
  auto* header = reinterpret_cast<DibHeader*>(bytes);
  header->biSize = sizeof *header;
  header->biWidth = columns;
  header->biHeight = rows;
  header->biPlanes = 1;
  header->biBitCount = 24;
  header->biSizeImage = static_cast<std::uint32_t>(DibStride(columns, 24) * height);
  const std::uint8_t* in = pixels.data();
  for (int y = rows - 1; y >= 0; --y) {
    std::uint8_t* out = bytes + sizeof *header + DibStride(columns, 24) * static_cast<std::size_t>(y);
    for (int x = 0; x < columns; ++x, in += 4, out += 3)
      for (int channel = 0; channel < 3; ++channel) out[channel] = BlendChannel(255, in[channel], in[3]);
  }
  GlobalUnlock(block);
  return block;
}

}  // namespace glyphmotion
