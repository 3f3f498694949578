#include <map>
#include <mutex>

#include "Bindings/C/Interface.h"
#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "QVFilterExtension/QVFilterClassJSON.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace qv::c {

void ErrorBuffer::write(std::string_view cause) const {
    copyText(cause, text, size);
}

std::string_view requiredText(const char* text, std::string_view what) {
    return &required(text, what);
}

std::size_t copyText(std::string_view text, char* target, std::size_t size) {
    if (target && size > 0) {
        std::size_t length = std::min(text.size(), size - 1);
        // Not in the middle of a character.
        while (length < text.size() && length > 0 && (text[length] & 0xC0) == 0x80) --length;
        std::memcpy(target, text.data(), length);
        target[length] = 0;
    }
    return text.size() + 1;
}

}  // namespace qv::c

using namespace qv::c;

namespace {

using Json = nlohmann::ordered_json;

const qv::QVFilterClass& findClass(const char* given) {
    const std::string_view name = requiredText(given, "class name");
    const auto called = qv::filterClassesCalled(name);
    if (called.size() == 1) return *called.front();
    std::vector<std::string_view> names;
    for (const qv::QVFilterClass* each : called) names.push_back(each->name);
    if (!names.empty()) fail("'{}' may be {}", qv::oneLine(name), fmt::join(names, " or "));
    fail("there is no class '{}'; did you mean {}?", qv::oneLine(name),
         fmt::join(qv::closestClassNames(name, 3), ", "));
}

}  // namespace

uint32_t qv_api_level(void) {
    return QV_API_LEVEL;
}

const char* qv_version(void) {
    return qv::filterLibraryVersion().data();
}

void qv_set_bundle(const char* folder) {
    guarded({}, [&] { return qv::setResourceBundlePath(folder ? folder : ""), 1; });
}

void qv_set_log(void (*sink)(void* user, const char* line), void* user) {
    guarded({}, [&] {
        if (!sink) return qv::setLogSink({}), 1;
        return qv::setLogSink([=](std::string_view line) { sink(user, std::string(line).c_str()); }), 1;
    });
}

size_t qv_devices(char* json, size_t size, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        std::string cause;
        const auto devices = qv::MTIContext::devices(&cause);
        if (devices.empty()) fail("{}", cause);
        auto array = Json::array();
        for (const qv::GraphicsDevice& device : devices) {
            array.push_back({{"index", device.index},
                             {"name", device.name},
                             {"kind", device.kind == qv::MTIDeviceKind::native ? "native" : "vulkan"},
                             {"driver", device.driver},
                             {"apiVersion", device.apiVersion},
                             {"isProcessor", device.isProcessor},
                             {"memoryBytes", device.memoryBytes},
                             {"unusable", device.unusable.empty() ? Json() : Json(device.unusable)}});
        }
        return copyText(array.dump(), json, size);
    });
}

size_t qv_class_count(void) {
    return qv::allFilterClasses().size();
}

const char* qv_class_name(size_t index) {
    const auto classes = qv::allFilterClasses();
    return index < classes.size() ? classes[index]->name.data() : nullptr;
}

const char* qv_class_find(const char* name, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] { return findClass(name).name.data(); });
}

const char* qv_class_json(const char* class_name, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        static std::mutex mutex;
        static auto& texts = *new std::map<const qv::QVFilterClass*, std::string>;
        const qv::QVFilterClass& filterClass = findClass(class_name);
        const std::lock_guard lock(mutex);
        std::string& text = texts[&filterClass];
        if (text.empty()) text = qv::filterClassJSON(filterClass);
        return text.c_str();
    });
}

qv_filter* qv_filter_create(const char* class_name, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        const qv::QVFilterClass& filterClass = findClass(class_name);
        auto filter = filterClass.create();
        if (!filter) fail("{} cannot be created", filterClass.name);
        return new qv_filter{std::move(filter)};
    });
}

void qv_filter_destroy(qv_filter* filter) {
    delete filter;
}

const char* qv_filter_class(const qv_filter* filter) {
    return filter ? filter->filter->filterClass().name.data() : nullptr;
}
