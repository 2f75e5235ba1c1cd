#pragma once

#include "menubar/Artwork.h"
#include "menubar/icons/IconRequest.h"
#include "menubar/notifier/HelperProgram.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <poll.h>

namespace pelistra::menubar {

// Has a program of its own read the icons that others name. The program lives while there is
// something to read, and a little longer.
class IconReader {
public:
    using Clock = std::chrono::steady_clock;
    // An icon that takes longer is given up, and the program with it.
    static constexpr std::chrono::seconds patience{3};
    // Icons that move keep it running.
    static constexpr std::chrono::seconds quietTime{3};

    struct Answer {
        // Who asked.
        std::uint64_t asker = 0;
        IconRequest request;
        // Empty when there is no such picture.
        ArgbImage image;
    };

    // Asks for a picture; what the same asker still waits for is asked no more. An asker whose
    // icons have broken the program several times is answered without it.
    void ask(std::uint64_t asker, const IconRequest& request);
    // The asker will not ask again.
    void forget(std::uint64_t asker);
    // The answers that have come since this was last called.
    [[nodiscard]] std::vector<Answer> takeAnswers() { return std::exchange(answers_, {}); }

    // What to wait for, and when process() is to be called although nothing came.
    [[nodiscard]] pollfd descriptor() const;
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    // Returns whether there are answers.
    bool process();

private:
    struct Question {
        std::uint64_t asker = 0;
        IconRequest request;
    };

    void sendNext();
    void receive();
    void answer(const Question& question, ArgbImage image);
    void fail();
    [[nodiscard]] const ArgbImage* remembered(const IconRequest& request) const;

    HelperProgram program_;
    std::deque<Question> waiting_;
    std::optional<Question> asked_;
    // The question that was asked is given up then; without one, the program ends.
    Clock::time_point deadline_;
    std::vector<Answer> answers_;
    std::map<std::uint64_t, int> faults_;
    bool complained_ = false;
    // Icons of themes that were answered last, so that an icon that moves costs nothing.
    std::deque<Answer> recent_;
};

} // namespace pelistra::menubar
