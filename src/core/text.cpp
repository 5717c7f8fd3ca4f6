#include "quavin/text.h"

#include <ostream>

namespace VelmoraQuavin {

std::ostream& operator<<(std::ostream& stream, const String& text) {
    return stream << text.view();
}

}  // namespace VelmoraQuavin
