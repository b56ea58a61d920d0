/* Main program calling into libbuggy.so, so error stacks contain frames
 * from two modules. Defects: the string from buggy_label() is never freed
 * (leak allocated inside the library), and buggy_average() reads one
 * element past the end of the array it is given (heap over-read). */
#include <stdio.h>
#include <stdlib.h>

double buggy_average(const int *values, int n);
char *buggy_label(int id);

static void show_label(int id)
{
    char *label = buggy_label(id);
    printf("label = %s\n", label);     /* label is leaked */
}

static double summarise(int n)
{
    int *v = malloc(n * sizeof *v);
    for (int i = 0; i < n; i++)
        v[i] = i + 1;
    double avg = buggy_average(v, n);
    free(v);
    return avg;
}

int main(void)
{
    show_label(3);
    printf("average = %.2f\n", summarise(8));
    return 0;
}
