/*
 * The C interface of QVFilterExtension: video effects and transitions by name, over frames in memory or on a
 * Vulkan device. For C and for every language that calls C.
 *
 *   qv_filter *wave = qv_filter_create("QVWaveMTIFilter", error, sizeof error);
 *   qv_filter_set(wave, "effectValue", "0.7", error, sizeof error);
 *   // for each frame
 *   qv_image *in = qv_image_from_frame(&frame, NULL, NULL, error, sizeof error);
 *   qv_filter_set_input(wave, "frame", in, error, sizeof error);
 *   qv_filter_set_moment(wave, seconds, 0, clip_seconds);
 *   qv_image *out = qv_filter_output(wave, error, sizeof error);
 *   qv_render(NULL, out, &result, error, sizeof error);
 *   qv_image_destroy(out); qv_image_destroy(in);
 *
 * Errors. What can fail takes a buffer for one line of UTF-8 that names the cause; the text is cut to fit and always
 * ends with a zero. The buffer may be NULL with size 0. Functions that return int give 1, or 0 on failure; those
 * that return a pointer give NULL on failure. Nothing is printed but through qv_set_log.
 *
 * Structs begin with their size, which the caller sets to sizeof: fields that a later version adds count as zero
 * for a caller that does not know them. Texts are UTF-8 and end with a zero.
 *
 * Threads. A filter belongs to one thread at a time. Images and contexts may be used from any thread. A task is
 * waited for once, by any thread.
 *
 * Every function says since which level of the interface it exists, see qv_api_level. Levels only add.
 */
#ifndef QV_H
#define QV_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The level of this header. A program may need a lower one than the loaded library's, see qv_api_level. */
#define QV_API_LEVEL 1

/** A filter on its timeline: an effect, or a transition. */
typedef struct qv_filter qv_filter;
/** A picture: pixels in memory or on the device, or one that a filter has yet to compute. It never changes. */
typedef struct qv_image qv_image;
/** A device that renders, with its textures and programs. */
typedef struct qv_context qv_context;
/** A render under way. */
typedef struct qv_task qv_task;

/* The library */

/** The level of the interface that the loaded library has: at least 1. Level 1. */
uint32_t qv_api_level(void);
/** The library's version, as "1.2.3". Level 1. */
const char *qv_version(void);
/** Looks for shaders and assets in this folder instead of beside the library; "" looks there again. Level 1. */
void qv_set_bundle(const char *folder);
/** Receives the library's log lines, few and without line ends, on any thread, one call at a time; it must not call
 *  back into the library. NULL writes them to standard error, as at the start. Level 1. */
void qv_set_log(void (*sink)(void *user, const char *line), void *user);
/** The machine's devices as a JSON array of objects with index, name, driver, apiVersion, isProcessor, memoryBytes,
 *  unusable (a text, or null) and kind ("vulkan" or "native", the processor without Vulkan). Writes at most `size` bytes with the ending zero into `json`, and returns how many
 *  the whole takes; 0 with the cause when there is no driver. Level 1. */
size_t qv_devices(char *json, size_t size, char *error, size_t error_size);

/* Classes. The texts are the library's and stay as they are. */

/** How many classes there are. Level 1. */
size_t qv_class_count(void);
/** The name of a class, 0 <= index < qv_class_count(); NULL outside. Level 1. */
const char *qv_class_name(size_t index);
/** The class of that name, or the only one that is called so for short ("mosaic" is QVMosaicMTIFilter). The error
 *  names what was meant, perhaps. Level 1. */
const char *qv_class_find(const char *name, char *error, size_t error_size);
/** Everything about a class as a JSON object: title, kind ("effect", "transition", "auxiliary"), category, help,
 *  inputs with their roles, properties with type, range, unit, default and driver ("user": a control for people;
 *  "host": qv_filter_set_moment and the like). `qvfilter show CLASS --json` prints the same. Level 1. */
const char *qv_class_json(const char *class_name, char *error, size_t error_size);

/* Filters */

/** A new filter, at its class's default strength. The name as qv_class_find takes it. Level 1. */
qv_filter *qv_filter_create(const char *class_name, char *error, size_t error_size);
/** NULL is let be. Level 1. */
void qv_filter_destroy(qv_filter *filter);
/** The name of its class. Level 1. */
const char *qv_filter_class(const qv_filter *filter);
/** Sets a property from text: numbers, "true" and "false", a selector's variant, places and sizes "0.5,0.5", colours
 *  "#ff8800", lists with commas, a time range "start,duration" in seconds. Refused outside its range. Level 1. */
int qv_filter_set(qv_filter *filter, const char *property, const char *value, char *error, size_t error_size);
/** The same for what holds one number, a switch (0 or 1) or a selector. Level 1. */
int qv_filter_set_number(qv_filter *filter, const char *property, double value, char *error, size_t error_size);
/** A property as qv_filter_set takes it. Writes at most `size` bytes with the ending zero into `value`, and returns how
 *  many the whole takes; 0 on failure. Level 1. */
size_t qv_filter_get(const qv_filter *filter, const char *property, char *value, size_t size, char *error,
                     size_t error_size);
/** Where the filter stands on the timeline, in seconds: the time of the frame, and the span that the effect or the
 *  transition lies on. Sets what the class has of iTime or time, startTime, endTime, timeRange and progress (from 0
 *  at the start to 1 at the end). Before each frame. Level 1. */
void qv_filter_set_moment(qv_filter *filter, double time, double start, double end);
/** Hands over a picture, until the next one; NULL takes it away. `input` is a name from the class's record, or a role:
 *  "frame" (a transition's outgoing frame), "incoming", "mask" (white where the subject is; in an image that was made of
 *  memory), "layer", "table", "texture". A role reaches every input of its kind. Level 1. */
int qv_filter_set_input(qv_filter *filter, const char *input, const qv_image *image, char *error, size_t error_size);
/** The picture for the inputs and settings as they stand. Nothing is rendered yet: it may be the input of another
 *  filter, and a chain is drawn in as few passes as its classes allow. Fails while a required input is
 *  missing. Level 1. */
qv_image *qv_filter_output(qv_filter *filter, char *error, size_t error_size);

/* Images */

/** Memory layouts. Planes of more than 8 bits hold little-endian 16-bit words with the value in the low bits. */
typedef enum qv_format {
    QV_FORMAT_RGBA8 = 0,        /**< one plane, straight alpha */
    QV_FORMAT_GRAY8 = 1,        /**< one plane, full range; for masks */
    QV_FORMAT_I420 = 2,         /**< Y, U, V; chroma halved both ways */
    QV_FORMAT_I422 = 3,         /**< Y, U, V; chroma halved across */
    QV_FORMAT_I444 = 4,         /**< Y, U, V */
    QV_FORMAT_I420_ALPHA = 5,   /**< Y, U, V, A; alpha of full range, straight */
    QV_FORMAT_NV12 = 6,         /**< Y, interleaved UV; chroma halved both ways */
    QV_FORMAT_I420_10 = 7,      /**< as I420, 10 bits */
    QV_FORMAT_I422_10 = 8,      /**< as I422, 10 bits */
    QV_FORMAT_I444_10 = 9,      /**< as I444, 10 bits */
    QV_FORMAT_RGB8 = 100,       /**< one plane, three bytes a pixel; always copied */
    QV_FORMAT_BGR8 = 101,       /**< the same, blue first */
    QV_FORMAT_BGRA8 = 102       /**< one plane, four bytes a pixel, blue first, straight alpha; always copied */
} qv_format;

/** Y'CbCr coefficients; of no meaning for RGB. */
typedef enum qv_matrix { QV_MATRIX_BT709 = 0, QV_MATRIX_BT601 = 1, QV_MATRIX_BT2020 = 2 } qv_matrix;

/** A frame in the caller's memory. */
typedef struct qv_frame {
    size_t size;            /**< sizeof(qv_frame) */
    int32_t format;         /**< a qv_format */
    int32_t width, height;  /**< pixels, 1 to 16384 */
    int32_t matrix;         /**< a qv_matrix */
    int32_t full_range;     /**< 1 when Y'CbCr samples use all codes; 0 for video levels */
    uint8_t *planes[4];     /**< the first rows; those that the format has */
    size_t strides[4];      /**< bytes from a row to the next */
} qv_frame;

/** A picture in memory. With `release`, no copy is made where the format allows it: the memory must stay as it is until
 *  the library calls release(user): once, on any thread, when the last image that needs it and the last render are gone,
 *  or at the end of this call when nothing needs it, also when it failed. Without, the pixels are copied. Level 1. */
qv_image *qv_image_from_frame(const qv_frame *frame, void (*release)(void *user), void *user, char *error,
                              size_t error_size);
/** A PNG or JPEG file. Level 1. */
qv_image *qv_image_from_file(const char *path, char *error, size_t error_size);
/** Pixels. Level 1. */
void qv_image_size(const qv_image *image, int32_t *width, int32_t *height);
/** Whoever still reads the picture keeps it: a filter that has it as its input, a render. NULL is let be. Level 1. */
void qv_image_destroy(qv_image *image);

/* Rendering. Where a context is asked for, NULL is one that the process shares, made on first use on the most capable
 * device. */

/** How a context is made. Begin with QV_CONTEXT_OPTIONS. */
typedef struct qv_context_options {
    size_t size;                /**< sizeof(qv_context_options) */
    int32_t device;             /**< index of qv_devices; -1 takes the most capable, QV_DEVICE_NATIVE the processor */
    int32_t deep;               /**< 1: 16-bit floats between passes, for sources of more than 8 bits */
    int32_t plain_passes;       /**< 1: every pass by itself, for comparing */
    int32_t fuse_at_once;       /**< 1: a graph's first frame waits for its joined programs, so that every run gives the
                                     same codes, for exports; 0: they are made beside the renders, for previews */
    uint64_t texture_budget;    /**< idle textures above these bytes are freed; 0 for the library's own limit */
    const char *shader_cache;   /**< folder for compiled programs; NULL for the library's own, "" for none */
    int32_t threads;            /**< of the processor that renders natively, at most; 0 for all */
} qv_context_options;
/** What most hosts want. */
#define QV_CONTEXT_OPTIONS {sizeof(qv_context_options), -1, 0, 0, 0, 0, NULL, 0}
/** The processor, without Vulkan: fails where it, or the installation, lacks what that takes. */
#define QV_DEVICE_NATIVE (-2)

/** `options` may be NULL. Level 1. */
qv_context *qv_context_create(const qv_context_options *options, char *error, size_t error_size);
/** Tasks that run are finished first. NULL is let be. Level 1. */
void qv_context_destroy(qv_context *context);

/** Renders into the caller's memory, which has the image's size, and waits. Level 1. */
int qv_render(qv_context *context, const qv_image *image, const qv_frame *destination, char *error,
              size_t error_size);
/** Starts the same; the memory is the library's until qv_task_wait. Some frames may be under way at a time; then it
 *  waits. Level 1. */
qv_task *qv_render_start(qv_context *context, const qv_image *image, const qv_frame *destination, char *error,
                         size_t error_size);
/** Waits until the picture is there, and ends the task, also when it failed. Every task must be waited for. Level 1. */
int qv_task_wait(qv_task *task, char *error, size_t error_size);
/** Compiles what a render needs, so that the first frame does not stutter; nothing is written. Level 1. */
int qv_prepare(qv_context *context, const qv_image *image, const qv_frame *destination, char *error,
               size_t error_size);

/* On the host's own Vulkan device. The handles are Vulkan's own. */

struct VkInstance_T;
struct VkPhysicalDevice_T;
struct VkDevice_T;
struct VkQueue_T;
struct VkImage_T;
struct VkSemaphore_T;

/** A device of Vulkan 1.1 or later and a queue that draws. They must outlive the context. */
typedef struct qv_vulkan_device {
    size_t size;                                /**< sizeof(qv_vulkan_device) */
    struct VkInstance_T *instance;              /**< VkInstance */
    struct VkPhysicalDevice_T *physical_device; /**< VkPhysicalDevice */
    struct VkDevice_T *device;                  /**< VkDevice */
    struct VkQueue_T *queue;                    /**< VkQueue; the host does not use it during a call of this library */
    uint32_t queue_family;                      /**< its family's index */
} qv_vulkan_device;

/** An image of the host: two-dimensional, one level, layer and sample, premultiplied colour. VK_FORMAT_R8G8B8A8_UNORM (37),
 *  B8G8R8A8_UNORM (44) or R16G16B16A16_SFLOAT (97). Read: usage SAMPLED, in `layout` GENERAL (1) or SHADER_READ_ONLY_OPTIMAL
 *  (5), where it stays. Written: usage COLOR_ATTACHMENT, left in `layout`. */
typedef struct qv_vulkan_image {
    size_t size;             /**< sizeof(qv_vulkan_image) */
    struct VkImage_T *image; /**< VkImage of the context's device */
    int32_t width, height;   /**< pixels */
    int32_t format, layout;  /**< VkFormat, VkImageLayout */
} qv_vulkan_image;

/** A semaphore; `value` is 0 for a binary one. */
typedef struct qv_vulkan_semaphore {
    struct VkSemaphore_T *semaphore; /**< VkSemaphore */
    uint64_t value;                  /**< of a timeline semaphore */
} qv_vulkan_semaphore;

/** What a render waits for, and what it signals when the result is there. Zeros, or NULL for the struct: it comes after
 *  what was submitted to the queue before. */
typedef struct qv_vulkan_sync {
    size_t size;                        /**< sizeof(qv_vulkan_sync) */
    const qv_vulkan_semaphore *wait;    /**< `wait_count` of them */
    size_t wait_count;                  /**< 0 for none */
    const qv_vulkan_semaphore *signal;  /**< `signal_count` of them */
    size_t signal_count;                /**< 0 for none */
} qv_vulkan_sync;

/** `options` may be NULL; its device does not count. Level 1. */
qv_context *qv_context_create_on_device(const qv_vulkan_device *device, const qv_context_options *options,
                                        char *error, size_t error_size);
/** The host's image as a picture, without a copy. It must live until every image that needs it and every render of them
 *  are gone. Level 1. */
qv_image *qv_image_from_vulkan(const qv_vulkan_image *image, char *error, size_t error_size);
/** Starts rendering into the host's image, which has the image's size. `sync` may be NULL. Level 1. */
qv_task *qv_render_start_vulkan(qv_context *context, const qv_image *image, const qv_vulkan_image *destination,
                                const qv_vulkan_sync *sync, char *error, size_t error_size);

#ifdef __cplusplus
}
#endif

#endif
