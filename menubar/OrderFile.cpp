#include "menubar/OrderFile.h"

#include "menubar/Log.h"
#include "platform/posix/Environment.h"
#include "platform/posix/PrivateFile.h"

#include <optional>

namespace pelistra::menubar {

namespace {

// Above what as many items as are remembered need: two texts of four bytes a character, an ordinal
// and what stands between them.
constexpr std::size_t mostBytesPerLine = (std::size_t{2} * 4 * identityCharacterLimit) + 16;
constexpr std::size_t byteLimit = (OrderMemory::capacity + 1) * mostBytesPerLine;

} // namespace

std::filesystem::path OrderFile::defaultPath() {
    std::filesystem::path state = posix::environmentPath("XDG_STATE_HOME");
    if (state.empty()) {
        const std::filesystem::path home = posix::environmentPath("HOME");
        if (home.empty()) {
            return {};
        }
        state = home / ".local" / "state";
    }
    return state / "pelistra" / "menubar-order";
}

OrderMemory OrderFile::read() {
    const std::optional<std::string> content =
        path_.empty() ? std::nullopt : posix::readFile(path_, byteLimit);
    if (!content) {
        std::error_code error;
        if (!path_.empty() && std::filesystem::exists(path_, error)) {
            log("cannot read the order of the items from " + path_.string());
        }
        return {};
    }
    const OrderMemory::Parsed parsed = OrderMemory::parse(*content);
    if (parsed.damagedLines > 0) {
        log(path_.string() + " is damaged: " + std::to_string(parsed.damagedLines) +
            " lines make no sense and are left out");
    }
    written_ = *content;
    return parsed.memory;
}

void OrderFile::write(const OrderMemory& memory) {
    std::string content = memory.text();
    if (content == written_ || path_.empty()) {
        return;
    }
    const std::string fault = posix::writeFileAtomically(path_, content);
    if (!fault.empty()) {
        if (!failing_) {
            log("cannot keep the order of the items in " + path_.string() + ": " + fault);
        }
        failing_ = true;
        return;
    }
    failing_ = false;
    written_ = std::move(content);
}

} // namespace pelistra::menubar
