#include "package_check.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include "files.h"
#include "manifest_lint.h"
#include "package.h"
#include "port_check.h"
#include "printing.h"
#include "quavin/network.h"
#include "secured_bytes.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinStatus;
using VelmoraQuavin::TensorDescriptor;

class Checker {
public:
    Checker(std::string package, const Key* key) : package_(std::move(package)), key_(key) {}

    Findings run() {
        const std::string problem = packageProblem(package_);
        if (!problem.empty()) {
            findings_.error("package", problem, "Name the directory that holds manifest.json.");
            return findings_;
        }
        metadata_ = std::make_shared<VelmoraQuavin::ModelMetadata>();
        const QuavinStatus read = metadata_->load(
            VelmoraQuavin::Filepath(package_).append(VelmoraQuavin::Filepath("manifest.json")));
        if (!read.ok()) {
            findings_.error(
                "manifest.json", read.getDescription().str(),
                "Write one as docs/package-format.md tells, or let \"quavin pack\" do it.");
            return findings_;
        }
        if (metadata_->getTargets().count(VelmoraQuavin::QuavinModelType::Openvino) == 0) {
            findings_.error("manifest.json", "There is no target \"Openvino\"",
                            "Add it: this library uses no other.");
            return findings_;
        }
        ModelTarget& target = engineTarget(*metadata_);
        lintManifest(join(package_, "manifest.json"), findings_);
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
            if (component.name == ComponentKind::File ||
                component.name == ComponentKind::SecuredFile) {
                files.push_back(&component);
            } else {
                findings_.warning("component \"" + component.path.str() + "\"",
                                  "Its kind \"" + component.name.str() + "\" is not read",
                                  R"(Name it "file" or "secured_file" if the network needs it.)");
            }
        }
        if (files.size() < 2) {
            findings_.error(
                "components",
                "There are " + std::to_string(files.size()) + " files, and two are needed",
                "Name the network and its weights, in this order; the weights may be an empty "
                "file.");
        }
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (i >= 2) {
                findings_.warning(
                    "component \"" + files[i]->path.str() + "\"", "It is not read",
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
        std::error_code ignored;
        const fs::path file = systemPath(componentPath(package_, component.path));
        if (!fs::is_regular_file(file, ignored)) {
            findings_.error(
                where, fs::exists(file, ignored) ? "It is no plain file" : "The file is missing",
                "Put it there, or correct the manifest's path.");
            return;
        }
        if (component.name == ComponentKind::SecuredFile) {
            const std::string problem = securedLengthProblem(fs::file_size(file, ignored));
            if (!problem.empty()) {
                findings_.error(where, "It " + problem, "Encrypt the file again: quavin encrypt.");
            }
        }
    }

    void checkDeclarations(const ModelTarget& target) {
        for (const auto& [kind, features] : {std::pair{PortKind::kInput, &target.inputs},
                                             std::pair{PortKind::kOutput, &target.outputs}}) {
            if (features->empty()) {
                findings_.error(kind == PortKind::kInput ? "inputs" : "outputs", "There are none",
                                "Declare one at least.");
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
                                "Give it the network's own shape: loading refuses any other.");
            }
        }
    }

    bool isReadable(ModelTarget& target) {
        if (key_ != nullptr) {
            setKey(target, *key_);
        } else if (isSecured(target)) {
            findings_.error("components",
                            "They are secured, and were not looked into without their key",
                            "Give the key with --key-file or --key-env.");
            return false;
        }
        return true;
    }

    void checkNetwork(const ModelTarget& target) {
        Descriptors inputs;
        Descriptors outputs;
        const QuavinStatus status = VelmoraQuavin::describeNetwork(*metadata_, inputs, outputs);
        if (!status.ok()) {
            const bool secured = isSecured(target);
            findings_.error(
                "network", status.getDescription().str(),
                secured ? "The key is wrong, or a file is damaged: what was decrypted is no "
                          "network."
                        : "Export the network again, as OpenVINO IR of version 10 or 11 with "
                          "fixed dimensions, with its weights.");
            return;
        }
        comparePorts(PortKind::kInput, target.inputs, inputs, findings_);
        comparePorts(PortKind::kOutput, target.outputs, outputs, findings_);
    }

    void predictOnce() {
        try {
            const std::shared_ptr<VelmoraQuavin::QuavinModel> model = loadModel(metadata_);
            Features inputs = zeroInputs(*model);
            const bool incomplete =
                std::any_of(inputs.begin(), inputs.end(), [](const auto& input) {
                    return input->featureDescriptor().tensorDescriptor().variableShape();
                });
            if (incomplete) {
                return;  // said above: the host has to give such an input its shape
            }
            predict(*model, inputs);
        } catch (...) {
            const QuavinStatus status = VelmoraQuavin::getStatusFromCurrentException();
            findings_.error(
                "prediction",
                "Loading and predicting once fails with status " +
                    std::to_string(status.getCode()) + ": " + status.getDescription().str(),
                "Try the network by itself: the engine may lack one of its operations.");
        }
    }

    std::string package_;
    const Key* key_;
    Metadata metadata_;
    Findings findings_;
};

}  // namespace

Findings checkPackage(const std::string& package, const Key* key) {
    return Checker(package, key).run();
}

}  // namespace quavin_tool
