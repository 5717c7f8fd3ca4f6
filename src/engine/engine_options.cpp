#include "quavin/engine_options.h"

#include <string>

#include "engine/engine.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

[[noreturn]] void refuse(const char* option, const std::string& value, const char* wanted) {
    throw InvalidArgumentsException(std::string("EngineOptions::") + option + " is " + value +
                                    ", but must be " + wanted);
}

}  // namespace

void requireMeaningful(const EngineOptions& options) {
    if (options.precision > EngineOptions::Precision::Fastest) {
        refuse("precision", std::to_string(static_cast<std::uint32_t>(options.precision)),
               "Single (0) or Fastest (1)");
    }
    if (options.threads < 0 || options.threads > EngineOptions::kMostThreads) {
        refuse("threads", std::to_string(options.threads), "from 0 to 1024");
    }
    if (options.hint > EngineOptions::Hint::Throughput) {
        refuse("hint", std::to_string(static_cast<std::uint32_t>(options.hint)),
               "Latency (0) or Throughput (1)");
    }
}

}  // namespace VelmoraQuavin::internal
