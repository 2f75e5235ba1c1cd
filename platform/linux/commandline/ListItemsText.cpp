#include "platform/linux/commandline/ListItemsText.h"

#include "platform/x11/Utf8.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string_view>

#include <locale.h>
#include <nlohmann/json.hpp>
#include <wchar.h>

namespace pelistra::linux {

namespace {

constexpr std::size_t columnCount = 10;
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
            item.kind,
            orDash(item.owner),
            orDash(item.windowName),
            orDash(item.desktopId.value_or("")),
            frameText(item.frame),
            item.hidden ? "hidden" : "shown",
            orDash(item.displayName),
            orDash(item.fallbackSymbol)};
}

// In force while it lives, whatever the user's own locale is: what is written is UTF-8.
class Utf8Locale {
public:
    Utf8Locale()
        : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)), before_(uselocale(locale_)) {}
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    ~Utf8Locale() {
        uselocale(before_);
        freelocale(locale_);
    }

private:
    locale_t locale_;
    locale_t before_;
};

// The columns that a text takes in a terminal.
int columnsOf(std::string_view utf8) {
    int columns = 0;
    while (!utf8.empty()) {
        const x11::Decoded next = x11::firstCharacter(utf8);
        columns += std::max(0, ::wcwidth(static_cast<wchar_t>(next.character)));
        utf8.remove_prefix(next.length);
    }
    return columns;
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

void writeTable(std::ostream& out, const std::vector<ListedItem>& items) {
    const Utf8Locale locale;
    const Row heading{"WINDOW",     "PROCESS", "KIND",  "OWNER",        "NAME",
                      "DESKTOP ID", "FRAME",   "STATE", "DISPLAY NAME", "SYMBOL"};
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
        const Rect& frame = item.frame;
        nlohmann::ordered_json object{{"id", item.id},
                                      {"process", item.process},
                                      {"kind", item.kind},
                                      {"owner", item.owner},
                                      {"windowName", item.windowName},
                                      {"desktopId", nullptr},
                                      {"frame",
                                       {{"x", frame.origin.x},
                                        {"y", frame.origin.y},
                                        {"width", frame.size.width},
                                        {"height", frame.size.height}}},
                                      {"hidden", item.hidden},
                                      {"displayName", item.displayName},
                                      {"fallbackSymbol", item.fallbackSymbol}};
        if (item.desktopId) {
            object["desktopId"] = *item.desktopId;
        }
        out << (&item == &items.front() ? "\n  " : ",\n  ") << object;
    }
    out << (items.empty() ? "]\n" : "\n]\n");
}

} // namespace pelistra::linux
