#include "package_check.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "files.h"
#include "package.h"
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
using VelmoraQuavin::QuavinFeatureType;
using VelmoraQuavin::QuavinStatus;
using VelmoraQuavin::TensorDescriptor;

class Checker {
public:
    Checker(std::string package, const Key* key) : package_(std::move(package)), key_(key) {}

    Findings run() {
        const std::string problem = packageProblem(package_);
        if (!problem.empty()) {
            error("package", problem, "Name the directory that holds manifest.json.");
            return findings_;
        }
        metadata_ = std::make_shared<VelmoraQuavin::ModelMetadata>();
        const QuavinStatus read = metadata_->load(
            VelmoraQuavin::Filepath(package_).append(VelmoraQuavin::Filepath("manifest.json")));
        if (!read.ok()) {
            error("manifest.json", read.getDescription().str(),
                  "Write one as docs/package-format.md tells, or let \"quavin pack\" do it.");
            return findings_;
        }
        if (metadata_->getTargets().count(VelmoraQuavin::QuavinModelType::Openvino) == 0) {
            error("manifest.json", "There is no target \"Openvino\"",
                  "Add it: this library uses no other.");
            return findings_;
        }
        ModelTarget& target = engineTarget(*metadata_);
        checkComponents(target);
        const bool filesAreThere = !hasErrors(findings_);
        checkDeclarations(target);
        if (filesAreThere && isReadable(target)) {
            checkNetwork(target);
        }
        if (!hasErrors(findings_)) {
            predictOnce();
        }
        return findings_;
    }

private:
    void error(std::string where, std::string what, std::string advice) {
        findings_.push_back({true, std::move(where), std::move(what), std::move(advice)});
    }
    void warning(std::string where, std::string what, std::string advice) {
        findings_.push_back({false, std::move(where), std::move(what), std::move(advice)});
    }

    void checkComponents(const ModelTarget& target) {
        std::vector<const ModelComponent*> files;
        for (const ModelComponent& component : target.components) {
            if (component.name == ComponentKind::File ||
                component.name == ComponentKind::SecuredFile) {
                files.push_back(&component);
            } else {
                warning("component \"" + component.path.str() + "\"",
                        "Its kind \"" + component.name.str() + "\" is not read",
                        R"(Name it "file" or "secured_file" if the network needs it.)");
            }
        }
        if (files.size() < 2) {
            error("components",
                  "There are " + std::to_string(files.size()) + " files, and two are needed",
                  "Name the network and its weights, in this order; the weights may be an empty "
                  "file.");
        }
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (i >= 2) {
                warning("component \"" + files[i]->path.str() + "\"", "It is not read",
                        "Remove it: the first two files are the network and its weights.");
                continue;
            }
            checkFile(*files[i]);
        }
    }

    void checkFile(const ModelComponent& component) {
        const std::string where = "component \"" + component.path.str() + "\"";
        const fs::path path = fs::u8path(component.path.str());
        if (path.is_absolute() || std::find(path.begin(), path.end(), "..") != path.end()) {
            warning(where, "Its path leads out of the package", "Keep its file in the package.");
        }
        std::error_code ignored;
        const fs::path file = fs::u8path(componentPath(package_, component.path));
        if (!fs::is_regular_file(file, ignored)) {
            error(where, fs::exists(file, ignored) ? "It is no plain file" : "The file is missing",
                  "Put it there, or correct the manifest's path.");
            return;
        }
        if (component.name == ComponentKind::SecuredFile) {
            const std::string problem = securedLengthProblem(fs::file_size(file, ignored));
            if (!problem.empty()) {
                error(where, "It " + problem, "Encrypt the file again: quavin encrypt.");
            }
        }
    }

    void checkDeclarations(const ModelTarget& target) {
        for (const auto& [kind, features] :
             {std::pair{"input", &target.inputs}, std::pair{"output", &target.outputs}}) {
            if (features->empty()) {
                error(std::string(kind) + "s", "There are none", "Declare one at least.");
            }
            std::set<std::string> names;
            for (const ModelFeatureDescriptor& feature : *features) {
                if (!names.insert(feature.name().str()).second) {
                    warning(nameOf(kind, feature), "It is declared twice", "Remove one of them.");
                }
            }
        }
        if (!target.inputs.empty()) {
            const TensorDescriptor& first = target.inputs.front().tensorDescriptor();
            if (first.variableShape() || first.shape().size() <= 0) {
                error(nameOf("input", target.inputs.front()),
                      "The first input has the shape " + shapeText(first),
                      "Give it the network's own shape: loading refuses any other.");
            }
        }
    }

    bool isReadable(ModelTarget& target) {
        if (key_ != nullptr) {
            setKey(target, *key_);
        } else if (isSecured(target)) {
            error("components", "They are secured, and were not looked into without their key",
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
            error("network", status.getDescription().str(),
                  secured ? "The key is wrong, or a file is damaged: what was decrypted is no "
                            "network."
                          : "Export the network again, as OpenVINO IR of version 10 or 11 with "
                            "fixed dimensions, with its weights.");
            return;
        }
        compare("input", target.inputs, inputs);
        compare("output", target.outputs, outputs);
    }

    static std::string nameOf(const std::string& kind, const ModelFeatureDescriptor& feature) {
        return kind + " \"" + feature.name().str() + "\"";
    }

    static const ModelFeatureDescriptor* find(const Descriptors& features,
                                              const VelmoraQuavin::String& name) {
        const auto found = std::find_if(
            features.begin(), features.end(),
            [&name](const ModelFeatureDescriptor& feature) { return feature.name() == name; });
        return found == features.end() ? nullptr : &*found;
    }

    void compare(const std::string& kind, const Descriptors& declared, const Descriptors& real) {
        const bool isInput = kind == "input";
        for (const ModelFeatureDescriptor& port : real) {
            const ModelFeatureDescriptor* const feature = find(declared, port.name());
            if (feature != nullptr) {
                compareTensor(kind, *feature, port);
            } else if (isInput) {
                error(nameOf(kind, port), "The network needs it, and the manifest has none",
                      "Declare it: " + describe(port) + ".");
            } else {
                warning(nameOf(kind, port), "The network gives it, and the manifest has none",
                        "Declare it if hosts want it: " + describe(port) + ".");
            }
        }
        for (const ModelFeatureDescriptor& feature : declared) {
            if (find(real, feature.name()) != nullptr) {
                continue;
            }
            if (isInput) {
                warning(
                    nameOf(kind, feature), "The network has none of this name",
                    "Remove it, unless it is for the host; the network has " + list(real) + ".");
            } else {
                error(nameOf(kind, feature), "The network has none of this name",
                      "Remove or rename it; the network has " + list(real) + ".");
            }
        }
    }

    void compareTensor(const std::string& kind, const ModelFeatureDescriptor& declared,
                       const ModelFeatureDescriptor& real) {
        const std::string where = nameOf(kind, declared);
        const TensorDescriptor& says = declared.tensorDescriptor();
        const TensorDescriptor& is = real.tensorDescriptor();
        if (declared.type() != QuavinFeatureType::TENSOR) {
            error(where, "Its featureType is no \"tensor\"", "Declare " + describe(real) + ".");
            return;
        }
        if (kind == "input" && !isInputType(is.tensorType())) {
            error(where,
                  "The network takes " + typeName(is.tensorType()) +
                      ", which predictions cannot give",
                  "Convert the network's input to float, int8, int16 or int32.");
            return;
        }
        if (says.tensorType() != is.tensorType()) {
            error(where,
                  "Its dataType is " + typeName(says.tensorType()) + " and the network's is " +
                      typeName(is.tensorType()),
                  R"(Declare "dataType": ")" + typeName(is.tensorType()) + "\".");
        }
        if (says.variableShape()) {
            warning(where, "Its shape is variable and the network's is " + shapeText(is),
                    "Declare the network's shape; hosts need to allocate the tensor themselves.");
        } else if (!says.shape().compare(is.shape())) {
            // Loading and predicting only need enough bytes.
            const bool fits = says.shape().size() >= is.shape().size();
            const std::string what =
                "Its shape is " + shapeText(says) + " and the network's is " + shapeText(is);
            const std::string advice = "Declare \"shape\": " + shapeText(is) + ".";
            fits ? warning(where, what, advice) : error(where, what, advice);
        }
    }

    static std::string describe(const ModelFeatureDescriptor& port) {
        return "a tensor of " + typeName(port.tensorDescriptor().tensorType()) + ", shape " +
               shapeText(port.tensorDescriptor());
    }

    static std::string list(const Descriptors& ports) {
        std::string text;
        for (const ModelFeatureDescriptor& port : ports) {
            text += (text.empty() ? "\"" : ", \"") + port.name().str() + "\"";
        }
        return text;
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
            error("prediction",
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

bool hasErrors(const Findings& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.isError; });
}

Findings checkPackage(const std::string& package, const Key* key) {
    return Checker(package, key).run();
}

}  // namespace quavin_tool
