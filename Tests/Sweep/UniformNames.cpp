// Filters name uniforms in text, and so do shaders. A name that only one side knows binds to nothing,
// silently.

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/ShaderLibrary.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SweepInputs.h"

namespace qv {
namespace {

/// Part of what filters promise to send, though the functions ask for the size of an input themselves.
constexpr std::string_view kSentAnyway[] = {"inputSize", "resolution"};

class UniformNames : public testing::TestWithParam<const QVFilterClass*> {
  protected:
    void collect(const QVMTIFilter& filter) {
        for (const ImageNode* node : evaluationOrder(filter.outputImage())) {
            const auto* pass = std::get_if<KernelPass>(&node->operation);
            if (!pass) continue;
            auto& names = sent[&pass->kernel->function()];
            for (const auto& [name, value] : pass->parameters) names.insert(name);
        }
    }

    /// By function, the names of all values that the class's filters send to it.
    std::map<const ShaderFunction*, std::set<std::string>> sent;
};

TEST_P(UniformNames, AgreeBetweenFiltersAndShaders) {
    const QVFilterClass& record = *GetParam();
    const auto look = [&](const QVProperty* property, double value) {
        const auto filter = record.create();
        test::setInputs(*filter, 64, 36);
        if (property) test::setNumber(*filter, property->name, value);
        for (double moment : {0.03, 0.4, 0.77}) {
            test::setMoment(*filter, moment);
            collect(*filter);
        }
    };
    look(nullptr, 0);
    for (const QVProperty* property : record.allProperties()) {
        const bool chooses = !property->variants.empty() || property->name == "level";
        if (chooses) {
            for (double value = property->minimum; value <= property->maximum; ++value) look(property, value);
        } else if (property->name == "effectValue") {
            for (double value : {0.0, 0.2, 1.0}) look(property, value);
        }
    }
    for (const auto& [function, names] : sent) {
        for (const std::string& name : names) {
            const bool known = function->uniform(name) || std::ranges::count(kSentAnyway, name) > 0;
            EXPECT_TRUE(known) << function->name << " has no uniform '" << name << "'";
        }
        for (const ShaderUniform& uniform : function->uniforms)
            EXPECT_TRUE(names.contains(uniform.name))
                << "nothing sets '" << uniform.name << "' of " << function->name;
    }
}

INSTANTIATE_TEST_SUITE_P(, UniformNames,
                         testing::ValuesIn(allFilterClasses().begin(), allFilterClasses().end()),
                         [](const auto& info) { return std::string(info.param->name); });

}  // namespace
}  // namespace qv
