// Loads the package named on the command line, which computes y = x + x, and predicts with it.

#include <quavin/quavin.h>

#include <cstring>
#include <iostream>
#include <memory>
#include <vector>

using namespace VelmoraQuavin;

namespace {

int fail(const char* step, const QuavinStatus& status) {
    std::cerr << step << ": " << status.getCode() << ' ' << status.getDescription() << '\n';
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    const QuavinClientInitTerm switchedOn{QuavinConfig()};
    std::shared_ptr<QuavinModel> model;
    const String path = argc == 2 ? argv[1] : "";
    QuavinStatus status =
        QuavinClient::instance().getModel(path, model, 0, QuavinModelType::Openvino);
    if (!status.ok()) {
        return fail("getModel", status);
    }
    std::vector<std::shared_ptr<QuavinFeature>> inputs;
    std::vector<std::shared_ptr<QuavinFeature>> outputs;
    status = model->allocateInputs(inputs);
    if (!status.ok()) {
        return fail("allocateInputs", status);
    }
    const float x[] = {3.0F, -1.5F};
    std::memcpy(inputs.at(0)->asTensor()->buffer(), x, sizeof x);
    try {
        status = model->predict(inputs, outputs);
    } catch (...) {
        status = getStatusFromCurrentException();
    }
    if (!status.ok()) {
        return fail("predict", status);
    }
    float y[2] = {};
    std::memcpy(y, outputs.at(0)->asTensor()->buffer(), sizeof y);
    std::cout << "twice (3, -1.5) is (" << y[0] << ", " << y[1] << ")\n";
    return y[0] == 6.0F && y[1] == -3.0F ? 0 : 1;
}
