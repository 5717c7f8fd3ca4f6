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
 * Reads one network: first its text, then its weights. Failures come as a status with a text in the
 * response, where one is given; after a failure the reading may start again.
 */
class ICNNNetReader : public details::IRelease {
public:
    /** Takes the text of the topology; the memory may go when the call returns. */
    virtual StatusCode ReadNetwork(const void* model, std::size_t size,
                                   ResponseDesc* response) noexcept = 0;

    /** Shares the blob: it stays alive with the network and with whatever is loaded from it. */
    virtual StatusCode SetWeights(const TBlob<std::uint8_t>::Ptr& weights,
                                  ResponseDesc* response) noexcept = 0;

    /** The network, which belongs to the reader; null before it was read. */
    virtual ICNNNetwork* getNetwork(ResponseDesc* response) noexcept = 0;

protected:
    ~ICNNNetReader() override = default;
};

/** A new reader, which the caller releases; null if there is no memory for one. */
ICNNNetReader* CreateCNNNetReader() noexcept;

}  // namespace InferenceEngine
