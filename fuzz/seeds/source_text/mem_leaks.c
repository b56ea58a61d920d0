/* Defects: memory leaks.
 *  - definite leak: a block whose only pointer is overwritten;
 *  - possible leak: only a pointer into the middle of a block is kept;
 *  - a definite leak allocated at the bottom of a deep call chain
 *    (load_settings -> parse_config -> read_section -> read_block ->
 *     read_entry -> read_value -> copy_token -> alloc_token). */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static char *interior;          /* keeps only an interior pointer */

static void definite_leak(void)
{
    char *p = malloc(64);
    strcpy(p, "lost");
    p = NULL;                   /* the only reference is gone */
    (void)p;
}

static void possible_leak(void)
{
    char *p = malloc(128);
    memset(p, 0, 128);
    interior = p + 16;          /* start of block no longer referenced */
}

static char *alloc_token(size_t n)  { return malloc(n); }
static char *copy_token(const char *s)
{
    char *t = alloc_token(strlen(s) + 1);
    strcpy(t, s);
    return t;
}
static char *read_value(const char *s)    { return copy_token(s); }
static char *read_entry(const char *s)    { return read_value(s); }
static size_t read_block(const char *s)
{
    char *v = read_entry(s);
    return strlen(v);           /* v is never freed */
}
static size_t read_section(const char *s) { return read_block(s); }
static size_t parse_config(void)          { return read_section("key=value"); }
static size_t load_settings(void)         { return parse_config(); }

int main(void)
{
    definite_leak();
    possible_leak();
    printf("parsed %zu bytes\n", load_settings());
    return 0;
}
