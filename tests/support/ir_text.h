#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace VelmoraQuavin::testing {

/// Writes the XML of an IR, layer by layer, exactly as told: the graph may be malformed.
///
/// The ports of a layer are numbered from 0, inputs first. Dimensions are written as in the file's
/// shapes, "1,4" or "?,4"; an empty text means one element.
class IrText {
public:
    struct Port {
        std::string dims;
        std::string type;         ///< "f32", "i32", ...; if empty, the port states none
        std::string tensorNames;  ///< as in the file, separated by commas
    };
    struct Layer {
        std::size_t id;
        std::string name;
        std::string kind;
        std::string data;  ///< the attributes, as in the file
        std::vector<Port> inputs;
        std::vector<Port> outputs;
    };
    /// An output of a layer whose outputs all have the same type.
    struct Output {
        std::string dims;
        std::string tensorNames;
    };

    explicit IrText(int version, std::string name = "test");

    IrText& parameter(std::size_t id, const std::string& name, const std::string& type,
                      const std::string& dims, const std::string& tensorNames = "");
    /// Elements from the weights, starting at the offset.
    IrText& constant(std::size_t id, const std::string& name, const std::string& type,
                     const std::string& dims, std::size_t offset, std::size_t size);
    IrText& layer(const Layer& layer);
    /// A layer whose inputs state no types.
    IrText& layer(std::size_t id, const std::string& name, const std::string& kind,
                  const std::string& data, const std::string& type,
                  const std::vector<std::string>& inputDims, const std::vector<Output>& outputs);
    IrText& result(std::size_t id, const std::string& dims);
    IrText& edge(std::size_t fromLayer, std::size_t fromPort, std::size_t toLayer,
                 std::size_t toPort);

    std::string str() const;

private:
    int version_;
    std::string name_;
    std::string layers_;
    std::string edges_;
};

}  // namespace VelmoraQuavin::testing
