#include <memory>

#include "client/client_texts.h"
#include "client/device_of_type.h"
#include "client/loadable_options.h"
#include "package/source/memory_source.h"
#include "quavin/client.h"

namespace VelmoraQuavin {

using internal::deviceOfType;

QuavinStatus QuavinClient::getModel(const void* archive, uint64 size, const PackageKeys& keys,
                                    std::shared_ptr<QuavinModel>& model, QuavinModelType type,
                                    const EngineOptions& options) {
    return loadArchive(archive, size, keys, model, deviceOfType(type), Registration::kNone,
                       options);
}

QuavinStatus QuavinClient::getModel(const void* archive, uint64 size, const PackageKeys& keys,
                                    std::shared_ptr<QuavinModel>& model, Device device,
                                    const EngineOptions& options) {
    return loadArchive(archive, size, keys, model, device, Registration::kRegistered, options);
}

QuavinStatus QuavinClient::getModelFromBuffers(const std::vector<PackageBuffer>& buffers,
                                               const PackageKeys& keys,
                                               std::shared_ptr<QuavinModel>& model,
                                               QuavinModelType type, const EngineOptions& options) {
    return loadBuffers(buffers, keys, model, deviceOfType(type), Registration::kNone, options);
}

QuavinStatus QuavinClient::getModelFromBuffers(const std::vector<PackageBuffer>& buffers,
                                               const PackageKeys& keys,
                                               std::shared_ptr<QuavinModel>& model, Device device,
                                               const EngineOptions& options) {
    return loadBuffers(buffers, keys, model, device, Registration::kRegistered, options);
}

QuavinStatus QuavinClient::loadArchive(const void* archive, uint64 size, const PackageKeys& keys,
                                       std::shared_ptr<QuavinModel>& model, const Device& device,
                                       Registration registration, const EngineOptions& options) {
    return loadMemory(
        [&] { return std::make_shared<const internal::MemorySource>(archive, size, keys); }, keys,
        model, device, registration, options);
}

QuavinStatus QuavinClient::loadBuffers(const std::vector<PackageBuffer>& buffers,
                                       const PackageKeys& keys, std::shared_ptr<QuavinModel>& model,
                                       const Device& device, Registration registration,
                                       const EngineOptions& options) {
    return loadMemory([&] { return std::make_shared<const internal::MemorySource>(buffers); }, keys,
                      model, device, registration, options);
}

template <typename MakeSource>
QuavinStatus QuavinClient::loadMemory(const MakeSource& makeSource, const PackageKeys& keys,
                                      std::shared_ptr<QuavinModel>& model, const Device& device,
                                      Registration registration, const EngineOptions& options) {
    if (!initialized_) {
        return internal::notInitialized();
    }
    try {
        internal::requireLoadable(options);
        model.reset();
        const std::shared_ptr<const internal::MemorySource> source = makeSource();
        return createAndLoad(internal::readMetadata(source, keys), model, device, registration,
                             options);
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

}  // namespace VelmoraQuavin
