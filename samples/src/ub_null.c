/* Defect: null pointer dereference.
 * find_node() returns NULL for an unknown key and the caller reads a member
 * through it. UBSan reports the member access before the load faults. */
#include <stdio.h>
#include <stddef.h>

struct node {
    int key;
    int value;
};

static struct node nodes[2] = {{1, 10}, {2, 20}};

static struct node *find_node(int key)
{
    for (int i = 0; i < 2; i++)
        if (nodes[i].key == key)
            return &nodes[i];
    return NULL;
}

static int value_of(int key)
{
    struct node *n = find_node(key);
    return n->value;                /* n is NULL for key 3 */
}

int main(void)
{
    printf("value of 1: %d\n", value_of(1));
    printf("value of 3: %d\n", value_of(3));
    return 0;
}
