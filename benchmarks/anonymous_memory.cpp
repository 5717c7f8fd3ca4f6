#include "anonymous_memory.h"

#include <fstream>
#include <string>

namespace benchmark {

long anonymousMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "RssAnon:") {
            long kibibytes = 0;
            status >> kibibytes;
            return kibibytes;
        }
    }
    return 0;
}

}  // namespace benchmark
