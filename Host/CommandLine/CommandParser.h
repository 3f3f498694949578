#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The command line's grammar. Everything else of the tool sees these classes only, so that one source file
/// has to read the parser's headers. One thread, as long as the parser lives.
namespace qv::host {

/// An option or flag of a command. Each call refines it and gives it back.
class CommandOption {
  public:
    CommandOption required() const;
    /// Help names the value that the variable has now.
    CommandOption showDefault() const;
    /// Both ends are allowed.
    CommandOption range(int lowest, int highest) const;
    CommandOption range(double lowest, double highest) const;
    CommandOption aboveZero() const;
    /// Only one of these words.
    CommandOption oneOf(const std::vector<std::string>& words) const;
    /// The two are not given together.
    CommandOption excludes(CommandOption other) const;
    /// Only together with the other one.
    CommandOption needs(CommandOption other) const;
    /// Several values may follow one use of a repeatable option.
    CommandOption severalValues() const;

  private:
    friend class Command;
    explicit CommandOption(CLI::Option* option) : option_(option) {}
    CLI::Option* option_;
};

/// A command of the tool. Variables are written while the line is parsed and must outlive it.
class Command {
  public:
    /// `names` as "-o,--output", or a word for what stands at a fixed place.
    CommandOption option(const char* names, std::string& value, const char* help) const;
    CommandOption option(const char* names, int& value, const char* help) const;
    CommandOption option(const char* names, double& value, const char* help) const;
    CommandOption option(const char* names, std::optional<int>& value, const char* help) const;
    CommandOption option(const char* names, std::optional<double>& value, const char* help) const;
    /// Repeatable; at a fixed place it takes all that follow.
    CommandOption option(const char* names, std::vector<std::string>& values, const char* help) const;
    CommandOption flag(const char* names, bool& value, const char* help) const;
    /// One of some words, whatever their case.
    template <typename Value>
    CommandOption choice(const char* names, Value& value, const std::map<std::string, Value>& words,
                         const char* help) const {
        std::map<std::string, int> numbers;
        for (const auto& [word, meaning] : words) numbers[word] = int(meaning);
        return choice(
            names, [&value](int number) { value = Value(number); }, numbers, help);
    }

    /// The names of the options that were given, as "--input", in the order of the line and as often. Known
    /// when the action runs.
    std::vector<std::string> order() const;

    /// The options that were given, by name, each as the words that give it again, as "--crf=20"; without
    /// what stands at a fixed place. Known when the action runs.
    std::vector<std::pair<std::string, std::vector<std::string>>> words() const;

    /// Runs when this command was given, after all of the line has been parsed.
    void setAction(std::function<void()> action) const;

  private:
    friend class CommandParser;
    explicit Command(CLI::App* app) : app_(app) {}
    CommandOption choice(const char* names, std::function<void(int)> take,
                         const std::map<std::string, int>& words, const char* help) const;
    CLI::App* app_;
};

/// What the tool's own description of itself says of an option, a flag, or a value at a fixed place.
struct OptionFacts {
    std::vector<std::string> names;  ///< as "-o" and "--output"; the word for what stands at a fixed place
    std::string help;
    bool isPlaced = false;           ///< stands at a fixed place
    bool takesValue = false;         ///< false for a flag
    bool takesNumber = false;        ///< and nothing else
    bool repeats = false;            ///< may be given more than once
    std::vector<std::string> words;  ///< all that it may be; empty for anything
};

struct CommandFacts {
    std::string name, help;
    std::vector<OptionFacts> options;  ///< in the order of the help
};

/// The tool itself: exactly one of its commands is given.
class CommandParser {
  public:
    /// `footer` stands below the tool's own help. All text is kept by reference.
    CommandParser(const char* name, const char* description, const char* version, const char* footer);
    ~CommandParser();

    Command addCommand(const char* name, const char* help);

    /// All commands, in the order of the help.
    std::vector<CommandFacts> commands() const;

    /// Parses the line and runs its command, or prints the help or version that was asked for. Fails as usage
    /// and as the command does.
    void run(int argc, char** argv);
    /// The same of words, the tool's name aside. Fails the same way.
    void run(const std::vector<std::string>& words);

  private:
    std::unique_ptr<CLI::App> app_;
    const char* footer_;
};

}  // namespace qv::host
