// The defaults file, whoever wrote it, and changes to it. Input: the bytes of a number, a line with
// a key, a line with a text, then the file.

#include "platform/linux/DefaultsText.h"
#include "tests/fuzz/Check.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pelistra::fuzz {
namespace {

using desktop::DefaultsText;
using desktop::DefaultsValue;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

void checkRoundTrip(const DefaultsText& text) {
    const DefaultsText again(text.text());
    check(again.text() == text.text());
    check(again.damagedLines() == text.damagedLines());
}

// A change is there, also after it was written and read, and costs no other line.
void checkChange(const DefaultsText& before, const std::string& key, const DefaultsValue& value) {
    DefaultsText after = before;
    after.setValue(key, value);
    check(after.value(key) == value);
    const DefaultsText again(after.text());
    check(again.value(key) == value);
    check(again.text() == after.text());
    check(again.damagedLines().size() <= before.damagedLines().size());
    after.setValue(key, value);
    check(after.text() == again.text());

    const auto oldLines = linesOf(before.text());
    const auto newLines = linesOf(after.text());
    check(newLines.size() >= oldLines.size() && newLines.size() <= oldLines.size() + 2);
    long changed = 0;
    for (std::size_t i = 0; i < oldLines.size(); ++i) {
        changed += oldLines[i] == newLines[i] ? 0 : 1;
    }
    check(changed <= (before.value(key) ? 1 : 0));
}

// What is no number in the file's sense changes nothing.
void checkNumber(const DefaultsText& before, const std::string& key, double number) {
    if (std::isfinite(number)) {
        checkChange(before, key, number);
        return;
    }
    DefaultsText after = before;
    after.setValue(key, number);
    check(after.text() == before.text());
    check(after.value(key) == before.value(key));
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    double number = 0;
    const auto bytes = input.bytes(sizeof number);
    if (!bytes.empty()) {
        std::memcpy(&number, bytes.data(), bytes.size());
    }
    const std::string key = input.line();
    const std::string text = input.line();
    const desktop::DefaultsText file(input.restAsText());
    checkRoundTrip(file);
    checkNumber(file, key, number);
    checkChange(file, key, text);
    checkChange(file, key, text + '\n' + key);
    checkChange(file, key, text.size() % 2 == 0);
}
