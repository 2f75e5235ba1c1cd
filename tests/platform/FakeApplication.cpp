#include "tests/platform/FakeApplication.h"

namespace pelistra::testing {

void FakeApplication::setActivationPolicy(ActivationPolicy policy) {
    journal_.note("activationPolicy = " + std::to_string(static_cast<int>(policy)));
}

std::optional<std::string> FakeApplication::infoText(std::string_view key) const {
    const auto found = info.find(key);
    return found == info.end() ? std::nullopt : std::optional(found->second);
}

} // namespace pelistra::testing
