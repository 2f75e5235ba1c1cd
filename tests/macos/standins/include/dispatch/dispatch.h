// Stand-in: see tests/macos/standins/README.md.
#pragma once

#include <stdint.h>

#define NSEC_PER_SEC 1000000000ull
#define DISPATCH_TIME_NOW (0ull)

typedef struct dispatch_queue_s* dispatch_queue_t;
typedef uint64_t dispatch_time_t;
typedef void (^dispatch_block_t)(void);

#ifdef __cplusplus
extern "C" {
#endif
dispatch_queue_t dispatch_get_main_queue(void);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
#ifdef __cplusplus
}
#endif
