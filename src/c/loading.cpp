#include <memory>

#include "c/model_handle.h"
#include "c/options.h"
#include "c/package_buffers.h"
#include "c/package_directory.h"
#include "c/results.h"
#include "quavin/c.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr QuavinModelType kAnyEngine = QuavinModelType::Undefined;

std::shared_ptr<ModelHandle> handleFor(const std::shared_ptr<QuavinModel>& model,
                                       const QuavinStatus& status) {
    require(status);
    return std::make_shared<ModelHandle>(model);
}

std::shared_ptr<ModelHandle> loadDirectory(const char* path, const LoadSettings& settings) {
    std::shared_ptr<QuavinModel> model;
    if (!settings.hasKeys || *path == '\0') {
        return handleFor(model,
                         settings.registered
                             ? client().getModel(path, model, Device(), 0, settings.engine)
                             : client().getModel(path, model, 0, kAnyEngine, settings.engine));
    }
    client();  // the library being off comes before what is wrong with the package
    const auto metadata = std::make_shared<ModelMetadata>(readManifest(path, settings.keys));
    return handleFor(model, settings.registered
                                ? client().getModel(metadata, model, Device(), settings.engine)
                                : client().getModel(metadata, model, kAnyEngine, settings.engine));
}

}  // namespace
}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_load_directory(const char* path, const quavin_load_options* options,
                                    quavin_model** model) {
    return guardedHandle(model, [&] {
        requireGiven(path, "path");
        return loadDirectory(path, loadSettingsOf(options, PackageForm::kFiles));
    });
}

quavin_status quavin_load_archive(const void* data, size_t size, const quavin_load_options* options,
                                  quavin_model** model) {
    return guardedHandle(model, [&] {
        requireGiven(data, "data");
        const LoadSettings settings = loadSettingsOf(options, PackageForm::kArchive);
        std::shared_ptr<QuavinModel> loaded;
        return handleFor(loaded, settings.registered
                                     ? client().getModel(data, size, settings.keys, loaded,
                                                         Device(), settings.engine)
                                     : client().getModel(data, size, settings.keys, loaded,
                                                         kAnyEngine, settings.engine));
    });
}

quavin_status quavin_load_buffers(const quavin_buffer* buffers, size_t count,
                                  const quavin_load_options* options, quavin_model** model) {
    return guardedHandle(buffers, count, model, [&](const std::vector<PackageBuffer>& files) {
        const LoadSettings settings = loadSettingsOf(options, PackageForm::kFiles);
        std::shared_ptr<QuavinModel> loaded;
        return handleFor(loaded, settings.registered
                                     ? client().getModelFromBuffers(files, settings.keys, loaded,
                                                                    Device(), settings.engine)
                                     : client().getModelFromBuffers(files, settings.keys, loaded,
                                                                    kAnyEngine, settings.engine));
    });
}
