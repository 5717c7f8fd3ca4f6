#include "host.h"

#include <stddef.h>

#include "quavin/c.h"

/* The first of the digits that the example's model was not trained with: an eight. */
static const float pixels[64] = {
    0, 0, 0,  5,  15, 13, 2, 0, /**/
    0, 0, 0,  12, 7,  11, 6, 0, /**/
    0, 0, 0,  9,  12, 15, 1, 0, /**/
    0, 0, 1,  8,  16, 4,  0, 0, /**/
    0, 3, 15, 8,  13, 0,  0, 0, /**/
    0, 7, 12, 0,  10, 7,  0, 0, /**/
    0, 0, 12, 11, 10, 8,  0, 0, /**/
    0, 0, 0,  6,  13, 10, 0, 0,
};
enum { LABEL = 8 };

static int fail(const char* step) {
    print(step);
    print(": ");
    print(quavin_last_error());
    print("\n");
    return 1;
}

/* Returns the digit with the highest probability. */
static size_t most_probable(const quavin_output* output) {
    const float* probabilities = (const float*)output->data;
    size_t best = 0;
    for (size_t digit = 1; digit < output->bytes / sizeof(float); ++digit) {
        if (probabilities[digit] > probabilities[best]) {
            best = digit;
        }
    }
    return best;
}

int recognise_digit(const char* package) {
    if (quavin_init(NULL) != QUAVIN_SUCCESS) {
        return fail("quavin_init");
    }
    quavin_model* model = NULL;
    if (quavin_load_directory(package, NULL, &model) != QUAVIN_SUCCESS) {
        return fail("quavin_load_directory");
    }
    const void* inputs[] = {pixels};
    const size_t sizes[] = {sizeof pixels};
    quavin_outputs* outputs = NULL;
    if (quavin_predict(model, inputs, sizes, 1, &outputs) != QUAVIN_SUCCESS) {
        return fail("quavin_predict");
    }
    quavin_output output = QUAVIN_OUTPUT_INIT;
    if (quavin_outputs_get(outputs, 0, &output) != QUAVIN_SUCCESS) {
        return fail("quavin_outputs_get");
    }
    const size_t digit = most_probable(&output);
    const char text[] = {(char)('0' + digit), '\n', '\0'};
    print("with version ");
    print(quavin_version());
    print(" the digit is ");
    print(text);
    if (quavin_outputs_release(outputs) != QUAVIN_SUCCESS ||
        quavin_model_release(model) != QUAVIN_SUCCESS || quavin_terminate() != QUAVIN_SUCCESS) {
        return fail("the end");
    }
    return digit == LABEL ? 0 : 1;
}
