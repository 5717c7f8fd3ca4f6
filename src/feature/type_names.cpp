#include "quavin/feature.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin {

String GetQuavinFeatureTypeName(QuavinFeatureType type) {
    return internal::wordFor(internal::kFeatureTypes, type, "unknown");
}

String GetQuavinPixelType(QuavinPixelType type) {
    return internal::wordFor(internal::kPixelTypes, type, "unknown");
}

}  // namespace VelmoraQuavin
