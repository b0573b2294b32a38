// SPDX-License-Identifier: MIT
// Numbers that the program's resources share with its code.
#pragma once

#define HOST_ICON 1
#define HOST_MENU 2

#define COMMAND_NEW 101
#define COMMAND_SAVE_AS 102
#define COMMAND_EXIT 103
#define COMMAND_PAUSE 110
#define COMMAND_PREVIOUS 111
#define COMMAND_NEXT 112
#define COMMAND_CHECKERED 120
#define COMMAND_WHITE 121
#define COMMAND_BLACK 122
#define COMMAND_BACKGROUND 123
#define COMMAND_CHOOSE_PLUGIN 130
#define COMMAND_ABOUT_PLUGIN 131
#define COMMAND_HELP 140
#define COMMAND_ABOUT 141
