#pragma once

#include "base/Published.h"
#include "platform/LoginItem.h"

#include <optional>
#include <string>

namespace pelistra {

// Whether this application is a login item, for a switch to show and to change. The system's
// registration is the only truth and is read again after every change; a change made elsewhere in
// the meantime is not noticed. Main thread only.
class LaunchAtLoginManager {
public:
    // The login item outlives the manager.
    explicit LaunchAtLoginManager(LoginItem& loginItem);

    // True exactly when the system reports the login item as enabled.
    Published<bool> isEnabled;
    // The system's description of the last change that failed; empty after one that succeeded.
    Published<std::optional<std::string>> errorMessage;

    // Registers or unregisters the application. Never throws: whatever happens ends in the two
    // properties.
    void setEnabled(bool enabled);

private:
    void readStatus();

    LoginItem& loginItem_;
};

} // namespace pelistra
