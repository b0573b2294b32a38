/* SPDX-License-Identifier: MIT */
/* The smallest host: runs the plug-in with a scripted user and prints the frames that arrive. */
#include <glyphmotion/host_contract.h>
#include <stdio.h>

static uint64_t HostCall(void* task, uint32_t operation, uint64_t a, uint64_t b) {
  (void)task; (void)a;
  switch (operation) {
    case HostOpAddImage: {
      const HostImageRecord* record = (const HostImageRecord*)(uintptr_t)b;
      const int32_t* header = GlyphmotionLockBlock(record->image);
      printf("frame %u: %d x %d, delay %u\n", record->number, header[1], header[2], record->delay);
      GlyphmotionUnlockBlock(record->image);
      return 1;
    }
    case HostOpNewTask: case HostOpNewTestTask:
      return 1;
    default:
      return 0;
  }
}

static void Driver(GlyphmotionDialog* dialog, void* context) {
  (void)context;
  GlyphmotionSetText(dialog, 52, "Hello");
  GlyphmotionPress(dialog, 1);
}

int main(void) {
  HostCallTable table = {0};
  table.version = HostInterfaceVersion;
  table.HostCall = HostCall;
  table.hostFlags = HostFlagPaletteFormat | HostFlagTrueColorFormat;
  GlyphmotionSetDriver(Driver, NULL);
  return PLUGIN16DoBuild(NULL, &table) ? 0 : 1;
}
