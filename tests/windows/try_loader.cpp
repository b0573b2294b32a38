// SPDX-License-Identifier: MIT
// Loads the library given and says by its result whether it let itself be loaded: 0 yes, 1 no. Built once for each
// version that its resource claims.
#include <windows.h>

int main(int count, char** arguments) { return count > 1 && LoadLibraryA(arguments[1]) ? 0 : 1; }
