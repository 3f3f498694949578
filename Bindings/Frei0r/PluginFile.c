/* A plugin: the class that its file is named after. Copies of this one object are all the plugins there are. */

#define _GNU_SOURCE
#include <dlfcn.h>

#include "Bindings/Frei0r/Plugin.h"

static const qv_frei0r_plugin *plugin(void) {
    static const qv_frei0r_plugin *found;
    Dl_info self;
    if (!found && dladdr((void *)&f0r_init, &self)) found = qv_frei0r_plugin_of(self.dli_fname);
    return found;
}

int f0r_init(void) { return plugin() != 0; }
void f0r_deinit(void) {}
void f0r_get_plugin_info(f0r_plugin_info_t *info) { qv_frei0r_plugin_info(plugin(), info); }
void f0r_get_param_info(f0r_param_info_t *info, int index) { qv_frei0r_param_info(plugin(), info, index); }

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
    return qv_frei0r_construct(plugin(), width, height);
}
void f0r_destruct(f0r_instance_t instance) { qv_frei0r_destruct(instance); }
void f0r_set_param_value(f0r_instance_t instance, f0r_param_t value, int index) {
    qv_frei0r_set(instance, value, index);
}
void f0r_get_param_value(f0r_instance_t instance, f0r_param_t value, int index) {
    qv_frei0r_get(instance, value, index);
}
void f0r_update(f0r_instance_t instance, double time, const uint32_t *in, uint32_t *out) {
    qv_frei0r_update(instance, time, in, 0, out, __builtin_return_address(0));
}
void f0r_update2(f0r_instance_t instance, double time, const uint32_t *first, const uint32_t *second,
                 const uint32_t *third, uint32_t *out) {
    (void)third;
    qv_frei0r_update(instance, time, first, second, out, __builtin_return_address(0));
}
