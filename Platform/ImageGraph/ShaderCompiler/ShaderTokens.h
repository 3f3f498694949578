#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace qv {

/// A word, a number or a punctuation character of shader text; comments and white space are none.
struct ShaderToken {
    enum class Kind { word, number, punctuation };
    Kind kind;
    std::string_view text;
    std::size_t offset;    ///< bytes into the text
    int line;              ///< from 1
    bool inDirective;      ///< on a preprocessor line
    bool startsDirective;  ///< the # of one

    bool is(std::string_view other) const { return text == other; }
    bool isWord() const { return kind == Kind::word; }
};

/// The tokens of `text`, which they refer to.
std::vector<ShaderToken> shaderTokens(std::string_view text);

}  // namespace qv
