/* Predicts through the library of an unpacked wheel, not linked, but opened as ctypes opens it on
 * Windows.
 *
 *     open_as_python_does <folder of the engine> <library> <folder of the digits package>
 *
 * Compiled together with examples/c/predict.c, whose main() has become predict(), and which expects
 * its functions at these addresses.
 */

#include <stdio.h>
#include <windows.h>

#define EACH(FUNCTION)               \
    FUNCTION(quavin_init)            \
    FUNCTION(quavin_terminate)       \
    FUNCTION(quavin_load_directory)  \
    FUNCTION(quavin_predict)         \
    FUNCTION(quavin_outputs_get)     \
    FUNCTION(quavin_outputs_release) \
    FUNCTION(quavin_model_release)   \
    FUNCTION(quavin_status_name)     \
    FUNCTION(quavin_last_error)

#define DEFINE(NAME) FARPROC __imp_##NAME;
EACH(DEFINE)

int predict(int argc, char** argv);

static HMODULE open_library(const char* file) {
    HMODULE library = LoadLibraryExA(
        file, NULL, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR);
    if (library == NULL) {
        fprintf(stderr, "%s cannot be opened: error %lu\n", file, GetLastError());
        exit(1);
    }
    return library;
}

int main(int argc, char** argv) {
    WCHAR folder[MAX_PATH];
    char engine[MAX_PATH];
    DLL_DIRECTORY_COOKIE cookie;
    HMODULE library;

    if (argc != 4) {
        return 2;
    }
    MultiByteToWideChar(CP_UTF8, 0, argv[1], -1, folder, MAX_PATH);
    snprintf(engine, sizeof engine, "%s\\openvino_c.dll", argv[1]);
    cookie = AddDllDirectory(folder);
    open_library(engine);
    library = open_library(argv[2]);
    RemoveDllDirectory(cookie);
#define FIND(NAME) __imp_##NAME = GetProcAddress(library, #NAME);
    EACH(FIND)
    return predict(2, argv + 2);
}
