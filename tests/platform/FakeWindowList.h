#pragma once

#include "platform/WindowList.h"
#include "tests/platform/Journal.h"

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace pelistra::testing {

// Journal: "copyWindowInfo".
class FakeWindowList final : public WindowList {
public:
    explicit FakeWindowList(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override;

    // Puts a status-item window of that process there, or moves the one that is there already.
    void place(ProcessId owner, std::string_view name, double x, double width);
    // Takes the windows of that name away.
    void remove(std::string_view name);

    // Empty when the window server gives no answer.
    std::optional<std::vector<WindowInfo>> windows = std::vector<WindowInfo>();
    // Runs before each answer, told how many answers were given before.
    std::function<void(int answered)> beforeAnswer;
    int answers = 0;

private:
    Journal& journal_;
};

} // namespace pelistra::testing
