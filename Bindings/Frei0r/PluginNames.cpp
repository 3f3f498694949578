// Prints the names of the classes that are plugins, for the build.

#include <cstdio>

#include "Bindings/Frei0r/Plugin.h"
#include "QVFilterExtension/QVFilterRegistry.h"

int main() {
    for (const qv::QVFilterClass* filterClass : qv::allFilterClasses()) {
        if (qv_frei0r_plugin_of(filterClass->name.data())) std::printf("%s\n", filterClass->name.data());
    }
}
