/** A host in C that needs no library but ours; what it prints with differs between systems. */
#pragma once

/** Prints a text that ends with a zero byte. Each system's file has its own. */
void print(const char* text);

/**
 * Recognises one handwritten digit, and prints what it is or what failed.
 * @param package the folder of the digits example's package.
 * @return 0 if the digit is recognised, otherwise 1.
 */
int recognise_digit(const char* package);
