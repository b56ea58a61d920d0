/* Defect: data race on a global counter.
 * Two threads increment `counter` without holding a lock. */
#include <pthread.h>
#include <stdio.h>

#define ITERATIONS 1000

static long counter;

static void *worker(void *arg)
{
    (void)arg;
    for (int i = 0; i < ITERATIONS; i++)
        counter++;              /* unsynchronised read-modify-write */
    return NULL;
}

int main(void)
{
    pthread_t t1, t2;
    pthread_create(&t1, NULL, worker, NULL);
    pthread_create(&t2, NULL, worker, NULL);
    pthread_join(t1, NULL);
    pthread_join(t2, NULL);
    printf("counter = %ld\n", counter);
    return 0;
}
