#include "platform/macos/MainAppLoginItem.h"

#include "platform/macos/Conversions.h"

#import <ServiceManagement/ServiceManagement.h>

namespace pelistra::macos {

namespace {

static_assert(static_cast<NSInteger>(LoginItemStatus::Enabled) == SMAppServiceStatusEnabled);
static_assert(static_cast<NSInteger>(LoginItemStatus::RequiresApproval) ==
              SMAppServiceStatusRequiresApproval);
static_assert(static_cast<NSInteger>(LoginItemStatus::NotFound) == SMAppServiceStatusNotFound);

// A disk image, or where the system runs a downloaded application until it is moved: gone at the
// next login.
bool isInReadOnlyPlace() {
    id isReadOnly = nil;
    [[[NSBundle mainBundle] bundleURL] getResourceValue:&isReadOnly
                                                 forKey:NSURLVolumeIsReadOnlyKey
                                                  error:nullptr];
    return [isReadOnly boolValue] == YES;
}

} // namespace

LoginItemStatus MainAppLoginItem::status() const {
    return static_cast<LoginItemStatus>([[SMAppService mainAppService] status]);
}

std::optional<std::string> MainAppLoginItem::registerItem() {
    if (isInReadOnlyPlace()) {
        return "Pelistra 正从只读的位置运行。请先把它移到“应用程序”文件夹，再从那里打开。";
    }
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

} // namespace pelistra::macos
