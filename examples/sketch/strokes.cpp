#include "strokes.h"

#include <algorithm>
#include <bitset>
#include <cmath>

namespace sketch {

namespace {

constexpr int kBlock = 4;
constexpr int kBitmapSide = kImageSide * kBlock;
constexpr float kPenRadius = 2.75F;      // the training data's lines are about as thick
constexpr float kLargestWidth = 26.0F;   // and its digits, with the ink, about as wide
constexpr float kSmallestExtent = 8.0F;  // a dot stays a dot

using Bitmap = std::bitset<std::size_t{kBitmapSide} * kBitmapSide>;

// Scales points so that their ink fills the bitmap.
class Fit {
public:
    explicit Fit(const Drawing& drawing) {
        Point low{INFINITY, INFINITY};
        Point high{-INFINITY, -INFINITY};
        for (const Stroke& stroke : drawing) {
            for (const Point point : stroke) {
                low = {std::min(low.x, point.x), std::min(low.y, point.y)};
                high = {std::max(high.x, point.x), std::max(high.y, point.y)};
            }
        }
        centre_ = {(low.x + high.x) / 2, (low.y + high.y) / 2};
        const float width = high.x - low.x;
        const float height = std::max({high.y - low.y, width / 2, kSmallestExtent});
        scaleY_ = (kBitmapSide - 2 * kPenRadius) / height;
        scaleX_ =
            width == 0 ? scaleY_ : std::min(scaleY_, (kLargestWidth - 2 * kPenRadius) / width);
    }

    Point operator()(Point point) const {
        constexpr float kMiddle = kBitmapSide / 2.0F;
        return {kMiddle + (point.x - centre_.x) * scaleX_,
                kMiddle + (point.y - centre_.y) * scaleY_};
    }

private:
    Point centre_{};
    float scaleX_ = 1;
    float scaleY_ = 1;
};

void drawLine(Bitmap& bitmap, Point from, Point to) {
    const auto first = [](float a, float b) {
        return std::max(0, static_cast<int>(std::min(a, b) - kPenRadius));
    };
    const auto last = [](float a, float b) {
        return std::min(kBitmapSide - 1, static_cast<int>(std::max(a, b) + kPenRadius));
    };
    for (int y = first(from.y, to.y); y <= last(from.y, to.y); ++y) {
        for (int x = first(from.x, to.x); x <= last(from.x, to.x); ++x) {
            const Point centre{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F};
            if (distanceToLine(centre, from, to) <= kPenRadius) {
                bitmap.set(static_cast<std::size_t>(y) * kBitmapSide + static_cast<std::size_t>(x));
            }
        }
    }
}

}  // namespace

float distanceToLine(Point point, Point from, Point to) {
    const Point line{to.x - from.x, to.y - from.y};
    const float squaredLength = line.x * line.x + line.y * line.y;
    const float along = (point.x - from.x) * line.x + (point.y - from.y) * line.y;
    const float part = squaredLength == 0 ? 0 : std::clamp(along / squaredLength, 0.0F, 1.0F);
    return std::hypot(point.x - from.x - part * line.x, point.y - from.y - part * line.y);
}

Image imageOf(const Drawing& drawing) {
    const Fit fit(drawing);
    Bitmap bitmap;
    for (const Stroke& stroke : drawing) {
        for (std::size_t index = 0; index < stroke.size(); ++index) {
            drawLine(bitmap, fit(stroke[index == 0 ? 0 : index - 1]), fit(stroke[index]));
        }
    }
    Image image{};
    for (std::size_t pixel = 0; pixel < bitmap.size(); ++pixel) {
        const std::size_t row = pixel / kBitmapSide / kBlock;
        const std::size_t column = pixel % kBitmapSide / kBlock;
        image[row * kImageSide + column] += bitmap[pixel] ? 1.0F : 0.0F;
    }
    return image;
}

}  // namespace sketch
