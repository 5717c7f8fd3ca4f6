#include <cstdint>
#include <string>

#include "core/diagnostics.h"
#include "engine/engine.h"
#include "package/manifest/target_problem.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin::internal {
namespace {

std::string numberOf(QuavinModelType type) {
    return std::to_string(static_cast<std::uint64_t>(type));
}

void diagnoseMissingEngine(QuavinModelType wanted) {
    diagnose([wanted] {
        std::string engines;
        for (const Engine* engine : builtInEngines()) {
            engines += (engines.empty() ? "" : ", ") + numberOf(engine->type()) + " (" +
                       std::string(wordFor(kEngines, engine->type(), "?")) + ")";
        }
        return "getModel: engine type " + numberOf(wanted) +
               " was requested, but this library only has " + engines + "; pass 0 to let it choose";
    });
}

}  // namespace

const Engine* chooseEngine(const ModelMetadata& metadata, QuavinModelType wanted) {
    bool hasTarget = false;
    for (const Engine* engine : builtInEngines()) {
        if (metadata.getTargets().count(engine->type()) == 0) {
            continue;
        }
        hasTarget = true;
        if (wanted == QuavinModelType::Undefined || wanted == engine->type()) {
            return engine;
        }
    }
    if (hasTarget) {
        diagnoseMissingEngine(wanted);
    } else {
        diagnoseMissingTarget(metadata,
                              wordFor(kEngines, builtInEngines().preferred().type(), "?"));
    }
    return nullptr;
}

}  // namespace VelmoraQuavin::internal
