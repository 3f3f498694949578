#include "Platform/ImageGraph/ShaderCompiler/ShaderTokens.h"

#include <algorithm>

namespace qv {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isWordStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

}  // namespace

std::vector<ShaderToken> shaderTokens(std::string_view text) {
    std::vector<ShaderToken> tokens;
    int line = 1;
    bool lineIsEmpty = true, inDirective = false;
    std::size_t at = 0;
    auto peek = [&](std::size_t ahead) { return at + ahead < text.size() ? text[at + ahead] : '\0'; };

    while (at < text.size()) {
        const char c = text[at];
        if (c == '\n') {
            const bool continued = at > 0 && text[at - 1] == '\\';
            if (!continued) inDirective = false;
            lineIsEmpty = true;
            ++line;
            ++at;
        } else if (c == '/' && peek(1) == '/') {
            while (at < text.size() && text[at] != '\n') ++at;
        } else if (c == '/' && peek(1) == '*') {
            const std::size_t end = text.find("*/", at + 2);
            const std::size_t next = end == std::string_view::npos ? text.size() : end + 2;
            line += int(std::count(text.begin() + at, text.begin() + next, '\n'));
            at = next;
        } else if (c == ' ' || c == '\t' || c == '\r' || c == '\\') {
            ++at;
        } else {
            ShaderToken token{ShaderToken::Kind::punctuation, {}, at, line, false, false};
            std::size_t length = 1;
            if (isWordStart(c)) {
                token.kind = ShaderToken::Kind::word;
                while (isWordStart(peek(length)) || isDigit(peek(length))) ++length;
            } else if (isDigit(c) || (c == '.' && isDigit(peek(1)))) {
                token.kind = ShaderToken::Kind::number;
                while (isWordStart(peek(length)) || isDigit(peek(length)) || peek(length) == '.') ++length;
            } else if (c == '#' && lineIsEmpty) {
                token.startsDirective = inDirective = true;
            }
            token.text = text.substr(at, length);
            token.inDirective = inDirective;
            tokens.push_back(token);
            lineIsEmpty = false;
            at += length;
        }
    }
    return tokens;
}

}  // namespace qv
