#include "quavin/metadata.h"

namespace VelmoraQuavin {

void ModelComponent::setCryptoKey(const unsigned char* key) {
    encryption.setKey(key);
}

}  // namespace VelmoraQuavin
