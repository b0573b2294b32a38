// SPDX-License-Identifier: MIT
// The string table: texts of the dialogs and messages by number.
#pragma once

#include <string>

namespace glyphmotion {

/// String `number`, or "String table error - this application may be damaged" when there is none.
std::string LoadText(int number);

/// LoadText with every "%s" in it replaced by `argument`.
std::string FormatText(int number, const std::string& argument);

/// False when the table is no longer what was compiled: the program's file has been damaged.
bool AreTextsIntact() noexcept;

constexpr int kTextMemoryError = 6;  ///< the general failure text

// The palettes of the Palette combo, in its order: kTextFirstPalette + n.
constexpr int kTextFirstPalette = 1600;
constexpr int kTextBestPalette = 1609;  ///< the combo's last entry: a palette made for the animation

// The program itself and its start.
constexpr int kTextProgramTitle = 2000;
constexpr int kTextUnregisteredSuffix = 2001;  ///< follows the title without a registration name
constexpr int kTextInternalError = 2002;
constexpr int kTextNeedNewerHost = 2003;
constexpr int kTextPanelFailed = 2004;
constexpr int kTextRegisterHostFirst = 2005;
constexpr int kTextDamagedProgram = 2006;  ///< the integrity check failed
constexpr int kTextHelpNotShown = 2007;
constexpr int kTextAbout = 2010;  ///< %s: the version

// Builds: the names of the stages, then what may go wrong.
constexpr int kTextBuilding = 2020;
constexpr int kTextQuantizing = 2021;
constexpr int kTextSupercompressing = 2022;
constexpr int kTextRemapping = 2023;
constexpr int kTextTaskRefused = 2024;
constexpr int kTextImageRefused = 2025;

// Documents.
constexpr int kTextDocumentNotCreated = 2040;
constexpr int kTextDocumentNotOpened = 2041;
constexpr int kTextDocumentDamaged = 2042;
constexpr int kTextMenuOpen = 2043;
constexpr int kTextMenuSave = 2044;
constexpr int kTextMenuSaveAs = 2045;
constexpr int kTextDocumentFilter = 2046;  ///< filter name of the file dialogs

// Materials: the four kinds, kTextFirstMaterialKind + kind.
constexpr int kTextFirstMaterialKind = 2060;

// Gradients: what dragging in the preview does.
constexpr int kTextDragTurns = 2070;
constexpr int kTextDragMovesCenter = 2071;

// Fountains and their library.
constexpr int kTextDeleteMarker = 2080;
constexpr int kTextChangeColour = 2081;
constexpr int kTextAdjustPosition = 2082;
constexpr int kTextAddToLibrary = 2083;
constexpr int kTextManageLibrary = 2084;
constexpr int kTextNoMarkerSpace = 2085;
constexpr int kTextMarkerNotDeleted = 2086;
constexpr int kTextFountainNotAdded = 2087;
constexpr int kTextFountainsNotLoaded = 2088;
constexpr int kTextFountainsNotUpdated = 2089;
constexpr int kTextMenuUse = 2090;
constexpr int kTextMenuMoveUp = 2091;
constexpr int kTextMenuMoveDown = 2092;

// Textures: the six types, kTextFirstTextureType + type, then the group's messages.
constexpr int kTextFirstTextureType = 2100;
constexpr int kTextNewTexture = 2106;       ///< name of an entry just added
constexpr int kTextNamelessTexture = 2107;  ///< written for an entry without a text
constexpr int kTextTexturesNotLoaded = 2108;
constexpr int kTextTexturesProtected = 2109;
constexpr int kTextPrimaryTexturesKept = 2110;
constexpr int kTextTextureNotAdded = 2111;
constexpr int kTextAskDeleteTextures = 2112;  ///< %s: the group
constexpr int kTextNewTextureGroup = 2113;    ///< titles of name prompts
constexpr int kTextTextureName = 2114;
constexpr int kTextMenuRename = 2115;
constexpr int kTextTextureSample = 2116;  ///< what the preview writes in the texture

// Tiles.
constexpr int kTextNewGroup = 2120;  ///< where the name prompt of a new group starts
constexpr int kTextMenuDelete = 2121;
constexpr int kTextTilesNotLoaded = 2122;
constexpr int kTextTilesProtected = 2123;  ///< spelled as people know it
constexpr int kTextPrimaryTilesKept = 2124;
constexpr int kTextTileNotAdded = 2125;
constexpr int kTextTileTooLarge = 2126;
constexpr int kTextAskDeleteTiles = 2127;  ///< %s: the group
constexpr int kTextNewTileGroup = 2128;    ///< title of a name prompt

// Groups of either.
constexpr int kTextAskReplaceGroup = 2140;  ///< %s: the group
constexpr int kTextGroupNotDeleted = 2141;

}  // namespace glyphmotion
