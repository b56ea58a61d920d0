/* Defect: double free.
 * cleanup() frees the buffer that main() has already freed. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static char *buffer;

static void cleanup(void)
{
    free(buffer);               /* second free of the same block */
}

int main(void)
{
    buffer = malloc(32);
    strcpy(buffer, "double free sample");
    puts(buffer);
    free(buffer);
    cleanup();
    return 0;
}
