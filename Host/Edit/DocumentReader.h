#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Edit/Document.h"
#include "Host/Edit/Project.h"

namespace qv::host {

/// What readers of documents share: values as a user writes them. Each value that is wrong becomes a mistake
/// with its place, and something harmless is given instead.
class DocumentReader {
  protected:
    using Kind = DocumentValue::Kind;
    using Names = std::vector<std::string_view>;

    explicit DocumentReader(Mistakes& mistakes) : mistakes_(mistakes) {}
    ~DocumentReader() = default;

    void mistake(const DocumentValue& value, const std::string& text);
    /// Runs it, and takes its failure as a mistake in the value; false then.
    bool with(const DocumentValue& value, const std::function<void()>& work);
    /// Whether it is one; a member with another name is a mistake.
    bool isObject(const DocumentValue& value, const Names& names);
    bool isList(const DocumentValue& value);
    bool isTrue(const DocumentValue& value);

    /// What a text means. Fails as input.
    virtual std::string replaced(const std::string& text) const { return text; }
    /// A text, or a number's digits. Fails as input.
    std::string plainText(const DocumentValue& value) const;
    /// The same; lists with commas. Fails as input.
    std::string listText(const DocumentValue& value) const;

    /// Of a member; nothing where there is none.
    std::optional<MediaTime> readTime(const DocumentValue& owner, const char* name);
    std::optional<Fit> readFit(const DocumentValue& owner);
    double readGain(const DocumentValue& owner);
    std::optional<PixelSize> readSize(const DocumentValue& owner);
    Rational readRate(const DocumentValue& owner);
    bool readFlag(const DocumentValue& owner, const char* name, bool otherwise);
    /// A mask, or nothing.
    std::string readMask(const DocumentValue& owner);

    /// A file beside the document, unless its name says where it is.
    std::string readPath(const DocumentValue& value);
    /// A property's value, or its keys, as text or as a list of {at, value, easing}. Fails as usage or input.
    void readSetting(EffectChoice& choice, const std::string& name, const DocumentValue& value, ClassUse use);

  private:
    Mistakes& mistakes_;
};

}  // namespace qv::host
