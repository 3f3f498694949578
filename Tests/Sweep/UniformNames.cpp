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

/// By function, the names of all values that filters send to it.
using SentNames = std::map<const ShaderFunction*, std::set<std::string>>;

/// What the bases send to all their functions, of which each takes what it needs; and the size that some
/// transitions send, though functions can ask for it themselves.
const std::set<std::string> kSentToAll = {"iTime", "isPhoto",     "level",    "effectValue", "progress",
                                          "start", "ratio",       "duration", "beat",        "pulse",
                                          "step",  "pulseMotion", "inputSize"};

void collect(QVMTIFilter& filter, SentNames& sent) {
    const MTIImage output = filter.outputImage();
    for (const ImageNode* node : evaluationOrder(output)) {
        const auto* pass = std::get_if<KernelPass>(&node->operation);
        if (!pass) continue;
        auto& names = sent[&pass->kernel->function()];
        for (const auto& [name, value] : pass->parameters) names.insert(name);
    }
}

void collectMoments(QVMTIFilter& filter, SentNames& sent) {
    for (double moment : {0.03, 0.4, 0.77}) {
        test::setMoment(filter, moment);
        collect(filter, sent);
    }
}

/// The class at some moments, with one number set.
void look(const QVFilterClass& record, const QVProperty* property, double value, SentNames& sent) {
    const auto filter = record.create();
    test::setInputs(*filter, 64, 36);
    if (property) test::setNumber(*filter, property->name, value);
    collectMoments(*filter, sent);
}

/// The same with its switches on and its user's numbers at a share of their ranges.
void lookAtAll(const QVFilterClass& record, double share, SentNames& sent) {
    const auto filter = record.create();
    test::setInputs(*filter, 64, 36);
    for (const QVProperty* property : record.allProperties()) {
        if (property->driver != QVPropertyDriver::user || !property->variants.empty()) continue;
        const double range = property->maximum - property->minimum;
        if (property->type == QVPropertyType::real)
            test::setNumber(*filter, property->name, property->minimum + share * range);
        std::string error;
        if (property->type == QVPropertyType::boolean) {
            EXPECT_TRUE(setProperty(*filter, property->name, true, &error)) << error;
        }
    }
    collectMoments(*filter, sent);
}

TEST(UniformNames, AgreeBetweenFiltersAndShaders) {
    SentNames sent;
    for (const QVFilterClass* record : allFilterClasses()) {
        look(*record, nullptr, 0, sent);
        for (const double share : {0.002, 0.3}) lookAtAll(*record, share, sent);
        for (const QVProperty* property : record->allProperties()) {
            if (!property->variants.empty()) {
                for (double value = property->minimum; value <= property->maximum; ++value)
                    look(*record, property, value, sent);
            } else if (property->type == QVPropertyType::real && property->driver == QVPropertyDriver::user) {
                look(*record, property, property->maximum, sent);
            }
            if (property->name == "effectValue") {
                for (double value : {0.0, 0.2, 1.0}) look(*record, property, value, sent);
            }
        }
    }
    for (const auto& [function, names] : sent) {
        for (const std::string& name : names) {
            EXPECT_TRUE(function->uniform(name) || kSentToAll.contains(name))
                << function->name << " has no uniform '" << name << "'";
        }
        for (const ShaderUniform& uniform : function->uniforms)
            EXPECT_TRUE(names.contains(uniform.name))
                << "nothing sets '" << uniform.name << "' of " << function->name;
    }
    EXPECT_GT(sent.size(), 100u);
}

}  // namespace
}  // namespace qv
