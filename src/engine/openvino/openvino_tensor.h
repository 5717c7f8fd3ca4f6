#pragma once

#include <inference_engine.hpp>

#include "quavin/tensor.h"

namespace VelmoraQuavin {

/// A tensor over an engine blob, which it keeps alive. Its memory is never copied or replaced.
class OpenVinoTensor : public ITensor {
public:
    /// Reads the shape and element type from the blob once.
    explicit OpenVinoTensor(InferenceEngine::Blob::Ptr blob);
    ~OpenVinoTensor() override;

    /// Always fails, with FAILURE.
    QuavinStatus resize(const TensorShape& newShape) override;
    const unsigned char* buffer() const override;
    unsigned char* buffer() override;
    /// Always false.
    bool allocate(std::size_t byteCount) override;

private:
    InferenceEngine::Blob::Ptr blob_;
};

}  // namespace VelmoraQuavin
