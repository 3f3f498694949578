#include "Host/Listing/CompletionScript.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include <fmt/ranges.h>

#include "Host/CommandLine/EffectChoice.h"
#include "QVFilterExtension/QVFilterRegistry.h"

// The build embeds the files of these names.
extern "C" {
extern const char qvCompletion_complete_bash[], qvCompletion_complete_zsh[];
extern const std::uint64_t qvCompletion_complete_bashSize, qvCompletion_complete_zshSize;
}

namespace qv::host {

namespace {

/// In single quotes, as both shells read it.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text) {
        if (c == '\'') {
            result += "'\\''";
        } else {
            result += c;
        }
    }
    return result + "'";
}

/// An associative array of a shell.
class Table {
  public:
    Table(Shell shell, std::string_view name)
        : text_(fmt::format("{} _qvfilter_{}\n_qvfilter_{}=(\n",
                            shell == Shell::bash ? "declare -gA" : "typeset -gA", name, name)),
          shell_(shell) {}

    void add(std::string_view key, std::string_view value) {
        const bool bash = shell_ == Shell::bash;
        text_ +=
            fmt::format("    {}{}{}{}\n", bash ? "[" : "", quoted(key), bash ? "]=" : " ", quoted(value));
    }

    std::string text() const { return text_ + ")\n"; }

  private:
    std::string text_;
    Shell shell_;
};

constexpr std::pair<std::string_view, ClassUse> kUses[] = {
    {"effect", ClassUse::overClip}, {"transition", ClassUse::transition}, {"class", ClassUse::any}};

/// What kind of class an option or a place takes; empty for none.
std::string_view classUseOf(const OptionFacts& option) {
    const std::string& name = option.names.back();
    if (name == "--effect") return "effect";
    if (option.isPlaced && name == "pattern") return "class";
    for (const auto& [use, meaning] : kUses) {
        if (option.isPlaced && name == use) return use;
    }
    return "";
}

/// What can stand behind an option: some words, "@effect" for a class of that use, "@none" for nothing that
/// can be told, or empty for a file.
std::string valuesOf(const OptionFacts& option) {
    if (const std::string_view use = classUseOf(option); !use.empty()) return fmt::format("@{}", use);
    return option.takesNumber ? "@none" : fmt::format("{}", fmt::join(option.words, "|"));
}

std::string commandTables(Shell shell, const std::vector<CommandFacts>& commands) {
    Table help(shell, "commands"), options(shell, "options"), helps(shell, "helps"), values(shell, "values");
    for (const CommandFacts& command : commands) {
        std::vector<std::string> names;
        for (const OptionFacts& option : command.options) {
            for (const std::string& name : option.names) {
                const std::string key = fmt::format("{} {}", command.name, option.isPlaced ? "" : name);
                if (option.isPlaced || option.takesValue) values.add(key, valuesOf(option));
                if (option.isPlaced) continue;
                names.push_back(name);
                if (shell == Shell::zsh) helps.add(key, option.help);
            }
        }
        help.add(command.name, command.help);
        options.add(command.name, fmt::format("{}", fmt::join(names, " ")));
    }
    return help.text() + options.text() + values.text() + (shell == Shell::zsh ? helps.text() : "");
}

/// A property's name, with the values it may have where they are words.
std::string propertyText(const QVProperty& property) {
    if (!property.variants.empty())
        return fmt::format("{}={}", property.name, fmt::join(property.variants, ","));
    return property.type == QVPropertyType::boolean ? fmt::format("{}=true,false", property.name)
                                                    : std::string(property.name);
}

std::string classTables(Shell shell) {
    Table classes(shell, "classes"), properties(shell, "properties");
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        std::vector<std::string> texts;
        for (const QVProperty* property : filterClass->allProperties()) {
            if (!filterClass->ignores(property->name)) texts.push_back(propertyText(*property));
        }
        properties.add(filterClass->name, fmt::format("{}", fmt::join(texts, "|")));
    }
    for (const auto& [name, use] : kUses) {
        for (const QVFilterClass* filterClass : allFilterClasses()) {
            if (!fits(*filterClass, use)) continue;
            classes.add(fmt::format("{} {}", name, filterClass->name), filterClass->name);
            const std::string shortName = shortFilterClassName(*filterClass);
            int meant = 0;
            for (const QVFilterClass* called : filterClassesCalled(shortName)) meant += fits(*called, use);
            if (meant == 1) classes.add(fmt::format("{} {}", name, shortName), filterClass->name);
        }
    }
    return classes.text() + properties.text();
}

}  // namespace

std::string completionScript(Shell shell, const std::vector<CommandFacts>& commands) {
    const bool bash = shell == Shell::bash;
    const std::string_view functions =
        bash ? std::string_view(qvCompletion_complete_bash, qvCompletion_complete_bashSize)
             : std::string_view(qvCompletion_complete_zsh, qvCompletion_complete_zshSize);
    // The first line tells zsh which command a file is for; the call at the end comes after the tables.
    const std::size_t head = functions.find('\n') + 1;
    return fmt::format("{}{}{}{}", functions.substr(0, head), commandTables(shell, commands),
                       classTables(shell), functions.substr(head));
}

}  // namespace qv::host
