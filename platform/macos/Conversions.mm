#include "platform/macos/Conversions.h"

#include "platform/macos/Owned.h"

namespace pelistra::macos {

NSString* nsString(std::string_view text) {
    const std::string terminated(text);
    NSString* string = [NSString stringWithUTF8String:terminated.c_str()];
    return string != nil ? string : @"";
}

std::string utf8(NSString* text) {
    const char* bytes = [text UTF8String];
    return bytes != nullptr ? bytes : "";
}

std::optional<std::string> textOf(id object) {
    if (object == nil || ![object isKindOfClass:[NSString class]]) {
        return std::nullopt;
    }
    return utf8(object);
}

} // namespace pelistra::macos
