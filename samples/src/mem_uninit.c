/* Defect: uninitialised values used in conditions.
 * A stack variable is only set on one path, and a heap block from
 * malloc() is read before anything is written to it. */
#include <stdio.h>
#include <stdlib.h>

static int pick_limit(int mode)
{
    int limit;                  /* left uninitialised when mode != 1 */
    if (mode == 1)
        limit = 100;
    return limit;
}

static int count_positive(const int *v, int n)
{
    int c = 0;
    for (int i = 0; i < n; i++)
        if (v[i] > 0)           /* heap block was never written */
            c++;
    return c;
}

int main(int argc, char **argv)
{
    (void)argv;
    int limit = pick_limit(argc + 1);   /* argc is 1, so mode is 2 */
    if (limit > 50)
        puts("limit is large");

    int *v = malloc(4 * sizeof *v);
    printf("positive: %d\n", count_positive(v, 4));
    free(v);
    return 0;
}
