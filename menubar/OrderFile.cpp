#include "menubar/OrderFile.h"

#include "menubar/Log.h"
#include "platform/posix/PrivateFile.h"

#include <cstdlib>
#include <optional>

namespace pelistra::menubar {

namespace {

// Above what as many items as are remembered need: two texts of four bytes a character, an ordinal
// and what stands between them.
constexpr std::size_t mostBytesPerLine = (std::size_t{2} * 4 * identityCharacterLimit) + 16;
constexpr std::size_t byteLimit = (OrderMemory::capacity + 1) * mostBytesPerLine;

std::filesystem::path absoluteFrom(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    const std::filesystem::path path = value != nullptr ? value : "";
    // The XDG rules: a relative path is as good as none.
    return path.is_absolute() ? path : std::filesystem::path();
}

} // namespace

std::filesystem::path OrderFile::defaultPath() {
    std::filesystem::path state = absoluteFrom("XDG_STATE_HOME");
    if (state.empty()) {
        const std::filesystem::path home = absoluteFrom("HOME");
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
