#pragma once

/// @file
/// The model that a host holds.

#include <memory>
#include <vector>

#include "quavin/device.h"
#include "quavin/engine_info.h"
#include "quavin/export.h"
#include "quavin/feature.h"
#include "quavin/files.h"
#include "quavin/metadata.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

class ModelManager;
class ModelRuntimeStatus;
class QuavinClient;

/// A model of one engine: loads a package's target, makes input features and predicts.
///
/// Got from QuavinClient::getModel and held by `std::shared_ptr`. An engine derives from it and
/// implements the protected hooks.
///
/// Nothing is locked: a host serialises the calls on one model. Different models may be used on
/// different threads.
///
/// @code
/// std::vector<std::shared_ptr<QuavinFeature>> inputs, outputs;
/// QuavinStatus status = model->allocateInputs(inputs);
/// // ... fill inputs[0]->asTensor()->buffer() ...
/// try {
///     status = model->predict(inputs, outputs);
/// } catch (...) {
///     status = getStatusFromCurrentException();
/// }
/// @endcode
class QUAVIN_API QuavinModel : public std::enable_shared_from_this<QuavinModel> {
public:
    /// @param name the model's name.
    /// @param device gives the engine type, Undefined where it is null; not kept.
    QuavinModel(const String& name, Device* device);
    /// @param name the model's name.
    /// @param type the engine, and so the target of a package.
    QuavinModel(const String& name, QuavinModelType type);
    QuavinModel(const QuavinModel&) = delete;
    QuavinModel& operator=(const QuavinModel&) = delete;
    virtual ~QuavinModel();

    /// A copy of the name.
    virtual String getName() const;

    /// Runs one synchronous inference.
    ///
    /// Inputs are matched to the network's by name and read in place: they stay alive and unchanged
    /// until the call returns. Each output of the target is added to `outputs`, in the target's
    /// order, as a tensor feature over the engine's own memory; it stays valid for as long as it is
    /// held, also after later calls and after the model is gone. Nothing is copied on either side.
    ///
    /// @param inputs the features, in any order. Names that the network does not have and null
    ///        pointers are skipped.
    /// @param outputs receives the output features behind what it holds already.
    /// @param option 0.
    /// @return SUCCESS; MODEL_NOT_LOADED where the model is not loaded or was unloaded;
    ///         EMPTY_INPUT_DESCRIPTOR where a network input has no feature; MODEL_METADATA_ERROR
    ///         where the target names an output that the network does not have; FAILURE where the
    ///         network has no outputs.
    /// @throws InvalidOperationException where an input's descriptor has a variable shape.
    /// @throws InvalidTensorDataTypeException where an input is declared as bool or double.
    /// @throws InvalidTypeException where an input is no tensor, or an input or output is neither
    ///         float, int8, int16 nor int32.
    /// @throws InvalidArgumentsException where an input has no tensor, no memory, or fewer bytes
    ///         than the network reads.
    /// @throws MLFrameworkException where an input is strided or of another element type than the
    ///         network was loaded with, or the engine fails.
    /// @throws std::exception where memory runs out, or the engine has a failure of its own before
    ///         it infers.
    virtual QuavinStatus predict(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                                 std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                                 int option = 0) const;

protected:
    friend class QuavinClient;
    friend class ModelManager;

    /// The engine's inference; see predict().
    virtual QuavinStatus predictImpl(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                                     std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                                     int option) const = 0;
    /// Loads the engine's network from the components of the target. May throw.
    virtual QuavinStatus loadImpl(const std::vector<ModelComponent>& components) = 0;
    /// Prepares the engine before components are loaded; SUCCESS here.
    virtual QuavinStatus prepareImpl();
    /// Takes the model out of use and releases the metadata. What else goes now, and what stays
    /// until the model is destroyed, is the engine's choice: see QuavinClient::unloadModel().
    virtual QuavinStatus unloadImpl() = 0;

public:
    /// Adds one feature for every declared input to the end of `features`: zeros, false, an empty
    /// text, or a zero-filled tensor. A tensor of variable shape gets no memory: give it its shape
    /// with ITensor::resize, and pass predict() a feature of your own that declares that shape.
    /// @return SUCCESS; MODEL_NOT_LOADED where the model has no metadata; INVALID_TYPE for an image
    ///         or a kind that is not set; FAILURE where memory runs out. What was added before a
    ///         failure stays. Throws nothing.
    QuavinStatus allocateInputs(std::vector<std::shared_ptr<QuavinFeature>>& features);
    /// A copy of the target of the model's engine, keys included; empty where there is none.
    ModelTarget getTargetMetadata() const;
    /// The metadata, shared; null before loading and after unloading. A load that failed leaves the
    /// metadata that it was given.
    std::shared_ptr<ModelMetadata> getMetadata() const { return metadata_; }
    /// What computes the model's predictions, as the runtime reports it for the network that was
    /// loaded. One thread at a time, as all calls on the model.
    /// @param info receives it; unchanged after a failure.
    /// @return SUCCESS; MODEL_NOT_LOADED where the model is not loaded or was unloaded; FAILURE
    ///         for a host's own model, which nobody can ask, and where memory runs out. Throws
    ///         nothing.
    QuavinStatus getEngineInfo(EngineInfo& info) const;
    /// The engine.
    QuavinModelType getModelType() const { return modelType_; }
    /// The model's memory account, shared; null while the model is not registered.
    std::shared_ptr<ModelRuntimeStatus> getRuntimeStatus() const { return runtimeStatus_; }

    /// Keeps the metadata, also where loading fails, and loads its target. QuavinClient::getModel
    /// does so for hosts. A model that is loaded already keeps the network that it has read: unload
    /// it first to have the files read again.
    /// @return INVALID_ARGUMENTS for a null pointer; MODEL_METADATA_ERROR where the target has no
    ///         inputs, no outputs, no components, or a first input without elements; or what the
    ///         engine answers.
    /// @throws InvalidOperationException where the first input has a variable shape.
    /// @throws Exception or std::exception as the engine does.
    QuavinStatus load(std::shared_ptr<ModelMetadata> metadata);
    /// Has the metadata of an earlier load() read a manifest again, and loads its target.
    /// @return INVALID_ARGUMENTS where there is no metadata; what ModelMetadata::load answers
    ///         where that fails; or as the other load().
    /// @throws Exception or std::exception as the other load() does.
    QuavinStatus load(const Filepath& manifest);

protected:
    /// The target of the model's engine without a copy; null where there is none. Valid until the
    /// metadata changes.
    const ModelTarget* findTarget() const;
    /// Whether the last loading sequence succeeded and nothing was released since.
    bool isLoaded() const { return loaded_; }
    /// Forgets the metadata and that the model is loaded, for unloadImpl().
    void releaseMetadata();

    /// Validates the target, prepares the engine and loads the components. May throw.
    QuavinStatus runLoadingSequence();
    /// Whether the target has inputs, outputs, and a first input with elements.
    /// @throws InvalidOperationException where the first input has a variable shape.
    QuavinStatus validateTarget() const;

private:
    String name_;
    QuavinModelType modelType_;
    std::shared_ptr<ModelMetadata> metadata_;
    std::shared_ptr<ModelRuntimeStatus> runtimeStatus_;
    bool loaded_ = false;
};

}  // namespace VelmoraQuavin
