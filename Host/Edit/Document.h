#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Host/Edit/Mistakes.h"

namespace qv::host {

/// A value of a JSON document, and where it stands.
struct DocumentValue {
    enum class Kind { null, boolean, number, text, list, object };

    Kind kind = Kind::null;
    std::string text;  ///< of a text; of a number its digits; "true" or "false"
    double number = 0;
    std::vector<DocumentValue> items;
    std::vector<std::pair<std::string, DocumentValue>> members;  ///< in the document's order
    DocumentPlace place;

    bool is(Kind wanted) const { return kind == wanted; }
    /// The first member of that name; nil when there is none, and for what is no object.
    const DocumentValue* member(std::string_view name) const;
    /// Of a text member; empty when there is none.
    std::string textOf(std::string_view name) const;
    /// "a number", "a list", …
    std::string_view kindName() const;
};

/// What a document on standard input is called.
inline constexpr const char* kStandardInput = "standard input";

/// Reads a file, or kStandardInput. Fails as input.
std::string readDocumentText(const std::string& file);

/// Reads JSON, with comments as C++ has them. `file` is for messages. Fails as input with the line: also for
/// a number that is not finite, and for lists and objects that lie more than 64 deep.
DocumentValue parseDocument(const std::string& file, const std::string& text);

}  // namespace qv::host
