#pragma once

#include <string>

namespace pelistra {

class Application;
class UserDefaults;

// Names the flag that records whether onboarding was completed. The name carries the application's
// version, so that onboarding is offered again after every update.
class PreferencesStore {
public:
    PreferencesStore(UserDefaults& defaults, const Application& application)
        : defaults_(defaults), application_(application) {}

    // The database that the flag is kept in, as a Boolean; absent reads as false.
    [[nodiscard]] UserDefaults& defaults() const { return defaults_; }

    // The flag's key, computed at every call.
    [[nodiscard]] std::string onboardingCompletedKey() const;

private:
    UserDefaults& defaults_;
    const Application& application_;
};

} // namespace pelistra
