// SPDX-License-Identifier: MIT
// The system's headers, included alike by every file of this folder: without the macros that would rename functions of
// this program.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0601
#endif
// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#undef GetObject
#undef MessageBox
