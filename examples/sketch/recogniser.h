// The model on a thread of its own, so that neither loading nor predicting keeps the window
// waiting.

#pragma once

#include <array>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "strokes.h"

namespace sketch {

using Probabilities = std::array<float, 10>;

struct Recognition {
    Image image;  // what was recognised
    Probabilities probabilities;
};

// Any thread may call its functions. `changed` is called on the model's thread when report() has
// something new.
class Recogniser {
public:
    enum class State { Loading, Ready, Failed };
    struct Report {
        State state = State::Loading;
        double milliseconds = 0;  // how long loading took
        std::string failure;
        std::optional<Recognition> last;
    };

    Recogniser(std::string package, std::function<void()> changed);
    ~Recogniser();
    Recogniser(const Recogniser&) = delete;
    Recogniser& operator=(const Recogniser&) = delete;

    // Asks for this image to be recognised next. One that is still waiting is dropped: only the
    // newest matters.
    void submit(const Image& image);

    Report report() const;

private:
    void run();
    void loadAndPredict();
    std::optional<Image> nextImage();
    void change(const std::function<void(Report&)>& edit);

    const std::string package_;
    const std::function<void()> changed_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::optional<Image> waiting_;
    bool stopping_ = false;
    Report report_;
    std::thread thread_;  // the last member: it uses the others
};

}  // namespace sketch
