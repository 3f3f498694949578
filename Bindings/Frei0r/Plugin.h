#pragma once

#include <frei0r.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What the plugin files share: each is PluginFile.c under its class's name, and calls this. */

typedef struct qv_frei0r_plugin qv_frei0r_plugin;
typedef struct qv_frei0r_instance qv_frei0r_instance;

/* The plugin of a file named after a class; NULL when there is no such class, or the interface cannot carry
 * it. */
const qv_frei0r_plugin* qv_frei0r_plugin_of(const char* file);
void qv_frei0r_plugin_info(const qv_frei0r_plugin* plugin, f0r_plugin_info_t* info);
void qv_frei0r_param_info(const qv_frei0r_plugin* plugin, f0r_param_info_t* info, int index);

qv_frei0r_instance* qv_frei0r_construct(const qv_frei0r_plugin* plugin, unsigned int width,
                                        unsigned int height);
void qv_frei0r_destruct(qv_frei0r_instance* instance);
void qv_frei0r_set(qv_frei0r_instance* instance, f0r_param_t value, int index);
void qv_frei0r_get(qv_frei0r_instance* instance, f0r_param_t value, int index);
/* `second` is NULL for one clip. `caller`: an address in the host's code that asked for the frame. */
void qv_frei0r_update(qv_frei0r_instance* instance, double time, const uint32_t* first,
                      const uint32_t* second, uint32_t* out, const void* caller);

#ifdef __cplusplus
}
#endif
