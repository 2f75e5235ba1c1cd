// Stand-in: see tests/macos/standins/README.md.
#pragma once

#import <Foundation/Foundation.h>

typedef enum : NSInteger {
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3,
} SMAppServiceStatus;

@interface SMAppService : NSObject
+ (SMAppService*)mainAppService;
- (SMAppServiceStatus)status;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;
@end
