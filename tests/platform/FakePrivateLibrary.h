#pragma once

#include "platform/PrivateLibrary.h"
#include "tests/platform/Journal.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pelistra::testing {

// A window server with the windows that a test puts there. Journal: "dlopen <path> <mode>",
// "dlsym <symbol>", "dlclose", "mainConnection", "windowCount(<connection>, <target>)",
// "menuBarWindowList(<connection>, <target>, <capacity>)", "windowFrame(<connection>, <window>)".
class FakePrivateLibrary final : public PrivateLibrary {
public:
    explicit FakePrivateLibrary(Journal& journal) : journal_(journal) {}

    [[nodiscard]] LibraryHandle open(const std::string& path, int mode) override;
    void close(LibraryHandle handle) override;
    [[nodiscard]] MainConnectionFunction resolveMainConnection(LibraryHandle handle,
                                                               const std::string& symbol) override;
    [[nodiscard]] WindowCountFunction resolveWindowCount(LibraryHandle handle,
                                                         const std::string& symbol) override;
    [[nodiscard]] MenuBarWindowListFunction
    resolveMenuBarWindowList(LibraryHandle handle, const std::string& symbol) override;
    [[nodiscard]] WindowFrameFunction resolveWindowFrame(LibraryHandle handle,
                                                         const std::string& symbol) override;

    bool missing = false;
    std::set<std::string> missingSymbols;

    ConnectionId connection = 77;
    WindowServerError countError = windowServerSuccess;
    WindowServerError listError = windowServerSuccess;
    // In the window server's order.
    std::vector<WindowId> ids;
    // What the counts say where that is not the number of ids. The ids are written as far as there
    // is capacity.
    std::optional<std::int32_t> count;
    std::optional<std::int32_t> listed;
    // Asking for the frame of a window that is not here fails.
    std::map<WindowId, Rect> frames;
    // Windows for which the frame call writes their frame and yet answers this error.
    std::map<WindowId, WindowServerError> frameErrors;

    // How many opened handles were not closed.
    int openHandles = 0;
    // Uses of a handle that was not open, and of out parameters that were not zero beforehand.
    int misuses = 0;

private:
    // Notes the look-up; whether the symbol is there.
    bool resolves(LibraryHandle handle, const std::string& symbol);
    void expectOpen(bool zeroed);

    WindowServerError answerCount(std::int32_t* outCount);
    WindowServerError answerList(std::int32_t capacity, WindowId* outList, std::int32_t* outCount);
    WindowServerError answerFrame(WindowId window, Rect* outRect);

    Journal& journal_;
    char library_ = 0;
};

} // namespace pelistra::testing
