#include "c/model_handle.h"
#include "c/results.h"
#include "c/sized_struct.h"
#include "quavin/c.h"

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_model_get_metadata(quavin_model* model, quavin_metadata* metadata) {
    return guarded([&] { fillStruct(metadata, objectOf(model)->metadata(), "quavin_metadata"); });
}

quavin_status quavin_model_get_input_count(quavin_model* model, size_t* count) {
    return guardedCount(count, [&] { return objectOf(model)->inputs().size(); });
}

quavin_status quavin_model_get_output_count(quavin_model* model, size_t* count) {
    return guardedCount(count, [&] { return objectOf(model)->outputs().size(); });
}

quavin_status quavin_model_get_input(quavin_model* model, size_t index, quavin_port* port) {
    return guarded([&] {
        fillStruct(port, elementAt(objectOf(model)->inputs(), index).plain(), "quavin_port");
    });
}

quavin_status quavin_model_get_output(quavin_model* model, size_t index, quavin_port* port) {
    return guarded([&] {
        fillStruct(port, elementAt(objectOf(model)->outputs(), index).plain(), "quavin_port");
    });
}

quavin_status quavin_clone(quavin_model* model, quavin_model** clone) {
    return guardedHandle(clone, [&] {
        const auto original = objectOf(model);
        std::shared_ptr<QuavinModel> made;
        require(client().cloneModel(original->model(), made));
        return std::make_shared<ModelHandle>(std::move(made));
    });
}

quavin_status quavin_unload(quavin_model* model) {
    return guarded([&] {
        std::shared_ptr<QuavinModel> unloaded = objectOf(model)->model();
        require(client().unloadModel(unloaded));
    });
}

quavin_status quavin_model_release(quavin_model* model) {
    return guardedRelease(model);
}
