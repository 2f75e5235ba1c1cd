#include "Attachments.h"

#import <AppKit/AppKit.h>

#include <objc/runtime.h>

#include <algorithm>
#include <unordered_map>

namespace pelistra::testing::standins {

namespace {

using Any = void (*)();
using Dealloc = void (*)(id, SEL);

std::unordered_map<id, NSMutableDictionary*> attachments;

void forget(id object) {
    const auto found = attachments.find(object);
    if (found != attachments.end()) {
        NSMutableDictionary* values = found->second;
        attachments.erase(found);
        [values release];
    }
}

template <int Tag> struct ForgetAtTheEnd {
    static inline Dealloc original = nullptr;

    static void call(id self, SEL selector) {
        forget(self);
        original(self, selector);
    }

    static void install(Class inClass) {
        Method method = class_getInstanceMethod(inClass, @selector(dealloc));
        original = reinterpret_cast<Dealloc>(reinterpret_cast<Any>(method_setImplementation(
            method, reinterpret_cast<IMP>(reinterpret_cast<Any>(&ForgetAtTheEnd::call)))));
    }
};

} // namespace

NSMutableDictionary* attachmentsOf(id object) {
    NSMutableDictionary*& values = attachments[object];
    if (values == nil) {
        values = [[NSMutableDictionary alloc] init];
    }
    return values;
}

std::size_t liveViews() {
    return static_cast<std::size_t>(std::ranges::count_if(attachments, [](const auto& each) {
        return [each.first isKindOfClass:[NSView class]] && [each.first layer] != nil;
    }));
}

void installAttachments() {
    ForgetAtTheEnd<0>::install([NSView class]);
    ForgetAtTheEnd<1>::install([NSImage class]);
    ForgetAtTheEnd<2>::install([NSWindow class]);
}

} // namespace pelistra::testing::standins
