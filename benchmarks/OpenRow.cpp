#include "benchmarks/OpenRow.h"

#include <algorithm>
#include <thread>

namespace pelistra::testing {

namespace {

constexpr const char* title = "Pelistra 第二行";
constexpr RootPoint elsewhere{.x = 200, .y = 500};

} // namespace

void OpenRow::collapse() {
    require(desktop_.clickControl() && desktop_.waitUntilCollapsed(), "not collapsed");
    std::this_thread::sleep_for(longerThanLatch);
}

std::optional<xcb_window_t> OpenRow::window() {
    XClient& x = desktop_.x();
    // The window is kept from one opening to the next.
    if (known_ != XCB_WINDOW_NONE && x.exists(known_)) {
        return x.isViewable(known_) ? std::optional(known_) : std::nullopt;
    }
    for (const xcb_window_t shown : x.shownTopLevels()) {
        if (x.title(shown) == title) {
            known_ = shown;
            return shown;
        }
    }
    return std::nullopt;
}

void OpenRow::pressArrow() {
    desktop_.input().moveTo(centre(desktop_.organiser().controlFrame().value()));
    desktop_.input().press();
}

void OpenRow::open() {
    pressArrow();
    desktop_.input().release();
    require(waitFor([this] { return window().has_value(); }), "the row does not open");
}

void OpenRow::close() {
    // A hand needs longer than this; the row watches for clicks only once it shows.
    constexpr std::chrono::milliseconds reaction{50};
    std::this_thread::sleep_for(reaction);
    // A busy machine may take longer than that hand.
    constexpr std::chrono::milliseconds untilNextTry{400};
    constexpr int tries = 10;
    bool closed = false;
    for (int attempt = 0; attempt < tries && !closed; ++attempt) {
        desktop_.input().click(elsewhere);
        closed = waitFor([this] { return !window(); }, untilNextTry);
    }
    require(closed, "the row does not close");
}

WindowFrame OpenRow::frame() {
    const auto shown = window();
    require(shown.has_value(), "the row is closed");
    return desktop_.x().frame(*shown).value();
}

Picture OpenRow::settledPicture() {
    constexpr std::chrono::milliseconds calm{300};
    Picture before;
    Picture now = desktop_.x().capture(frame());
    require(waitFor([&] {
                before = now;
                std::this_thread::sleep_for(calm);
                now = desktop_.x().capture(frame());
                return now == before;
            }),
            "the row never comes to rest");
    return now;
}

double OpenRow::timeToShow(const WindowFrame& frame, const Picture& picture) {
    pressArrow();
    watch_.forget();
    const auto begin = Clock::now();
    desktop_.input().release();
    const auto shown = watch_.whenLikeThis(frame, picture, patience);
    require(shown.has_value(), "the row never looks as it did before");
    return Milliseconds(*shown - begin).count();
}

} // namespace pelistra::testing
