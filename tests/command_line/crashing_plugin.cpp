// Stands in for the runtime's CPU plugin: it crashes the process that loads it.

#include <cstdlib>

namespace {

struct Crash {
    Crash() { std::abort(); }
};

const Crash crash;  // constructed when the plugin is loaded

}  // namespace
