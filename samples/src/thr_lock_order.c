/* Defect: lock-order inversion (potential deadlock).
 * transfer_ab() takes lock_a then lock_b; transfer_ba() takes lock_b then
 * lock_a. The threads run one after the other so the program never
 * actually deadlocks, but the inconsistent order is a latent deadlock. */
#include <pthread.h>
#include <stdio.h>

static pthread_mutex_t lock_a = PTHREAD_MUTEX_INITIALIZER;
static pthread_mutex_t lock_b = PTHREAD_MUTEX_INITIALIZER;
static int balance_a = 100;
static int balance_b = 100;

static void *transfer_ab(void *arg)
{
    (void)arg;
    pthread_mutex_lock(&lock_a);
    pthread_mutex_lock(&lock_b);
    balance_a -= 10;
    balance_b += 10;
    pthread_mutex_unlock(&lock_b);
    pthread_mutex_unlock(&lock_a);
    return NULL;
}

static void *transfer_ba(void *arg)
{
    (void)arg;
    pthread_mutex_lock(&lock_b);
    pthread_mutex_lock(&lock_a);   /* opposite order to transfer_ab */
    balance_b -= 5;
    balance_a += 5;
    pthread_mutex_unlock(&lock_a);
    pthread_mutex_unlock(&lock_b);
    return NULL;
}

int main(void)
{
    pthread_t t;
    pthread_create(&t, NULL, transfer_ab, NULL);
    pthread_join(t, NULL);
    pthread_create(&t, NULL, transfer_ba, NULL);
    pthread_join(t, NULL);
    printf("a = %d, b = %d\n", balance_a, balance_b);
    return 0;
}
