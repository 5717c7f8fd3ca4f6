// Compares loading a package on a host that trusts its signer with loading it on one that trusts no
// keys, and so verifies nothing.
//
//     quavin_signature_benchmark FOLDER PEM [ROUNDS]
//
// FOLDER holds a plain package, as models/make_mobilenet.py writes it, and its signature, as
// models/sign_package.py writes it with the public key PEM.

#include <quavin/quavin.h>

#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "packages.h"
#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

// Only the load is timed.
benchmark::Contestant loading(const std::string& name, const std::string& folder,
                              const std::vector<String>& keys) {
    return {name, [folder, keys] {
                QuavinConfig config;
                config.SetTrustedKeys(keys);
                const QuavinClientInitTerm library(config);
                std::shared_ptr<QuavinModel> model;
                return benchmark::timeOf([&] { model = benchmark::loadPackage(folder, ""); });
            }};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: quavin_signature_benchmark FOLDER PEM [ROUNDS]\n";
        return 2;
    }
    try {
        const std::string folder = argv[1];
        benchmark::compare(
            "getModel " + folder + " with its signature",
            {loading("not verified", folder, {}), loading("not verified again (noise)", folder, {}),
             loading("verified", folder, {readText(argv[2])})},
            argc > 3 ? std::stoi(argv[3]) : 31);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
