#include "engine/openvino/openvino_tensor.h"

#include <utility>

#include "engine/openvino/precision.h"

namespace VelmoraQuavin {

OpenVinoTensor::OpenVinoTensor(InferenceEngine::Blob::Ptr blob)
    : ITensor(internal::toDataType(blob->getTensorDesc().getPrecision()),
              internal::shapeOf(blob->getTensorDesc())),
      blob_(std::move(blob)) {}

OpenVinoTensor::~OpenVinoTensor() = default;

QuavinStatus OpenVinoTensor::resize(const TensorShape& /*newShape*/) {
    return {FAILURE, "Tensor resizing not allowed"};
}

// The address stays valid after the lock is released: the blob owns its memory, and is kept alive.
const unsigned char* OpenVinoTensor::buffer() const {
    return std::as_const(*blob_).cbuffer().as<const unsigned char*>();
}

unsigned char* OpenVinoTensor::buffer() {
    return blob_->buffer().as<unsigned char*>();
}

bool OpenVinoTensor::allocate(std::size_t /*byteCount*/) {
    return false;
}

}  // namespace VelmoraQuavin
