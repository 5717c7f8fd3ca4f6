/* A first prediction from C: draws a "1" of 8x8 pixels and lets a model recognise it.
 *
 *     predict <folder of the digits package>
 */

#include <quavin/c.h>
#include <stdio.h>
#include <stdlib.h>

static void require(quavin_status status) {
    if (status != QUAVIN_SUCCESS) {
        fprintf(stderr, "%s: %s\n", quavin_status_name(status), quavin_last_error());
        exit(1);
    }
}

/* A stroke from top to bottom, two pixels wide: 0 is paper, 16 is ink. */
static void draw_one(float* pixels) {
    int row;
    for (row = 0; row < 8; ++row) {
        pixels[row * 8 + 3] = 16;
        pixels[row * 8 + 4] = 16;
    }
}

static int largest_of(const float* values, int count) {
    int best = 0;
    int i;
    for (i = 1; i < count; ++i) {
        best = values[i] > values[best] ? i : best;
    }
    return best;
}

int main(int argc, char** argv) {
    float pixels[64] = {0};
    const void* inputs[] = {pixels};
    const size_t sizes[] = {sizeof pixels};
    quavin_model* model = NULL;
    quavin_outputs* outputs = NULL;
    quavin_output digits = QUAVIN_OUTPUT_INIT;

    if (argc != 2) {
        fprintf(stderr, "usage: predict <folder of the digits package>\n");
        return 2;
    }
    require(quavin_init(NULL));
    require(quavin_load_directory(argv[1], NULL, &model));

    draw_one(pixels);
    require(quavin_predict(model, inputs, sizes, 1, &outputs));
    require(quavin_outputs_get(outputs, 0, &digits));
    printf("This is a %d.\n", largest_of((const float*)digits.data, 10));

    require(quavin_outputs_release(outputs));
    require(quavin_model_release(model));
    require(quavin_terminate());
    return 0;
}
