#pragma once

/// @file
/// How the engine computes, as far as a host may choose.

#include <cstdint>

#include "quavin/text.h"

namespace VelmoraQuavin {

/// How models compute. A value type; the default changes nothing.
///
/// Set for all models that a host loads (QuavinConfig::SetEngineOptions), or for a single one (the
/// overloads of QuavinClient::getModel that take options). QuavinModel::getEngineInfo reports the
/// result.
struct EngineOptions {
    /// The precision of the computation.
    enum class Precision : std::uint32_t {
        Single = 0,  ///< 32 bits: the same results on every processor, to within rounding.
        /// Half precision or bfloat16 if the processor computes faster with it, else 32 bits.
        /// Results then have two to three digits, and differ between processors.
        Fastest = 1
    };
    /// What the engine uses its threads for.
    enum class Hint : std::uint32_t {
        Latency = 0,  ///< One prediction at a time, each as fast as possible.
        Throughput =
            1  ///< As many predictions as possible, of models that predict at the same time.
    };

    Precision precision = Precision::Single;  ///< The precision of the computation.
    /// Threads that a model computes on; 0 leaves the choice to the engine. At most
    /// #kMostThreads.
    int threads = 0;
    Hint hint = Hint::Latency;  ///< What the threads are used for.
    /// Whether a plain weights file is mapped into memory instead of being read: loading then needs
    /// less memory of the process's own, and processes that load the same file share it. Secured
    /// weights are always read and decrypted; with a cache directory, plain ones are read as well.
    ///
    /// The file must stay as it is while any model over it exists. If it is cut, or on a drive that
    /// goes away, **the process ends** the next time the model reads from it; if it is written to,
    /// results change. To update a package, put a new file in its place (Windows refuses to cut,
    /// delete or replace a mapped file).
    bool mapWeights = false;
    /// A directory for compiled networks, in UTF-8; empty for none. A network that is loaded again
    /// is taken from there, which saves most of the time of a load; predictions are the same, bit
    /// for bit. The directory must exist, and should be one that only this user can write to.
    /// Anything not found there is compiled as usual: a cache never makes a load fail.
    String cacheDirectory;
    /// The bytes that the directory's compiled networks may take together. When one is written,
    /// those written longest ago make room. 0 for no limit.
    uint64 cacheSizeLimit = 0;

    /// The largest number of threads accepted.
    static constexpr int kMostThreads = 1024;
};

/// Whether all options are equal.
inline bool operator==(const EngineOptions& left, const EngineOptions& right) noexcept {
    return left.precision == right.precision && left.threads == right.threads &&
           left.hint == right.hint && left.mapWeights == right.mapWeights &&
           left.cacheDirectory == right.cacheDirectory &&
           left.cacheSizeLimit == right.cacheSizeLimit;
}
/// Whether any option differs.
inline bool operator!=(const EngineOptions& left, const EngineOptions& right) noexcept {
    return !(left == right);
}

}  // namespace VelmoraQuavin
