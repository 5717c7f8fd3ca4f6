#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "c/handle_table.h"
#include "quavin/c.h"
#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// One output, with the text and the dimensions that a quavin_output points to.
class Output {
public:
    /// @throws InvalidTypeException if the feature is not a tensor.
    explicit Output(QuavinFeature& feature);

    const std::string& name() const { return name_; }
    void* data() const { return tensor_->buffer(); }
    std::size_t bytes() const { return static_cast<std::size_t>(tensor_->bytes()); }
    /// Points into this object.
    quavin_output plain() const;

private:
    std::shared_ptr<ITensor> tensor_;
    std::string name_;
    std::vector<std::int64_t> dims_;
};

/// What a quavin_outputs stands for.
using Outputs = std::vector<Output>;

template <>
struct HandleKind<quavin_outputs> {
    using Object = Outputs;
    static constexpr const char* kName = "outputs";
    static constexpr const char* kArgument = "outputs";
};

}  // namespace VelmoraQuavin::internal
