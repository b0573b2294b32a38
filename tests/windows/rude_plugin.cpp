// SPDX-License-Identifier: MIT
// A plug-in that breaks every rule of the contract. The host has to refuse each of these calls and survive; the exit
// code of the process, above 100, identifies a call that it accepted.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "glyphmotion/host_contract.h"

namespace {

unsigned taken = 0;
HostCallFunction call;

std::uint64_t Address(const void* pointer) { return reinterpret_cast<std::uint64_t>(pointer); }

void Refused(void* task, std::uint32_t operation, std::uint64_t a, const void* b) {
  if (call(task, operation, a, Address(b)) != 0) ++taken;
}

HGLOBAL Block(std::size_t size, std::int32_t width, std::int32_t height, std::uint16_t bits) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
  BITMAPINFOHEADER header{};
  header.biSize = sizeof header;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = bits;
  if (void* bytes = GlobalLock(block)) {
    std::memcpy(bytes, &header, size < sizeof header ? size : sizeof header);
    GlobalUnlock(block);
  }
  return block;
}

HostTaskRecord Task() {
  HostTaskRecord task{};
  task.size = sizeof task;
  task.version = HostInterfaceVersion;
  task.width = task.height = 8;
  task.imageCount = 3;
  task.ownerWindow = 0xDEAD;
  return task;
}

HostImageRecord Image(HGLOBAL block) {
  HostImageRecord image{};
  image.size = sizeof image;
  image.version = HostInterfaceVersion;
  image.image = Address(block);
  return image;
}

void SendNothing(HostTaskRecord& task) {
  for (const std::uint32_t operation : {1u, 2u, 3u, 5u, 6u, 8u, 9u, 11u, 15u, 21u, 0u, 7u, 14u, 22u, 0xFFFFFFFFu})
    Refused(&task, operation, 0, nullptr);
  Refused(nullptr, HostOpShowHelp, 0, "..\\windows\\win.ini");
  Refused(nullptr, HostOpShowHelp, 0, "NOSUCH.HTML#TOPIC");
  Refused(nullptr, HostOpLoadImage, 0, "C:\\windows\\win.ini");
  call(nullptr, HostOpStatusText, 0, 0);
  call(nullptr, HostOpProgress, ~0ull, ~0ull);
  call(nullptr, HostOpProgress, 1ull << 63, 1);
}

void SendBadImages(HostTaskRecord& task) {
  HostImageRecord image = Image(Block(40 + 64, 8, 8, 8));  // no room for a palette
  Refused(&task, HostOpAddImage, 0, &image);
  image = Image(Block(3, 8, 8, 8));
  Refused(&task, HostOpAddImage, 0, &image);
  image = Image(Block(1 << 12, 0x7FFFFFFF, 0x7FFFFFFF, 32));
  Refused(&task, HostOpAddImage, 0, &image);
  image = Image(Block(1 << 12, 8, -8, 24));
  Refused(&task, HostOpAddImage, 0, &image);
  image = Image(Block(1 << 12, 9, 8, 24));
  Refused(&task, HostOpAddImage, 0, &image);
  image = Image(Block(1 << 12, 8, 8, 24));
  image.number = 7;
  Refused(&task, HostOpAddImage, 0, &image);
  image.number = 0;
  image.size = 16;
  Refused(&task, HostOpAddImage, 0, &image);
  image = Image(nullptr);
  Refused(&task, HostOpAddImage, 0, &image);
}

}  // namespace

extern "C" {

int PLUGIN16GetPluginParams(PluginInfoRecord* record) {
  std::memset(record->name, 'x', sizeof record->name);  // no terminator
  std::memset(record->attribution, 0xFF, sizeof record->attribution);
  return 1;
}

int PLUGIN16DoBuild(void*, const HostCallTable* table) {
  call = table->HostCall;
  HostTaskRecord task = Task(), other = Task();
  SendNothing(task);
  HostImageRecord early = Image(Block(1 << 12, 8, 8, 24));
  Refused(&task, HostOpAddImage, 0, &early);
  call(&task, HostOpEndTask, 1, 0);
  task.width = 0;
  Refused(nullptr, HostOpNewTask, 0, &task);
  task.width = 8;
  if (!call(nullptr, HostOpNewTask, 0, Address(&task))) ++taken;
  Refused(nullptr, HostOpNewTask, 0, &other);
  Refused(&other, HostOpAddImage, 0, &early);
  SendBadImages(task);
  Refused(&task, HostOpSetBackground, 101, reinterpret_cast<void*>(256));
  call(&task, HostOpEndTask, 1, 0);  // finished, it says, without an image
  call(&task, HostOpEndTask, 1, 0);
  if (taken) ExitProcess(100 + taken);
  return 1;
}
}
