#pragma once

#include "platform/linux/settings/KeyFile.h"

#include <optional>
#include <string_view>

namespace pelistra::linux {

// The user defaults as version 0.1.0 wrote them: `"key" = value` on each line, with a true, false,
// a number or a quoted text for a value, beside comments. The same keys and values in the given
// group of a key file; empty when the text has another form.
[[nodiscard]] std::optional<KeyFile> fromFirstDefaultsForm(std::string_view text,
                                                           const char* group);

} // namespace pelistra::linux
