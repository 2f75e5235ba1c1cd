#include "menubar/notifier/RememberedItems.h"

#include "menubar/Log.h"
#include "menubar/OrderFile.h"
#include "platform/posix/PrivateFile.h"

#include <algorithm>
#include <utility>

namespace pelistra::menubar {

namespace {

constexpr std::string_view heading = "pelistra-menubar-notifiers 1 ";
// Above what as many items as the bar takes need.
constexpr std::size_t byteLimit = std::size_t{512} * 1024;
constexpr std::size_t mostItems = 1'000;

} // namespace

std::filesystem::path RememberedItems::defaultPath() {
    const std::filesystem::path order = OrderFile::defaultPath();
    return order.empty() ? order : order.parent_path() / "menubar-notifiers";
}

std::string RememberedItems::text(const std::string& bus, const std::vector<ItemAddress>& items) {
    std::string result = std::string(heading) + bus + '\n';
    for (const ItemAddress& item : items) {
        result += item.text() + '\n';
    }
    return result;
}

std::vector<ItemAddress> RememberedItems::parse(std::string_view text, const std::string& bus) {
    std::vector<ItemAddress> items;
    bool first = true;
    while (!text.empty() && items.size() < mostItems) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (std::exchange(first, false)) {
            if (line != std::string(heading) + bus) {
                return {};
            }
        } else if (auto item = addressIn(line, "");
                   item && std::ranges::find(items, *item) == items.end()) {
            items.push_back(*std::move(item));
        }
    }
    return items;
}

std::vector<ItemAddress> RememberedItems::read(const std::string& bus) {
    const auto content = path_.empty() ? std::nullopt : posix::readFile(path_, byteLimit);
    written_ = content.value_or("");
    return parse(written_, bus);
}

void RememberedItems::write(const std::string& bus, const std::vector<ItemAddress>& items) {
    std::string content = text(bus, items);
    if (content == written_ || path_.empty()) {
        return;
    }
    // A power cut ends the bus as well.
    const std::string fault =
        posix::writeFileAtomically(path_, content, posix::Worth::OutlivesProcess);
    if (!fault.empty()) {
        if (!std::exchange(failing_, true)) {
            log("cannot remember the items of the session bus in " + path_.string() + ": " + fault);
        }
        return;
    }
    failing_ = false;
    written_ = std::move(content);
}

} // namespace pelistra::menubar
