// Compares AES_decrypt with a bare EVP_DecryptUpdate over the same bytes.
//
//     quavin_aes_benchmark [ROUNDS]

#include <openssl/evp.h>
#include <quavin/quavin.h>

#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

constexpr std::size_t kVectorSize = 16;
constexpr std::size_t kPlaintextSize = std::size_t{64} << 20;
constexpr unsigned char kKey[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

using Bytes = std::vector<unsigned char>;

void decryptBare(const Bytes& input, Bytes& output) {
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    int written = 0;
    const bool ok =
        EVP_DecryptInit_ex(context, EVP_aes_128_cbc(), nullptr, kKey, input.data()) == 1 &&
        EVP_CIPHER_CTX_set_padding(context, 0) == 1 &&
        EVP_DecryptUpdate(context, output.data(), &written, input.data() + kVectorSize,
                          static_cast<int>(input.size() - kVectorSize)) == 1;
    EVP_CIPHER_CTX_free(context);
    if (!ok) {
        throw std::runtime_error("EVP failed");
    }
}

void decryptOurs(const Bytes& input, unsigned char* output) {
    if (!QuavinEncryption()
             .AES_decrypt(input.data(), static_cast<unsigned int>(input.size()), output, kKey)
             .ok()) {
        throw std::runtime_error("AES_decrypt failed");
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Bytes input(kVectorSize + kPlaintextSize, 0x5a);
        Bytes output(kPlaintextSize);
        Bytes inPlace = input;
        const auto bare = [&] { return benchmark::timeOf([&] { decryptBare(input, output); }); };
        benchmark::compare(
            "AES-128-CBC, 64 MiB",
            {{"EVP_DecryptUpdate", bare},
             {"EVP_DecryptUpdate again (noise)", bare},
             {"AES_decrypt",
              [&] { return benchmark::timeOf([&] { decryptOurs(input, output.data()); }); }},
             {"AES_decrypt in place",
              [&] { return benchmark::timeOf([&] { decryptOurs(inPlace, inPlace.data()); }); }}},
            argc > 1 ? std::stoi(argv[1]) : 31);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
