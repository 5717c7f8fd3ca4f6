#include "tools/quavin/check/network_text.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <unordered_map>
#include <utility>

#include "text/xml_tags.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::internal::splitList;
using VelmoraQuavin::internal::visitElements;
using VelmoraQuavin::internal::withoutReferences;
using VelmoraQuavin::internal::XmlPath;
using VelmoraQuavin::internal::XmlTag;

struct OutputPort {
    std::string id;
    std::vector<std::string> names;
};

struct Layer {
    std::string id;
    std::string name;
    std::string type;
    std::vector<std::string> shape;
    std::vector<OutputPort> ports;
    std::vector<std::string> resultNames;
};

class TextReader {
public:
    TextPorts read(std::string_view text) {
        visitElements(text, [this](const XmlTag& tag, const XmlPath& path) { take(tag, path); });
        return ports();
    }

private:
    // Takes the network's own layers and edges; those of bodies inside layers are nested deeper.
    void take(const XmlTag& tag, const XmlPath& path) {
        const auto isBelow = [&path](std::initializer_list<std::string_view> names) {
            return std::equal(path.begin(), path.end(), names.begin(), names.end());
        };
        if (path.empty() && tag.name == "net") {
            const std::string_view version = tag.attribute("version");
            namedByLayers_ = version.size() < 2 || version == "10";
        } else if (isBelow({"net", "layers"}) && tag.name == "layer") {
            Layer& layer = layers_.emplace_back();
            layer.id = tag.attribute("id");
            layer.name = withoutReferences(tag.attribute("name"));
            layer.type = tag.attribute("type");
            if (layer.type == "Result") {
                layer.resultNames = splitList(tag.attribute("output_names"));
            }
        } else if (isBelow({"net", "layers", "layer"}) && tag.name == "data") {
            if (layers_.back().type == "Parameter") {
                layers_.back().shape = splitList(tag.attribute("shape"));
            }
        } else if (isBelow({"net", "layers", "layer", "output"}) && tag.name == "port") {
            layers_.back().ports.push_back(
                {std::string(tag.attribute("id")), splitList(tag.attribute("names"))});
        } else if (isBelow({"net", "edges"}) && tag.name == "edge") {
            sources_.emplace(tag.attribute("to-layer"),
                             std::pair(tag.attribute("from-layer"), tag.attribute("from-port")));
        }
    }

    TextPorts ports() const {
        std::unordered_map<std::string, const Layer*> layers;
        for (const Layer& layer : layers_) {
            layers.emplace(layer.id, &layer);
        }
        TextPorts ports;
        for (const Layer& layer : layers_) {
            if (layer.type == "Parameter" && !layer.ports.empty()) {
                ports.inputs.push_back({names(layer, layer.ports.front().id), layer.shape});
            }
            const auto source = sources_.find(layer.id);
            if (layer.type != "Result" || source == sources_.end()) {
                continue;
            }
            TextPort& output = ports.outputs.emplace_back();
            if (const auto from = layers.find(source->second.first); from != layers.end()) {
                output.names = names(*from->second, source->second.second);
            }
            output.names.insert(output.names.end(), layer.resultNames.begin(),
                                layer.resultNames.end());
        }
        return ports;
    }

    // Engines name a port by its layer in version 10, with its number if the layer has several, and
    // by its tensor in version 11.
    std::vector<std::string> names(const Layer& layer, const std::string& portId) const {
        const auto port = std::find_if(layer.ports.begin(), layer.ports.end(),
                                       [&](const OutputPort& each) { return each.id == portId; });
        if (port == layer.ports.end()) {
            return {};
        }
        std::vector<std::string> names = port->names;
        const std::string number = std::to_string(port - layer.ports.begin());
        names.insert(namedByLayers_ ? names.begin() : names.end(),
                     layer.ports.size() == 1 ? layer.name : layer.name + "." + number);
        return names;
    }

    bool namedByLayers_ = true;
    std::vector<Layer> layers_;
    std::unordered_map<std::string, std::pair<std::string, std::string>> sources_;
};

}  // namespace

bool TextPort::isFixed() const {
    return std::all_of(shape.begin(), shape.end(), [](const std::string& extent) {
        return !extent.empty() && extent.find_first_not_of("0123456789") == std::string::npos;
    });
}

TextPorts readTextPorts(std::string_view text) {
    return TextReader().read(text);
}

void sortAsInText(const std::vector<TextPort>& ports, Descriptors& descriptors) {
    std::map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < descriptors.size(); ++i) {
        places.emplace(descriptors[i].name().str(), i);
    }
    Descriptors sorted;
    for (const TextPort& port : ports) {
        for (const std::string& name : port.names) {
            const auto place = places.find(name);
            if (place != places.end()) {
                sorted.push_back(descriptors[place->second]);
                places.erase(place);
                break;
            }
        }
    }
    if (sorted.size() == descriptors.size()) {
        descriptors = std::move(sorted);
    }
}

}  // namespace quavin_tool
