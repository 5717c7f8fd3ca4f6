// A host that exits with models left behind, in the way its argument selects. It must exit with
// status 0, whatever the order in which its statics and the library's are destroyed.

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "quavin/c.h"
#include "quavin/quavin.h"
#include "support/model_package.h"
#include "support/small_networks.h"
#include "support/tensor_values.h"

namespace {

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::testing;

// Created before the library's own statics, and so destroyed after them.
const TempDirectory directory;
std::shared_ptr<QuavinModel> heldModel;
Features heldInputs;
Features heldOutputs;
std::optional<RuntimeStatus> heldStatus;

void require(bool condition, const char* what) {
    if (!condition) {
        std::cerr << "failed: " << what << '\n';
        std::_Exit(1);
    }
}

std::shared_ptr<QuavinModel> loadRegistered() {
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(directory.text(), model, Device(), 0).ok(), "load");
    return model;
}

void predict(const std::shared_ptr<QuavinModel>& model, Features& inputs, Features& outputs) {
    require(model->allocateInputs(inputs).ok(), "allocateInputs");
    require(model->predict(inputs, outputs).ok(), "predict");
}

void leaveRegistered() {
    Features inputs;
    Features outputs;
    predict(loadRegistered(), inputs, outputs);
}

void leaveHeld() {
    heldModel = loadRegistered();
    predict(heldModel, heldInputs, heldOutputs);
}

void leaveUnregisteredHeld() {
    const auto type = QuavinModelType::Openvino;
    require(QuavinClient::instance().getModel(directory.text(), heldModel, 0, type).ok(), "load");
    predict(heldModel, heldInputs, heldOutputs);
}

void leaveOutputs() {
    predict(loadRegistered(), heldInputs, heldOutputs);
}

void leaveUnloaded() {
    heldModel = loadRegistered();
    require(QuavinClient::instance().unloadModel(heldModel).ok(), "unload");
}

void leaveFailed() {
    directory.write("net.xml", "no network");
    std::shared_ptr<QuavinModel> model;
    require(!QuavinClient::instance().getModel(directory.text(), model, Device(), 0).ok(), "fail");
}

void leaveSnapshot() {
    loadRegistered();
    heldStatus = QuavinClient::instance().queryRuntimeStatus();
    require(heldStatus->getLoadedModels().size() == 1, "snapshot");
}

void leaveSwitchedOff() {
    leaveRegistered();
    QuavinClient::terminate();
}

void leaveHandles() {
    quavin_model* model = nullptr;
    quavin_outputs* outputs = nullptr;
    const float x[4] = {};
    const void* const inputs[] = {x};
    const std::size_t sizes[] = {sizeof x};
    require(quavin_load_directory(directory.text().c_str(), nullptr, &model) == QUAVIN_SUCCESS &&
                quavin_predict(model, inputs, sizes, 1, &outputs) == QUAVIN_SUCCESS,
            "handles");
}

void leaveInTheMiddle() {
    const auto model = loadRegistered();
    Features inputs;
    Features outputs;
    predict(model, inputs, outputs);
    std::exit(0);  // locals are not destroyed; statics are
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, std::function<void()>> ways = {
        {"registered", leaveRegistered},
        {"held", leaveHeld},
        {"unregistered", leaveUnregisteredHeld},
        {"outputs", leaveOutputs},
        {"unloaded", leaveUnloaded},
        {"failed", leaveFailed},
        {"snapshot", leaveSnapshot},
        {"switched_off", leaveSwitchedOff},
        {"handles", leaveHandles},
        {"in_the_middle", leaveInTheMiddle},
    };
    require(argc == 2 && ways.count(argv[1]) == 1, "one way to leave");
    writePackage(directory, affineNetwork());
    require(QuavinClient::init(QuavinConfig()).ok(), "init");
    ways.at(argv[1])();
    return 0;
}
