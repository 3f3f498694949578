#include "Platform/ImageGraph/ShaderCompiler/ShaderSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <unordered_set>

#include "Platform/ImageGraph/ShaderCompiler/ShaderTokens.h"

namespace qv {

namespace {

constexpr std::string_view kArchiveInclude = "#pragma qv_include ";
constexpr std::string_view kArchiveEnd = "#pragma qv_end";

struct TypeName {
    std::string_view name;
    UniformType type;
};
constexpr std::array<TypeName, 6> kUniformTypes{{{"float", UniformType::floatType},
                                                 {"int", UniformType::intType},
                                                 {"bool", UniformType::boolType},
                                                 {"vec2", UniformType::vec2},
                                                 {"vec3", UniformType::vec3},
                                                 {"vec4", UniformType::vec4}}};

/// Why a word may not appear, or nothing.
std::string_view refusal(std::string_view word) {
    static const std::unordered_set<std::string_view> derivatives{"dFdx",       "dFdy",       "fwidth",
                                                                  "dFdxFine",   "dFdyFine",   "fwidthFine",
                                                                  "dFdxCoarse", "dFdyCoarse", "fwidthCoarse"};
    static const std::unordered_set<std::string_view> textures{
        "texture",          "textureLod",          "textureGrad",
        "textureGather",    "textureGatherOffset", "textureProj",
        "textureProjLod",   "textureProjGrad",     "textureOffset",
        "textureLodOffset", "textureGradOffset",   "textureSize",
        "texelFetch",       "texelFetchOffset",    "textureQueryLod",
        "texture2D",        "textureQueryLevels",  "imageLoad",
        "imageStore",       "imageSize",           "sampler2D",
        "image2D",          "texture2DLod",        "textureProjOffset"};
    static const std::unordered_set<std::string_view> interfaces{
        "layout", "buffer", "shared", "attribute", "varying", "subroutine", "main"};
    if (derivatives.contains(word)) return "not available, a colour depends on its own place alone";
    if (word == "discard") return "not available, every pixel gets a colour";
    if (textures.contains(word)) return "inputs are read through readHere, readInput and readPixel alone";
    if (interfaces.contains(word)) return "the interface of the stage is the compiler's own";
    if (word.starts_with("gl_") || word.starts_with("qv_"))
        return "names that begin with gl_ or qv_ are not available";
    return {};
}

bool isQualifier(std::string_view word) {
    static const std::unordered_set<std::string_view> words{"const", "highp",   "mediump",
                                                            "lowp",  "precise", "return"};
    return words.contains(word);
}

/// Replaces `text[begin, end)` by spaces, keeping line ends.
void blank(std::string& text, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end && i < text.size(); ++i) {
        if (text[i] != '\n') text[i] = ' ';
    }
}

/// Reads one file, and those that it includes, into a source.
class Parser {
  public:
    Parser(ShaderSource& source, const ShaderIncludeResolver& resolver, std::vector<std::string>& errors)
        : source_(source), resolver_(resolver), errors_(errors) {}

    void parseFunctionFile() {
        source_.body = source_.text;
        parse(source_.path, source_.text, source_.body, false);
        if (!definesFunction()) {
            fail(source_.path, 1, fmt::format("the function vec4 {}(vec2 uv) is missing", source_.name));
        }
    }

  private:
    struct File {
        const std::string& path;
        const std::string& text;
        std::string& body;
        bool isInclude;
        std::vector<ShaderToken> tokens;
        bool hasCode = false;  ///< something that an include may not follow
    };

    void fail(const std::string& path, int line, std::string_view message) {
        errors_.push_back(fmt::format("{}:{}: error: {}", path, line, message));
    }

    void parse(const std::string& path, const std::string& text, std::string& body, bool isInclude) {
        File file{path, text, body, isInclude, shaderTokens(text)};
        int braces = 0, parentheses = 0;
        for (std::size_t i = 0; i < file.tokens.size(); ++i) {
            const ShaderToken& token = file.tokens[i];
            if (token.startsDirective) {
                i = parseDirective(file, i);
                continue;
            }
            if (token.isWord()) {
                if (token.is("uniform") || token.is("selector")) {
                    i = parseDeclaration(file, i, braces);
                    continue;
                }
                checkWord(file, i);
                if (!token.inDirective && braces == 0 && parentheses == 0) noteGlobal(file, i);
            }
            if (token.inDirective) continue;
            file.hasCode = true;
            if (token.is("{")) ++braces;
            if (token.is("}")) --braces;
            if (token.is("(")) ++parentheses;
            if (token.is(")")) --parentheses;
        }
    }

    /// Answers the last token that it has read.
    std::size_t parseDirective(File& file, std::size_t at) {
        const ShaderToken& hash = file.tokens[at];
        if (at + 1 >= file.tokens.size() || !file.tokens[at + 1].inDirective) return at;
        const ShaderToken& word = file.tokens[at + 1];
        if (word.is("include")) {
            parseInclude(file, hash);
            while (at + 1 < file.tokens.size() && file.tokens[at + 1].line == hash.line) ++at;
            return at;
        }
        if (word.is("define")) {
            file.hasCode = true;
            if (!file.isInclude && at + 2 < file.tokens.size()) {
                source_.globals.emplace_back(file.tokens[at + 2].text);
            }
            return at + 1;
        }
        if (word.is("version") || word.is("extension") || word.is("pragma") || word.is("line")) {
            fail(file.path, hash.line, fmt::format("#{} is not available", word.text));
        }
        return at + 1;
    }

    void parseInclude(File& file, const ShaderToken& hash) {
        const std::size_t end = std::min(file.text.find('\n', hash.offset), file.text.size());
        const std::string_view line = std::string_view(file.text).substr(hash.offset, end - hash.offset);
        const std::size_t open = line.find('"');
        const std::size_t close = open == std::string_view::npos ? open : line.find('"', open + 1);
        if (close == std::string_view::npos) {
            fail(file.path, hash.line, "an include is written #include \"name.glsl\"");
            return;
        }
        if (file.hasCode) fail(file.path, hash.line, "includes come before definitions");
        const std::string name(line.substr(open + 1, close - open - 1));
        blank(file.body, hash.offset, end);
        if (std::ranges::find(visited_, name) != visited_.end()) return;
        visited_.push_back(name);
        std::optional<ShaderInclude> found = resolver_ ? resolver_(name) : std::nullopt;
        if (!found) {
            fail(file.path, hash.line, fmt::format("include file \"{}\" is not found", name));
            return;
        }
        ShaderSource::Include include{name, found->path, found->text, found->text};
        parse(include.path, include.text, include.body, true);
        source_.includes.push_back(std::move(include));
    }

    /// `uniform TYPE NAME, …;` or `selector int NAME, …;`. Answers the last token that it has read.
    std::size_t parseDeclaration(File& file, std::size_t at, int braces) {
        const ShaderToken& keyword = file.tokens[at];
        if (file.isInclude) {
            fail(file.path, keyword.line,
                 fmt::format("a {} belongs into the function's own file", keyword.text));
            return at;
        }
        std::vector<const ShaderToken*> names;
        std::size_t end = at + 3;  // of the comma or semicolon after a name
        const bool hasType = end < file.tokens.size() && file.tokens[at + 1].isWord();
        while (hasType && end < file.tokens.size() && file.tokens[end - 1].isWord()) {
            names.push_back(&file.tokens[end - 1]);
            if (!file.tokens[end].is(",")) break;
            end += 2;
        }
        if (braces > 0 || keyword.inDirective || names.empty() || end >= file.tokens.size() ||
            !file.tokens[end].is(";")) {
            fail(file.path, keyword.line,
                 fmt::format("a {0} is declared outside functions as \"{0} {1} name;\"", keyword.text,
                             keyword.is("selector") ? "int" : "type"));
            return at;
        }
        for (const ShaderToken* name : names) {
            declare(file.path, *name, file.tokens[at + 1].text, keyword.is("selector"));
        }
        blank(file.body, keyword.offset, file.tokens[end].offset + 1);
        return end;
    }

    void declare(const std::string& path, const ShaderToken& token, std::string_view type, bool isSelector) {
        const std::string name(token.text);
        const auto known = std::ranges::find(kUniformTypes, type, &TypeName::name);
        if (isSelector && type != "int") {
            fail(path, token.line, fmt::format("selector \"{}\" is of type {}, not int", name, type));
        } else if (known == kUniformTypes.end()) {
            fail(path, token.line,
                 fmt::format("uniform \"{}\" has the unknown type {} (float, int, bool, vec2, vec3 and vec4 "
                             "are known)",
                             name, type));
        } else if (std::ranges::find(source_.uniforms, name, &ShaderSource::Uniform::name) !=
                   source_.uniforms.end()) {
            fail(path, token.line, fmt::format("\"{}\" is declared twice", name));
        } else if (name == "uv" || name == source_.name) {
            fail(path, token.line, fmt::format("\"{}\" is the function's own name or parameter", name));
        } else if (const std::string_view why = refusal(name); !why.empty()) {
            fail(path, token.line, fmt::format("{}: {}", name, why));
        } else {
            source_.uniforms.push_back({name, known->type, isSelector, token.line});
        }
    }

    /// Words that are refused, and reads of inputs.
    void checkWord(File& file, std::size_t at) {
        const ShaderToken& token = file.tokens[at];
        if (at > 0 && file.tokens[at - 1].is(".")) return;
        if (const std::string_view why = refusal(token.text); !why.empty()) {
            fail(file.path, token.line, fmt::format("{}: {}", token.text, why));
            return;
        }
        const bool here = token.is("readHere"), anywhere = token.is("readInput") || token.is("readPixel");
        if (!here && !anywhere && !token.is("inputSize")) return;
        if (file.isInclude) {
            fail(file.path, token.line,
                 fmt::format("{}: an include file reads no inputs; hand it the colour or the place",
                             token.text));
            return;
        }
        unsigned index = kMaximumShaderInputs;
        if (at + 3 < file.tokens.size() && file.tokens[at + 1].is("(") &&
            (file.tokens[at + 3].is(",") || file.tokens[at + 3].is(")"))) {
            const std::string_view digits = file.tokens[at + 2].text;
            const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
            if (error != std::errc{} || end != digits.data() + digits.size()) index = kMaximumShaderInputs;
        }
        if (index >= unsigned(kMaximumShaderInputs)) {
            fail(file.path, token.line,
                 fmt::format("{} names its input by a whole number, 0 to {}", token.text,
                             kMaximumShaderInputs - 1));
            return;
        }
        if (source_.inputs.size() <= index) source_.inputs.resize(index + 1);
        ShaderInput& input = source_.inputs[index];
        if (here) {
            input.here = true;
        } else if (anywhere) {
            input.anywhere = true;
        } else {
            input.sizeOffset = 0;
        }
    }

    /// Keeps the name of a function, constant or structure that is declared at `at`.
    void noteGlobal(const File& file, std::size_t at) {
        if (file.isInclude || at == 0) return;
        const ShaderToken& before = file.tokens[at - 1];
        const bool declared =
            (before.isWord() && !before.inDirective && !isQualifier(before.text)) || before.is(",");
        if (declared) source_.globals.emplace_back(file.tokens[at].text);
    }

    bool definesFunction() const {
        const std::vector<ShaderToken> tokens = shaderTokens(source_.text);
        for (std::size_t i = 0; i + 6 < tokens.size(); ++i) {
            if (tokens[i].is("vec4") && tokens[i + 1].is(source_.name) && tokens[i + 2].is("(") &&
                tokens[i + 3].is("vec2") && tokens[i + 4].isWord() && tokens[i + 5].is(")") &&
                tokens[i + 6].is("{")) {
                return true;
            }
        }
        return false;
    }

    ShaderSource& source_;
    const ShaderIncludeResolver& resolver_;
    std::vector<std::string>& errors_;
    std::vector<std::string> visited_;
};

}  // namespace

std::string ShaderSource::archive() const {
    std::string archive;
    for (const Include& include : includes) {
        archive += fmt::format("{}{}\n{}\n{}\n", kArchiveInclude, include.name, include.text, kArchiveEnd);
    }
    return archive + text;
}

std::optional<ShaderSource> parseShaderSource(std::string name, std::string path, std::string text,
                                              const ShaderIncludeResolver& resolver,
                                              std::vector<std::string>& errors) {
    ShaderSource source;
    source.name = std::move(name);
    source.path = std::move(path);
    source.text = std::move(text);
    const std::size_t before = errors.size();
    Parser(source, resolver, errors).parseFunctionFile();
    std::ranges::sort(source.globals);
    const auto repeated = std::ranges::unique(source.globals);
    source.globals.erase(repeated.begin(), repeated.end());
    if (errors.size() != before) return std::nullopt;
    return source;
}

std::optional<ShaderSource> parseArchivedShader(std::string name, std::string_view archive,
                                                std::vector<std::string>& errors) {
    std::map<std::string, std::string, std::less<>> includes;
    while (archive.starts_with(kArchiveInclude)) {
        const std::size_t nameEnd = archive.find('\n');
        const std::string end = fmt::format("\n{}\n", kArchiveEnd);
        const std::size_t textEnd = nameEnd == std::string_view::npos ? nameEnd : archive.find(end, nameEnd);
        if (textEnd == std::string_view::npos) {
            errors.push_back(fmt::format("{}.glsl:1: error: the archived text is cut off", name));
            return std::nullopt;
        }
        includes.emplace(archive.substr(kArchiveInclude.size(), nameEnd - kArchiveInclude.size()),
                         archive.substr(nameEnd + 1, textEnd - nameEnd - 1));
        archive.remove_prefix(textEnd + end.size());
    }
    const ShaderIncludeResolver resolver = [&](std::string_view wanted) -> std::optional<ShaderInclude> {
        const auto found = includes.find(wanted);
        if (found == includes.end()) return std::nullopt;
        return ShaderInclude{found->first, found->second};
    };
    std::string path = name + ".glsl";
    return parseShaderSource(std::move(name), std::move(path), std::string(archive), resolver, errors);
}

std::string prefixNames(std::string_view text, const std::vector<std::string>& from,
                        std::string_view prefix) {
    std::string result;
    std::size_t copied = 0;
    const std::vector<ShaderToken> tokens = shaderTokens(text);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isWord() || (i > 0 && tokens[i - 1].is("."))) continue;
        if (std::ranges::find(from, tokens[i].text) == from.end()) continue;
        result += text.substr(copied, tokens[i].offset - copied);
        result += prefix;
        copied = tokens[i].offset;
    }
    result += text.substr(copied);
    return result;
}

}  // namespace qv
