#include "ie/network_reader.hpp"

#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "failure.hpp"
#include "handles.hpp"
#include "runtime_call.hpp"
#include "runtime_core.hpp"
#include "runtime_network.hpp"
#include "text/unicode.h"
#include "topology.hpp"
#include "wiped_text.hpp"

namespace InferenceEngine {
namespace runtime {
namespace {

/** The runtime reads other formats too, which must not be passed off as the text of a network. */
bool looksLikeText(std::string_view text) {
    text.remove_prefix(VelmoraQuavin::internal::byteOrderMarkSize(text));
    const auto first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && text[first] == '<';
}

/** A tensor over the weights; null if they have no bytes. */
Handle<ov_tensor_t> tensorOver(const TBlob<std::uint8_t>::Ptr& weights) {
    if (weights->byteSize() == 0) {
        return nullptr;
    }
    void* const memory = weights->buffer().as<void*>();
    if (memory == nullptr) {
        throw Failure(NOT_ALLOCATED, "The weights blob has no memory");
    }
    auto bytes = static_cast<std::int64_t>(weights->byteSize());
    ov_tensor_t* tensor = nullptr;
    check([&] {
        return ov_tensor_create_from_host_ptr(::U8, ov_shape_t{1, &bytes}, memory, &tensor);
    });
    return Handle<ov_tensor_t>(tensor);
}

/**
 * The runtime reads text and weights in one call, so the text is kept until the weights arrive. It
 * may be secret: the copy is wiped once it has been read or, failing that, with the reader.
 */
class NetworkReader final : public ICNNNetReader {
public:
    ~NetworkReader() override = default;
    void Release() noexcept override { delete this; }

    StatusCode ReadNetwork(const void* model, std::size_t size,
                           ResponseDesc* response) noexcept override {
        return answer(response, [&] {
            if (network_) {
                throw Failure(NETWORK_NOT_READ, "This reader has read a network already");
            }
            const auto* const text = static_cast<const char*>(model);
            if (text == nullptr || !looksLikeText({text, size})) {
                throw Failure(GENERAL_ERROR, "The network is not an XML text");
            }
            text_.assign(text, size);
        });
    }

    StatusCode SetWeights(const TBlob<std::uint8_t>::Ptr& weights,
                          ResponseDesc* response) noexcept override {
        const StatusCode status = answer(response, [&] { read(weights); });
        text_.clear();
        return status;
    }

    ICNNNetwork* getNetwork(ResponseDesc* response) noexcept override {
        if (!network_) {
            answer(response, [] { throw Failure(NETWORK_NOT_READ, "No network has been read"); });
        }
        return network_.get();
    }

private:
    void read(const TBlob<std::uint8_t>::Ptr& weights) {
        if (text_.empty()) {
            throw Failure(NETWORK_NOT_READ, "The weights come before the network's text");
        }
        if (!weights) {
            throw Failure(NOT_ALLOCATED, "The weights blob is empty");
        }
        core_ = sharedCore();
        const Handle<ov_tensor_t> tensor = tensorOver(weights);
        ov_model_t* read = nullptr;
        checkRepeating([&] {
            return ov_core_read_model_from_memory_buffer(core_.get(), text_.data(), text_.size(),
                                                         tensor.get(), &read);
        });
        Handle<ov_model_t> model(read);
        const Topology topology = readTopology({text_.data(), text_.size()});
        network_ =
            details::shared_from_irelease(new RuntimeNetwork(std::move(model), weights, topology));
    }

    // Kept so that the runtime is still running when the network is loaded.
    std::shared_ptr<ov_core_t> core_;
    WipedText text_;
    std::shared_ptr<RuntimeNetwork> network_;
};

}  // namespace
}  // namespace runtime

ICNNNetReader* CreateCNNNetReader() noexcept {
    return new (std::nothrow) runtime::NetworkReader;
}

}  // namespace InferenceEngine
