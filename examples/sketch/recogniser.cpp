#include "recogniser.h"

#include <quavin/quavin.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace sketch {

using namespace VelmoraQuavin;

namespace {

void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

}  // namespace

Recogniser::Recogniser(std::string package, std::function<void()> changed)
    : package_(std::move(package)), changed_(std::move(changed)), thread_([this] { run(); }) {}

Recogniser::~Recogniser() {
    {
        const std::scoped_lock lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void Recogniser::submit(const Image& image) {
    {
        const std::scoped_lock lock(mutex_);
        waiting_ = image;
    }
    wake_.notify_one();
}

Recogniser::Report Recogniser::report() const {
    const std::scoped_lock lock(mutex_);
    return report_;
}

void Recogniser::run() {
    try {
        loadAndPredict();
    } catch (...) {
        const QuavinStatus status = getStatusFromCurrentException();
        change([&status](Report& report) {
            report.state = State::Failed;
            report.failure = status.getDescription().str();
        });
    }
}

void Recogniser::loadAndPredict() {
    const auto start = std::chrono::steady_clock::now();
    const QuavinClientInitTerm library{QuavinConfig()};
    std::shared_ptr<QuavinModel> model;
    require(
        QuavinClient::instance().getModel(String(package_), model, 0, QuavinModelType::Openvino));
    std::vector<std::shared_ptr<QuavinFeature>> inputs;
    require(model->allocateInputs(inputs));
    auto* const pixels = reinterpret_cast<float*>(inputs[0]->asTensor()->buffer());
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    change([&time](Report& report) {
        report.state = State::Ready;
        report.milliseconds = time.count();
    });

    while (const std::optional<Image> image = nextImage()) {
        std::copy(image->begin(), image->end(), pixels);
        std::vector<std::shared_ptr<QuavinFeature>> outputs;
        require(model->predict(inputs, outputs));
        Recognition recognition{*image, {}};
        const auto* const first = reinterpret_cast<const float*>(outputs[0]->asTensor()->buffer());
        std::copy_n(first, recognition.probabilities.size(), recognition.probabilities.begin());
        change([&recognition](Report& report) { report.last = recognition; });
    }
}

// Waits for an image; there is none once the recogniser is being destroyed.
std::optional<Image> Recogniser::nextImage() {
    std::unique_lock lock(mutex_);
    wake_.wait(lock, [this] { return stopping_ || waiting_; });
    return stopping_ ? std::nullopt : std::exchange(waiting_, std::nullopt);
}

void Recogniser::change(const std::function<void(Report&)>& edit) {
    {
        const std::scoped_lock lock(mutex_);
        edit(report_);
    }
    changed_();
}

}  // namespace sketch
