#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qv {

/// The name of numbered picture files, as "out_%04d.png": one %d, or %0Nd for a number of at least N digits,
/// in the file's own name; %% stands for a %. Immutable.
class PictureSequence {
  public:
    /// Nothing for a path without such a number or with several.
    static std::optional<PictureSequence> parse(const std::string& path);
    /// The same of an input: a file that is called so is just that file.
    static std::optional<PictureSequence> unlessFile(const std::string& path);
    /// Whether a path has more than one number.
    static bool hasSeveralNumbers(const std::string& path);
    /// What to say then.
    static constexpr const char* kOneNumber = "a sequence of pictures has one number in its name, as %04d";

    /// The path of one picture; `number` is not negative.
    std::string path(int number) const;
    /// The same name again, with every other % doubled, also in the folder's name.
    std::string pattern() const;
    /// The numbers whose files exist, growing.
    std::vector<int> numbers() const;

  private:
    std::string folder_, before_, after_;  ///< around the number, %% undone
    int digits_ = 1;                       ///< at least
};

}  // namespace qv
