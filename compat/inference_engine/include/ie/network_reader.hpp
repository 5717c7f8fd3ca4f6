// Reading a network from memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ie/common.hpp"
#include "ie/network.hpp"
#include "ie/release.hpp"
#include "ie/typed_blob.hpp"

namespace InferenceEngine {

/**
 * Reads one network: first its text, then its weights. A failure is reported as a status, with a
 * text in the response if there is one; after a failure, reading may start again.
 */
class ICNNNetReader : public details::IRelease {
public:
    /** Takes the text of the topology; its memory is no longer needed once the call returns. */
    virtual StatusCode ReadNetwork(const void* model, std::size_t size,
                                   ResponseDesc* response) noexcept = 0;

    /** Shares the blob, which the network and everything loaded from it keep alive. */
    virtual StatusCode SetWeights(const TBlob<std::uint8_t>::Ptr& weights,
                                  ResponseDesc* response) noexcept = 0;

    /** The network, which the reader owns; null if none has been read yet. */
    virtual ICNNNetwork* getNetwork(ResponseDesc* response) noexcept = 0;

protected:
    ~ICNNNetReader() override = default;
};

/** Creates a reader, which the caller releases; null if memory runs out. */
ICNNNetReader* CreateCNNNetReader() noexcept;

}  // namespace InferenceEngine
