#include "app/PreferencesStore.h"

#include "platform/Application.h"

namespace pelistra {

std::string PreferencesStore::onboardingCompletedKey() const {
    return "hasCompletedOnboarding." +
           application_.infoText("CFBundleShortVersionString").value_or("unknown");
}

} // namespace pelistra
