#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace pelistra::desktop {

// A value of the user defaults.
using DefaultsValue = std::variant<bool, double, std::string>;

// The text of the defaults file: one value a line,
//
//     "hasCompletedOnboarding.0.1.0" = true
//     "NSStatusItem Preferred Position PelistraV3.Control" = 0
//     "some other key" = "a text"
//
// where the literal tells the type: true or false, a decimal number, or a quoted text. In quotes,
// \" \\ \n and \t stand for what they stand for everywhere. Lines that begin with # and empty lines
// are the user's own. Of two lines with the same key the later one holds. Whatever is not
// understood stays in the text as it is, so that changing one value loses nothing else.
class DefaultsText {
public:
    DefaultsText() = default;
    explicit DefaultsText(std::string_view text);

    [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const;
    // Whether there is a way to write the value: there is none for a number that is not finite.
    [[nodiscard]] static bool canHold(const DefaultsValue& value);
    // Replaces the value in its line, or adds a line. What cannot be held is ignored.
    void setValue(std::string_view key, const DefaultsValue& value);

    [[nodiscard]] std::string text() const;

    // The numbers (from 1) of the lines that were not understood.
    [[nodiscard]] const std::vector<std::size_t>& damagedLines() const { return damagedLines_; }

private:
    std::vector<std::string> lines_;
    // Where in lines_ a key's value stands.
    std::map<std::string, std::size_t, std::less<>> lineOfKey_;
    std::map<std::string, DefaultsValue, std::less<>> values_;
    std::vector<std::size_t> damagedLines_;
};

} // namespace pelistra::desktop
