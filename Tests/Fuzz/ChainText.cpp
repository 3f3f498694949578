// A chain as the tool's command line has it: a line of text for each effect.

#include "Host/CommandLine/EffectChoice.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> texts(1);
    for (std::uint8_t byte : std::span(data, size)) {
        if (byte == '\n')
            texts.emplace_back();
        else
            texts.back() += char(byte);
    }
    try {
        for (const host::EffectChoice& choice : host::parseChain(texts)) {
            const auto filter = choice.filterClass->create();
            for (const auto& [property, value] : choice.settings) {
                std::string error;
                fuzz::require(setProperty(*filter, property->name, value, &error),
                              "what was read can be set");
            }
            filter->outputImage();
        }
    } catch (const host::Failure& failure) {
        fuzz::require(failure.code() == host::ExitCode::usage, "a wrong chain is wrong usage");
        fuzz::require(failure.what()[0] != 0, "a refusal has a cause");
    }
    return 0;
}
