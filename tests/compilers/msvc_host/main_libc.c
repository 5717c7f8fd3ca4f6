#include <stdio.h>

#include "host.h"

void print(const char* text) {
    fputs(text, stdout);
}

int main(int argc, char** argv) {
    return argc == 2 ? recognise_digit(argv[1]) : 2;
}
