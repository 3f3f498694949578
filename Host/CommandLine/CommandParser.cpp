#include "Host/CommandLine/CommandParser.h"

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/StandardStreams.h"

#include <fmt/ranges.h>
#include <CLI/CLI.hpp>

namespace qv::host {

namespace {

/// Names a mistyped command, which the parser would only call a missing one.
void requireKnownCommand(const CLI::App& tool, int argc, char** argv) {
    if (argc < 2 || argv[1][0] == '-') return;
    const std::string name = argv[1];
    const auto isCommand = [&](const CLI::App* command) { return command->get_name() == name; };
    if (!tool.get_subcommands(isCommand).empty()) return;
    fail(ExitCode::usage, "there is no command '{}'; see {} --help", name, tool.get_name());
}

/// Has every command refuse values that the parser lets pass: empty ones, as a script's unset variable is,
/// and numbers that are not finite.
void checkValues(CLI::App& tool) {
    const auto isGiven = [](const std::string& value) {
        return value.empty() ? std::string("the value is empty") : std::string();
    };
    const auto isFinite = [](const std::string& value) {
        return std::isfinite(std::strtod(value.c_str(), nullptr))
                   ? std::string()
                   : fmt::format("'{}' is not a number", value);
    };
    for (CLI::App* command : tool.get_subcommands([](const CLI::App*) { return true; })) {
        for (CLI::Option* option : command->get_options()) {
            if (option->get_items_expected_max() > 0) option->check(isGiven);
            if (option->get_type_name().starts_with("FLOAT")) option->check(isFinite);
        }
    }
}

/// The words of a list in braces, which the parser ends the kind of a value with that may be one of them.
std::vector<std::string> wordsIn(const std::string& kind) {
    std::vector<std::string> words;
    const std::size_t begin = kind.find('{');
    if (begin == std::string::npos) return words;
    std::istringstream list(kind.substr(begin + 1, kind.find('}', begin) - begin - 1));
    for (std::string word; std::getline(list, word, ',');) words.push_back(word);
    return words;
}

OptionFacts factsOf(const CLI::Option& option) {
    OptionFacts facts;
    for (const std::string& name : option.get_snames()) facts.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) facts.names.push_back("--" + name);
    facts.isPlaced = facts.names.empty();
    if (facts.isPlaced) facts.names.push_back(option.get_name(true));
    facts.help = option.get_description();
    const std::string kind = option.get_type_name();
    facts.takesValue = option.get_items_expected_max() > 0;
    facts.takesNumber = kind.starts_with("INT") || kind.starts_with("UINT") || kind.starts_with("FLOAT");
    facts.repeats = option.get_items_expected_max() > 1;
    facts.words = wordsIn(kind);
    return facts;
}

}  // namespace

CommandOption CommandOption::required() const {
    return CommandOption(option_->required());
}

CommandOption CommandOption::showDefault() const {
    return CommandOption(option_->capture_default_str());
}

CommandOption CommandOption::range(int lowest, int highest) const {
    return CommandOption(option_->check(CLI::Range(lowest, highest)));
}

CommandOption CommandOption::range(double lowest, double highest) const {
    return CommandOption(option_->check(CLI::Range(lowest, highest)));
}

CommandOption CommandOption::aboveZero() const {
    return CommandOption(option_->check(CLI::PositiveNumber));
}

CommandOption CommandOption::oneOf(const std::vector<std::string>& words) const {
    return CommandOption(option_->check(CLI::IsMember(words)));
}

CommandOption CommandOption::excludes(CommandOption other) const {
    return CommandOption(option_->excludes(other.option_));
}

CommandOption CommandOption::needs(CommandOption other) const {
    return CommandOption(option_->needs(other.option_));
}

CommandOption CommandOption::severalValues() const {
    return CommandOption(option_->allow_extra_args(true));
}

CommandOption Command::option(const char* names, std::string& value, const char* help) const {
    return CommandOption(app_->add_option(names, value, help));
}

CommandOption Command::option(const char* names, int& value, const char* help) const {
    return CommandOption(app_->add_option(names, value, help));
}

CommandOption Command::option(const char* names, double& value, const char* help) const {
    return CommandOption(app_->add_option(names, value, help));
}

CommandOption Command::option(const char* names, std::optional<int>& value, const char* help) const {
    return CommandOption(app_->add_option(names, value, help));
}

CommandOption Command::option(const char* names, std::optional<double>& value, const char* help) const {
    return CommandOption(app_->add_option(names, value, help));
}

CommandOption Command::option(const char* names, std::vector<std::string>& values, const char* help) const {
    CLI::Option* option = app_->add_option(names, values, help);
    if (names[0] == '-') option->allow_extra_args(false);
    return CommandOption(option);
}

CommandOption Command::flag(const char* names, bool& value, const char* help) const {
    return CommandOption(app_->add_flag(names, value, help));
}

CommandOption Command::choice(const char* names, std::function<void(int)> take,
                              const std::map<std::string, int>& words, const char* help) const {
    std::vector<std::string> listed;
    for (const auto& [word, number] : words) listed.push_back(word);
    const CLI::Validator known = CLI::CheckedTransformer(words, CLI::ignore_case)
                                     .description(fmt::format("{{{}}}", fmt::join(listed, ",")));
    return CommandOption(
        app_->add_option_function<int>(names, take, help)->type_name("TEXT")->transform(known));
}

std::vector<std::string> Command::order() const {
    std::vector<std::string> names;
    for (const CLI::Option* option : app_->parse_order()) names.push_back(option->get_name());
    return names;
}

std::vector<std::pair<std::string, std::vector<std::string>>> Command::words() const {
    std::vector<std::pair<std::string, std::vector<std::string>>> given;
    for (const CLI::Option* option : app_->get_options()) {
        const std::string name = option->get_name();
        if (option->count() == 0 || name[0] != '-') continue;
        const bool takesValue = option->get_items_expected_max() > 0;
        std::vector<std::string> words;
        for (const std::string& value : option->results())
            words.push_back(takesValue ? name + "=" + value : name);
        given.emplace_back(name, std::move(words));
    }
    return given;
}

void Command::setAction(std::function<void()> action) const {
    app_->callback(std::move(action));
}

CommandParser::CommandParser(const char* name, const char* description, const char* version,
                             const char* footer)
    : app_(std::make_unique<CLI::App>(description, name)), footer_(footer) {
    app_->set_version_flag("--version", fmt::format("{} {}", name, version));
    app_->set_help_all_flag("--help-all", "Print the help of every command");
    app_->require_subcommand(1);
}

CommandParser::~CommandParser() = default;

Command CommandParser::addCommand(const char* name, const char* help) {
    return Command(app_->add_subcommand(name, help));
}

std::vector<CommandFacts> CommandParser::commands() const {
    std::vector<CommandFacts> commands;
    for (const CLI::App* command : app_->get_subcommands([](const CLI::App*) { return true; })) {
        CommandFacts facts{command->get_name(), command->get_description(), {}};
        for (const CLI::Option* option : command->get_options()) facts.options.push_back(factsOf(*option));
        commands.push_back(std::move(facts));
    }
    return commands;
}

void CommandParser::run(const std::vector<std::string>& words) {
    std::vector<std::string> line{app_->get_name()};
    line.insert(line.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : line) arguments.push_back(word.data());
    run(int(arguments.size()), arguments.data());
}

void CommandParser::run(int argc, char** argv) {
    requireKnownCommand(*app_, argc, argv);
    checkValues(*app_);
    app_->footer(footer_);  // now, or the commands would have taken it over
    try {
        app_->parse(argc, argv);
    } catch (const CLI::Success& answer) {  // help or version
        std::ostringstream text;
        app_->exit(answer, text);
        writeStandardOutput(text.str());
    } catch (const CLI::ExtrasError&) {
        fail(ExitCode::usage, "not expected: {}; see {} --help", fmt::join(app_->remaining(true), " "),
             app_->get_name());
    } catch (const CLI::ParseError& error) {
        fail(ExitCode::usage, "{}; see {} --help", error.what(), app_->get_name());
    }
}

}  // namespace qv::host
