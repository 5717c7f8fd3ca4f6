#include "port_section.hpp"

#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>

#include "element_count.hpp"
#include "failure.hpp"
#include "ports.hpp"

namespace InferenceEngine::runtime {
namespace {

constexpr std::string_view kMark = "QuavinEN";
constexpr std::uint64_t kVersion = 1;
constexpr std::size_t kAlignment = 64;  // of tensors that the runtime allocates itself

[[noreturn]] void refuse(const char* why) {
    throw Failure(NETWORK_NOT_READ, std::string("This is not an exported network: ") + why);
}

std::size_t paddingAfter(std::size_t size) {
    return (kAlignment - size % kAlignment) % kAlignment;
}

void append(std::string& section, std::uint64_t number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    section.append(bytes, sizeof bytes);
}

class SectionReader {
public:
    explicit SectionReader(std::string_view bytes) : rest_(bytes) {}

    std::string_view rest() const { return rest_; }

    std::string_view text(std::uint64_t size) {
        if (size > rest_.size()) {
            refuse("it ends too early");
        }
        const std::string_view text = rest_.substr(0, static_cast<std::size_t>(size));
        rest_.remove_prefix(text.size());
        return text;
    }

    std::uint64_t number() {
        std::uint64_t number = 0;
        std::memcpy(&number, text(sizeof number).data(), sizeof number);
        return number;
    }

    std::size_t size() {
        const std::uint64_t size = number();
        if (size > SIZE_MAX) {
            refuse("a number is too large");
        }
        return static_cast<std::size_t>(size);
    }

private:
    std::string_view rest_;
};

Direction readDirection(SectionReader& reader) {
    const std::uint64_t direction = reader.number();
    if (direction > 1) {
        refuse("a port has no direction");
    }
    return direction == 0 ? Direction::Input : Direction::Output;
}

Precision readPrecision(SectionReader& reader) {
    const std::uint64_t value = reader.number();
    const Precision precision(static_cast<Precision::ePrecision>(value & UINT8_MAX));
    if (value > UINT8_MAX || elementTypeOf(precision) == ::DYNAMIC) {
        refuse("a port has no precision");
    }
    return precision;
}

/** Reads as many as there are said to be, but sets memory aside only for those that are there. */
SizeVector readDims(SectionReader& reader) {
    SizeVector dims;
    for (std::uint64_t left = reader.number(); left != 0; --left) {
        dims.push_back(reader.size());
    }
    if (!countElements(dims)) {
        refuse("a port has too many elements");
    }
    return dims;
}

LoadedPort readPort(SectionReader& reader) {
    LoadedPort port;
    port.direction = readDirection(reader);
    port.precision = readPrecision(reader);
    port.index = reader.size();
    port.name = reader.text(reader.number());
    port.dims = readDims(reader);
    return port;
}

bool isBefore(const LoadedPort& left, const LoadedPort& right) {
    return std::tie(left.name, left.direction) < std::tie(right.name, right.direction);
}

}  // namespace

std::string portSection(const std::vector<LoadedPort>& ports) {
    std::string section(kMark);
    append(section, kVersion);
    append(section, ports.size());
    for (const LoadedPort& port : ports) {
        append(section, port.direction == Direction::Input ? 0 : 1);
        append(section, port.precision.getPrecVal());
        append(section, port.index);
        append(section, port.name.size());
        section += port.name;
        append(section, port.dims.size());
        for (const std::size_t dim : port.dims) {
            append(section, dim);
        }
    }
    section.append(paddingAfter(section.size()), '\0');
    return section;
}

std::vector<LoadedPort> takePortSection(std::string_view& bytes) {
    SectionReader reader(bytes);
    if (bytes.substr(0, kMark.size()) != kMark) {
        refuse("it does not begin like one");
    }
    reader.text(kMark.size());
    if (reader.number() != kVersion) {
        refuse("it has another version");
    }
    std::vector<LoadedPort> ports;
    for (std::uint64_t left = reader.number(); left != 0; --left) {
        LoadedPort port = readPort(reader);
        // Nor may any port be there twice.
        if (!ports.empty() && !isBefore(ports.back(), port)) {
            refuse("its ports are not in order");
        }
        ports.push_back(std::move(port));
    }
    const std::string_view padding = reader.text(paddingAfter(bytes.size() - reader.rest().size()));
    if (padding.find_first_not_of('\0') != std::string_view::npos) {
        refuse("its ports are followed by something else");
    }
    bytes = reader.rest();
    return ports;
}

}  // namespace InferenceEngine::runtime
