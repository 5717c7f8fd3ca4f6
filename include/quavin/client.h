#pragma once

/// @file
/// The entry point: switching the library on and off, loading and unloading models.

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "quavin/device.h"
#include "quavin/engine_info.h"
#include "quavin/engine_options.h"
#include "quavin/export.h"
#include "quavin/logging.h"
#include "quavin/metadata.h"
#include "quavin/model.h"
#include "quavin/package_memory.h"
#include "quavin/registry.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// The configuration passed to QuavinClient::init. A value type; copies share the log processor.
class QUAVIN_API QuavinConfig {
public:
    /// No log processor: records go to standard output.
    QuavinConfig() = default;

    /// Does nothing, since there is no configuration to load. Always returns FAILURE with an empty
    /// description, which callers can ignore.
    QuavinStatus load();
    /// The log processor, shared; may be null.
    std::shared_ptr<ILogProcessor> GetLogger() const { return logger_; }
    /// Replaces the log processor; null restores standard output.
    void SetLogger(const std::shared_ptr<ILogProcessor>& logger) { logger_ = logger; }
    /// Whether diagnostics are on; off by default.
    bool GetDiagnostics() const { return diagnostics_; }
    /// Turns diagnostics on or off: one log record for each failure whose fixed text hides the
    /// cause, such as which file could not be read and why. Diagnostics use kDiagnosticCategory and
    /// kDiagnosticLevel, contain neither keys nor the content of secured files, and are delivered
    /// one at a time, on the thread that failed. They also cover predictions that succeed with an
    /// input whose shape differs from the network's but which has enough bytes. docs/errors.md
    /// lists them. With diagnostics off, the library logs nothing itself.
    void SetDiagnostics(bool on) { diagnostics_ = on; }
    /// How models compute that are loaded without options of their own.
    const EngineOptions& GetEngineOptions() const { return engineOptions_; }
    /// Sets how models compute. Options that cannot be used are reported by the loads, not here.
    void SetEngineOptions(const EngineOptions& options) { engineOptions_ = options; }
    /// The public keys whose signatures count; none by default.
    const std::vector<String>& GetTrustedKeys() const { return trustedKeys_; }
    /// Sets the public keys whose signatures count. From init() on, only packages load that one of
    /// them signed, and describeNetwork() refuses others too: SIGNATURE_ERROR. docs/signatures.md
    /// describes signatures. The keys also count after QuavinClient::terminate(), until the next
    /// init().
    ///
    /// A key that cannot be used is reported by the loads, not here.
    /// @param pems one elliptic curve key each, on P-256 or P-384, in PEM ("BEGIN PUBLIC KEY").
    ///        Without any, signatures are not looked at.
    void SetTrustedKeys(std::vector<String> pems) { trustedKeys_ = std::move(pems); }

private:
    std::shared_ptr<ILogProcessor> logger_;
    bool diagnostics_ = false;
    EngineOptions engineOptions_;
    std::vector<String> trustedKeys_;
};

/// The host's interface to the library: one object per process.
///
/// Call init() and terminate() on one thread, before and after all other use. Only creating the
/// single object is thread-safe: load and unload models on one thread at a time.
///
/// Operations return a status. Only instance() and the overloads of getModel() that take a UTF-16
/// path throw.
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

    /// Turns the library on and installs the configuration's log processor.
    /// @return SUCCESS; FAILURE with an empty description, changing nothing, if the library is
    ///         already on.
    static QuavinStatus init(const QuavinConfig& config);
    /// Whether the library is on.
    static bool isInitialized();
    /// Turns the library off; reports go to standard output from then on. Models stay registered,
    /// and the log processor is kept alive until the next init() replaces it. Does nothing if the
    /// library is off.
    static void terminate();
    /// The single object; it lives until the process ends.
    /// @throws Exception "Trying to use quavin client before the sdk was initialized!" if the
    ///         library is off.
    static QuavinClient& instance();
    /// The preferred engine of this build: always QuavinModelType::Openvino. Does not require
    /// init().
    static QuavinModelType getEngineType();
    /// Always empty: no engine reports its devices. Does not require init().
    static std::map<QuavinModelType, std::vector<Device>> getDevices();
    /// Reports what a model loaded now would run on. To find out, it starts the engine and compiles
    /// a one-layer network, which takes about a tenth of a second. Does not require init(); may be
    /// called on any thread, except while init() or terminate() runs.
    /// Uses the configuration's engine options while the library is on, the defaults otherwise.
    /// @param info receives the result; unchanged on failure.
    /// @return SUCCESS; INVALID_ARGUMENTS for engine options that cannot be used; FAILURE with the
    ///         engine's message if it cannot start, or if memory runs out. Never throws.
    static QuavinStatus getEngineInfo(EngineInfo& info);
    /// A copy of the configuration's engine options while the library is on, the defaults
    /// otherwise.
    static EngineOptions getEngineOptions();

    /// Loads the model package in a directory.
    ///
    /// What `model` holds after a failure depends on how far the call got:
    /// - its previous value if the library is off or `path` is empty;
    /// - null if the manifest or the signature cannot be read, if the manifest is not what was
    ///   signed or has no target for this engine, or if the model refuses its target
    ///   (MODEL_METADATA_ERROR, INVALID_MODEL_PATH, INVALID_WEIGHTS_PATH, or ML_FRAMEWORK_ERROR
    ///   from the engine);
    /// - the new model, which is *not* loaded, if an exception ended the load (INVALID_OPERATION,
    ///   FILE_ERROR, SIGNATURE_ERROR for a component, or FAILURE from the engine). It cannot
    ///   predict (MODEL_NOT_LOADED) and can be dropped.
    ///
    /// So check the status, not the pointer.
    ///
    /// @param path the package's directory, UTF-8, without a trailing separator: one is always
    ///        added before "manifest.json".
    /// @param model receives the loaded model; see above for failures.
    /// @param option pass 0; has no effect.
    /// @param type Openvino, or Undefined for no preference; anything else is refused.
    /// @return SUCCESS; NOT_INITIALIZED; INVALID_ARGUMENTS for engine options of the configuration
    ///         that cannot be used; INVALID_MODEL_PATH for an empty path or fewer than two file
    ///         components; MODEL_METADATA_ERROR for a manifest that is missing, malformed, or
    ///         lacks a target, inputs, outputs or components; INVALID_OPERATION for a first input
    ///         of variable shape; FILE_ERROR if a component cannot be read, decrypted or parsed;
    ///         FAILURE or ML_FRAMEWORK_ERROR if the engine fails; FAILURE also for a path that is
    ///         not UTF-8, or if memory runs out. While keys are trusted
    ///         (QuavinConfig::SetTrustedKeys), also SIGNATURE_ERROR for a package that none of them
    ///         signed, FILE_ERROR for a signature that cannot be read, and INVALID_ARGUMENTS for a
    ///         key that cannot be used, or for EngineOptions::mapWeights (`model` is then
    ///         unchanged). Never throws.
    QuavinStatus getModel(const String& path, std::shared_ptr<QuavinModel>& model, int option,
                          QuavinModelType type);
    /// As above, and registers the model: it appears in queryRuntimeStatus() and is kept alive by
    /// the client, even if loading it fails afterwards.
    /// @param path the package's directory.
    /// @param model receives the loaded model; for failures see the first overload.
    /// @param device its engine type is used like `type` above; its other fields are ignored.
    /// @param option pass 0; has no effect.
    /// @return as above.
    QuavinStatus getModel(const String& path, std::shared_ptr<QuavinModel>& model, Device device,
                          int option);
    /// The first overload, for a UTF-16 path.
    /// @throws std::range_error "bad conversion" if `path` is not valid UTF-16, before anything
    ///         else is checked; `model` is then unchanged.
    QuavinStatus getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                          int option, QuavinModelType type);
    /// The second overload, for a UTF-16 path.
    /// @throws std::range_error as the third overload does.
    QuavinStatus getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                          Device device, int option);
    /// Loads and registers a model from metadata that has already been read and whose secured
    /// components have been given their keys.
    /// @param metadata shared with the model; if null, the call returns INVALID_ARGUMENTS.
    /// @param model receives the loaded model. Unchanged if the library is off, or if `metadata` is
    ///        null, is not what was signed or has no target for this engine; for other failures see
    ///        the first overload.
    /// @param device as above.
    /// @return as above. Never throws.
    QuavinStatus getModel(std::shared_ptr<ModelMetadata> metadata,
                          std::shared_ptr<QuavinModel>& model, Device device);
    /// As above, without registering the model.
    QuavinStatus getModel(std::shared_ptr<ModelMetadata> metadata,
                          std::shared_ptr<QuavinModel>& model, QuavinModelType type);

    /// Like the first overload, with options for this model that replace the configuration's.
    /// @param path the package's directory.
    /// @param model receives the loaded model; for failures see the first overload.
    /// @param option pass 0; has no effect.
    /// @param type as in the first overload.
    /// @param options how this model computes.
    /// @return as there; INVALID_ARGUMENTS, naming the option, if one has no meaning (`model` is
    ///         then unchanged) or the engine refuses it. Never throws.
    QuavinStatus getModel(const String& path, std::shared_ptr<QuavinModel>& model, int option,
                          QuavinModelType type, const EngineOptions& options);
    /// As above, and registers the model.
    QuavinStatus getModel(const String& path, std::shared_ptr<QuavinModel>& model, Device device,
                          int option, const EngineOptions& options);
    /// As above, for a UTF-16 path.
    /// @throws std::range_error "bad conversion" if `path` is not valid UTF-16.
    QuavinStatus getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                          int option, QuavinModelType type, const EngineOptions& options);
    /// As above, and registers the model.
    /// @throws std::range_error "bad conversion" if `path` is not valid UTF-16.
    QuavinStatus getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                          Device device, int option, const EngineOptions& options);
    /// As above, from metadata that has already been read, and registers the model.
    QuavinStatus getModel(std::shared_ptr<ModelMetadata> metadata,
                          std::shared_ptr<QuavinModel>& model, Device device,
                          const EngineOptions& options);
    /// As above, without registering the model.
    QuavinStatus getModel(std::shared_ptr<ModelMetadata> metadata,
                          std::shared_ptr<QuavinModel>& model, QuavinModelType type,
                          const EngineOptions& options);

    /// Loads the model package in a tar archive in memory. Nothing is written to the disk.
    ///
    /// The archive is read like an untrusted one by FileUtils::extractTarball(). The manifest is at
    /// the top, or in a directory at the top, and the components' paths start there. Of files with
    /// the same name, the last counts. Secured components are decrypted in copies.
    ///
    /// An archive that is secured as a whole is decrypted in memory of its own, in which plain
    /// weights are then used. It is wiped when the load is over, or once the last model over these
    /// weights is destroyed.
    ///
    /// The model keeps nothing that is the host's: loading it again after unloading it fails with
    /// FILE_ERROR, as does any other use of its metadata, which has no root directory. Caching
    /// compiled networks and cloneModel() work as for packages in directories.
    ///
    /// @param archive the archive, which is not changed and not needed after the call.
    /// @param size bytes at `archive`.
    /// @param keys the keys of the package's secured parts. With an archive key, the archive is a
    ///        secured tar, as FileUtils::extractSecuredTarball() takes it. A wrong key yields
    ///        meaningless bytes: almost always TAR_CHECKSUM_MISMATCH for the archive's key,
    ///        FILE_ERROR for a component's.
    /// @param model receives the loaded model. Unchanged if the library is off or an option has no
    ///        meaning; null if the archive is refused; for other failures see the first overload.
    /// @param type Openvino, or Undefined for no preference; anything else is refused.
    /// @param options how this model computes; EngineOptions::mapWeights has no effect.
    /// @return as the first overload does, INVALID_MODEL_PATH also for a topology without a path
    ///         and INVALID_WEIGHTS_PATH for weights without one; MODEL_METADATA_ERROR if the
    ///         archive has no manifest; INVALID_ARGUMENTS for a null pointer, a truncated or
    ///         malformed archive, a refused name, a size that no secured archive has, or an option
    ///         that cannot be used; TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for links, devices
    ///         and the like; FILE_ERROR if the cryptography fails, or if the archive does not hold
    ///         a component. The description names the entry or the file. Never throws.
    QuavinStatus getModel(const void* archive, uint64 size, const PackageKeys& keys,
                          std::shared_ptr<QuavinModel>& model, QuavinModelType type,
                          const EngineOptions& options);
    /// As above, and registers the model.
    QuavinStatus getModel(const void* archive, uint64 size, const PackageKeys& keys,
                          std::shared_ptr<QuavinModel>& model, Device device,
                          const EngineOptions& options);
    /// Loads a model package whose files are in memory, one buffer each. Otherwise as above.
    ///
    /// Plain weights whose buffer has an owner are used in place, without a copy, unless they are
    /// not aligned; all other bytes are not needed after the call. Secured components are decrypted
    /// in copies. Buffers that the manifest does not name are ignored.
    ///
    /// @param buffers "manifest.json" and the components.
    /// @param keys the keys of the secured components; an archive key is not used.
    /// @param model as above.
    /// @param type as above.
    /// @param options as above.
    /// @return as above; INVALID_ARGUMENTS for two buffers of one name, or a null pointer to bytes;
    ///         MODEL_METADATA_ERROR if no buffer is the manifest. Never throws.
    QuavinStatus getModelFromBuffers(const std::vector<PackageBuffer>& buffers,
                                     const PackageKeys& keys, std::shared_ptr<QuavinModel>& model,
                                     QuavinModelType type, const EngineOptions& options);
    /// As above, and registers the model.
    QuavinStatus getModelFromBuffers(const std::vector<PackageBuffer>& buffers,
                                     const PackageKeys& keys, std::shared_ptr<QuavinModel>& model,
                                     Device device, const EngineOptions& options);

    /// Makes a second model over the same compiled network, which predicts independently of the
    /// first: with a clone for each thread, a host predicts in parallel without compiling again.
    ///
    /// A clone has a request, outputs, port descriptions and metadata of its own. It shares the
    /// compiled network and its weights, which stay in memory until the last model over them is
    /// destroyed. Unload and destroy models and clones in any order. A clone is not registered.
    ///
    /// Load the original with EngineOptions::Hint::Throughput, or its clones wait for each other.
    ///
    /// @param model a loaded model. It may be predicting on another thread, but must not be loaded
    ///        or unloaded meanwhile.
    /// @param clone receives the new model; unchanged on failure.
    /// @return SUCCESS; NOT_INITIALIZED; MODEL_NOT_LOADED for a null pointer, or a model that is
    ///         not loaded or was unloaded; FAILURE for a model class defined by the host, with the
    ///         engine's message if it fails, or if memory runs out; ML_FRAMEWORK_ERROR if the
    ///         engine makes no request. Never throws.
    QuavinStatus cloneModel(const std::shared_ptr<QuavinModel>& model,
                            std::shared_ptr<QuavinModel>& clone);

    /// Takes a model out of use: it can no longer predict (MODEL_NOT_LOADED), and it releases its
    /// metadata and any output memory that is no longer referenced.
    ///
    /// The network stays in memory: the compiled network and its weights, decrypted ones included,
    /// are released only when the model is destroyed. To destroy it, drop every pointer to it: the
    /// host's, the registry's (ModelManager::unloadModel() removes it) and those in snapshots.
    /// Loading the model again before that takes memory for both networks.
    /// @return the model's own status; MODEL_NOT_LOADED for a null pointer, and also (not
    ///         NOT_INITIALIZED) if the library is off.
    QuavinStatus unloadModel(std::shared_ptr<QuavinModel>& model);

    /// A snapshot of the registered models, which it keeps alive; empty while the library is off.
    RuntimeStatus queryRuntimeStatus() const;
    /// The registry, through which a host removes models that it loaded with a Device
    /// (ModelManager::unloadModel). Valid while the client lives.
    ModelManager& getModelManager() { return modelManager_; }

private:
    QuavinClient();
    ~QuavinClient();

    enum class Registration { kNone, kRegistered };

    QuavinStatus loadPackage(const String& path, std::shared_ptr<QuavinModel>& model,
                             const Device& device, Registration registration,
                             const EngineOptions& options);
    QuavinStatus loadMetadata(const std::shared_ptr<ModelMetadata>& metadata,
                              std::shared_ptr<QuavinModel>& model, const Device& device,
                              Registration registration, const EngineOptions& options);
    QuavinStatus loadArchive(const void* archive, uint64 size, const PackageKeys& keys,
                             std::shared_ptr<QuavinModel>& model, const Device& device,
                             Registration registration, const EngineOptions& options);
    QuavinStatus loadBuffers(const std::vector<PackageBuffer>& buffers, const PackageKeys& keys,
                             std::shared_ptr<QuavinModel>& model, const Device& device,
                             Registration registration, const EngineOptions& options);
    template <typename MakeSource>
    QuavinStatus loadMemory(const MakeSource& makeSource, const PackageKeys& keys,
                            std::shared_ptr<QuavinModel>& model, const Device& device,
                            Registration registration, const EngineOptions& options);
    QuavinStatus createAndLoad(const std::shared_ptr<ModelMetadata>& metadata,
                               std::shared_ptr<QuavinModel>& model, const Device& device,
                               Registration registration, const EngineOptions& options);

    static bool initialized_;
    static QuavinConfig config_;

    ModelManager modelManager_;
};

/// Turns the library on for the duration of a scope. Use one at a time, on the thread that would
/// otherwise call init().
class QUAVIN_API QuavinClientInitTerm {
public:
    /// Calls QuavinClient::init.
    /// @throws Exception "Quavin client failed to initialize" if that fails.
    explicit QuavinClientInitTerm(const QuavinConfig& config);
    QuavinClientInitTerm(const QuavinClientInitTerm&) = delete;
    QuavinClientInitTerm& operator=(const QuavinClientInitTerm&) = delete;
    /// Calls QuavinClient::terminate.
    ~QuavinClientInitTerm();
};

}  // namespace VelmoraQuavin
