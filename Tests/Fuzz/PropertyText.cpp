// Property values as text: two bytes choose the class, two the property, the rest is the text.

#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Choices choices(data, size);
    const QVFilterClass& record = *allFilterClasses()[choices.below(allFilterClasses().size())];
    const auto properties = record.allProperties();
    if (properties.empty()) return 0;
    const QVProperty& property = *properties[choices.below(properties.size())];
    std::string error;
    const auto value = parseProperty(property, choices.text(), &error);
    fuzz::require(value.has_value() == error.empty(), "a value, or why there is none");
    fuzz::require(error.find('\n') == std::string::npos, "the cause is one line");
    const auto filter = record.create();
    if (value) {
        fuzz::require(setProperty(*filter, property.name, *value, &error), "what was read can be set");
        property.get(*filter);
    } else {
        fuzz::require(!setPropertyFromText(*filter, property.name, choices.text(), &error),
                      "text is read alike");
    }
    return 0;
}
