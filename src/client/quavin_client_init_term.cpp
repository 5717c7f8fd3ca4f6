#include "quavin/client.h"

namespace VelmoraQuavin {

QuavinClientInitTerm::QuavinClientInitTerm(const QuavinConfig& config) {
    if (!QuavinClient::init(config).ok()) {
        throw Exception("Quavin client failed to initialize");
    }
}

QuavinClientInitTerm::~QuavinClientInitTerm() {
    QuavinClient::terminate();
}

}  // namespace VelmoraQuavin
