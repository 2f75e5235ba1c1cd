#pragma once

#include "platform/linux/icons/TrayView.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Properties.h"
#include "platform/x11/PublishedItems.h"
#include "platform/x11/Replies.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace pelistra::linux {

// Who runs the tray, and what they say of it.
struct TrayFacts {
    // The owner of the tray selection; 0 when there is none.
    WindowId owner = 0;
    double scale = 1;
    RootRect primaryMonitor;
    // What our own bar says is in it; empty under any other tray.
    std::optional<std::vector<WindowId>> items;
    // What it says of each of them; empty when it says nothing that can be understood, and under
    // any other tray.
    std::optional<std::vector<x11::PublishedItem>> details;
    // Its count of changes.
    std::optional<std::uint32_t> serial;
};

// The questions that a look at the tray asks the server. A task of `replies()` must have begun;
// what the server does not answer within it is missing or 0.
class TrayQuestions {
public:
    // The connection must outlive this object. Asks the server once for what does not change while
    // it runs.
    explicit TrayQuestions(const x11::Connection& connection);

    enum class Name : std::uint8_t {
        Selection,
        Items,
        Details,
        Scale,
        Serial,
        NetWmName,
        NetWmPid,
        ShapeEvent,
        Count
    };
    [[nodiscard]] xcb_atom_t atom(Name name) const {
        return atoms_[static_cast<std::size_t>(name)];
    }
    [[nodiscard]] const x11::Connection& connection() const { return *connection_; }
    [[nodiscard]] x11::Replies& replies() { return replies_; }

    // The selection's owner, the scale by the resource database and the primary monitor; of a tray
    // that was seen before, if its owner is given, also the serial now.
    [[nodiscard]] TrayFacts findTray(WindowId knownOwner);
    // Adds what the tray's owner publishes.
    void readOwner(TrayFacts& tray);
    // Adds the owner's own scale only.
    void readScale(TrayFacts& tray);

private:
    [[nodiscard]] x11::PropertyRequest requestOf(WindowId owner, Name name) const;
    [[nodiscard]] std::optional<std::uint32_t> takeSerial(x11::PropertyRequest request);
    void takeScale(x11::PropertyRequest request, TrayFacts& tray);

    const x11::Connection* connection_;
    x11::Replies replies_;
    std::array<xcb_atom_t, static_cast<std::size_t>(Name::Count)> atoms_{};
};

} // namespace pelistra::linux
