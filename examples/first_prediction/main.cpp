// The shortest way to a prediction: draws a "1" of 8x8 pixels and lets a model recognise it.
//
//     first_prediction <folder of the digits package>

#include <quavin/quavin.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <vector>

using namespace VelmoraQuavin;

namespace {

void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

// A stroke from top to bottom, two pixels wide: 0 is paper, 16 is ink.
void drawOne(float* pixels) {
    for (int row = 0; row < 8; ++row) {
        pixels[row * 8 + 3] = 16;
        pixels[row * 8 + 4] = 16;
    }
}

void firstPrediction(const String& package) {
    const QuavinClientInitTerm library{QuavinConfig()};
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(package, model, 0, QuavinModelType::Openvino));

    std::vector<std::shared_ptr<QuavinFeature>> inputs, outputs;
    require(model->allocateInputs(inputs));
    drawOne(reinterpret_cast<float*>(inputs[0]->asTensor()->buffer()));

    require(model->predict(inputs, outputs));
    const auto* digits = reinterpret_cast<const float*>(outputs[0]->asTensor()->buffer());
    std::cout << "This is a " << std::max_element(digits, digits + 10) - digits << ".\n";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: first_prediction <folder of the digits package>\n";
        return 2;
    }
    try {
        firstPrediction(argv[1]);
    } catch (...) {
        const QuavinStatus status = getStatusFromCurrentException();
        std::cerr << "code " << status.getCode() << ": " << status.getDescription() << '\n';
        return 1;
    }
    return 0;
}
