#include <algorithm>
#include <array>
#include <cmath>

#include "Bindings/C/Interface.h"
#include "Platform/Foundation/Log.h"
#include "QVFilterCore/QVClipTime.h"

using namespace qv::c;

namespace {

const qv::QVProperty& propertyOf(const qv::QVMTIFilter& filter, const char* given) {
    const std::string_view name = requiredText(given, "property");
    const qv::QVProperty* property = filter.filterClass().property(name);
    if (!property) fail("{} has no property '{}'", filter.filterClass().name, qv::oneLine(name));
    return *property;
}

void setIfThere(qv::QVMTIFilter& filter, std::string_view name, const qv::QVPropertyValue& value) {
    if (const qv::QVProperty* property = filter.filterClass().property(name)) property->set(filter, value);
}

bool answersTo(const qv::QVInput& input, std::string_view nameOrRole) {
    return input.name == nameOrRole || roleName(input.role) == nameOrRole;
}

/// The inputs of the class that `given` names, by their names or their role.
std::vector<const qv::QVInput*> inputsOf(const qv::QVFilterClass& filterClass, std::string_view given) {
    std::vector<const qv::QVInput*> inputs;
    std::string names;
    for (const qv::QVInput& input : filterClass.allInputs()) {
        if (answersTo(input, given)) inputs.push_back(&input);
        names += fmt::format("{}{} ({})", names.empty() ? "" : ", ", input.name, roleName(input.role));
    }
    if (inputs.empty()) fail("{} has no input '{}', but {}", filterClass.name, qv::oneLine(given), names);
    return inputs;
}

}  // namespace

int qv_filter_set(qv_filter* filter, const char* property, const char* value, char* error,
                  size_t error_size) {
    return guarded({error, error_size}, [&] {
        std::string cause;
        qv::QVMTIFilter& target = *required(filter, "filter").filter;
        const std::string_view name = propertyOf(target, property).name;
        if (!setPropertyFromText(target, name, requiredText(value, "value"), &cause)) fail("{}", cause);
        return 1;
    });
}

int qv_filter_set_number(qv_filter* filter, const char* property, double value, char* error,
                         size_t error_size) {
    return guarded({error, error_size}, [&] {
        std::string cause;
        qv::QVMTIFilter& target = *required(filter, "filter").filter;
        const qv::QVProperty& known = propertyOf(target, property);
        qv::QVPropertyValue typed = value;
        if (!std::isfinite(value)) fail("{} is not a number", known.name);
        if (known.type == qv::QVPropertyType::boolean) {
            typed = value != 0;
        } else if (known.type == qv::QVPropertyType::integer) {
            if (std::abs(value) > qv::kUnlimited || value != std::round(value))
                fail("{} takes a whole number, not {}", known.name, value);
            typed = std::int64_t(value);
        }
        if (!setProperty(target, known.name, typed, &cause)) fail("{}", cause);
        return 1;
    });
}

size_t qv_filter_get(const qv_filter* filter, const char* property, char* value, size_t size, char* error,
                     size_t error_size) {
    return guarded({error, error_size}, [&] {
        const qv::QVMTIFilter& source = *required(filter, "filter").filter;
        return copyText(propertyText(propertyOf(source, property).get(source)), value, size);
    });
}

void qv_filter_set_moment(qv_filter* filter, double time, double start, double end) {
    if (!filter || !std::isfinite(time) || !std::isfinite(start) || !std::isfinite(end)) return;
    guarded({}, [&] {
        qv::QVMTIFilter& target = *filter->filter;
        setIfThere(target, "iTime", time);
        setIfThere(target, "time", time);
        setIfThere(target, "startTime", start);
        setIfThere(target, "endTime", end);
        setIfThere(target, "timeRange", qv::CMTimeRangeMakeWithSeconds(start, std::max(end - start, 0.0)));
        setIfThere(target, "progress", qv::clipProgress(time, start, end));
        return 1;
    });
}

int qv_filter_set_input(qv_filter* filter, const char* input, const qv_image* image, char* error,
                        size_t error_size) {
    return guarded({error, error_size}, [&] {
        qv::QVMTIFilter& target = *required(filter, "filter").filter;
        const qv::QVFilterClass& filterClass = target.filterClass();
        const std::string_view given = requiredText(input, "input");
        for (const qv::QVInput* each : inputsOf(filterClass, given)) {
            if (each->isBuffer) {
                // A role hands over what there is; who names the buffer means it.
                if (image && !image->buffer && each->name == given)
                    fail("{} of {} takes a picture that was made of memory", each->name, filterClass.name);
                each->set(target, image ? image->buffer : qv::PixelBuffer());
            } else {
                each->set(target, image ? image->image : qv::MTIImage());
            }
            if (each->role == qv::QVInputRole::frame && image)
                setIfThere(target, "inputImageOriginalSize",
                           qv::MTIVector::vectorWithCGSize(image->image.size()));
        }
        return 1;
    });
}

qv_image* qv_filter_output(qv_filter* filter, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        qv::QVMTIFilter& source = *required(filter, "filter").filter;
        qv::MTIImage output = source.outputImage();
        if (!output) {
            fail("{} gives no picture: a required input is missing, or its shader or an asset",
                 source.filterClass().name);
        }
        return new qv_image{std::move(output), {}};
    });
}
