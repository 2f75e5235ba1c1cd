#include "ui/LaunchAtLoginManager.h"

namespace pelistra {

LaunchAtLoginManager::LaunchAtLoginManager(LoginItem& loginItem) : loginItem_(loginItem) {
    readStatus();
}

void LaunchAtLoginManager::setEnabled(bool enabled) {
    errorMessage.set(enabled ? loginItem_.registerItem() : loginItem_.unregisterItem());
    readStatus();
}

void LaunchAtLoginManager::readStatus() {
    isEnabled.set(loginItem_.status() == LoginItemStatus::Enabled);
}

} // namespace pelistra
