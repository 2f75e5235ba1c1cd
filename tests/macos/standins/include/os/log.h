// Stand-in: see tests/macos/standins/README.md.
#pragma once

#import <Foundation/Foundation.h>

#include <stdint.h>

@interface StandinLog : NSObject {
  @public
    NSString* subsystem;
    NSString* category;
}
@end
typedef StandinLog* os_log_t;

typedef uint8_t os_log_type_t;
enum : os_log_type_t {
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11,
};

#ifdef __cplusplus
extern "C" {
#endif
os_log_t os_log_create(const char* subsystem, const char* category);
void standinLogWithType(os_log_t log, os_log_type_t type, const char* format, ...);
#ifdef __cplusplus
}
#endif

#define os_log_with_type(log, type, format, ...)                                                   \
    standinLogWithType(log, type, format, ##__VA_ARGS__)
