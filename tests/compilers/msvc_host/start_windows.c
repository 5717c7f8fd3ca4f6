/* Without any C runtime: what kernel32.dll has is enough to print and to end. */

#include "host.h"

__declspec(dllimport) void* GetStdHandle(unsigned long which);
__declspec(dllimport) int WriteFile(void* file, const void* bytes, unsigned long size,
                                    unsigned long* written, void* overlapped);
__declspec(dllimport) void ExitProcess(unsigned int status);

/* Compilers for this system refer to it from code that uses floating-point numbers. */
int _fltused = 1;

void print(const char* text) {
    const unsigned long standard_output = (unsigned long)-11;
    unsigned long size = 0;
    unsigned long written = 0;
    while (text[size] != '\0') {
        ++size;
    }
    WriteFile(GetStdHandle(standard_output), text, size, &written, (void*)0);
}

/* The entry point. Tests start the program in the folder of the example. */
void start(void) {
    ExitProcess((unsigned int)recognise_digit("package"));
}
