#include "bound_port.hpp"

#include "failure.hpp"
#include "ports.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {

BoundPort::BoundPort(const LoadedPort& port)
    : name_(port.name),
      direction_(port.direction),
      index_(port.index),
      precision_(port.precision),
      type_(elementTypeOf(port.precision)) {
    for (const std::size_t dim : port.dims) {
        dims_.push_back(static_cast<std::int64_t>(dim));
        elements_ *= dim;
    }
}

bool BoundPort::set(ov_infer_request_t& request, const Blob::Ptr& blob) {
    void* const memory = checkedMemory(blob);
    const bool alreadyBound = memory == boundMemory_;
    if (!alreadyBound) {
        bind(request, memory);
    }
    blob_ = blob;
    return !alreadyBound;
}

/** The blob's dimensions are not checked: the port's own are used instead. */
void* BoundPort::checkedMemory(const Blob::Ptr& blob) const {
    if (!blob) {
        throw Failure(NOT_ALLOCATED, describe() + " was given an empty blob");
    }
    const Precision precision = blob->getTensorDesc().getPrecision();
    if (precision != precision_) {
        throw Failure(PARAMETER_MISMATCH,
                      describe() + " was loaded with precision " + precision_.name() +
                          " and was given a blob of precision " + precision.name());
    }
    if (blob->size() != elements_ || blob->element_size() != precision_.size()) {
        throw Failure(PARAMETER_MISMATCH, describe() + " has " + std::to_string(elements_) +
                                              " elements and was given a blob of " +
                                              std::to_string(blob->size()));
    }
    if (elements_ == 0) {
        throw Failure(PARAMETER_MISMATCH, describe() + " was given a blob without elements");
    }
    void* const memory = blob->buffer().as<void*>();
    if (memory == nullptr) {
        throw Failure(NOT_ALLOCATED, describe() + " was given a blob without memory");
    }
    return memory;
}

void BoundPort::bind(ov_infer_request_t& request, void* memory) {
    const ov_shape_t shape{static_cast<std::int64_t>(dims_.size()), dims_.data()};
    ov_tensor_t* made = nullptr;
    check([&] { return ov_tensor_create_from_host_ptr(type_, shape, memory, &made); });
    const Handle<ov_tensor_t> tensor(made);
    // If this fails, it is unknown what is bound.
    boundMemory_ = nullptr;
    check([&] {
        return direction_ == Direction::Input
                   ? ov_infer_request_set_input_tensor_by_index(&request, index_, made)
                   : ov_infer_request_set_output_tensor_by_index(&request, index_, made);
    });
    boundMemory_ = memory;
}

std::string BoundPort::describe() const {
    return runtime::describe(direction_, name_);
}

}  // namespace InferenceEngine::runtime
