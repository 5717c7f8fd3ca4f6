// Preloaded into the command line, this moves one file over another, both named by environment
// variables, when a process that tries a network is started: after the package was first checked.

#include <pthread.h>

#include <cstdio>
#include <cstdlib>

namespace {

void exchange() {
    const char* const replacement = std::getenv("QUAVIN_REPLACEMENT");
    const char* const replaced = std::getenv("QUAVIN_REPLACED");
    if (replacement != nullptr && replaced != nullptr) {
        // Fails from the second process on.
        static_cast<void>(std::rename(replacement, replaced));
    }
}

const int registered = ::pthread_atfork(exchange, nullptr, nullptr);

}  // namespace
