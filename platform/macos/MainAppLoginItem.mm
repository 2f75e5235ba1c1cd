#include "platform/macos/MainAppLoginItem.h"

#include "platform/macos/Conversions.h"

#import <ServiceManagement/ServiceManagement.h>

namespace pelistra::appkit {

namespace {

static_assert(static_cast<NSInteger>(LoginItemStatus::Enabled) == SMAppServiceStatusEnabled);
static_assert(static_cast<NSInteger>(LoginItemStatus::RequiresApproval) ==
              SMAppServiceStatusRequiresApproval);
static_assert(static_cast<NSInteger>(LoginItemStatus::NotFound) == SMAppServiceStatusNotFound);

} // namespace

LoginItemStatus MainAppLoginItem::status() const {
    return static_cast<LoginItemStatus>([[SMAppService mainAppService] status]);
}

std::optional<std::string> MainAppLoginItem::registerItem() {
    NSError* error = nil;
    if ([[SMAppService mainAppService] registerAndReturnError:&error]) {
        return std::nullopt;
    }
    return utf8([error localizedDescription]);
}

std::optional<std::string> MainAppLoginItem::unregisterItem() {
    NSError* error = nil;
    if ([[SMAppService mainAppService] unregisterAndReturnError:&error]) {
        return std::nullopt;
    }
    return utf8([error localizedDescription]);
}

} // namespace pelistra::appkit
