#include "tools/quavin/check/package_check.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "package/signature/verify_signature.h"
#include "package/source/network_components.h"
#include "tools/quavin/check/manifest_lint.h"
#include "tools/quavin/check/port_check.h"
#include "tools/quavin/check/trial.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/package/package.h"
#include "tools/quavin/package/secured_bytes.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::EngineOptions;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinStatus;
using VelmoraQuavin::TensorDescriptor;
using VelmoraQuavin::internal::kSignatureName;

class Checker {
public:
    Checker(std::string path, const OpenedPackage& package, const Key* key,
            const EngineOptions& options)
        : path_(std::move(path)), package_(package), key_(key), options_(options) {}

    Findings run() {
        const std::string problem = package_.problem();
        if (!problem.empty()) {
            findings_.error("package", problem,
                            "Pass the directory that contains manifest.json, or an archive of it.");
            return findings_;
        }
        metadata_ = std::make_shared<VelmoraQuavin::ModelMetadata>();
        const QuavinStatus read = package_.readManifest(*metadata_);
        if (!read.ok()) {
            findings_.error(
                kManifestName, read.getDescription().str(),
                "Write one as docs/package-format.md describes, or let \"quavin pack\" do it.");
            return findings_;
        }
        lintManifest(package_.manifestText().text(), findings_);  // also reports misspelt targets
        if (metadata_->getTargets().count(VelmoraQuavin::QuavinModelType::Openvino) == 0) {
            findings_.error(kManifestName, "There is no target \"Openvino\"",
                            "Add it: this library uses no other.");
            return findings_;
        }
        ModelTarget& target = engineTarget(*metadata_);
        checkComponents(target);
        const bool filesAreThere = !findings_.hasErrors();
        checkDeclarations(target);
        const bool readable = isReadable(target);
        if (filesAreThere && readable) {
            checkNetwork(target);
        }
        if (!findings_.hasErrors()) {
            predictOnce();
        }
        return findings_;
    }

private:
    void checkComponents(const ModelTarget& target) {
        std::vector<const ModelComponent*> files;
        for (const ModelComponent& component : target.components) {
            if (VelmoraQuavin::internal::isNetworkFile(component)) {
                files.push_back(&component);
            } else {
                findings_.warning("component \"" + component.path.str() + "\"",
                                  "Its kind \"" + component.name.str() + "\" is ignored",
                                  R"(Name it "file" or "secured_file" if the network needs it.)");
            }
        }
        if (files.size() < 2) {
            findings_.error(
                "components",
                "There are " + std::to_string(files.size()) + " files, but two are needed",
                "List the network and its weights, in this order; the weights may be an empty "
                "file.");
        }
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (i >= 2) {
                findings_.warning(
                    "component \"" + files[i]->path.str() + "\"", "It is ignored",
                    "Remove it: the first two files are the network and its weights.");
                continue;
            }
            checkFile(*files[i]);
        }
    }

    void checkFile(const ModelComponent& component) {
        const std::string where = "component \"" + component.path.str() + "\"";
        const fs::path path = systemPath(shellPath(VelmoraQuavin::Filepath(component.path)));
        if (std::find(path.begin(), path.end(), "..") != path.end()) {
            findings_.warning(where, "Its path leads out of the package",
                              "Keep its file in the package.");
        }
        const std::string missing = package_.fileProblem(component);
        if (!missing.empty()) {
            findings_.error(where, missing, "Add the file, or correct the path in the manifest.");
            return;
        }
        if (component.name == ComponentKind::SecuredFile) {
            const std::string problem = securedLengthProblem(package_.fileSize(component));
            if (!problem.empty()) {
                findings_.error(where, "It " + problem, "Encrypt the file again: quavin encrypt.");
            }
        }
    }

    void checkDeclarations(const ModelTarget& target) {
        for (const auto& [kind, features] : {std::pair{PortKind::kInput, &target.inputs},
                                             std::pair{PortKind::kOutput, &target.outputs}}) {
            if (features->empty()) {
                findings_.error(kind == PortKind::kInput ? "inputs" : "outputs",
                                "None are declared", "Declare at least one.");
            }
            std::set<std::string> names;
            for (const ModelFeatureDescriptor& feature : *features) {
                if (!names.insert(feature.name().str()).second) {
                    findings_.warning(portName(kind, feature), "It is declared twice",
                                      "Remove one of them.");
                }
            }
        }
        if (!target.inputs.empty()) {
            const TensorDescriptor& first = target.inputs.front().tensorDescriptor();
            if (first.variableShape() || first.shape().size() <= 0) {
                findings_.error(portName(PortKind::kInput, target.inputs.front()),
                                "The first input has the shape " + shapeText(first),
                                "Declare the network's shape: loading refuses any other.");
            }
        }
    }

    bool isReadable(const ModelTarget& target) {
        if (key_ == nullptr && isSecured(target)) {
            findings_.error("components",
                            "They are secured and cannot be checked without their key",
                            kMissingKeyAdvice);
            return false;
        }
        return true;
    }

    void checkNetwork(const ModelTarget& target) {
        const Trial trial = tryToDescribe(path_, key_);
        if (!trial.crash.empty()) {
            reportCrash("network", "Reading it fails: " + trial.crash);
            return;
        }
        if (reportSignature(trial)) {
            return;
        }
        if (!trial.ok()) {
            const bool wrongKey = package_.decryptsToNoNetwork(target);
            findings_.error("network", trial.status.getDescription().str(),
                            wrongKey ? kWrongKeyAdvice
                                     : "Export the network again with its weights, as OpenVINO IR "
                                       "of version " QUAVIN_IR_VERSIONS " with fixed dimensions.");
            return;
        }
        comparePorts(PortKind::kInput, target.inputs, trial.inputs, findings_);
        comparePorts(PortKind::kOutput, target.outputs, trial.outputs, findings_);
    }

    void predictOnce() {
        const Trial trial = tryToPredict(path_, key_, options_);
        if (!trial.crash.empty()) {
            reportCrash("prediction", "Loading and predicting once fails: " + trial.crash);
        } else if (!reportSignature(trial) && !trial.ok()) {
            findings_.error(
                "prediction",
                "Loading and predicting once fails with status " +
                    std::to_string(trial.status.getCode()) + ": " +
                    trial.status.getDescription().str(),
                "Try the network on its own: the engine may lack one of its operations.");
        }
    }

    // The signature has been checked once by now.
    bool reportSignature(const Trial& trial) {
        const bool isRefused = trial.status.getCode() == VelmoraQuavin::SIGNATURE_ERROR;
        if (isRefused) {
            findings_.error(kSignatureName, trial.status.getDescription().str(),
                            "The package was changed while it was checked: let nobody write there, "
                            "and check it again.");
        }
        return isRefused;
    }

    void reportCrash(const char* where, const std::string& what) {
        findings_.error(where, what,
                        "Do not load it: it would crash its host too. It is faulty or malicious.");
    }

    std::string path_;
    const OpenedPackage& package_;
    const Key* key_;
    const EngineOptions options_;
    Metadata metadata_;
    Findings findings_;
};

}  // namespace

Findings checkPackage(const std::string& path, const OpenedPackage& package, const Key* key,
                      const EngineOptions& options) {
    return Checker(path, package, key, options).run();
}

}  // namespace quavin_tool
