// What the window shows, drawn on any surface of 32 bits a pixel.

#pragma once

#include <SDL.h>

#include <optional>

#include "recogniser.h"
#include "strokes.h"

namespace sketch {

constexpr int kWindowWidth = 752;
constexpr int kWindowHeight = 400;
constexpr SDL_Rect kPaper{24, 24, 352, 352};

struct Scene {
    Drawing drawing;
    Image image{};
    Recogniser::Report report;
    Uint32 milliseconds = 0;  // since the start: moves the progress indicator
};

void drawScene(SDL_Surface& surface, const Scene& scene);

}  // namespace sketch
