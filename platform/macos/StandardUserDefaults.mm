#include "platform/macos/StandardUserDefaults.h"

#include "platform/macos/Conversions.h"

namespace pelistra::macos {

bool StandardUserDefaults::hasObject(std::string_view key) const {
    return [[NSUserDefaults standardUserDefaults] objectForKey:nsString(key)] != nil;
}

bool StandardUserDefaults::boolForKey(std::string_view key) const {
    return [[NSUserDefaults standardUserDefaults] boolForKey:nsString(key)] == YES;
}

void StandardUserDefaults::setBool(bool value, std::string_view key) {
    [[NSUserDefaults standardUserDefaults] setBool:(value ? YES : NO) forKey:nsString(key)];
}

void StandardUserDefaults::setNumber(double value, std::string_view key) {
    [[NSUserDefaults standardUserDefaults] setObject:[NSNumber numberWithDouble:value]
                                              forKey:nsString(key)];
}

} // namespace pelistra::macos
