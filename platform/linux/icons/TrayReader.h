#pragma once

#include "base/Geometry.h"
#include "platform/linux/icons/TrayQuestions.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace pelistra::linux {

// Looks at the system tray, whoever runs it. A look sends its requests in batches, so that it waits
// for the server a fixed number of times whatever the number of icons: at most mostRoundTrips. Of
// its items our own bar also tells what would have to be asked one by one. It counts the changes,
// so a look at an unchanged bar waits once and asks about no icon; with somebody who hears of
// changes it need not even wait.
class TrayReader {
public:
    static constexpr int mostRoundTrips = 6;
    // How long one look may wait for the server altogether. A user notices a longer halt, and a
    // server that does not answer for so long is grabbed or stopped.
    static constexpr std::chrono::milliseconds patience{1000};

    // For how long looks may rest on what others have heard, without asking the server: there are
    // servers that do not tell of everything.
    static constexpr std::chrono::milliseconds usualTrust{10'000};

    // How many changes of the tray with that owner, and of what its place depends on, have been
    // heard of until now; empty when they are not heard.
    using ChangesHeard = std::function<std::optional<std::uint64_t>(WindowId owner)>;

    // The connection must outlive this object.
    explicit TrayReader(const x11::Connection& connection, ChangesHeard changesHeard = {},
                        std::chrono::milliseconds longestTrust = usualTrust);

    // Empty when the server did not answer in time or the tray went away during the look.
    [[nodiscard]] std::optional<TrayView> read();

    // The live frame of one window, whether or not it is in the tray, in points of the global
    // space; empty when there is no such window.
    [[nodiscard]] std::optional<Rect> frameOf(WindowId window);

    // How root pixels become points now; empty when the server did not answer in time.
    [[nodiscard]] std::optional<Coordinates> coordinates();

private:
    // A view of our own bar, and what has to be the same for it to be true still.
    struct Known {
        TrayView view;
        std::uint32_t serial = 0;
        RootRect primaryMonitor;
        std::chrono::steady_clock::time_point confirmed;
        // What had been heard of when the server was asked.
        std::optional<std::uint64_t> changes;
    };

    [[nodiscard]] std::optional<std::uint64_t> changesOf(WindowId owner) const;
    // Whether what is known is true without a question.
    [[nodiscard]] bool isTrue(const Known& known) const;
    // Whether what is known is what another whole look would show.
    [[nodiscard]] static bool isOf(const Known& known, const TrayFacts& tray);
    [[nodiscard]] std::optional<TrayView> readAnew(TrayFacts tray);

    ChangesHeard changesHeard_;
    std::chrono::milliseconds longestTrust_;
    TrayQuestions questions_;
    std::optional<Known> known_;
};

} // namespace pelistra::linux
