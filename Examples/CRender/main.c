/* c-render CLASS IN.png OUT.ppm [name=value ...]: one effect over one picture through the C interface. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qv.h>

static char error[256];

static int fail(const char *cause) {
    fprintf(stderr, "c-render: %s\n", cause);
    return 1;
}

static int set(qv_filter *filter, char *setting) {
    char *equals = strchr(setting, '=');
    if (!equals) return snprintf(error, sizeof error, "%s is not name=value", setting), 0;
    *equals = 0;
    return qv_filter_set(filter, setting, equals + 1, error, sizeof error);
}

static int write_ppm(const char *path, const qv_frame *frame) {
    FILE *file = fopen(path, "wb");
    if (!file) return 0;
    fprintf(file, "P6\n%d %d\n255\n", (int)frame->width, (int)frame->height);
    fwrite(frame->planes[0], frame->strides[0], (size_t)frame->height, file);
    return fclose(file) == 0;
}

int main(int argc, char **argv) {
    if (argc < 4) return fail("give a class, an input picture and an output file");
    /* Made once. */
    qv_filter *filter = qv_filter_create(argv[1], error, sizeof error);
    if (!filter) return fail(error);
    for (int i = 4; i < argc; ++i) {
        if (!set(filter, argv[i])) return fail(error);
    }
    /* For each frame: inputs, time, output. */
    qv_image *input = qv_image_from_file(argv[2], error, sizeof error);
    if (!input || !qv_filter_set_input(filter, "frame", input, error, sizeof error)) return fail(error);
    qv_filter_set_moment(filter, 1.0, 0.0, 3.0);
    qv_image *output = qv_filter_output(filter, error, sizeof error);
    if (!output) return fail(error);

    qv_frame frame = {.size = sizeof frame, .format = QV_FORMAT_RGB8};
    qv_image_size(output, &frame.width, &frame.height);
    frame.strides[0] = (size_t)frame.width * 3;
    frame.planes[0] = malloc(frame.strides[0] * (size_t)frame.height);
    if (!frame.planes[0]) return fail("out of memory");
    if (!qv_render(NULL, output, &frame, error, sizeof error)) return fail(error);
    if (!write_ppm(argv[3], &frame)) return fail("the result cannot be written");
    printf("%s: %dx%d by %s\n", argv[3], (int)frame.width, (int)frame.height, qv_filter_class(filter));

    free(frame.planes[0]);
    qv_image_destroy(output);
    qv_image_destroy(input);
    qv_filter_destroy(filter);
    return 0;
}
