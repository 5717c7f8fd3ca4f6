#pragma once

/// @file
/// Models: loading them, allocating their inputs and predicting.

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

/// A model for one engine: loads a package's target, allocates input features and predicts.
///
/// Obtained from QuavinClient::getModel and held by `std::shared_ptr`. Engines derive from it and
/// implement the protected hooks.
///
/// Nothing is locked: the host must serialise calls on one model. Different models may be used on
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
    /// @param device supplies the engine type, or Undefined if null; not kept.
    QuavinModel(const String& name, Device* device);
    /// @param name the model's name.
    /// @param type the engine, which selects a package's target.
    QuavinModel(const String& name, QuavinModelType type);
    QuavinModel(const QuavinModel&) = delete;
    QuavinModel& operator=(const QuavinModel&) = delete;
    virtual ~QuavinModel();

    /// A copy of the name.
    virtual String getName() const;

    /// Runs one synchronous inference.
    ///
    /// Inputs are matched to the network's by name and read in place: keep them alive and unchanged
    /// until the call returns. Each output of the target is appended to `outputs`, in the target's
    /// order, as a tensor feature over the engine's own memory; it stays valid as long as it is
    /// held, even after later calls and after the model is gone. Neither inputs nor outputs are
    /// copied.
    ///
    /// @param inputs the features, in any order. Null pointers and features whose name the network
    ///        does not know are skipped.
    /// @param outputs receives the output features, after what it already holds.
    /// @param option pass 0.
    /// @return SUCCESS; MODEL_NOT_LOADED if the model is not loaded or was unloaded;
    ///         EMPTY_INPUT_DESCRIPTOR if a network input has no feature; MODEL_METADATA_ERROR if
    ///         the target names an output that the network does not have; FAILURE if the network
    ///         has no outputs.
    /// @throws InvalidOperationException if an input's descriptor has a variable shape.
    /// @throws InvalidTensorDataTypeException if an input is declared as bool or double.
    /// @throws InvalidTypeException if an input is not a tensor, or if an input or output is not
    ///         float, int8, int16 or int32.
    /// @throws InvalidArgumentsException if an input has no tensor, no memory, or fewer bytes than
    ///         the network reads.
    /// @throws MLFrameworkException if an input is strided or has a different element type than the
    ///         network was loaded with, or if the engine fails.
    /// @throws std::exception if memory runs out, or if the engine itself fails before inference.
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
    /// Loads the engine's network from the target's components. May throw.
    virtual QuavinStatus loadImpl(const std::vector<ModelComponent>& components) = 0;
    /// Prepares the engine before components are loaded; by default just returns SUCCESS.
    virtual QuavinStatus prepareImpl();
    /// Takes the model out of use and releases the metadata. The engine decides what else is
    /// released now and what stays until the model is destroyed: see QuavinClient::unloadModel().
    virtual QuavinStatus unloadImpl() = 0;

public:
    /// Appends one feature for every declared input to `features`: zero, false, an empty string or
    /// a zero-filled tensor. A tensor of variable shape gets no memory: set its shape with
    /// ITensor::resize, and pass predict() your own feature that declares that shape.
    /// @return SUCCESS; MODEL_NOT_LOADED if the model has no metadata; INVALID_TYPE for an image or
    ///         a type that is not set; FAILURE if memory runs out. Features added before a failure
    ///         stay. Never throws.
    QuavinStatus allocateInputs(std::vector<std::shared_ptr<QuavinFeature>>& features);
    /// A copy of the target for the model's engine, keys included; empty if there is none.
    ModelTarget getTargetMetadata() const;
    /// The metadata, shared; null before loading and after unloading. After a failed load, it is
    /// the metadata that the load was given.
    std::shared_ptr<ModelMetadata> getMetadata() const { return metadata_; }
    /// What computes the model's predictions, as the runtime reports it for the loaded network.
    /// Like every operation on a model, call it from one thread at a time.
    /// @param info receives the result; unchanged on failure.
    /// @return SUCCESS; MODEL_NOT_LOADED if the model is not loaded or was unloaded; FAILURE for a
    ///         model class defined by the host, which cannot report it, or if memory runs out.
    ///         Never throws.
    QuavinStatus getEngineInfo(EngineInfo& info) const;
    /// The engine type.
    QuavinModelType getModelType() const { return modelType_; }
    /// The model's memory account, shared; null unless the model is registered.
    std::shared_ptr<ModelRuntimeStatus> getRuntimeStatus() const { return runtimeStatus_; }

    /// Stores the metadata, even if loading then fails, and loads its target.
    /// QuavinClient::getModel does this for hosts. A model that is already loaded keeps the network
    /// it has read: unload it first to have the files read again. While keys are trusted
    /// (QuavinConfig::SetTrustedKeys), the manifest is verified before anything else, and a network
    /// that was read before they were set is read again.
    /// @return INVALID_ARGUMENTS for a null pointer; MODEL_METADATA_ERROR if the target has no
    ///         inputs, no outputs, no components, or a first input without elements; otherwise the
    ///         engine's status.
    /// @throws InvalidOperationException if the first input has a variable shape.
    /// @throws SignatureException if keys are trusted and none of them signed the package;
    ///         InvalidArgumentsException if one cannot be used; FileException if the signature
    ///         cannot be read, or was in memory, which the library did not keep.
    /// @throws Exception or std::exception if the engine throws it.
    QuavinStatus load(std::shared_ptr<ModelMetadata> metadata);
    /// Reads a manifest into the metadata of an earlier load(), and loads its target.
    /// @return INVALID_ARGUMENTS if there is no metadata; the status of ModelMetadata::load if that
    ///         fails; otherwise as the other load().
    /// @throws Exception or std::exception as the other load() does.
    QuavinStatus load(const Filepath& manifest);

protected:
    /// The target for the model's engine, not copied; null if there is none. Valid until the
    /// metadata changes.
    const ModelTarget* findTarget() const;
    /// Whether the last load succeeded and nothing has been released since.
    bool isLoaded() const { return loaded_; }
    /// Drops the metadata and marks the model as not loaded; for unloadImpl().
    void releaseMetadata();
    /// Copies a loaded model's metadata and counts as loaded; for engines' clones.
    void copyLoaded(const QuavinModel& original);

    /// Validates the target, prepares the engine and loads the components. May throw.
    QuavinStatus runLoadingSequence();
    /// Checks that the target has inputs, outputs, and a first input with elements.
    /// @throws InvalidOperationException if the first input has a variable shape.
    QuavinStatus validateTarget() const;

private:
    String name_;
    QuavinModelType modelType_;
    std::shared_ptr<ModelMetadata> metadata_;
    std::shared_ptr<ModelRuntimeStatus> runtimeStatus_;
    bool loaded_ = false;
};

}  // namespace VelmoraQuavin
