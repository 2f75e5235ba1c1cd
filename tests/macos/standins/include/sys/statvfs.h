// Stand-in: see tests/macos/standins/README.md. Where the application lies is the test's to say, for
// the files that include this header.
#pragma once

#include_next <sys/statvfs.h>

#ifdef __cplusplus
extern "C" {
#endif
int standinStatvfs(const char* path, struct statvfs* volume);
#ifdef __cplusplus
}
#endif

#define statvfs(path, volume) standinStatvfs(path, volume)
