// Stand-in: see tests/macos/standins/README.md. The loader's functions and modes under macOS's
// names and values, for the files that include this header; the real ones stay untouched.
#pragma once

#include_next <dlfcn.h>

#undef RTLD_LAZY
#undef RTLD_LOCAL
#undef RTLD_DEFAULT
#define RTLD_LAZY 0x1
#define RTLD_LOCAL 0x4
#define RTLD_DEFAULT reinterpret_cast<void*>(-2)

#ifdef __cplusplus
extern "C" {
#endif
void* standinDlopen(const char* path, int mode);
void* standinDlsym(void* handle, const char* symbol);
int standinDlclose(void* handle);
#ifdef __cplusplus
}
#endif

#define dlopen standinDlopen
#define dlsym standinDlsym
#define dlclose standinDlclose
