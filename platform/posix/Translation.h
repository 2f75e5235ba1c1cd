#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace pelistra::posix {

// A text for the user's terminal in the language of the user's messages, as UTF-8: from the message
// catalogues of the installation that the program belongs to. English as it stands when there is no
// catalogue for the language, or the system has no such locale. "%1" to "%9" become the values.
// Reads locale and catalogue each time, so that a program that says nothing needs neither.
[[nodiscard]] std::string translated(const char* english,
                                     std::initializer_list<std::string_view> values = {});

} // namespace pelistra::posix
