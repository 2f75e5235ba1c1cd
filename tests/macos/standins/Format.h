#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing::standins {

// Replaces every {} of the pattern by the next argument; {{ and }} stand for braces.
template <class... Arguments>
[[nodiscard]] std::string format(std::string_view pattern, const Arguments&... arguments) {
    std::vector<std::string> texts;
    const auto add = [&texts](const auto& argument) {
        std::ostringstream stream;
        stream.precision(10);
        stream << argument;
        texts.push_back(stream.str());
    };
    (add(arguments), ...);
    std::string result;
    std::size_t next = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const std::string_view pair = pattern.substr(i, 2);
        if (pair == "{}") {
            result += texts.at(next++);
            ++i;
        } else {
            result += pattern[i];
            i += pair == "{{" || pair == "}}" ? 1 : 0;
        }
    }
    return result;
}

[[nodiscard]] inline std::string hexadecimal(unsigned long value) {
    std::ostringstream stream;
    stream << "0x" << std::hex << value;
    return stream.str();
}

} // namespace pelistra::testing::standins
