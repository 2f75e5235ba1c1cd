#pragma once

#include "platform/UserDefaults.h"
#include "tests/platform/Journal.h"

#include <functional>
#include <map>
#include <string>
#include <variant>

namespace pelistra::testing {

// Journal: "defaults[<key>] = <value>".
class FakeUserDefaults final : public UserDefaults {
public:
    using Value = std::variant<bool, double, std::string>;

    explicit FakeUserDefaults(Journal& journal) : journal_(journal) {}

    [[nodiscard]] bool hasObject(std::string_view key) const override;
    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    void setBool(bool value, std::string_view key) override;
    void setNumber(double value, std::string_view key) override;

    std::map<std::string, Value, std::less<>> values;

private:
    Journal& journal_;
};

} // namespace pelistra::testing
