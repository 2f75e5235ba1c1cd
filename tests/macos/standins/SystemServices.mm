#include "World.h"

#include <dispatch/dispatch.h>

#include <cstdarg>
#include <cstdio>
#include <deque>
#include <functional>

using namespace pelistra::testing::standins;

// GNUstep does not know this one.
@implementation NSURL (StandinVolume)

- (BOOL)getResourceValue:(id*)value forKey:(NSString*)key error:(NSError**)error {
    (void)error;
    const BOOL isKnown = [key isEqual:NSURLVolumeIsReadOnlyKey];
    *value = isKnown ? [NSNumber numberWithBool:world().volumeIsReadOnly] : nil;
    return isKnown;
}

@end

// Unified logging

@implementation StandinLog
@end

os_log_t os_log_create(const char* subsystem, const char* category) {
    record(std::string("os_log_create ") + subsystem + " " + category);
    StandinLog* log = [[StandinLog alloc] init];
    log->subsystem = [[NSString alloc] initWithUTF8String:subsystem];
    log->category = [[NSString alloc] initWithUTF8String:category];
    return log;
}

namespace {

// The privacy of a value is told in braces, which printf does not know. A private value would show
// as such in the real log.
std::string withoutPrivacy(std::string format) {
    constexpr std::string_view isPublic = "{public}";
    std::size_t position = 0;
    while ((position = format.find('%', position)) != std::string::npos) {
        ++position;
        if (format.compare(position, isPublic.size(), isPublic) == 0) {
            format.erase(position, isPublic.size());
        } else {
            format.replace(position - 1, 2, "<private>");
        }
    }
    return format;
}

} // namespace

void standinLogWithType(os_log_t log, os_log_type_t type, const char* format, ...) {
    char message[4096];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, withoutPrivacy(format).c_str(), arguments);
    va_end(arguments);
    world().log.push_back({.subsystem = [log->subsystem UTF8String],
                           .category = [log->category UTF8String],
                           .type = type,
                           .message = message});
}

// Dispatch: blocks run on the main run loop, in its common modes

@interface StandinDispatcher : NSObject {
  @public
    std::function<void()> work;
}
- (void)fire:(NSTimer*)timer;
@end

@implementation StandinDispatcher
- (void)fire:(NSTimer*)timer {
    (void)timer;
    work();
}
@end

namespace {

std::deque<dispatch_block_t> blocks;
bool turnIsScheduled = false;

void fireAfter(double seconds, std::function<void()> work) {
    const Unrecorded inside;
    StandinDispatcher* dispatcher = [[[StandinDispatcher alloc] init] autorelease];
    dispatcher->work = std::move(work);
    NSTimer* timer = [NSTimer timerWithTimeInterval:seconds
                                             target:dispatcher
                                           selector:@selector(fire:)
                                           userInfo:nil
                                            repeats:NO];
    for (NSString* mode in
         @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ]) {
        [[NSRunLoop mainRunLoop] addTimer:timer forMode:mode];
    }
}

void runBlocks() {
    turnIsScheduled = false;
    for (std::size_t remaining = blocks.size(); remaining > 0; --remaining) {
        dispatch_block_t block = blocks.front();
        blocks.pop_front();
        block();
        Block_release(block);
    }
}

void enqueue(dispatch_block_t block) {
    blocks.push_back(block);
    if (!turnIsScheduled) {
        turnIsScheduled = true;
        fireAfter(0, [] { runBlocks(); });
    }
}

} // namespace

dispatch_queue_t dispatch_get_main_queue() { return nullptr; }

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
    return when + static_cast<dispatch_time_t>(delta);
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
    (void)queue;
    enqueue(Block_copy(block));
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block) {
    (void)queue;
    record("dispatch_after " + std::to_string(when));
    dispatch_block_t copy = Block_copy(block);
    fireAfter(static_cast<double>(when) / static_cast<double>(NSEC_PER_SEC),
              [copy] { enqueue(copy); });
}

// Login item

@implementation SMAppService

+ (SMAppService*)mainAppService {
    static SMAppService* service = [[SMAppService alloc] init];
    return service;
}

- (SMAppServiceStatus)status {
    return world().loginItemStatus;
}

- (BOOL)finish:(NSError**)error with:(SMAppServiceStatus)status {
    if (const auto& refusal = world().loginItemRefusal) {
        *error = [NSError
            errorWithDomain:@"SMAppServiceErrorDomain"
                       code:1
                   userInfo:@{
                       NSLocalizedDescriptionKey : [NSString stringWithUTF8String:refusal->c_str()]
                   }];
        return NO;
    }
    world().loginItemStatus = status;
    return YES;
}

- (BOOL)registerAndReturnError:(NSError**)error {
    record("SMAppService registerAndReturnError");
    return [self finish:error with:world().statusAfterRegistering];
}

- (BOOL)unregisterAndReturnError:(NSError**)error {
    record("SMAppService unregisterAndReturnError");
    return [self finish:error with:SMAppServiceStatusNotRegistered];
}

@end
