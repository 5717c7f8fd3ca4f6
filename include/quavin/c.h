#pragma once

/// @file
/// The C interface: everything that a host needs, for any compiler and language.
///
/// It stands by itself: plain C99, which C++ and every language with a foreign-function interface
/// can use. A program may use it beside the C++ interface; both see the same library, switched on
/// and off as one.
///
/// **Status.** Every function that can fail returns a #quavin_status. After a failure,
/// quavin_last_error() says what happened, on the thread that made the call. Handles that a call
/// would have returned are then null, other results are unchanged. No C++ exception leaves the
/// library.
///
/// **Handles.** Models, outputs, networks, registry snapshots and engine infos are handles, and
/// each belongs to the caller, who ends it with the release function of its kind. A null pointer, a
/// handle of another kind and one that was released are refused with #QUAVIN_INVALID_ARGUMENTS.
/// Handles are numbers, not addresses: never look behind one. A handle may be used on any thread
/// and released while another thread uses it; what it stands for goes when that call returns. What
/// is not released when the process ends is not destroyed.
///
/// **Structs.** Most begin with their size, so that later versions can add members at their end:
/// set `size`, or begin with the matching `_INIT` macro. The library ignores nothing: in a struct
/// that it reads, members that it does not know must be zero; those that the host does not know
/// keep their defaults, which are always zero or null. In a struct that it fills, it sets what the
/// host has room for. A `reserved` member is zero. Structs without a size never change.
///
/// **Text** is UTF-8 and ends with a zero byte. Text and arrays that a struct points to belong to
/// the handle that they were asked of, and are valid until it is released.
///
/// **Threads.** The library takes no locks for the host, which must keep to these rules. It calls
/// quavin_init() and quavin_terminate() before and after everything else, on one thread. It loads,
/// clones, unloads and unregisters models and calls the functions of the registry one at a time in
/// the process. It makes one call at a time on a model, whatever the handle, but different models,
/// clones included, may predict at the same time. Everything else may be called at any time on any
/// thread.
///
/// **Stability.** Until 1.0, programs keep working within a minor version of the library; from then
/// on within a major one.
///
/// @code
/// quavin_model* model = NULL;
/// quavin_outputs* outputs = NULL;
/// const void* inputs[] = {pixels};
/// const size_t sizes[] = {sizeof pixels};
/// if (quavin_init(NULL) != QUAVIN_SUCCESS ||
///     quavin_load_directory("digits", NULL, &model) != QUAVIN_SUCCESS ||
///     quavin_predict(model, inputs, sizes, 1, &outputs) != QUAVIN_SUCCESS) {
///     fprintf(stderr, "%s\n", quavin_last_error());
/// }
/// @endcode

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): this is a C header
#include <stdint.h>  // NOLINT(modernize-deprecated-headers)

#include "quavin/export.h"

#ifdef __cplusplus
extern "C" {
#endif

// NOLINTBEGIN(modernize-use-using,readability-identifier-naming): C's words and C's names

/// @name Status
/// @{

/// The result of a call: one of the codes below. Later versions may return codes that are not
/// listed here.
typedef int32_t quavin_status;

/// The codes of #quavin_status; docs/errors.md lists what returns each one, and what to do about
/// it.
enum {
    QUAVIN_SUCCESS = 1,                   ///< Success: the only code that is not a failure.
    QUAVIN_FAILURE = 2,                   ///< Any failure without a more specific code.
    QUAVIN_FILE_ERROR = 3,                ///< A file cannot be read, decrypted or parsed.
    QUAVIN_INVALID_MODEL_PATH = 4,        ///< No model path, or fewer than two file components.
    QUAVIN_INVALID_WEIGHTS_PATH = 5,      ///< The weights component has no path.
    QUAVIN_INVALID_OPERATION = 6,         ///< The operation does not fit the object's state.
    QUAVIN_INVALID_ARGUMENTS = 7,         ///< An argument is unusable.
    QUAVIN_INVALID_TYPE = 8,              ///< A feature is not of the requested type.
    QUAVIN_INVALID_TENSOR_DATA_TYPE = 9,  ///< The engine does not support the element type.
    QUAVIN_MODEL_NOT_LOADED = 11,         ///< The model is not loaded, or not registered.
    QUAVIN_MODEL_METADATA_ERROR = 12,     ///< The manifest is missing, malformed or incomplete.
    QUAVIN_ML_FRAMEWORK_ERROR = 13,       ///< The inference engine failed.
    QUAVIN_OUT_OF_RANGE = 14,             ///< An index is past the end.
    QUAVIN_NOT_INITIALIZED = 15,          ///< The library is off; see quavin_init().
    QUAVIN_MEMORY_LIMIT_EXCEEDED = 16,    ///< A model's account cannot hold the value.
    QUAVIN_TENSOR_SIZE_MISMATCH = 17,     ///< A tensor needs a different number of bytes.
    QUAVIN_ALLOCATION_FAILED = 18,        ///< A tensor cannot allocate memory.
    QUAVIN_EMPTY_INPUT_DESCRIPTOR = 19,   ///< An input that the network needs was left out.
    QUAVIN_TAR_CHECKSUM_MISMATCH = 21,    ///< A tar header's checksum is wrong.
    QUAVIN_TAR_UNSUPPORTED_ENTRY = 22,    ///< A tar entry is neither a file nor a directory.
    QUAVIN_SIGNATURE_ERROR = 23           ///< The package is not what a trusted key signed.
};

/// The text of this thread's last failing call, cut after about a thousand bytes; "" before the
/// first failure. Never null.
/// @return text that is valid on this thread, until its next failing call.
QUAVIN_API const char* quavin_last_error(void);
/// The name of a code, such as "INVALID_ARGUMENTS"; "unknown status" for any other number.
/// @return text that is always valid.
QUAVIN_API const char* quavin_status_name(quavin_status status);
/// The version of the loaded library, as "major.minor.patch".
/// @return text that is always valid.
QUAVIN_API const char* quavin_version(void);

/// @}
/// @name Handles
/// @{

/// A model: loaded from a package, cloned, or taken from a snapshot of the registry. Several
/// handles can stand for the same model, which lives until the last of them is released and it is
/// not registered.
typedef struct quavin_model quavin_model;
/// The outputs of one prediction. They keep their memory, and outlive the model.
typedef struct quavin_outputs quavin_outputs;
/// The inputs and outputs of a network that was described without being loaded.
typedef struct quavin_network quavin_network;
/// A snapshot of the registered models, which it keeps alive.
typedef struct quavin_registry quavin_registry;
/// What predictions are computed on, and how.
typedef struct quavin_engine_info quavin_engine_info;

/// @}
/// @name Switching the library on and off
/// @{

/// A log record.
typedef struct quavin_log_record {
    size_t size;          ///< Set by the library.
    const char* message;  ///< The text; valid during the call.
    uint64_t category;    ///< Bits; 4 for the library's own diagnostics.
    int64_t tag;          ///< -1 if there is none.
    int64_t time;         ///< Monotonic ticks of 100 nanoseconds.
    uint32_t level;       ///< 3 or more is important.
    uint32_t reserved;    ///< Zero.
} quavin_log_record;

/// Receives log records, on the thread that reports; one at a time if diagnostics are on. Must not
/// throw; a C++ exception
/// that leaves it anyway is dropped.
typedef void (*quavin_log)(const quavin_log_record* record, void* user);

/// The precisions of quavin_engine_options::precision.
enum {
    QUAVIN_PRECISION_SINGLE = 0,  ///< 32 bits: the same results everywhere, to within rounding.
    QUAVIN_PRECISION_FASTEST = 1  ///< Half precision or bfloat16 where that is faster.
};
/// The hints of quavin_engine_options::hint.
enum {
    QUAVIN_HINT_LATENCY = 0,    ///< One prediction at a time, each as fast as possible.
    QUAVIN_HINT_THROUGHPUT = 1  ///< As many predictions as possible, of models that share the time.
};

/// How models compute; docs/engine-options.md explains the choices. All zero is the default.
typedef struct quavin_engine_options {
    size_t size;                  ///< sizeof(quavin_engine_options).
    int32_t precision;            ///< #QUAVIN_PRECISION_SINGLE or #QUAVIN_PRECISION_FASTEST.
    int32_t threads;              ///< Threads that a model computes on, at most 1024; 0: any.
    int32_t hint;                 ///< #QUAVIN_HINT_LATENCY or #QUAVIN_HINT_THROUGHPUT.
    int32_t map_weights;          ///< Not 0: plain weights files of directories are mapped.
    const char* cache_directory;  ///< An existing directory for compiled networks; null: none.
    uint64_t cache_size_limit;    ///< Bytes that the cache may take; 0: no limit.
} quavin_engine_options;

/// Begins a quavin_engine_options with its defaults.
#define QUAVIN_ENGINE_OPTIONS_INIT \
    { sizeof(quavin_engine_options), 0, 0, 0, 0, NULL, 0 }

/// How the library is switched on. All zero is the default.
typedef struct quavin_config {
    size_t size;     ///< sizeof(quavin_config).
    quavin_log log;  ///< Receives log records; null: they go to standard output.
    void* user;      ///< Passed to `log`; must be usable until quavin_terminate() returns.
    const quavin_engine_options*
        engine;           ///< For models without options of their own; null: defaults.
    int32_t diagnostics;  ///< Not 0: one record for each failure whose text hides the cause.
    int32_t reserved;     ///< Zero.
    /// Public keys in PEM, on the curves P-256 and P-384. If there are any, only packages that one
    /// of them signed are loaded or described, also after quavin_terminate(), until the next
    /// quavin_init(). docs/signatures.md says what is checked.
    const char* const* trusted_keys;
    size_t trusted_key_count;  ///< Elements of `trusted_keys`; 0: signatures are not looked at.
} quavin_config;

/// Begins a quavin_config with its defaults.
#define QUAVIN_CONFIG_INIT \
    { sizeof(quavin_config), NULL, NULL, NULL, 0, 0, NULL, 0 }

/// Switches the library on.
/// @param config null for the defaults. Not needed after the call.
/// @return #QUAVIN_SUCCESS; #QUAVIN_FAILURE, changing nothing, if the library is already on or
///         memory runs out; #QUAVIN_INVALID_ARGUMENTS for an unusable struct or a null key. Engine
///         options that have no meaning, and trusted keys that cannot be used, are reported by the
///         loads, not here.
QUAVIN_API quavin_status quavin_init(const quavin_config* config);
/// Switches the library off; does nothing if it is off. Handles stay valid, and their models can
/// still predict. Models stay registered. The log function is not called any more.
/// @return #QUAVIN_SUCCESS.
QUAVIN_API quavin_status quavin_terminate(void);
/// Whether the library is on.
/// @return 1 or 0.
QUAVIN_API int32_t quavin_is_initialized(void);

/// @}
/// @name Loading models
/// @{

/// The key of one secured component.
typedef struct quavin_component_key {
    const char* path;    ///< The component's "path" in the manifest; "/" and "\" are the same.
    const uint8_t* key;  ///< Sixteen bytes.
} quavin_component_key;

/// The AES-128 keys of a package's secured parts, sixteen bytes each. They are copied, and the
/// copies overwritten when they are no longer needed.
typedef struct quavin_keys {
    size_t size;  ///< sizeof(quavin_keys).
    const uint8_t*
        archive_key;  ///< Not null: the archive is secured as a whole. Only for archives.
    const uint8_t* component_key;  ///< For every secured component without a key below; or null.
    const quavin_component_key* component_keys;  ///< Keys of single components; or null.
    size_t component_key_count;                  ///< Elements of `component_keys`.
} quavin_keys;

/// Begins a quavin_keys without keys.
#define QUAVIN_KEYS_INIT \
    { sizeof(quavin_keys), NULL, NULL, NULL, 0 }

/// How a model is loaded. All zero is the default.
typedef struct quavin_load_options {
    size_t size;  ///< sizeof(quavin_load_options).
    const quavin_engine_options*
        engine;               ///< How the model computes; null: as quavin_init() was told.
    const quavin_keys* keys;  ///< The keys of a secured package; null: none.
    int32_t registered;       ///< Not 0: the model appears in the registry, which keeps it.
    int32_t reserved;         ///< Zero.
} quavin_load_options;

/// Begins a quavin_load_options with its defaults.
#define QUAVIN_LOAD_OPTIONS_INIT \
    { sizeof(quavin_load_options), NULL, NULL, 0, 0 }

/// One file of a package that is in memory.
typedef struct quavin_buffer {
    const char* name;  ///< "manifest.json", or a component's "path" as the manifest writes it.
    const void* data;  ///< The bytes; may be null if there are none.
    size_t size;       ///< The number of bytes at `data`.
    /// Null if the bytes stay the caller's, who may free them when the call returns. Otherwise the
    /// call takes them over, whatever its status, and calls `release` exactly once, on any thread,
    /// as soon as it no longer needs them: with the last model over them, clones included, for
    /// plain weights at a multiple of 16, which are used in place and must not change until then;
    /// before the call returns for all else, and if it fails. Only a call whose array of buffers is
    /// null takes nothing over. Must not throw; a C++ exception that leaves it anyway is dropped.
    void (*release)(void* user);
    void* user;  ///< Passed to `release`.
} quavin_buffer;

/// Loads the package in a directory.
///
/// A registered model stays registered even if loading it fails.
/// @param path the directory, without a separator at its end.
/// @param options null for the defaults. Not needed after the call.
/// @param model receives the model's handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_NOT_INITIALIZED; #QUAVIN_INVALID_ARGUMENTS for a null argument,
///         an unusable struct, an archive key, or engine options that have no meaning;
///         #QUAVIN_INVALID_MODEL_PATH for an empty path or fewer than two file components;
///         #QUAVIN_MODEL_METADATA_ERROR for a manifest that is missing, malformed or incomplete;
///         #QUAVIN_INVALID_OPERATION for a first input of variable shape; #QUAVIN_FILE_ERROR if a
///         component cannot be read, decrypted or parsed; #QUAVIN_ML_FRAMEWORK_ERROR or
///         #QUAVIN_FAILURE if the engine fails; #QUAVIN_FAILURE if the path is not UTF-8 or memory
///         runs out. While keys are trusted, also #QUAVIN_SIGNATURE_ERROR for a package that is not
///         what one of them signed, #QUAVIN_FILE_ERROR for a signature that cannot be read, and
///         #QUAVIN_INVALID_ARGUMENTS for a key that cannot be used or mapped weights.
QUAVIN_API quavin_status quavin_load_directory(const char* path, const quavin_load_options* options,
                                               quavin_model** model);
/// Loads the package in a tar archive in memory, as `quavin pack` writes it.
/// @param data the archive; may be freed when the call returns.
/// @param size bytes at `data`.
/// @param options as above; here an archive key is allowed.
/// @param model as above.
/// @return as above, and the codes of quavin_extract_archive() for an archive that cannot be read.
QUAVIN_API quavin_status quavin_load_archive(const void* data, size_t size,
                                             const quavin_load_options* options,
                                             quavin_model** model);
/// Loads the package whose files are in memory.
/// @param buffers the files; not needed after the call, apart from bytes that it takes over.
/// @param count elements of `buffers`.
/// @param options as above.
/// @param model as above.
/// @return as above.
QUAVIN_API quavin_status quavin_load_buffers(const quavin_buffer* buffers, size_t count,
                                             const quavin_load_options* options,
                                             quavin_model** model);
/// Makes a second model over the same compiled network, which predicts independently of the first:
/// for another thread, without compiling again. Load the original with #QUAVIN_HINT_THROUGHPUT, or
/// the two wait for each other. A clone is not registered.
/// @param model a loaded model; it may be predicting on another thread.
/// @param clone receives the clone's handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_NOT_INITIALIZED; #QUAVIN_MODEL_NOT_LOADED for a model that was unloaded;
///         #QUAVIN_ML_FRAMEWORK_ERROR or #QUAVIN_FAILURE if the engine fails; #QUAVIN_FAILURE for a
///         model class that a C++ host defined, or if memory runs out.
QUAVIN_API quavin_status quavin_clone(quavin_model* model, quavin_model** clone);
/// Takes a model out of use: it can no longer predict. Its memory is released with the model.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle;
///         #QUAVIN_NOT_INITIALIZED; or the model's own status.
QUAVIN_API quavin_status quavin_unload(quavin_model* model);
/// Releases a handle. The model goes with its last handle, unless it is registered.
/// @param model null is ignored.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle.
QUAVIN_API quavin_status quavin_model_release(quavin_model* model);

/// @}
/// @name What a model is
/// @{

/// The identity of a model, from its manifest.
typedef struct quavin_metadata {
    size_t size;              ///< sizeof(quavin_metadata).
    const char* id;           ///< "id"; "" if the manifest has none.
    const char* name;         ///< "name".
    const char* author;       ///< "author".
    const char* description;  ///< "description".
    const char* sdk_version;  ///< "sdkVersion".
    int32_t version;          ///< "version"; 0 if the manifest has none.
    int32_t reserved;         ///< Zero.
} quavin_metadata;

/// A quavin_metadata to be filled.
#define QUAVIN_METADATA_INIT \
    { sizeof(quavin_metadata), NULL, NULL, NULL, NULL, NULL, 0, 0 }

/// The kinds of value of quavin_port::kind. Only tensors can be predicted with.
enum {
    QUAVIN_FEATURE_BOOL = 0,    ///< A boolean.
    QUAVIN_FEATURE_UINT8 = 1,   ///< An unsigned byte.
    QUAVIN_FEATURE_INT64 = 2,   ///< A 64-bit integer.
    QUAVIN_FEATURE_DOUBLE = 3,  ///< A double.
    QUAVIN_FEATURE_STRING = 4,  ///< Text.
    QUAVIN_FEATURE_TENSOR = 5,  ///< A tensor.
    QUAVIN_FEATURE_IMAGE = 6    ///< An image.
};
/// The types of a tensor's elements.
enum {
    QUAVIN_TYPE_UNDEFINED = 0,  ///< No type.
    QUAVIN_TYPE_BOOL = 1,       ///< 1 byte.
    QUAVIN_TYPE_INT8 = 2,       ///< 1 byte.
    QUAVIN_TYPE_UINT8 = 3,      ///< 1 byte.
    QUAVIN_TYPE_INT16 = 4,      ///< 2 bytes.
    QUAVIN_TYPE_UINT16 = 5,     ///< 2 bytes.
    QUAVIN_TYPE_INT32 = 6,      ///< 4 bytes.
    QUAVIN_TYPE_UINT32 = 7,     ///< 4 bytes.
    QUAVIN_TYPE_INT64 = 8,      ///< 8 bytes.
    QUAVIN_TYPE_UINT64 = 9,     ///< 8 bytes.
    QUAVIN_TYPE_FLOAT16 = 10,   ///< 2 bytes.
    QUAVIN_TYPE_FLOAT = 11,     ///< 4 bytes.
    QUAVIN_TYPE_DOUBLE = 12     ///< 8 bytes.
};

/// One input or output, as the package declares it.
typedef struct quavin_port {
    size_t size;              ///< sizeof(quavin_port).
    const char* name;         ///< The name.
    const char* description;  ///< Free text.
    const int64_t* dims;      ///< The dimensions, outermost first; -1 where any extent will do.
    size_t rank;              ///< Elements of `dims`; 0 for a tensor of a single element.
    size_t bytes;          ///< Bytes of a tensor; 0 if they are not known, or it is not a tensor.
    int32_t kind;          ///< The kind of value: #QUAVIN_FEATURE_TENSOR in nearly all packages.
    int32_t element_type;  ///< The type of the tensor's elements.
    int32_t required;      ///< 1 if the model needs the value, otherwise 0.
    int32_t reserved;      ///< Zero.
} quavin_port;

/// A quavin_port to be filled.
#define QUAVIN_PORT_INIT \
    { sizeof(quavin_port), NULL, NULL, NULL, 0, 0, 0, 0, 0, 0 }

/// The identity of a model.
/// @param model a model; its texts stay the same when it is unloaded.
/// @param metadata is filled.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_model_get_metadata(quavin_model* model, quavin_metadata* metadata);
/// The number of inputs that the package declares for this engine.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_model_get_input_count(quavin_model* model, size_t* count);
/// The number of outputs.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_model_get_output_count(quavin_model* model, size_t* count);
/// One input.
/// @param model a model.
/// @param index the input, in the package's order.
/// @param port is filled.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_OUT_OF_RANGE for an index that is too large.
QUAVIN_API quavin_status quavin_model_get_input(quavin_model* model, size_t index,
                                                quavin_port* port);
/// One output.
/// @param model a model.
/// @param index the output, in the package's order.
/// @param port is filled.
/// @return as for an input.
QUAVIN_API quavin_status quavin_model_get_output(quavin_model* model, size_t index,
                                                 quavin_port* port);

/// @}
/// @name Predicting
/// @{

/// One output of a prediction.
typedef struct quavin_output {
    size_t size;           ///< sizeof(quavin_output).
    const char* name;      ///< The name.
    void* data;            ///< The elements, in the engine's own memory; the host may change them.
    size_t bytes;          ///< The number of bytes at `data`.
    const int64_t* dims;   ///< The dimensions, outermost first.
    size_t rank;           ///< Elements of `dims`.
    int32_t element_type;  ///< The type of the elements.
    int32_t reserved;      ///< Zero.
} quavin_output;

/// A quavin_output to be filled.
#define QUAVIN_OUTPUT_INIT \
    { sizeof(quavin_output), NULL, NULL, 0, NULL, 0, 0, 0 }

/// Runs one inference.
///
/// Inputs are read in place: keep them unchanged until the call returns. Each must have exactly the
/// bytes that its port states; one whose shape is variable must have a whole number of elements,
/// and as many as the network reads. An input that is null, with size 0, is left out, which the
/// network allows only for values that it does not read. Only tensors can be given: a model with an
/// input of any other kind needs it to be left out.
/// @param model a loaded model.
/// @param inputs the elements of each input, in the package's order.
/// @param sizes the number of bytes of each input.
/// @param count elements of `inputs` and `sizes`: the model's number of inputs.
/// @param outputs receives the outputs' handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument, a wrong count or a
///         wrong size, naming the input; #QUAVIN_INVALID_TYPE for an input that is not a tensor, or
///         an input or output that is not float, int8, int16 or int32;
///         #QUAVIN_INVALID_TENSOR_DATA_TYPE for an input declared as bool or double;
///         #QUAVIN_EMPTY_INPUT_DESCRIPTOR for an input that was left out;
///         #QUAVIN_MODEL_NOT_LOADED for a model that was unloaded; #QUAVIN_MODEL_METADATA_ERROR if
///         the package names an output that the network does not have; #QUAVIN_ML_FRAMEWORK_ERROR
///         or #QUAVIN_FAILURE if the engine fails; #QUAVIN_FAILURE if memory runs out.
QUAVIN_API quavin_status quavin_predict(quavin_model* model, const void* const* inputs,
                                        const size_t* sizes, size_t count,
                                        quavin_outputs** outputs);
/// As above, and copies the outputs into the caller's memory. Nothing is written after a failure.
/// @param model as above.
/// @param inputs as above.
/// @param input_sizes as `sizes` above.
/// @param input_count as `count` above.
/// @param outputs receives the elements of each output, in the package's order.
/// @param output_sizes the number of bytes at each of `outputs`: exactly those of the output.
/// @param output_count elements of `outputs` and `output_sizes`: the model's number of outputs.
/// @return as above; #QUAVIN_INVALID_ARGUMENTS also for a wrong number or size of outputs.
QUAVIN_API quavin_status quavin_predict_into(quavin_model* model, const void* const* inputs,
                                             const size_t* input_sizes, size_t input_count,
                                             void* const* outputs, const size_t* output_sizes,
                                             size_t output_count);
/// The number of outputs.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_outputs_get_count(quavin_outputs* outputs, size_t* count);
/// One output, without a copy. Later predictions leave it as it is.
/// @param outputs the outputs of a prediction.
/// @param index the output, in the package's order.
/// @param output is filled; what it points to is valid until `outputs` is released, even when the
///        model is gone.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_OUT_OF_RANGE for an index that is too large.
QUAVIN_API quavin_status quavin_outputs_get(quavin_outputs* outputs, size_t index,
                                            quavin_output* output);
/// Releases outputs. Their memory serves the model's next prediction.
/// @param outputs null is ignored.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle.
QUAVIN_API quavin_status quavin_outputs_release(quavin_outputs* outputs);

/// @}
/// @name The engine
/// @{

/// The engine's runtime, and how it computes. Whatever a runtime does not report is "" or 0.
typedef struct quavin_engine_details {
    size_t size;                      ///< sizeof(quavin_engine_details).
    const char* runtime_version;      ///< The runtime's own name for its build.
    const char* device;               ///< The runtime's device, always "CPU".
    const char* device_name;          ///< The full name of the device: the processor.
    const char* precision;            ///< "f32", "bf16" or "f16".
    const char* const* capabilities;  ///< What the device supports, in the runtime's terms.
    size_t capability_count;          ///< Elements of `capabilities`.
    int32_t threads;                  ///< Threads that one prediction runs on.
    int32_t streams;                  ///< Predictions of one model that can run at the same time.
} quavin_engine_details;

/// A quavin_engine_details to be filled.
#define QUAVIN_ENGINE_DETAILS_INIT \
    { sizeof(quavin_engine_details), NULL, NULL, NULL, NULL, NULL, 0, 0, 0 }

/// The engine, with the options of quavin_init() while the library is on and the defaults
/// otherwise.
/// @param info receives the handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for a null pointer or engine options that
///         cannot be used; #QUAVIN_FAILURE if the engine cannot start or memory runs out.
QUAVIN_API quavin_status quavin_get_engine_info(quavin_engine_info** info);
/// What computes a model's predictions.
/// @param model a loaded model.
/// @param info receives the handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_MODEL_NOT_LOADED for a model that was unloaded; #QUAVIN_FAILURE for a model
///         class that a C++ host defined, or if memory runs out.
QUAVIN_API quavin_status quavin_model_get_engine_info(quavin_model* model,
                                                      quavin_engine_info** info);
/// What an engine info says.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_engine_info_get(quavin_engine_info* info,
                                                quavin_engine_details* details);
/// Releases an engine info.
/// @param info null is ignored.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle.
QUAVIN_API quavin_status quavin_engine_info_release(quavin_engine_info* info);

/// @}
/// @name The registry
/// @{

/// One registered model and its memory account. The library leaves accounts at 0: hosts do the
/// accounting.
typedef struct quavin_registry_entry {
    size_t size;            ///< sizeof(quavin_registry_entry).
    const char* name;       ///< The model's name.
    uint64_t memory;        ///< Bytes in use when the snapshot was made, as recorded by the host.
    uint64_t memory_limit;  ///< Bytes that cannot be reached.
} quavin_registry_entry;

/// A quavin_registry_entry to be filled.
#define QUAVIN_REGISTRY_ENTRY_INIT \
    { sizeof(quavin_registry_entry), NULL, 0, 0 }

/// Takes a snapshot of the registered models.
/// @param registry receives the snapshot's handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for a null pointer; #QUAVIN_NOT_INITIALIZED;
///         #QUAVIN_FAILURE if memory runs out.
QUAVIN_API quavin_status quavin_query_registry(quavin_registry** registry);
/// The number of models in a snapshot.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_registry_get_count(quavin_registry* registry, size_t* count);
/// One model's entry.
/// @param registry a snapshot.
/// @param index the model, in the order of registration.
/// @param entry is filled.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_OUT_OF_RANGE for an index that is too large.
QUAVIN_API quavin_status quavin_registry_get_entry(quavin_registry* registry, size_t index,
                                                   quavin_registry_entry* entry);
/// One of the models itself.
/// @param registry a snapshot.
/// @param index as above.
/// @param model receives another handle for the model; null after a failure.
/// @return as above; #QUAVIN_FAILURE if memory runs out.
QUAVIN_API quavin_status quavin_registry_get_model(quavin_registry* registry, size_t index,
                                                   quavin_model** model);
/// Releases a snapshot.
/// @param registry null is ignored.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle.
QUAVIN_API quavin_status quavin_registry_release(quavin_registry* registry);
/// Takes a model out of use, like quavin_unload(), and out of the registry.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle;
///         #QUAVIN_NOT_INITIALIZED; #QUAVIN_MODEL_NOT_LOADED if it is not registered, although it
///         is out of use now; or the model's own status, which leaves it registered.
QUAVIN_API quavin_status quavin_unregister(quavin_model* model);
/// Records the bytes that a registered model uses.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle;
///         #QUAVIN_MODEL_NOT_LOADED if the model is not registered; #QUAVIN_MEMORY_LIMIT_EXCEEDED,
///         recording nothing, for a value that is not below the limit.
QUAVIN_API quavin_status quavin_model_set_memory(quavin_model* model, uint64_t bytes);

/// @}
/// @name Describing networks without loading them
/// @{

/// Describes the network of the package in a directory, sorted by name; nothing is compiled. Does
/// not need quavin_init(), like the other functions of this group, which may run on several threads
/// at once.
/// @param path the directory, without a separator at its end.
/// @param keys the keys of a secured package; null: none.
/// @param network receives the handle; null after a failure.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_MODEL_METADATA_ERROR for a manifest that is missing or malformed or has no
///         target for this engine; #QUAVIN_INVALID_MODEL_PATH for fewer than two file components;
///         #QUAVIN_FILE_ERROR if a file cannot be read, or is not a network that can be loaded;
///         #QUAVIN_FAILURE if the engine fails or memory runs out. While keys are trusted, also
///         what quavin_load_directory() returns then.
QUAVIN_API quavin_status quavin_describe_directory(const char* path, const quavin_keys* keys,
                                                   quavin_network** network);
/// As above, for the package in a tar archive in memory.
/// @param data the archive; may be freed when the call returns.
/// @param size bytes at `data`.
/// @param keys as above; here an archive key is allowed.
/// @param network as above.
/// @return as above, and the codes of quavin_extract_archive() for an archive that cannot be read.
QUAVIN_API quavin_status quavin_describe_archive(const void* data, size_t size,
                                                 const quavin_keys* keys, quavin_network** network);
/// As above, for the package whose files are in memory.
/// @param buffers the files; bytes with a `release` function are taken over and released before the
///        call returns.
/// @param count elements of `buffers`.
/// @param keys as above.
/// @param network as above.
/// @return as above.
QUAVIN_API quavin_status quavin_describe_buffers(const quavin_buffer* buffers, size_t count,
                                                 const quavin_keys* keys, quavin_network** network);
/// As above, for a network's own plain files.
/// @param topology the network's description.
/// @param weights its constants; null for a network without any.
/// @param network as above.
/// @return as above.
QUAVIN_API quavin_status quavin_describe_files(const char* topology, const char* weights,
                                               quavin_network** network);
/// The number of inputs.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_network_get_input_count(quavin_network* network, size_t* count);
/// The number of outputs.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument.
QUAVIN_API quavin_status quavin_network_get_output_count(quavin_network* network, size_t* count);
/// One input, in the order of the names. Its description is empty.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable argument;
///         #QUAVIN_OUT_OF_RANGE for an index that is too large.
QUAVIN_API quavin_status quavin_network_get_input(quavin_network* network, size_t index,
                                                  quavin_port* port);
/// One output, in the order of the names. Its description is empty.
/// @return as for an input.
QUAVIN_API quavin_status quavin_network_get_output(quavin_network* network, size_t index,
                                                   quavin_port* port);
/// Releases the description of a network.
/// @param network null is ignored.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for an unusable handle.
QUAVIN_API quavin_status quavin_network_release(quavin_network* network);

/// @}
/// @name Archives and secured files
/// @{

/// Extracts an untrusted tar archive, plain or secured as a whole, into a directory. Nothing is
/// written outside it. Does not need quavin_init(); may run on several threads at once.
/// @param data the archive.
/// @param size bytes at `data`; for a secured archive a multiple of 16 below 4 GiB.
/// @param key sixteen bytes; null for a plain archive.
/// @param destination an existing directory.
/// @param first receives the full path of the archive's first directory, where
///        `quavin pack` puts the package; "" if there is none or `room` is too small for it. May be
///        null.
/// @param room bytes at `first`.
/// @param needed receives the bytes that `first` needs, with the zero byte; may be null.
/// @return #QUAVIN_SUCCESS; #QUAVIN_TAR_CHECKSUM_MISMATCH, also for a wrong key;
///         #QUAVIN_TAR_UNSUPPORTED_ENTRY for links, devices and the like;
///         #QUAVIN_INVALID_ARGUMENTS for a null argument, a truncated or malformed archive, or a
///         name that is refused; #QUAVIN_FILE_ERROR if the destination is not a directory, a file
///         or link is in the way, writing fails (entries already written stay) or the cryptography
///         fails; #QUAVIN_FAILURE if the destination is not UTF-8 or memory runs out.
QUAVIN_API quavin_status quavin_extract_archive(const void* data, size_t size, const uint8_t* key,
                                                const char* destination, char* first, size_t room,
                                                size_t* needed);
/// Decrypts a secured file: AES-128-CBC, with the initialisation vector in front. Padding is not
/// removed, and a wrong key is not detected.
/// @param input the secured file.
/// @param size bytes at `input`: a multiple of 16, at least 16 and below 4 GiB.
/// @param key sixteen bytes.
/// @param output receives the plain bytes; may be `input` itself, or overlap it.
/// @param room bytes at `output`: at least `size` - 16.
/// @return #QUAVIN_SUCCESS; #QUAVIN_INVALID_ARGUMENTS for a null argument or an unusable size;
///         #QUAVIN_FAILURE if the cryptography fails, with what was written overwritten.
QUAVIN_API quavin_status quavin_decrypt(const void* input, size_t size, const uint8_t* key,
                                        void* output, size_t room);

/// @}

// NOLINTEND(modernize-use-using,readability-identifier-naming)

#ifdef __cplusplus
}
#endif
