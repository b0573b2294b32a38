/* SPDX-License-Identifier: MIT */
/* The contract between Glyphmotion and a host program, in plain C.
 *
 * A host fills a HostCallTable and calls PLUGIN16DoBuild. The main dialog then runs on the calling thread until the
 * user (on Windows: a person; elsewhere: a driver that the host registers, see the end of this file) presses Build or
 * Cancel. Everything that leaves the plug-in goes through one function of the host, HostCall, selected by an operation
 * number.
 *
 * All records are little-endian and packed as shown; offsets and sizes are part of the contract. Every record that the
 * plug-in sends starts with its own size and the interface version 0x1000.
 *
 * Threads: all calls of a run, in both directions, are made on the thread that called PLUGIN16DoBuild for it. Each call
 * of PLUGIN16DoBuild is a run with a state of its own: a host may make one in each of several threads, and another one
 * within a host call before it returns.
 */
#ifndef GLYPHMOTION_HOST_CONTRACT_H
#define GLYPHMOTION_HOST_CONTRACT_H

#include <stddef.h>
#include <stdint.h>

#include "glyphmotion/export.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { HostInterfaceVersion = 0x1000 };

/* Bits of HostCallTable.hostFlags. Without HostFlagPaletteFormat the host also takes per-pixel alpha. */
enum {
  HostFlagPaletteFormat = 1,  /* the host's file format is palette based, transparency being a palette index */
  HostFlagTrueColorFormat = 2 /* the host takes true-colour images */
};

/* Operations of HostCall(task, operation, a, b). "Read" says whether the plug-in looks at the result, where nonzero
 * means yes or done. Pointers in b are valid for the call only, unless said otherwise. */
enum {
  /* task: null. a: 0. b: HostTaskRecord*. Read: the task is open. Called once a Build, after all frames are finished.
   * The record stays the plug-in's and is passed as `task` until HostOpEndTask has returned. */
  HostOpNewTask = 1,
  /* task: record. a: 0. b: HostImageRecord*. Read: the image was added. Called once a frame, in order, while a task is
   * open. The image's block stays the plug-in's: the host copies the pixels during the call. */
  HostOpAddImage = 2,
  /* task: record. a: 0. b: const char*, a comment for the file. Not read. After the last image. */
  HostOpAddComment = 3,
  /* task: record. a: 1 finished, 0 abandon (after a refused image). b: 0. Not read. Last call of a task. */
  HostOpEndTask = 4,
  /* As HostOpNewTask, for a Test run. */
  HostOpNewTestTask = 5,
  /* task: null. a: owner window. b: char[261], empty on entry, the chosen path on return. Read: a path was chosen. */
  HostOpChooseImageFile = 6,
  /* task: null. a: 0. b: const char*, a path. Result: the handle of a packed DIB, or 0; the plug-in owns and frees it.
   */
  HostOpLoadImage = 8,
  /* task: null. a: 0. b: const char*, page name, or page#topic. Read: the page was shown. */
  HostOpShowHelp = 9,
  /* task: null. a: 0. b: const char*, the name of the stage that begins. Not read. */
  HostOpStatusText = 10,
  /* task: null. a: 0. b: HostColorPickRecord*, `color` holding the result. Read: a colour was accepted. */
  HostOpPickColor = 11,
  /* task: null. a: 0. b: 0. Read: the host is registered. */
  HostOpIsRegistered = 12,
  /* task: null. a: position, from 0. b: total. Not read. 0, 0 clears the bar. */
  HostOpProgress = 13,
  /* task: record. a: 100 = b is a colour (0x00BBGGRR), 101 = b is a palette index. Not read. After the task is open. */
  HostOpSetBackground = 15,
  /* task: null. a: 0. b: 0. Not read. Sent immediately before each Build or Test. */
  HostOpBeforeWork = 18,
  /* task: null. a: 0. b: int32_t[2], width and height in pixels, filled by the host. Not read. On dialog start. */
  HostOpGetFileDialogSize = 21
};

/* The single entry point of a host. Must not re-enter the dialog that calls; another PLUGIN16DoBuild is fine. */
typedef uint64_t (*HostCallFunction)(void* task, uint32_t operation, uint64_t a, uint64_t b);

/* Owned by the host, alive and unchanged until PLUGIN16DoBuild returns. */
typedef struct HostCallTable {
  uint32_t reserved0;
  uint32_t version;    /* byte 1 is the major version: 0x1000 for 16; below 16 is refused */
  uint32_t skinSwitch; /* nonzero asks for the skinned button look */
  uint32_t reserved12;
  union {
    HostCallFunction HostCall;
    uint64_t HostCallWord; /* a pointer takes eight bytes, of which a 32-bit machine uses the first four */
  };
  uint64_t reserved24;
  uint32_t hostFlags; /* HostFlag... */
  uint32_t reserved36;
} HostCallTable;

#pragma pack(push, 1)

/* Filled by PLUGIN16GetPluginParams. The host allocates it, at least 333 bytes, and writes its whole size into `size`.
 */
typedef struct PluginInfoRecord {
  uint32_t size;
  uint32_t version;
  char name[261];
  char attribution[64];
} PluginInfoRecord;

typedef struct HostTaskRecord {
  uint32_t size; /* 1080 */
  uint32_t version;
  uint64_t ownerWindow; /* the main dialog */
  uint32_t reserved16;
  uint32_t bitsPerPixel;  /* 1 to 8, or 24 */
  uint32_t width, height; /* the largest over all images, in pixels */
  uint8_t palette[768];   /* 256 times red, green, blue; entries past the palette are zero */
  uint32_t reserved800;
  uint32_t imageCount;
  uint8_t reserved808[264];
  int32_t transparentIndex; /* with the Transparent option: the index, -1 if none was reserved; otherwise 0 */
  uint32_t reserved1076;
} HostTaskRecord;

typedef struct HostImageRecord {
  uint32_t size; /* 112 */
  uint32_t version;
  uint64_t image; /* handle of a packed DIB, see GlyphmotionLockBlock */
  uint32_t reserved16;
  uint32_t standAlone; /* 1: no image relies on the one before it (alpha or Transparent) */
  uint64_t reserved24;
  uint32_t delay;           /* as the user typed it, in the host's own unit */
  uint32_t number;          /* from 0 */
  int32_t transparentIndex; /* -1: none; 0 in an alpha run of a host without HostFlagPaletteFormat */
  uint8_t reserved44[68];
} HostImageRecord;

typedef struct HostColorPickRecord {
  uint32_t size; /* 40 */
  uint32_t version;
  union {
    const uint8_t* palette; /* 256 times red, green, blue, to offer */
    uint64_t paletteWord;
  };
  uint32_t depth; /* 24 */
  uint32_t reserved20;
  uint32_t color; /* in: the colour to start from. out: the colour chosen. 0x00BBGGRR */
  uint32_t reserved28;
  uint64_t ownerWindow;
} HostColorPickRecord;

#pragma pack(pop)

/* Describes the plug-in. May be called at any time. Returns 1, or 0 when `record` is null. */
GLYPHMOTION_EXPORT int PLUGIN16GetPluginParams(PluginInfoRecord* record);

/* Runs the main dialog, any number of Test runs and at most one Build. ownerWindow may be null. Returns 1 once the
 * dialog has ended, whether or not anything was built; 0 when `table` is null or its version is below 16. */
GLYPHMOTION_EXPORT int PLUGIN16DoBuild(void* ownerWindow, const HostCallTable* table);

/* ---------------------------------------------------------------------------------------------------------------------
 * For hosts off Windows. There, a block handle is not the system's and a dialog has no screen, so the library brings
 * the calls that a host needs. (On Windows, use GlobalLock, GlobalUnlock and GlobalSize, and post messages to the
 * window.) */

/* The bytes of a block, and its size. Lock returns null for a handle that is not a live block. Each lock needs one
 * unlock. */
GLYPHMOTION_EXPORT void* GlyphmotionLockBlock(uint64_t handle);
GLYPHMOTION_EXPORT void GlyphmotionUnlockBlock(uint64_t handle);
GLYPHMOTION_EXPORT size_t GlyphmotionBlockSize(uint64_t handle);
/* A new zeroed block, for the answer to HostOpLoadImage; 0 when out of memory. */
GLYPHMOTION_EXPORT uint64_t GlyphmotionAllocateBlock(size_t bytes);
/* The numbers of live blocks and locks in this process; both are zero while no run is in progress. Any thread may use
 * any block. */
GLYPHMOTION_EXPORT void GlyphmotionLiveBlocks(uint64_t* blocks, uint64_t* locks);

/* The main dialog while it runs. Control ids are those that `glyphmotion --list controls` names. */
typedef struct GlyphmotionDialog GlyphmotionDialog;

/* Called by PLUGIN16DoBuild once the dialog is open; plays the user. When it returns and the dialog has not ended, the
 * dialog is cancelled. The driver plays every dialog that the calling thread opens from then on, until it is replaced;
 * null removes it, and a dialog without a driver is cancelled at once. */
typedef void (*GlyphmotionDriver)(GlyphmotionDialog* dialog, void* context);
GLYPHMOTION_EXPORT void GlyphmotionSetDriver(GlyphmotionDriver driver, void* context);

/* What a user can do. Each returns 1, or 0 when there is no such control or it is disabled. Text is UTF-8. */
GLYPHMOTION_EXPORT int GlyphmotionSetText(GlyphmotionDialog* dialog, int id, const char* text);
GLYPHMOTION_EXPORT int GlyphmotionSetNumber(GlyphmotionDialog* dialog, int id, int value);
GLYPHMOTION_EXPORT int GlyphmotionSetCheck(GlyphmotionDialog* dialog, int id, int checked);
GLYPHMOTION_EXPORT int GlyphmotionSelect(GlyphmotionDialog* dialog, int id, int index);
/* Presses a button: 1 Build, 2 Cancel, 24 Test. Returns when the work has been done. */
GLYPHMOTION_EXPORT int GlyphmotionPress(GlyphmotionDialog* dialog, int id);
/* Copies the control's text into `buffer`, cut to `size` bytes with the terminator. */
GLYPHMOTION_EXPORT int GlyphmotionGetText(GlyphmotionDialog* dialog, int id, char* buffer, size_t size);

#ifdef __cplusplus
}
#endif
#endif
