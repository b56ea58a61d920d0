/* Shared library with defects, built as libbuggy.so.
 * buggy_average() reads one element past the end of the caller's array;
 * buggy_label() returns a heap string that callers tend to leak. */
#include <stdio.h>
#include <stdlib.h>

double buggy_average(const int *values, int n)
{
    long total = 0;
    for (int i = 0; i <= n; i++)    /* off by one: reads values[n] */
        total += values[i];
    return (double)total / n;
}

char *buggy_label(int id)
{
    char *s = malloc(32);
    snprintf(s, 32, "item-%d", id);
    return s;
}
