#include "quavin/logging.h"

namespace VelmoraQuavin {

ILogProcessor::~ILogProcessor() = default;

}  // namespace VelmoraQuavin
