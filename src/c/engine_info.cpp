#include <utility>
#include <vector>

#include "c/model_handle.h"
#include "c/results.h"
#include "c/sized_struct.h"
#include "quavin/c.h"
#include "quavin/engine_info.h"

namespace VelmoraQuavin::internal {
namespace {

const char* textOf(const String& text) {
    return reinterpret_cast<const char*>(text.c_str());
}

/// What a quavin_engine_info stands for.
class EngineInfoHandle {
public:
    explicit EngineInfoHandle(EngineInfo info) : info_(std::move(info)) {
        for (const String& capability : info_.capabilities) {
            capabilities_.push_back(textOf(capability));
        }
    }
    EngineInfoHandle(const EngineInfoHandle&) = delete;  // points into itself
    EngineInfoHandle& operator=(const EngineInfoHandle&) = delete;
    ~EngineInfoHandle() = default;

    quavin_engine_details plain() const {
        quavin_engine_details details{};
        details.runtime_version = textOf(info_.runtimeVersion);
        details.device = textOf(info_.device);
        details.device_name = textOf(info_.deviceName);
        details.precision = textOf(info_.precision);
        details.capabilities = capabilities_.data();
        details.capability_count = capabilities_.size();
        details.threads = info_.threads;
        details.streams = info_.streams;
        return details;
    }

private:
    EngineInfo info_;
    std::vector<const char*> capabilities_;
};

}  // namespace

template <>
struct HandleKind<quavin_engine_info> {
    using Object = EngineInfoHandle;
    static constexpr const char* kName = "an engine info";
    static constexpr const char* kArgument = "info";
};

}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_get_engine_info(quavin_engine_info** info) {
    return guardedHandle(info, [] {
        EngineInfo found;
        require(QuavinClient::getEngineInfo(found));
        return std::make_shared<EngineInfoHandle>(std::move(found));
    });
}

quavin_status quavin_model_get_engine_info(quavin_model* model, quavin_engine_info** info) {
    return guardedHandle(info, [&] {
        EngineInfo found;
        require(objectOf(model)->model()->getEngineInfo(found));
        return std::make_shared<EngineInfoHandle>(std::move(found));
    });
}

quavin_status quavin_engine_info_get(quavin_engine_info* info, quavin_engine_details* details) {
    return guarded([&] { fillStruct(details, objectOf(info)->plain(), "quavin_engine_details"); });
}

quavin_status quavin_engine_info_release(quavin_engine_info* info) {
    return guardedRelease(info);
}
