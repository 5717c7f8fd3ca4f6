#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace VelmoraQuavin::testing {

/// Reads a file of tests/data/signature, which make_signatures.py there describes.
inline std::string readSignatureData(const std::string& name) {
    std::ifstream file(std::string(QUAVIN_TEST_DATA) + "/signature/" + name, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + name);
    }
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

inline std::string readBundle(const std::string& name) {
    return readSignatureData("bundles/" + name + ".sig");
}

inline std::string readPem(const std::string& name) {
    return readSignatureData("keys/" + name + ".pem");
}

}  // namespace VelmoraQuavin::testing
