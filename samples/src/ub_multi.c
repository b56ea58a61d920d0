/* Defects: several kinds of undefined behaviour in one run, each reported
 * by UBSan when built with -fsanitize=undefined:
 *  - signed integer overflow in scale();
 *  - shift exponent out of range in make_mask();
 *  - misaligned load through a cast pointer in read_word();
 *  - array index out of bounds in lookup(). */
#include <limits.h>
#include <stdio.h>

static int scale(int value, int factor)
{
    return value * factor;          /* overflows for large values */
}

static unsigned make_mask(int bits)
{
    return 1u << bits;              /* bits == 32 is out of range */
}

static int read_word(const char *buf, int offset)
{
    return *(const int *)(buf + offset);   /* offset 1: misaligned */
}

static int table[4] = {1, 2, 3, 4};

static int lookup(int i)
{
    return table[i];                /* i == 4 is out of bounds */
}

int main(void)
{
    _Alignas(int) char buf[16] = {0};
    volatile int big = INT_MAX / 2 + 1;
    volatile int bits = 32;
    volatile int idx = 4;

    printf("scale: %d\n", scale(big, 2));
    printf("mask: %u\n", make_mask(bits));
    printf("word: %d\n", read_word(buf, 1));
    printf("lookup: %d\n", lookup(idx));
    return 0;
}
