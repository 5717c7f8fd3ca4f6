#include "c/outputs_handle.h"
#include "c/results.h"
#include "c/sized_struct.h"
#include "quavin/c.h"

namespace VelmoraQuavin::internal {

Output::Output(QuavinFeature& feature)
    : tensor_(feature.asTensor()),
      name_(feature.featureDescriptor().name().str()),
      dims_(tensor_->shape().shapeVector()) {}

quavin_output Output::plain() const {
    quavin_output output{};
    output.name = name_.c_str();
    output.data = data();
    output.bytes = bytes();
    output.dims = dims_.data();
    output.rank = dims_.size();
    output.element_type = static_cast<int32_t>(tensor_->dataType());
    return output;
}

}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_outputs_get_count(quavin_outputs* outputs, size_t* count) {
    return guardedCount(count, [&] { return objectOf(outputs)->size(); });
}

quavin_status quavin_outputs_get(quavin_outputs* outputs, size_t index, quavin_output* output) {
    return guarded(
        [&] { fillStruct(output, elementAt(*objectOf(outputs), index).plain(), "quavin_output"); });
}

quavin_status quavin_outputs_release(quavin_outputs* outputs) {
    return guardedRelease(outputs);
}
