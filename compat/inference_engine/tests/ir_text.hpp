// Small networks as text.
#pragma once

#include <string>
#include <vector>

namespace InferenceEngine {

/**
 * Writes the XML of a network, layer by layer. The ports of a layer are numbered from 0, inputs
 * first. Dimensions are written as in the file, "1,4"; an empty text means one element.
 */
class IrText {
public:
    struct Output {
        std::string dims;
        std::string tensorNames;
    };

    explicit IrText(int version) : version_(version) {}

    IrText& parameter(int id, const std::string& name, const std::string& type,
                      const std::string& dims, const std::string& tensorNames = "");
    /** Elements from the weights, starting at the offset. */
    IrText& constant(int id, const std::string& type, const std::string& dims, int offset,
                     int size);
    /** @param data the attributes of the layer, as in the file */
    IrText& layer(int id, const std::string& name, const std::string& kind, const std::string& data,
                  const std::string& type, const std::vector<std::string>& inputDims,
                  const std::vector<Output>& outputs);
    IrText& result(int id, const std::string& dims);
    IrText& edge(int fromLayer, int fromPort, int toLayer, int toPort);

    std::string str() const;

private:
    int version_;
    std::string layers_;
    std::string edges_;
};

/** One input "x" and one output "y" of four elements, each twice the input's. */
std::string doublingNetwork(int version = 11);

/** An input "x" of four elements of this type; the output "y" has the same elements twice over. */
std::string repeatingNetwork(const std::string& type, int version = 11);

/** The output "y" is the input "x" plus a constant; four floats each, the weights too. */
std::string addingNetwork();

}  // namespace InferenceEngine
