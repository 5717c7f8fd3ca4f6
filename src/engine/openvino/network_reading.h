#pragma once

#include <cstdint>
#include <exception>
#include <inference_engine.hpp>
#include <memory>
#include <optional>
#include <string_view>

#include "core/secure_wipe.h"
#include "package/source/network_components.h"

namespace VelmoraQuavin::internal {

/// The two files of a network, from reading them as they are stored to passing them to a reader.
/// A secret topology is wiped afterwards, secret weights when the last reference to their
/// blob is dropped.
class StoredNetwork {
public:
    /// @param network must outlive this.
    /// @param mapWeights maps the weights instead of reading them, unless they are secured or their
    ///        source can only read. They stay mapped as long as their blob. Weights that are in
    ///        memory already are always used there.
    explicit StoredNetwork(const NetworkComponents& network, bool mapWeights = false)
        : network_(network), mapWeights_(mapWeights) {}

    const NetworkComponents& components() const { return network_; }

    /// Reads both files, for callers who need their bytes before they are decrypted.
    /// @return whether that succeeded; if not, passTo() throws the reason.
    bool read() noexcept;
    /// The bytes as stored, after read() and before passTo().
    std::string_view topology() const;
    std::string_view weights() const;

    /// Decrypts the files and passes them to a reader; reads those that have not been read yet.
    /// Called once.
    /// @throws FileException if a component cannot be read, mapped or decrypted.
    /// @throws SignatureException if a component is not what was signed.
    /// @throws std::exception if the reader fails.
    void passTo(InferenceEngine::ICNNNetReader& reader);

private:
    void readTopology();
    void readWeights();
    void passTopology(InferenceEngine::ICNNNetReader& reader);
    void passWeights(InferenceEngine::ICNNNetReader& reader);

    const NetworkComponents& network_;
    const bool mapWeights_;
    std::optional<ComponentReader> topology_;
    std::unique_ptr<char[]> topologyBytes_;
    std::optional<WipeOnExit> topologyWipe_;  // destroyed before the bytes
    std::optional<ComponentReader> weights_;
    InferenceEngine::TBlob<std::uint8_t>::Ptr weightsBlob_;
    // What read() met.
    std::exception_ptr topologyProblem_;
    std::exception_ptr weightsProblem_;
};

/// Passes a network to a reader, which is created if there is none yet, and reports failures as the
/// library does.
/// @throws FileException with the failure's own message.
/// @throws SignatureException if a component is not what was signed.
/// @throws Exception "Unknown/internal exception happened." for anything that is not a
///         std::exception.
void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader, StoredNetwork& network);

/// Passes the text of a network that has no weights to a reader.
/// @throws std::exception if the reader fails.
void readWithoutWeights(InferenceEngine::ICNNNetReader& reader, std::string_view topology);

}  // namespace VelmoraQuavin::internal
