#include "platform/linux/ListItemsText.h"

#include "platform/x11/Utf8.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace pelistra::desktop {

namespace {

constexpr std::size_t columnCount = 9;
using Row = std::array<std::string, columnCount>;

std::string number(double value) {
    std::ostringstream text;
    text << std::defaultfloat << std::setprecision(10) << value;
    return text.str();
}

std::string hexadecimal(WindowId id) {
    std::ostringstream text;
    text << "0x" << std::hex << id;
    return text.str();
}

std::string frameText(const Rect& frame) {
    return number(frame.origin.x) + "," + number(frame.origin.y) + " " + number(frame.size.width) +
           "x" + number(frame.size.height);
}

Row rowOf(const ListedItem& item) {
    const auto orDash = [](const std::string& text) { return text.empty() ? "-" : text; };
    return {hexadecimal(item.id),
            std::to_string(item.process),
            orDash(item.owner),
            orDash(item.windowName),
            orDash(item.desktopId.value_or("")),
            frameText(item.frame),
            item.hidden ? "hidden" : "shown",
            orDash(item.displayName),
            orDash(item.fallbackSymbol)};
}

// A JSON string; the texts are valid UTF-8 already.
std::string quoted(const std::string& text) {
    std::ostringstream result;
    result << '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result << '\\' << c;
        } else if (static_cast<unsigned char>(c) < ' ') {
            result << "\\u" << std::hex << std::setw(4) << std::setfill('0') << static_cast<int>(c)
                   << std::dec;
        } else {
            result << c;
        }
    }
    result << '"';
    return result.str();
}

struct Range {
    char32_t first;
    char32_t last;
};

bool isIn(char32_t character, const auto& ranges) {
    return std::ranges::any_of(ranges, [&](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

int columnsOfCharacter(char32_t character) {
    static constexpr std::array<Range, 5> combining{{{.first = 0x0300, .last = 0x036F},
                                                     {.first = 0x0591, .last = 0x05C7},
                                                     {.first = 0x200B, .last = 0x200F},
                                                     {.first = 0x20D0, .last = 0x20FF},
                                                     {.first = 0xFE00, .last = 0xFE0F}}};
    static constexpr std::array<Range, 7> wide{{{.first = 0x1100, .last = 0x115F},
                                                {.first = 0x2E80, .last = 0xA4CF},
                                                {.first = 0xAC00, .last = 0xD7A3},
                                                {.first = 0xF900, .last = 0xFAFF},
                                                {.first = 0xFF00, .last = 0xFF60},
                                                {.first = 0x1F300, .last = 0x1FAFF},
                                                {.first = 0x20000, .last = 0x3FFFD}}};
    if (isIn(character, combining)) {
        return 0;
    }
    return isIn(character, wide) ? 2 : 1;
}

void writeRow(std::ostream& out, const Row& row, const std::array<int, columnCount>& widths) {
    std::string line;
    for (std::size_t i = 0; i < columnCount; ++i) {
        line += row.at(i);
        const int padding = widths.at(i) + 2 - columnsOf(row.at(i));
        line.append(i + 1 < columnCount ? static_cast<std::size_t>(padding) : 0, ' ');
    }
    out << line << '\n';
}

} // namespace

int columnsOf(const std::string& utf8) {
    int columns = 0;
    for (std::string_view rest = utf8; !rest.empty();) {
        const x11::Decoded next = x11::firstCharacter(rest);
        columns += columnsOfCharacter(next.character);
        rest.remove_prefix(next.length);
    }
    return columns;
}

void writeTable(std::ostream& out, const std::vector<ListedItem>& items) {
    const Row heading{"WINDOW", "PROCESS", "OWNER",        "NAME",  "DESKTOP ID",
                      "FRAME",  "STATE",   "DISPLAY NAME", "SYMBOL"};
    std::vector<Row> rows{heading};
    std::ranges::transform(items, std::back_inserter(rows), rowOf);
    std::array<int, columnCount> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < columnCount; ++i) {
            widths.at(i) = std::max(widths.at(i), columnsOf(row.at(i)));
        }
    }
    for (const Row& row : rows) {
        writeRow(out, row, widths);
    }
}

void writeJson(std::ostream& out, const std::vector<ListedItem>& items) {
    out << '[';
    for (const ListedItem& item : items) {
        out << (&item == &items.front() ? "\n" : ",\n") << R"(  {"id": )" << item.id
            << ", \"process\": " << item.process << ", \"owner\": " << quoted(item.owner)
            << ", \"windowName\": " << quoted(item.windowName) << R"(, "desktopId": )"
            << (item.desktopId ? quoted(*item.desktopId) : "null") << R"(, "frame": {"x": )"
            << number(item.frame.origin.x) << ", \"y\": " << number(item.frame.origin.y)
            << ", \"width\": " << number(item.frame.size.width)
            << ", \"height\": " << number(item.frame.size.height) << R"(}, "hidden": )"
            << (item.hidden ? "true" : "false") << ", \"displayName\": " << quoted(item.displayName)
            << ", \"fallbackSymbol\": " << quoted(item.fallbackSymbol) << '}';
    }
    out << (items.empty() ? "]\n" : "\n]\n");
}

} // namespace pelistra::desktop
