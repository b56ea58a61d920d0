/* Defect: file descriptor leak.
 * open_log() opens /dev/null for writing and nobody closes it. Valgrind
 * 3.19 reports this with --track-fds=yes only in its text output; newer
 * releases (XML protocol 5) also put it into the XML. */
#include <stdio.h>

static FILE *open_log(void)
{
    return fopen("/dev/null", "w");
}

int main(void)
{
    FILE *log = open_log();
    fprintf(log, "started\n");
    fflush(log);
    return 0;                   /* log is never closed */
}
