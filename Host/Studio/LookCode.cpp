#include "Host/Studio/LookCode.h"

#include <algorithm>

#include "Host/Clips/Timeline.h"

#include <fmt/format.h>

namespace qv::host {

namespace {

/// What a look's code needs that the library leaves to its host.
constexpr const char* kMove =
    "/// Between two keys: `from` at `begin`, `to` at `end`, evenly.\n"
    "double moved(double from, double to, double begin, double end, double seconds) {\n"
    "    const double share = (seconds - begin) / (end - begin);\n"
    "    return from + (to - from) * std::clamp(share, 0.0, 1.0);\n"
    "}\n\n";

bool isNumber(const PropertyKeys& keys) {
    return std::all_of(keys.keys.begin(), keys.keys.end(),
                       [](const PropertyKey& key) { return std::holds_alternative<double>(key.value); });
}

std::string literal(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result + "\"";
}

/// The value of a number that moves, as an expression of `seconds`.
std::string expressionOf(const PropertyKeys& keys, const std::string& time) {
    std::string expression;
    for (std::size_t i = 1; i < keys.keys.size(); ++i) {
        const PropertyKey &from = keys.keys[i - 1], &to = keys.keys[i];
        if (i > 1) expression = fmt::format("{} < {} ? {} : ", time, from.time.seconds(0), expression);
        expression += fmt::format("moved({}, {}, {}, {}, {})", propertyText(from.value),
                                  propertyText(to.value), from.time.seconds(0), to.time.seconds(0), time);
    }
    return expression.empty() ? propertyText(keys.keys.front().value) : expression;
}

std::string easingNote(const PropertyKeys& keys) {
    std::string names;
    for (const PropertyKey& key : keys.keys) {
        if (!(key.easing == Easing()))
            names += fmt::format("{}{} to {}", names.empty() ? "" : ", ", key.easing.name(),
                                 propertyText(key.value));
    }
    return names.empty() ? "" : "  // eased: " + names;
}

class Code {
  public:
    void addLook(const std::string& name, const std::vector<ProjectEffect>& effects) {
        if (effects.empty()) return;
        text_ += fmt::format("struct {} {{\n", name);
        for (std::size_t i = 0; i < effects.size(); ++i) {
            text_ +=
                fmt::format("    std::unique_ptr<qv::QVMTIFilter> filter{} = qv::createFilter(\"{}\");\n",
                            i + 1, effects[i].choice.filterClass->name);
        }
        text_ += fmt::format("\n    {}() {{\n", name);
        for (std::size_t i = 0; i < effects.size(); ++i) {
            for (const auto& [property, value] : effects[i].choice.settings)
                text_ += fmt::format("        qv::setPropertyFromText(*filter{}, \"{}\", {});\n", i + 1,
                                     property->name, literal(propertyText(value)));
        }
        text_ +=
            "    }\n\n    /// `seconds` since the clip began.\n"
            "    qv::MTIImage picture(qv::MTIImage image, double seconds, const qv::MTIImage& mask = {}) {\n";
        for (std::size_t i = 0; i < effects.size(); ++i)
            addFrame(effects[i].choice, fmt::format("filter{}", i + 1));
        text_ += "        return image;\n    }\n};\n\n";
    }

    std::string text() const {
        std::string head =
            "#include <algorithm>\n#include <memory>\n\n#include \"QVFilterCore/QVMTIFilter.h\"\n"
            "#include \"QVFilterExtension/QVFilterRegistry.h\"\n\n";
        return head + (moves_ ? kMove : "") + text_;
    }

  private:
    void line(const std::string& indent, const std::string& text) { text_ += indent + text + "\n"; }

    void addFrame(const EffectChoice& choice, const std::string& filter) {
        std::string indent = "        ", time = "seconds";
        if (const auto& span = choice.span) {
            const double from = span->from.seconds(0);
            std::string when = from > 0 ? fmt::format("seconds >= {}", from) : "";
            if (span->to)
                when += fmt::format("{}seconds < {}", when.empty() ? "" : " && ", span->to->seconds(0));
            line(indent, fmt::format("if ({}) {{", when.empty() ? "true" : when));
            indent += "    ";
            if (from > 0) time = fmt::format("(seconds - {})", from);
        }
        const QVFilterClass& filterClass = *choice.filterClass;
        for (const QVInput& input : filterClass.allInputs()) {
            const bool isMask = input.role == QVInputRole::mask;
            if ((input.role != QVInputRole::frame && !isMask) || input.isBuffer) continue;
            line(indent, fmt::format("qv::setInput(*{}, \"{}\", {});", filter, input.name,
                                     isMask ? "mask" : "image"));
        }
        if (filterClass.property(timeProperty(filterClass)) && !choice.sets(timeProperty(filterClass)))
            line(indent,
                 fmt::format("qv::setProperty(*{}, \"{}\", {});", filter, timeProperty(filterClass), time));
        for (const PropertyKeys& keys : choice.keys) {
            if (isNumber(keys)) {
                moves_ = true;
                line(indent, fmt::format("qv::setProperty(*{}, \"{}\", {});{}", filter, keys.property->name,
                                         expressionOf(keys, time), easingNote(keys)));
            } else {
                line(indent, fmt::format("// {} moves: {}", keys.property->name, keys.text()));
            }
        }
        line(indent, fmt::format("image = {}->outputImage();", filter));
        if (choice.span) line("        ", "}");
    }

    std::string text_;
    bool moves_ = false;
};

}  // namespace

std::string lookCode(const Project& project) {
    Code code;
    const bool isOne = project.clips.size() == 1;
    for (std::size_t i = 0; i < project.clips.size(); ++i)
        code.addLook(isOne ? "Look" : fmt::format("LookOfClip{}", i + 1), project.clips[i].effects);
    code.addLook(isOne && project.clips[0].effects.empty() ? "Look" : "LookOfAll", project.effects);
    return code.text();
}

}  // namespace qv::host
