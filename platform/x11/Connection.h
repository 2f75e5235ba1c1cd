#pragma once

#include "platform/x11/Handles.h"

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::x11 {

// A connection to the X server, closed on destruction. Never null: opening one that fails says why.
//
// Answers are waited for with a bound, so that a server that is grabbed, stopped or busy costs the
// answer and never freezes the program. Nobody else waits for the server: what XCB and its utility
// libraries offer for that knows no bound.
class Connection {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // How long one answer is waited for. A user notices a longer halt, and a server that does not
    // answer for so long is grabbed or stopped.
    static constexpr std::chrono::milliseconds usualPatience{1000};
    // The same while a program starts: it needs all answers, and has nothing else to do.
    static constexpr std::chrono::milliseconds startPatience{60'000};

    struct Failure {
        // A sentence for the user, naming the display.
        std::string message;
    };

    // Opens the named display, or the one in $DISPLAY for an empty name. Null on failure, with the
    // reason in `failure`.
    [[nodiscard]] static std::unique_ptr<Connection> open(const std::string& displayName,
                                                          Failure& failure);

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    // The file descriptor to poll. Events that XCB has queued already do not wake it: drain
    // pollEvent() before waiting on it.
    [[nodiscard]] int fileDescriptor() const;
    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
    [[nodiscard]] int screenNumber() const { return screenNumber_; }
    [[nodiscard]] xcb_window_t root() const { return screen_->root; }
    // Whether that window or other resource was made on this connection.
    [[nodiscard]] bool hasMade(std::uint32_t id) const { return hasMade(connection_, id); }
    // The same for a connection of somebody else's.
    [[nodiscard]] static bool hasMade(xcb_connection_t* connection, std::uint32_t id);
    // An id for a new resource of the server (a window, a pixmap, ...), not used by any other.
    [[nodiscard]] xcb_window_t newId() const;

    // The next event, or null when none is queued; errors of unchecked requests come as events of
    // type 0.
    [[nodiscard]] EventPtr pollEvent() const;
    // The same for what has been read from the server already; asks the system nothing.
    [[nodiscard]] EventPtr pollQueuedEvent() const;
    // Sends what has been asked for and not been sent yet.
    void flush() const;
    // False once the server has gone or has refused the connection.
    [[nodiscard]] bool isAlive() const;

    // How long one answer is waited for from now on; at first it is usualPatience. A wait also ends
    // when there is something to read from `stopDescriptor`, if it is not -1.
    void setPatience(std::chrono::milliseconds patience, int stopDescriptor = -1);
    // The answer to a request whose errors come with its answer (not an _unchecked one). Null when
    // the server answered with an error, or not in time.
    template <class Reply, class Cookie>
    [[nodiscard]] Owned<Reply> take(Cookie cookie) const {
        return Owned<Reply>(static_cast<Reply*>(await(cookie.sequence, deadline()).reply));
    }
    // Whether the server has carried out a _checked request that has no answer.
    [[nodiscard]] bool hasAccepted(xcb_void_cookie_t cookie) const;
    // Keeps the error of a _checked request, if it has one, from coming as an event.
    void ignoreErrorOf(xcb_void_cookie_t cookie) const;
    // Whether the server has handled everything that was sent until now.
    bool sync() const; // it can be enough to have waited
    // An extension that the server has; null for others, or when it did not answer.
    [[nodiscard]] const xcb_query_extension_reply_t* extension(xcb_extension_t& extension) const;

    // Asks now, in one round trip, for extensions that are needed when nobody wants to wait.
    void learn(std::initializer_list<xcb_extension_t*> extensions) const;
    // Whether RandR knows of monitors, which came with its version 1.5.
    [[nodiscard]] bool hasMonitors() const;

    // What to say to the user of a server that does not answer.
    [[nodiscard]] static std::string noAnswer();
    // True while the server still owes an answer that was waited for in vain. All further waits end
    // at once then, since answers come in their order.
    [[nodiscard]] bool isStalled() const;
    // How many answers did not come in time so far. While several questions leave it unchanged,
    // what is missing among their answers is missing on the server too.
    [[nodiscard]] std::uint64_t unanswered() const { return unanswered_; }
    // True once after each time that the server was stalled, when it answers again: what was asked
    // meanwhile has to be asked once more.
    [[nodiscard]] bool hasRecovered() const;

    // The answer that was waited for, or whether none came in time; for x11::Replies.
    struct Answer {
        // Memory for the caller to free; null for an error.
        void* reply = nullptr;
        bool hasCome = false;
    };
    [[nodiscard]] Answer await(unsigned sequence, TimePoint deadline) const;

    // The visual with the given id on this screen and its depth; null type when there is none.
    struct Visual {
        const xcb_visualtype_t* type = nullptr;
        std::uint8_t depth = 0;
    };
    [[nodiscard]] Visual visual(xcb_visualid_t id) const;
    // The bits of a pixel with an alpha channel.
    static constexpr std::uint8_t alphaDepth = 32;
    // The screen's true-colour visual with an alpha channel; null type when there is none.
    [[nodiscard]] Visual alphaVisual() const;

private:
    Connection(xcb_connection_t* connection, xcb_screen_t* screen, int screenNumber)
        : connection_(connection), screen_(screen), screenNumber_(screenNumber) {}

    [[nodiscard]] TimePoint deadline() const {
        return std::chrono::steady_clock::now() + patience_;
    }
    // Whether the server said something before that time.
    [[nodiscard]] bool waitForInput(TimePoint deadline) const;

    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    int screenNumber_;
    std::chrono::milliseconds patience_ = usualPatience;
    int stopDescriptor_ = -1;
    // What the server has and has not said so far: no part of what this object is to its users.
    mutable std::optional<unsigned> owed_;
    mutable std::uint64_t unanswered_ = 0;
    mutable bool hasRecovered_ = false;
    mutable std::vector<const xcb_extension_t*> knownExtensions_;
    mutable std::optional<bool> hasMonitors_;
};

} // namespace pelistra::x11
