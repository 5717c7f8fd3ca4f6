#include "view.h"

#include <gtest/gtest.h>

#include <memory>

namespace sketch {
namespace {

constexpr int kBarLeft = 424;
constexpr int kBarWidth = 224;

class SketchView : public ::testing::Test {
protected:
    // Draws the scene, and reads the colour of one of its pixels later.
    void draw() { drawScene(*surface_, scene_); }

    Uint32 at(int x, int y) const {
        const auto* const bytes = static_cast<const Uint8*>(surface_->pixels) + y * surface_->pitch;
        return reinterpret_cast<const Uint32*>(bytes)[x] & 0xFFFFFF;
    }

    // How many pixels right of a point have its colour.
    int run(int x, int y) const {
        int length = 1;
        while (x + length < kWindowWidth && at(x + length, y) == at(x, y)) {
            ++length;
        }
        return length;
    }

    static int barMiddle(int digit) { return 144 + 24 * digit + 7; }

    Scene scene_;

private:
    std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)> surface_{
        SDL_CreateRGBSurfaceWithFormat(0, kWindowWidth, kWindowHeight, 32, SDL_PIXELFORMAT_RGB888),
        SDL_FreeSurface};
};

TEST_F(SketchView, BarsAreAsLongAsTheProbabilities) {
    scene_.drawing = {{{100, 100}}};
    scene_.report.state = Recogniser::State::Ready;
    scene_.report.last = Recognition{{}, {0, 0.25F, 0.5F, 0, 0, 0.125F, 0, 0, 0, 0.125F}};
    draw();
    EXPECT_EQ(run(kBarLeft, barMiddle(1)), kBarWidth / 4);
    EXPECT_EQ(run(kBarLeft, barMiddle(2)), kBarWidth / 2);
    EXPECT_EQ(run(kBarLeft, barMiddle(5)), kBarWidth / 8);
    EXPECT_EQ(run(kBarLeft, barMiddle(3)), kBarWidth);                  // the track alone
    EXPECT_NE(at(kBarLeft, barMiddle(2)), at(kBarLeft, barMiddle(1)));  // the largest stands out
    EXPECT_EQ(at(kBarLeft, barMiddle(5)), at(kBarLeft, barMiddle(1)));
}

TEST_F(SketchView, NothingDrawnHasNoProbabilities) {
    scene_.report.state = Recogniser::State::Ready;
    scene_.report.last = Recognition{{}, {1}};
    draw();
    EXPECT_EQ(run(kBarLeft, barMiddle(0)), kBarWidth);
    EXPECT_EQ(at(kBarLeft, barMiddle(0)), at(kBarLeft, barMiddle(1)));
}

TEST_F(SketchView, ABlockMovesWhileTheModelLoads) {
    constexpr int kY = 92;
    constexpr int kLeft = 520;
    draw();
    EXPECT_EQ(run(kLeft, kY), 52);
    scene_.milliseconds = 400;
    draw();
    EXPECT_EQ(run(kLeft, kY), 100);  // the track before the block
    EXPECT_EQ(run(kLeft + 100, kY), 52);
    scene_.report.state = Recogniser::State::Ready;
    draw();
    EXPECT_EQ(at(kLeft + 100, kY), at(kLeft, kY));
}

TEST_F(SketchView, AFailureIsWrittenInPlaceOfTheBars) {
    scene_.report.state = Recogniser::State::Failed;
    scene_.report.failure = "E";
    draw();
    EXPECT_EQ(run(400, 145), 10);  // the top of an E: five dots of two pixels
    EXPECT_EQ(at(kBarLeft, barMiddle(3)), at(0, 0));
}

TEST_F(SketchView, InkIsDarkInsideALineAndSmoothAtItsEdge) {
    scene_.drawing = {{{100, 100}, {200, 100}}};
    draw();
    EXPECT_EQ(at(150, 100), 0x181818U);
    EXPECT_EQ(at(150, 120), 0xFAFAFAU);
    scene_.drawing = {{{100, 100}, {200, 100.5F}}};
    draw();
    EXPECT_GT(at(150, 109), 0x181818U);
    EXPECT_LT(at(150, 109), 0xFAFAFAU);
}

TEST_F(SketchView, InkStaysOnThePaper) {
    scene_.drawing = {{{376, 24}, {376, 376}}};
    draw();
    EXPECT_EQ(at(375, 200), 0x181818U);
    EXPECT_EQ(at(376, 200), at(0, 0));
}

TEST_F(SketchView, TheImageIsShownAsTheNetworkGetsIt) {
    scene_.image[9] = 16;  // the second pixel of the second row
    draw();
    EXPECT_EQ(at(400 + 12, 24 + 12), 0x181818U);
    EXPECT_EQ(at(400 + 23, 24 + 23), 0x181818U);
    EXPECT_EQ(at(400 + 11, 24 + 12), 0xFAFAFAU);
    EXPECT_EQ(at(400 + 24, 24 + 23), 0xFAFAFAU);
}

}  // namespace
}  // namespace sketch
