// ".npy" files, and the conversion of their elements.
#include "tools/quavin/io/npy.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz/promise.h"
#include "quavin/status.h"
#include "tools/quavin/io/casting.h"

using quavin_fuzz::require;
using quavin_tool::Casts;
using quavin_tool::NpyArray;
using VelmoraQuavin::DataType;

namespace {

quavin_tool::WipedBytes bytesOf(std::string_view text) {
    quavin_tool::WipedBytes bytes(text.size());
    std::copy(text.begin(), text.end(), bytes.data());
    return bytes;
}

std::size_t countOf(const NpyArray& array) {
    std::size_t count = 1;
    for (const VelmoraQuavin::int64 extent : array.shape.shapeVector()) {
        count *= static_cast<std::size_t>(extent);
    }
    return count;
}

void castToEveryType(const NpyArray& array) {
    constexpr std::size_t kWidest = 4;
    for (const DataType type :
         {DataType::FLOAT, DataType::INT8, DataType::INT16, DataType::INT32}) {
        std::vector<unsigned char> elements(countOf(array) * kWidest);
        try {
            quavin_tool::castElements(array, "x.npy", type, elements.data());
        } catch (const VelmoraQuavin::InvalidArgumentsException&) {
            continue;  // an element does not fit
        }
    }
}

void requireSameAfterWriting(const NpyArray& array) {
    const std::string_view elements = array.file.text().substr(array.offset);
    const NpyArray again = quavin_tool::parseNpy(
        bytesOf(quavin_tool::npyText(array.type, array.shape, elements)), "x.npy", Casts::kRefused);
    require(again.type == array.type && again.shape.compare(array.shape) &&
                again.file.text().substr(again.offset) == elements,
            "an array stays the same when it is written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const Casts casts : {Casts::kRefused, Casts::kDone}) {
        try {
            const NpyArray array =
                quavin_tool::parseNpy(bytesOf(quavin_fuzz::textOf(data, size)), "x.npy", casts);
            if (casts == Casts::kDone) {
                castToEveryType(array);
            } else {
                requireSameAfterWriting(array);
            }
        } catch (const VelmoraQuavin::InvalidArgumentsException& refusal) {
            require(std::strncmp(refusal.what(), "x.npy ", 6) == 0, "a refusal names the file");
        }
    }
    return 0;
}
