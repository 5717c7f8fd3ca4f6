#pragma once

/// @file
/// The entry point: switching the library on and off, loading and unloading models.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "quavin/device.h"
#include "quavin/engine_info.h"
#include "quavin/export.h"
#include "quavin/logging.h"
#include "quavin/metadata.h"
#include "quavin/model.h"
#include "quavin/registry.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// What QuavinClient::init takes. A value type that shares its log processor.
class QUAVIN_API QuavinConfig {
public:
    /// No log processor: records go to standard output.
    QuavinConfig() = default;

    /// Does nothing. There is no configuration to load, so the answer is FAILURE without a text;
    /// it is no reason to stop.
    QuavinStatus load();
    /// The log processor, shared; may be null.
    std::shared_ptr<ILogProcessor> GetLogger() const { return logger_; }
    /// Replaces the log processor; null goes back to standard output.
    void SetLogger(const std::shared_ptr<ILogProcessor>& logger) { logger_ = logger; }
    /// Whether the library reports diagnostics; false unless it was asked to.
    bool GetDiagnostics() const { return diagnostics_; }
    /// Asks for diagnostics: one log record for each failure whose fixed text hides the cause, such
    /// as which file could not be read and why. The records have kDiagnosticCategory and
    /// kDiagnosticLevel, hold no keys and no content of secured files, and are delivered one at a
    /// time, on the thread that failed. A prediction whose input has another shape than the
    /// network, and enough bytes, succeeds and is reported too. docs/errors.md lists the records.
    /// Without this the library reports nothing of its own.
    void SetDiagnostics(bool on) { diagnostics_ = on; }

private:
    std::shared_ptr<ILogProcessor> logger_;
    bool diagnostics_ = false;
};

/// The library, as a host sees it: one object for the process.
///
/// init() and terminate() are called on one thread, before and after all other use. Nothing but the
/// making of the one object is locked: loading and unloading run on one thread at a time.
///
/// Operations answer with a status. Only instance() and the overloads of getModel() that take a
/// UTF-16 path throw.
///
/// @code
/// QuavinClient::init(QuavinConfig());
/// std::shared_ptr<QuavinModel> model;
/// QuavinStatus status =
///     QuavinClient::instance().getModel("digits", model, 0, QuavinModelType::Openvino);
/// // ... allocateInputs, predict ...
/// QuavinClient::terminate();
/// @endcode
class QUAVIN_API QuavinClient {
public:
    QuavinClient(const QuavinClient&) = delete;
    QuavinClient& operator=(const QuavinClient&) = delete;

    /// Switches the library on and installs the configuration's log processor.
    /// @return SUCCESS, or FAILURE without a text where it is on already; nothing changes then.
    static QuavinStatus init(const QuavinConfig& config);
    /// Whether the library is on.
    static bool isInitialized();
    /// Switches the library off; reports go to standard output from now on. Models stay registered,
    /// and the configuration shares its log processor until the next init() replaces it. Does
    /// nothing where the library is off.
    static void terminate();
    /// The one object; lives until the process ends.
    /// @throws Exception "Trying to use quavin client before the sdk was initialized!" where the
    ///         library is off.
    static QuavinClient& instance();
    /// Always QuavinModelType::Openvino. Needs no init().
    static QuavinModelType getEngineType();
    /// Always empty: no engine reports its devices. Needs no init().
    static std::map<QuavinModelType, std::vector<Device>> getDevices();
    /// What a model that is loaded now runs on. Starts the engine and compiles a network of one
    /// layer to know: a tenth of a second. Needs no init(); may be called on any thread.
    /// @param info receives it; unchanged after a failure.
    /// @return SUCCESS; FAILURE with the engine's text where it cannot start, and where memory runs
    ///         out. Throws nothing.
    static QuavinStatus getEngineInfo(EngineInfo& info);

    /// Loads the model package in a directory.
    ///
    /// What `model` holds after a failure depends on how far the call came:
    /// - what it held before, where the library is off or `path` is empty;
    /// - nothing, where the manifest cannot be read or has no target for this engine, and where the
    ///   model refuses its target (MODEL_METADATA_ERROR, INVALID_MODEL_PATH, INVALID_WEIGHTS_PATH,
    ///   or ML_FRAMEWORK_ERROR from the engine);
    /// - the new model, which is *not* loaded, where an exception ended the loading
    ///   (INVALID_OPERATION, FILE_ERROR, or FAILURE from the engine). It predicts nothing
    ///   (MODEL_NOT_LOADED) and can be dropped.
    ///
    /// So look at the status and not at the pointer.
    ///
    /// @param path the package's directory, UTF-8, without a separator at its end: "manifest.json"
    ///        is joined to it as it stands.
    /// @param model receives the loaded model; for failures see above.
    /// @param option 0; has no effect.
    /// @param type Openvino, or Undefined for no preference; anything else is refused.
    /// @return SUCCESS; NOT_INITIALIZED; INVALID_MODEL_PATH for an empty path or fewer than two
    ///         file components; MODEL_METADATA_ERROR for a manifest that is missing, malformed,
    ///         or lacks a target, inputs, outputs or components; INVALID_OPERATION for a first
    ///         input of variable shape; FILE_ERROR where a component cannot be read, decrypted or
    ///         parsed; FAILURE or ML_FRAMEWORK_ERROR where the engine fails; FAILURE also for a
    ///         path that is not UTF-8, and where memory runs out. Throws nothing.
    QuavinStatus getModel(const String& path, std::shared_ptr<QuavinModel>& model, int option,
                          QuavinModelType type);
    /// The same, and registers the model: it appears in queryRuntimeStatus() and is held by the
    /// client, also where its loading fails afterwards.
    /// @param path the package's directory.
    /// @param model receives the loaded model; for failures see the first form.
    /// @param device its engine type is what `type` is above; nothing else of it is read.
    /// @param option 0; has no effect.
    /// @return as above.
    QuavinStatus getModel(const String& path, std::shared_ptr<QuavinModel>& model, Device device,
                          int option);
    /// The first form for a UTF-16 path.
    /// @throws std::range_error "bad conversion" where `path` is not valid UTF-16, before anything
    ///         else is looked at; `model` is untouched then.
    QuavinStatus getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                          int option, QuavinModelType type);
    /// The second form for a UTF-16 path.
    /// @throws std::range_error as the third.
    QuavinStatus getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                          Device device, int option);
    /// Loads and registers a model from metadata that has been read already, and whose secured
    /// components have got their keys.
    /// @param metadata shared with the model; null gives INVALID_ARGUMENTS.
    /// @param model receives the loaded model. Untouched where the library is off, `metadata` is
    ///        null or has no target for this engine; for other failures see the first form.
    /// @param device as above.
    /// @return as above. Throws nothing.
    QuavinStatus getModel(std::shared_ptr<ModelMetadata> metadata,
                          std::shared_ptr<QuavinModel>& model, Device device);
    /// The same without registering the model.
    QuavinStatus getModel(std::shared_ptr<ModelMetadata> metadata,
                          std::shared_ptr<QuavinModel>& model, QuavinModelType type);

    /// Takes a model out of use: it predicts nothing any more (MODEL_NOT_LOADED), and lets go of
    /// its metadata and of output memory that nobody holds.
    ///
    /// The memory of the network stays: the compiled network and its weights, decrypted ones too,
    /// are released when the model is destroyed. For that, drop every pointer to it: the host's,
    /// the registry's (ModelManager::unloadModel() removes it) and those of snapshots. Loading the
    /// model again instead needs memory for both networks until that is done.
    /// @return what the model answers; MODEL_NOT_LOADED for a null pointer, and also (not
    ///         NOT_INITIALIZED) where the library is off.
    QuavinStatus unloadModel(std::shared_ptr<QuavinModel>& model);

    /// A snapshot of the registered models, which it keeps alive; empty while the library is off.
    RuntimeStatus queryRuntimeStatus() const;
    /// The registry, where a host removes models that it loaded through a Device
    /// (ModelManager::unloadModel). Valid as long as the client.
    ModelManager& getModelManager() { return modelManager_; }

private:
    QuavinClient();
    ~QuavinClient();

    enum class Registration { kNone, kRegistered };

    QuavinStatus loadPackage(const String& path, std::shared_ptr<QuavinModel>& model,
                             const Device& device, Registration registration);
    QuavinStatus loadMetadata(const std::shared_ptr<ModelMetadata>& metadata,
                              std::shared_ptr<QuavinModel>& model, const Device& device,
                              Registration registration);
    QuavinStatus createAndLoad(const std::shared_ptr<ModelMetadata>& metadata,
                               std::shared_ptr<QuavinModel>& model, const Device& device,
                               Registration registration);

    static bool initialized_;
    static QuavinConfig config_;

    ModelManager modelManager_;
};

/// Switches the library on for a scope. One at a time, on the thread that would call init().
class QUAVIN_API QuavinClientInitTerm {
public:
    /// Calls QuavinClient::init.
    /// @throws Exception "Quavin client failed to initialize" where that fails.
    explicit QuavinClientInitTerm(const QuavinConfig& config);
    QuavinClientInitTerm(const QuavinClientInitTerm&) = delete;
    QuavinClientInitTerm& operator=(const QuavinClientInitTerm&) = delete;
    /// Calls QuavinClient::terminate.
    ~QuavinClientInitTerm();
};

}  // namespace VelmoraQuavin
