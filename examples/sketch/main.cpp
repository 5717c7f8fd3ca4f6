// Draw a digit with the mouse, and see ten probabilities move as you draw.
//
//     sketch [--print] <folder of the digits package>
//
// With --print, each change is also a line on the standard output.

#define SDL_MAIN_HANDLED  // main stays main on every system
#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "recogniser.h"
#include "strokes.h"
#include "view.h"

namespace {

using namespace sketch;

void require(bool done) {
    if (!done) {
        throw std::runtime_error(SDL_GetError());
    }
}

struct Video {
    Video() {
        // The click that gives the window the focus already draws.
        SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
        require(SDL_Init(SDL_INIT_VIDEO) == 0);
    }
    ~Video() { SDL_Quit(); }
    Video(const Video&) = delete;
    Video& operator=(const Video&) = delete;
};

class App {
public:
    App(const std::string& package, bool print)
        : print_(print),
          window_(SDL_CreateWindow("Sketch", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                   kWindowWidth, kWindowHeight, 0)),
          changed_(SDL_RegisterEvents(1)),
          recogniser_(package, [changed = changed_] {
              SDL_Event event{};
              event.type = changed;
              SDL_PushEvent(&event);  // the one thing of SDL's that other threads may do
          }) {
        require(window_ != nullptr);
    }
    ~App() { SDL_DestroyWindow(window_); }
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    // Returns the program's exit code once the window is closed.
    int run() {
        while (!closed_) {
            show();
            tell();
            SDL_Event event;
            const bool loading = scene_.report.state == Recogniser::State::Loading;
            int more = loading ? SDL_WaitEventTimeout(&event, 16) : SDL_WaitEvent(&event);
            for (; more != 0; more = SDL_PollEvent(&event)) {
                handle(event);
            }
        }
        return scene_.report.state == Recogniser::State::Failed ? 1 : 0;
    }

private:
    void handle(const SDL_Event& event) {
        if (event.type == SDL_QUIT) {
            closed_ = true;
        } else if (event.type == SDL_MOUSEBUTTONDOWN && event.button.button == SDL_BUTTON_LEFT) {
            drawing_ = true;
            scene_.drawing.emplace_back();
            addPoint(event.button.x, event.button.y);
        } else if (event.type == SDL_MOUSEMOTION && drawing_) {
            addPoint(event.motion.x, event.motion.y);
        } else if (event.type == SDL_MOUSEBUTTONUP && event.button.button == SDL_BUTTON_LEFT) {
            drawing_ = false;
        } else if (event.type == SDL_MOUSEBUTTONDOWN && event.button.button == SDL_BUTTON_RIGHT) {
            drawing_ = false;
            scene_.drawing.clear();
            scene_.image = {};
        }
    }

    void addPoint(int x, int y) {
        scene_.drawing.back().push_back(
            {static_cast<float>(std::clamp(x, kPaper.x, kPaper.x + kPaper.w)),
             static_cast<float>(std::clamp(y, kPaper.y, kPaper.y + kPaper.h))});
        scene_.image = imageOf(scene_.drawing);
        recogniser_.submit(scene_.image);
    }

    void show() {
        scene_.report = recogniser_.report();
        scene_.milliseconds = SDL_GetTicks();
        SDL_Surface* const surface = SDL_GetWindowSurface(window_);
        require(surface != nullptr);
        drawScene(*surface, scene_);
        require(SDL_UpdateWindowSurface(window_) == 0);
    }

    // Prints what the window shows since just now.
    void tell() {
        const Recogniser::Report& report = scene_.report;
        if (state_ != report.state && report.state == Recogniser::State::Failed) {
            std::cerr << report.failure << std::endl;
        }
        if (print_) {
            printState();
            printProbabilities();
            std::cout << std::flush;
        }
        state_ = report.state;
    }

    void printState() {
        const Recogniser::Report& report = scene_.report;
        if (report.state == Recogniser::State::Loading) {
            ++frames_;
        } else if (state_ != report.state && report.state == Recogniser::State::Ready) {
            std::printf("ready after %.0f ms, frames meanwhile: %d\n", report.milliseconds,
                        frames_);
        }
        if (scene_.drawing.empty() && !std::exchange(empty_, true)) {
            std::puts("cleared");
        }
    }

    void printProbabilities() {
        const std::optional<Recognition>& last = scene_.report.last;
        if (scene_.drawing.empty() || !last || last->image != scene_.image) {
            return;
        }
        const std::pair<Image, bool> shown{scene_.image, drawing_};
        if (std::exchange(printed_, shown) == shown && !std::exchange(empty_, false)) {
            return;
        }
        empty_ = false;
        std::printf("%s", drawing_ ? "drawing" : "drawn");
        for (const float probability : last->probabilities) {
            std::printf(" %.6f", static_cast<double>(probability));
        }
        std::puts("");
    }

    const bool print_;
    SDL_Window* const window_;
    const Uint32 changed_;
    Scene scene_;
    bool drawing_ = false;  // a button is down
    bool closed_ = false;
    // What was printed last.
    Recogniser::State state_ = Recogniser::State::Loading;
    int frames_ = 0;
    bool empty_ = true;
    std::optional<std::pair<Image, bool>> printed_;
    Recogniser recogniser_;  // the last member: it sends events until it is destroyed
};

}  // namespace

int main(int argc, char** argv) {
    const bool print = argc > 1 && std::string(argv[1]) == "--print";
    if (argc != (print ? 3 : 2)) {
        std::cerr << "usage: sketch [--print] <folder of the digits package>\n";
        return 2;
    }
    try {
        SDL_SetMainReady();
        const Video video;
        return App(argv[argc - 1], print).run();
    } catch (const std::exception& error) {
        std::cerr << "sketch: " << error.what() << '\n';
        return 1;
    }
}
