// The game's pictures and sprite sheets as they are loaded and drawn; gfx/picture_list.h names
// them.
#pragma once

#include "gfx/panel.h"
#include "gfx/picture_list.h"  // PanelIndex, SheetIndex

extern Panel panels[PANEL_COUNT];
extern SpriteSheet sheets[SHEET_COUNT];
extern NumberFont number_font;

// Loads the number font and the game's Panels from images\ and puts the fields that the sheets need
// in order. Main thread, once.
void panel_table_load();
void panel_table_free();

// Fills `sheets` and the flags, scale factors and first source rectangle of the sheets' Panels. A
// Panel's source size is its cell's from here on, so the rules can ask for it before the first
// frame is drawn.
void sheet_table_fill();

// Half the width and height of a sheet's cell, as the rules measure a thing's middle.
float sheet_half_width(const SpriteSheet& sheet);
float sheet_half_height(const SpriteSheet& sheet);
