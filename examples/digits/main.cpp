// Recognises handwritten digits with a plain and a secured model package.
//
//     digits <folder of this example>

#include <quavin/quavin.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

using namespace VelmoraQuavin;

namespace {

struct Digit {
    unsigned char pixels[64];  // row by row, 0 (paper) to 16 (ink)
    unsigned char label;
};

// The library leaves it to the host to decide what happens if something fails.
void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

std::vector<Digit> readDigits(const String& folder) {
    uint64 size = 0;
    const auto bytes =
        FileUtils::readBinaryFileToBuffer(Filepath(folder).append(Filepath("held_out.bin")), size);
    if (bytes == nullptr) {
        throw FileException("there is no held_out.bin in " + folder);
    }
    const auto* first = reinterpret_cast<const Digit*>(bytes.get());
    const std::size_t count = size / sizeof(Digit);
    return {first, first + count};
}

// The plain package needs nothing but its path.
std::shared_ptr<QuavinModel> loadPlain(const String& folder) {
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(folder + "/package", model, 0,
                                              QuavinModelType::Openvino));
    return model;
}

// The secured package gets its key after reading the manifest and before loading the files.
std::shared_ptr<QuavinModel> loadSecured(const String& folder) {
    unsigned char key[16];
    std::ifstream keyFile(folder.str() + "/demo.key");
    for (unsigned char& byte : key) {
        char digits[3] = {};
        keyFile.get(digits, sizeof digits);
        byte = static_cast<unsigned char>(std::strtoul(digits, nullptr, 16));
    }
    auto metadata = std::make_shared<ModelMetadata>();
    // append(), not "/": the text before the manifest's backslash is the package's folder.
    require(
        metadata->load(Filepath(folder + "/secured_package").append(Filepath("manifest.json"))));
    for (ModelComponent& component :
         metadata->getTargets().at(QuavinModelType::Openvino).components) {
        component.setCryptoKey(key);
    }
    std::fill(std::begin(key), std::end(key), static_cast<unsigned char>(0));
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(metadata, model, QuavinModelType::Openvino));
    return model;
}

void draw(const Digit& digit, std::ptrdiff_t predicted) {
    for (int row = 0; row < 8; ++row) {
        std::cout << "    ";
        for (int column = 0; column < 8; ++column) {
            const char ink = " .:-=+*#%@"[digit.pixels[row * 8 + column] * 9 / 16];
            std::cout << ink << ink;
        }
        std::cout << (row == 4 ? "   -> " + std::to_string(predicted) : "") << '\n';
    }
}

// Predicts every digit and returns the number of correct predictions.
std::size_t recognise(QuavinModel& model, const std::vector<Digit>& digits, std::size_t drawn) {
    std::vector<std::shared_ptr<QuavinFeature>> inputs;
    require(model.allocateInputs(inputs));
    auto* const image = reinterpret_cast<float*>(inputs[0]->asTensor()->buffer());

    std::size_t right = 0;
    std::vector<double> microseconds;
    for (std::size_t index = 0; index < digits.size(); ++index) {
        const Digit& digit = digits[index];
        std::copy(std::begin(digit.pixels), std::end(digit.pixels), image);

        std::vector<std::shared_ptr<QuavinFeature>> outputs;
        const auto start = std::chrono::steady_clock::now();
        require(model.predict(inputs, outputs));
        const std::chrono::duration<double, std::micro> time =
            std::chrono::steady_clock::now() - start;
        microseconds.push_back(time.count());

        // The probabilities are in the engine's own memory, which the output keeps alive.
        const auto* const begin = reinterpret_cast<const float*>(outputs[0]->asTensor()->buffer());
        const auto predicted = std::max_element(begin, begin + 10) - begin;
        right += predicted == digit.label ? 1 : 0;
        if (index < drawn) {
            draw(digit, predicted);
        }
    }
    std::sort(microseconds.begin(), microseconds.end());
    std::printf("%s: %zu of %zu digits right, accuracy %.4f, %.1f us a prediction (median)\n",
                model.getName().str().c_str(), right, digits.size(),
                static_cast<double>(right) / static_cast<double>(digits.size()),
                microseconds[microseconds.size() / 2]);
    return right;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr
            << "usage: digits <folder with package, secured_package, demo.key, held_out.bin>\n";
        return 2;
    }
    try {
        const QuavinClientInitTerm library{QuavinConfig()};
        const String folder(argv[1]);
        const std::vector<Digit> digits = readDigits(folder);
        std::cout << "Plain package:\n" << std::flush;
        const std::size_t plain = recognise(*loadPlain(folder), digits, 3);
        std::cout << "Secured package:\n" << std::flush;
        const std::size_t secured = recognise(*loadSecured(folder), digits, 0);
        return plain == secured && plain * 100 >= digits.size() * 97 ? 0 : 1;
    } catch (...) {
        const QuavinStatus status = getStatusFromCurrentException();
        std::cerr << "failed with status " << status.getCode() << ": " << status.getDescription()
                  << '\n';
        return 1;
    }
}
