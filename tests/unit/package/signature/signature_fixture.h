#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "package/signature/trusted_keys.h"
#include "support/signature_data.h"

namespace VelmoraQuavin::testing {

inline internal::TrustedKey readKey(const std::string& name) {
    std::string problem;
    const auto key = internal::readPublicKey(readPem(name), problem);
    return key.has_value() ? *key : throw std::runtime_error(name + ": " + problem);
}

/// A digest whose bytes all have this value.
inline internal::platform::Sha256Digest digestOf(unsigned char byte) {
    internal::platform::Sha256Digest digest{};
    digest.fill(byte);
    return digest;
}

/// The lines of a table in tests/data/signature, each as its columns.
inline std::vector<std::vector<std::string>> readTable(const std::string& name,
                                                       std::size_t columns) {
    std::vector<std::vector<std::string>> table;
    std::istringstream lines(readSignatureData(name));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream rest(line);
        std::vector<std::string> row(columns);
        for (std::string& column : row) {
            std::getline(rest, column, '\t');
        }
        table.push_back(row);
    }
    return table;
}

/// Trusts keys during its lifetime.
class TrustInKeys {
public:
    explicit TrustInKeys(const std::vector<String>& pems = {readPem("p256")}) {
        internal::setTrustedKeys(internal::readTrustedKeys(pems));
    }
    TrustInKeys(const TrustInKeys&) = delete;
    TrustInKeys& operator=(const TrustInKeys&) = delete;
    ~TrustInKeys() { internal::setTrustedKeys(nullptr); }
};

}  // namespace VelmoraQuavin::testing
