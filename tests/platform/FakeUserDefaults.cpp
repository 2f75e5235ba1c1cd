#include "tests/platform/FakeUserDefaults.h"

namespace pelistra::testing {

bool FakeUserDefaults::hasObject(std::string_view key) const {
    return values.contains(key);
}

bool FakeUserDefaults::boolForKey(std::string_view key) const {
    const auto found = values.find(key);
    if (found == values.end()) {
        return false;
    }
    if (const auto* number = std::get_if<double>(&found->second)) {
        return *number != 0;
    }
    const auto* value = std::get_if<bool>(&found->second);
    return value != nullptr && *value;
}

void FakeUserDefaults::setBool(bool value, std::string_view key) {
    journal_.note("defaults[" + std::string(key) + "] = " + (value ? "true" : "false"));
    values.insert_or_assign(std::string(key), value);
}

void FakeUserDefaults::setNumber(double value, std::string_view key) {
    journal_.note("defaults[" + std::string(key) + "] = " + decimal(value));
    values.insert_or_assign(std::string(key), value);
}

} // namespace pelistra::testing
