// Stand-in: see tests/macos/standins/README.md.
#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef struct CFArrayCallBacks CFArrayCallBacks;
typedef long CFIndex;
typedef double CFTimeInterval;

extern const CFAllocatorRef kCFAllocatorDefault;

void CFRelease(CFTypeRef cf);
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex numValues,
                         const CFArrayCallBacks* callBacks);

// Declared by Foundation.
id CFBridgingRelease(CFTypeRef X);

#ifdef __cplusplus
}
#endif
