/* Says of how many bits it is. What follows runs under the same wine: one that cannot run programs of these bits may
 * end with success all the same, but it does not say this line. */
#include <stdio.h>

int main(void)
{
    printf("a program of %d bits\n", 8 * (int)sizeof(void*));
    return 0;
}
