// What the mouse has drawn, and the image of it that the network expects. Needs no window.

#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace sketch {

struct Point {
    float x, y;
};
using Stroke = std::vector<Point>;
using Drawing = std::vector<Stroke>;

constexpr int kImageSide = 8;

// Row by row, 0 (paper) to 16 (ink).
using Image = std::array<float, std::size_t{kImageSide} * kImageSide>;

// The distance from a point to the nearest one of the line between two others.
float distanceToLine(Point point, Point from, Point to);

// Draws the strokes as the digits of the training data are: over the full height, centred, and not
// too wide, on a bitmap of 32x32 pixels, of which each pixel of the image counts a block of 4x4.
Image imageOf(const Drawing& drawing);

}  // namespace sketch
