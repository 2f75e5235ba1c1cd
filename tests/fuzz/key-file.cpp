// Files of keys and values, whoever wrote them, and changes to them. Input: a line with a key, a
// line with a text, then the file.

#include "platform/linux/settings/KeyFile.h"
#include "tests/fuzz/Check.h"

#include <algorithm>

namespace pelistra::fuzz {
namespace {

using linux::KeyFile;

constexpr const char* group = "Defaults";

// A change is there after it was written and read, and costs nothing else.
void checkChange(KeyFile file, const std::string& value) {
    const std::string other = file.text(group, "other");
    const auto texts = file.list(group, "list");
    file.setText(group, "key", value);
    std::string fault;
    const auto again = KeyFile::parse(file.wholeText(), fault);
    check(again.has_value());
    check(!isClean(value) || again->text(group, "key") == value);
    check(again->text(group, "other") == other);
    check(again->list(group, "list") == texts);
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    const std::string key = input.line();
    std::string value = input.line();
    std::erase(value, '\0');
    std::string fault;
    if (auto file = linux::KeyFile::parse(input.restAsText(), fault)) {
        check(isUtf8(file->text(group, key)));
        check(isUtf8(file->localText(group, key, "zh_CN")));
        checkChange(std::move(*file), value);
    } else {
        check(!fault.empty());
    }
}
