// Letters of 5x7 dots, so that the program needs no font.

#pragma once

#include <SDL.h>

#include <string_view>

namespace sketch {

// In dots; a letter's place includes the space to its neighbours.
constexpr int kLetterWidth = 6;
constexpr int kLetterHeight = 7;

// Draws a line of text with dots of this size. Small letters become capitals, unknown characters a
// space.
void drawText(SDL_Surface& surface, int x, int y, int dot, Uint32 colour, std::string_view text);

}  // namespace sketch
