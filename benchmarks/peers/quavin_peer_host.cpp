// The library's side of compare.py: says "{}" when it has started, then reads commands from
// standard input, one per line, and answers each with a line of JSON.
//
//     quavin_peer_host PACKAGE INPUT CACHE
//
//     load          loads the package, dropping the model loaded before    {"seconds": 0.05}
//     load cached   the same, with compiled networks kept in CACHE         {"seconds": 0.02}
//     predict N     predicts N times and drops the outputs                 {"seconds": 0.31}
//     output FILE   predicts once and saves the first output's bytes       {}
//
// INPUT holds the bytes of the first input.

#include <quavin/quavin.h>

#include <chrono>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace VelmoraQuavin;

namespace {

using Features = std::vector<std::shared_ptr<QuavinFeature>>;

void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

class Host {
public:
    Host(std::string package, std::string input, std::string cache)
        : package_(std::move(package)), input_(std::move(input)), cache_(std::move(cache)) {}

    double load(bool cached) {
        EngineOptions options;
        if (cached) {
            options.cacheDirectory = cache_;
        }
        inputs_.clear();
        model_.reset();
        const Clock::time_point start = Clock::now();
        require(QuavinClient::instance().getModel(package_, model_, 0, QuavinModelType::Openvino,
                                                  options));
        const double seconds = secondsSince(start);
        require(model_->allocateInputs(inputs_));
        fillInput();
        return seconds;
    }

    double predict(int count) {
        const Clock::time_point start = Clock::now();
        for (int call = 0; call < count; ++call) {
            Features outputs;
            require(model_->predict(inputs_, outputs));
        }
        return secondsSince(start);
    }

    void saveOutput(const std::string& path) {
        Features outputs;
        require(model_->predict(inputs_, outputs));
        const auto tensor = outputs.at(0)->asTensor();
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(tensor->buffer()), tensor->bytes());
        if (!file.flush()) {
            throw std::runtime_error("cannot write " + path);
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    static double secondsSince(Clock::time_point start) {
        return std::chrono::duration<double>(Clock::now() - start).count();
    }

    void fillInput() {
        const auto tensor = inputs_.at(0)->asTensor();
        std::ifstream file(input_, std::ios::binary);
        if (!file.read(reinterpret_cast<char*>(tensor->buffer()), tensor->bytes())) {
            throw std::runtime_error("cannot read " + input_);
        }
    }

    std::string package_;
    std::string input_;
    std::string cache_;
    std::shared_ptr<QuavinModel> model_;
    Features inputs_;
};

std::string secondsAsJson(double seconds) {
    std::ostringstream text;
    text << "{\"seconds\": " << std::setprecision(9) << seconds << '}';
    return text.str();
}

// Does what a line says and returns the answer.
std::string answer(Host& host, const std::string& line) {
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "load") {
        std::string how;
        words >> how;
        return secondsAsJson(host.load(how == "cached"));
    }
    if (command == "predict") {
        int count = 0;
        words >> count;
        return secondsAsJson(host.predict(count));
    }
    if (command == "output") {
        std::string path;
        std::getline(words >> std::ws, path);
        host.saveOutput(path);
        return "{}";
    }
    throw std::runtime_error("unknown command: " + line);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: quavin_peer_host PACKAGE INPUT CACHE\n";
        return 2;
    }
    try {
        const QuavinClientInitTerm library{QuavinConfig()};
        Host host(argv[1], argv[2], argv[3]);
        std::cout << "{}" << std::endl;
        for (std::string line; std::getline(std::cin, line);) {
            std::cout << answer(host, line) << std::endl;
        }
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
