#include "tools/quavin/check/port_check.h"

#include <algorithm>

#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/casting.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::QuavinFeatureType;
using VelmoraQuavin::TensorDescriptor;

const ModelFeatureDescriptor* find(const Descriptors& features, const VelmoraQuavin::String& name) {
    const auto found = std::find_if(
        features.begin(), features.end(),
        [&name](const ModelFeatureDescriptor& feature) { return feature.name() == name; });
    return found == features.end() ? nullptr : &*found;
}

std::string describe(const ModelFeatureDescriptor& port) {
    return "a tensor of " + typeName(port.tensorDescriptor().tensorType()) + ", shape " +
           shapeText(port.tensorDescriptor());
}

// Predictions need inputs to match the network. Outputs follow the network whatever is declared: a
// wrong declaration only misleads.
void report(PortKind kind, const std::string& where, const std::string& what,
            const std::string& advice, Findings& findings) {
    if (kind == PortKind::kInput) {
        findings.error(where, what, advice);
    } else {
        findings.warning(where, what, advice);
    }
}

void compareShapes(PortKind kind, const std::string& where, const TensorDescriptor& says,
                   const TensorDescriptor& is, Findings& findings) {
    if (says.variableShape()) {
        findings.warning(
            where, "Its shape is variable, but the network's is " + shapeText(is),
            "Declare the network's shape, or hosts need to allocate the tensor themselves.");
        return;
    }
    if (says.shape().compare(is.shape())) {
        return;
    }
    const std::string what =
        "Its shape is " + shapeText(says) + ", but the network's is " + shapeText(is);
    const std::string advice = "Declare \"shape\": " + shapeText(is) + ".";
    // Loading and predicting only need enough bytes.
    if (says.shape().size() >= is.shape().size()) {
        findings.warning(where, what, advice);
    } else {
        report(kind, where, what, advice, findings);
    }
}

void compareTensors(PortKind kind, const ModelFeatureDescriptor& declared,
                    const ModelFeatureDescriptor& real, Findings& findings) {
    const std::string where = portName(kind, declared);
    const TensorDescriptor& says = declared.tensorDescriptor();
    const TensorDescriptor& is = real.tensorDescriptor();
    const std::string type = typeName(is.tensorType());
    if (declared.type() != QuavinFeatureType::TENSOR) {
        report(kind, where, "Its featureType is not \"tensor\"", "Declare " + describe(real) + ".",
               findings);
        return;
    }
    if (kind == PortKind::kInput && !isInputType(is.tensorType())) {
        findings.error(where, "The network takes " + type + ", which predictions cannot supply",
                       "Convert the network's input to float, int8, int16 or int32.");
        return;
    }
    if (says.tensorType() != is.tensorType()) {
        report(kind, where,
               "Its dataType is " + typeName(says.tensorType()) + ", but the network's is " + type,
               R"(Declare "dataType": ")" + type + "\".", findings);
    }
    compareShapes(kind, where, says, is, findings);
}

// Reports a port of the network that the manifest does not declare.
void reportMissing(PortKind kind, const ModelFeatureDescriptor& port, Findings& findings) {
    if (kind == PortKind::kInput) {
        findings.error(portName(kind, port),
                       "The network needs it, but the manifest does not declare it",
                       "Declare it: " + describe(port) + ".");
    } else {
        findings.warning(portName(kind, port),
                         "The network produces it, but the manifest does not declare it",
                         "Declare it if hosts need it: " + describe(port) + ".");
    }
}

// Reports a feature of the manifest that the network lacks.
void reportUnknown(PortKind kind, const ModelFeatureDescriptor& feature, const Descriptors& real,
                   Findings& findings) {
    if (kind == PortKind::kInput) {
        findings.warning(
            portName(kind, feature), "The network has no input of this name",
            "Remove it, unless it is for the host; the network has " + quotedNames(real) + ".");
    } else {
        findings.error(portName(kind, feature), "The network has no output of this name",
                       "Remove or rename it; the network has " + quotedNames(real) + ".");
    }
}

}  // namespace

std::string portName(PortKind kind, const ModelFeatureDescriptor& port) {
    return (kind == PortKind::kInput ? "input \"" : "output \"") + port.name().str() + "\"";
}

void comparePorts(PortKind kind, const Descriptors& declared, const Descriptors& real,
                  Findings& findings) {
    for (const ModelFeatureDescriptor& port : real) {
        const ModelFeatureDescriptor* const feature = find(declared, port.name());
        if (feature != nullptr) {
            compareTensors(kind, *feature, port, findings);
        } else {
            reportMissing(kind, port, findings);
        }
    }
    for (const ModelFeatureDescriptor& feature : declared) {
        if (find(real, feature.name()) == nullptr) {
            reportUnknown(kind, feature, real, findings);
        }
    }
}

}  // namespace quavin_tool
