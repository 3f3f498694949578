#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Host/CommandLine/JSON.h"
#include "Platform/ImageGraph/MTIImage.h"

/// An image graph as text: every node with what it depends on, inputs before readers.
namespace qv::host {

/// The graph's sources that the host put in, by name.
using NamedImages = std::vector<std::pair<std::string, MTIImage>>;

/// {nodes: [{id, kind, function, inputs, parameters, size, …}], output}. Numbers are those that the shader
/// receives: floats exactly, whole numbers and booleans as such, vectors as arrays.
Json graphToJSON(const MTIImage& output, const NamedImages& sources);

/// Names and values on one line, after `opening`, for reading: numbers with no more digits than they have.
std::string oneLine(std::string_view opening, const Json& object);

/// One line a node.
std::string graphToText(const Json& graph);

/// For `dot`.
std::string graphToDot(const Json& graph, const std::string& title);

}  // namespace qv::host
