#include "view.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include "text.h"

namespace sketch {

namespace {

// Red, green, blue.
constexpr Uint32 kGround = 0x1F2937;
constexpr Uint32 kTrack = 0x374151;
constexpr Uint32 kWriting = 0xF3F4F6;
constexpr Uint32 kQuiet = 0x9CA3AF;
constexpr Uint32 kBar = 0x60A5FA;
constexpr Uint32 kLargest = 0xFBBF24;
constexpr int kPaperShade = 0xFA;
constexpr int kInkShade = 0x18;

constexpr float kPenRadius = 9;
constexpr int kColumn = 400;  // the left edge of what is right of the paper
constexpr int kCell = 12;     // a pixel of the network's image
constexpr SDL_Rect kBars{424, 144, 224, 15};
constexpr int kBarPitch = 24;
constexpr SDL_Rect kProgress{520, 86, 208, 12};
constexpr int kProgressBlock = 52;

void fill(SDL_Surface& surface, const SDL_Rect& area, Uint32 colour) {
    SDL_FillRect(&surface, &area, colour);
}

Uint32 grey(int shade) {
    return static_cast<Uint32>(shade) * 0x010101;
}

// Blends by how much of a pixel the pen covers, which smooths the edges.
void drawLine(SDL_Surface& surface, Point from, Point to) {
    const int left = std::max(kPaper.x, static_cast<int>(std::min(from.x, to.x) - kPenRadius));
    const int right =
        std::min(kPaper.x + kPaper.w - 1, static_cast<int>(std::max(from.x, to.x) + kPenRadius));
    const int top = std::max(kPaper.y, static_cast<int>(std::min(from.y, to.y) - kPenRadius));
    const int bottom =
        std::min(kPaper.y + kPaper.h - 1, static_cast<int>(std::max(from.y, to.y) + kPenRadius));
    for (int y = top; y <= bottom; ++y) {
        auto* const row = reinterpret_cast<Uint32*>(static_cast<Uint8*>(surface.pixels) +
                                                    std::ptrdiff_t{y} * surface.pitch);
        for (int x = left; x <= right; ++x) {
            const Point centre{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F};
            const float outside = distanceToLine(centre, from, to) - kPenRadius + 0.5F;
            const float paper = std::clamp(outside, 0.0F, 1.0F) * (kPaperShade - kInkShade);
            // Lines of a stroke overlap: the darker one counts.
            row[x] = std::min(row[x] & 0xFFFFFF, grey(kInkShade + static_cast<int>(paper)));
        }
    }
}

void drawPaper(SDL_Surface& surface, const Drawing& drawing) {
    fill(surface, kPaper, grey(kPaperShade));
    if (drawing.empty()) {
        constexpr std::string_view kInvitation = "Draw a digit";
        constexpr std::string_view kHint = "Right click to start again";
        const auto middle = [](std::string_view text, int dot) {
            return kPaper.x + (kPaper.w - static_cast<int>(text.size()) * kLetterWidth * dot) / 2;
        };
        drawText(surface, middle(kInvitation, 3), 180, 3, kQuiet, kInvitation);
        drawText(surface, middle(kHint, 2), 350, 2, kQuiet, kHint);
    }
    for (const Stroke& stroke : drawing) {
        for (std::size_t index = 0; index < stroke.size(); ++index) {
            drawLine(surface, stroke[index == 0 ? 0 : index - 1], stroke[index]);
        }
    }
}

void drawImage(SDL_Surface& surface, const Image& image) {
    for (int pixel = 0; pixel < kImageSide * kImageSide; ++pixel) {
        const float ink = image[static_cast<std::size_t>(pixel)] / 16;
        const int shade = kPaperShade - static_cast<int>(ink * (kPaperShade - kInkShade));
        fill(surface,
             {kColumn + pixel % kImageSide * kCell, kPaper.y + pixel / kImageSide * kCell, kCell,
              kCell},
             grey(shade));
    }
}

std::string percent(float probability) {
    char text[8];
    static_cast<void>(
        std::snprintf(text, sizeof text, "%5.1f%%", 100.0 * static_cast<double>(probability)));
    return text;
}

void drawBars(SDL_Surface& surface, const Probabilities* probabilities) {
    const auto* const largest =
        probabilities ? std::max_element(probabilities->begin(), probabilities->end()) : nullptr;
    for (int digit = 0; digit < 10; ++digit) {
        SDL_Rect bar = kBars;
        bar.y += digit * kBarPitch;
        drawText(surface, kColumn, bar.y, 2, kWriting, std::to_string(digit));
        fill(surface, bar, kTrack);
        if (probabilities) {
            const float probability = (*probabilities)[static_cast<std::size_t>(digit)];
            bar.w = static_cast<int>(std::lround(probability * static_cast<float>(kBars.w)));
            const Uint32 colour = probability == *largest ? kLargest : kBar;
            fill(surface, bar, colour);
            drawText(surface, kBars.x + kBars.w + 8, bar.y, 2,
                     probability == *largest ? kLargest : kQuiet, percent(probability));
        }
    }
    if (probabilities) {
        const auto digit = largest - probabilities->begin();
        drawText(surface, 540, 30, 12, kLargest, std::to_string(digit));
        drawText(surface, 620, 98, 3, kLargest, percent(*largest));
    }
}

// How long loading will take is unknown, so a block moves to and fro.
void drawProgress(SDL_Surface& surface, Uint32 milliseconds) {
    drawText(surface, kProgress.x, 46, 3, kWriting, "Loading");
    fill(surface, kProgress, kTrack);
    constexpr int kWay = kProgress.w - kProgressBlock;
    const int position = static_cast<int>(milliseconds / 4 % (2 * kWay));
    const int offset = position < kWay ? position : 2 * kWay - position;
    fill(surface, {kProgress.x + offset, kProgress.y, kProgressBlock, kProgress.h}, kBar);
}

void drawFailure(SDL_Surface& surface, std::string_view text) {
    constexpr std::size_t kLine = 27;
    drawText(surface, kProgress.x, 46, 3, kLargest, "Failed");
    for (int y = kBars.y; !text.empty() && y < kWindowHeight - 24; y += kBarPitch) {
        drawText(surface, kColumn, y, 2, kWriting, text.substr(0, kLine));
        text.remove_prefix(std::min(kLine, text.size()));
    }
}

}  // namespace

void drawScene(SDL_Surface& surface, const Scene& scene) {
    SDL_FillRect(&surface, nullptr, kGround);
    drawPaper(surface, scene.drawing);
    drawImage(surface, scene.image);
    const Recogniser::Report& report = scene.report;
    if (report.state == Recogniser::State::Failed) {
        drawFailure(surface, report.failure);
        return;
    }
    const bool known = report.last && !scene.drawing.empty();
    drawBars(surface, known ? &report.last->probabilities : nullptr);
    if (report.state == Recogniser::State::Loading) {
        drawProgress(surface, scene.milliseconds);
    }
}

}  // namespace sketch
