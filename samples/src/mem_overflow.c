/* Defect: heap buffer overflow by one element.
 * fill() writes one int past the end of a 10-int heap block (invalid write),
 * then sum() reads it back (invalid read). */
#include <stdio.h>
#include <stdlib.h>

#define COUNT 10

static void fill(int *v, int n)
{
    for (int i = 0; i <= n; i++)   /* off by one: writes v[n] */
        v[i] = i * 2;
}

static int sum(const int *v, int n)
{
    int s = 0;
    for (int i = 0; i <= n; i++)   /* off by one: reads v[n] */
        s += v[i];
    return s;
}

int main(void)
{
    int *v = malloc(COUNT * sizeof *v);
    fill(v, COUNT);
    printf("sum = %d\n", sum(v, COUNT));
    free(v);
    return 0;
}
