#include "ie/data.hpp"

#include "ie/exception.hpp"

namespace InferenceEngine {

Data& InputInfo::data() const {
    if (!data_) {
        throw details::InferenceEngineException("Data is empty!");
    }
    return *data_;
}

}  // namespace InferenceEngine
