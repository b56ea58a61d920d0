/* Defect: use after free.
 * release_name() frees the record's name, then print_record() reads it. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct record {
    int id;
    char *name;
};

static struct record *make_record(int id, const char *name)
{
    struct record *r = malloc(sizeof *r);
    r->id = id;
    r->name = malloc(strlen(name) + 1);
    strcpy(r->name, name);
    return r;
}

static void release_name(struct record *r)
{
    free(r->name);              /* pointer is not cleared */
}

static void print_record(const struct record *r)
{
    printf("record %d: first char '%c'\n", r->id, r->name[0]);   /* read of freed memory */
}

int main(void)
{
    struct record *r = make_record(7, "sample");
    release_name(r);
    print_record(r);
    free(r);
    return 0;
}
