#include "promise.h"

#include <cstdio>
#include <cstdlib>

void require(bool kept, const char *promise)
{
    if (kept)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}
