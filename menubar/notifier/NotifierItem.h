#pragma once

#include "menubar/notifier/BusListener.h"
#include "menubar/notifier/ItemAddress.h"
#include "menubar/notifier/ItemProperties.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace pelistra::menubar {

// One item of the session bus: follows what its program says of it, and tells the program what the
// user does with it. A program that does not answer is never waited for.
class NotifierItem {
public:
    using Clock = std::chrono::steady_clock;
    // What it says is read at most so often.
    static constexpr std::chrono::milliseconds shortestInterval{50};

    // The item at that address, whether or not it is there. The bus must outlive this.
    NotifierItem(sd_bus& bus, std::uint64_t number, ItemAddress address, int iconSide);
    NotifierItem(const NotifierItem&) = delete;
    NotifierItem& operator=(const NotifierItem&) = delete;
    ~NotifierItem() = default;

    // No other item of this bar ever has it.
    [[nodiscard]] std::uint64_t number() const { return number_; }
    [[nodiscard]] const ItemAddress& address() const { return address_; }
    // The unique name of the connection behind it; empty until the bus has told.
    [[nodiscard]] const std::string& owner() const { return owner_; }
    // The unique name of the program that has registered it; empty when nobody has.
    [[nodiscard]] const std::string& registrant() const { return registrant_; }
    void setRegistrant(const std::string& name);
    // The process behind that connection; 0 until the bus has told, or when it cannot.
    [[nodiscard]] pid_t process() const { return process_; }
    // What that process is called; empty when that is not known or says nothing.
    [[nodiscard]] const std::string& program() const { return program_; }

    // What it last said; null before it has answered for the first time.
    [[nodiscard]] const ItemProperties* properties() const {
        return properties_ ? &*properties_ : nullptr;
    }
    // Whether that has changed since this was last asked.
    [[nodiscard]] bool takeChange() { return std::exchange(changed_, false); }
    // Its program has gone, or has never been there.
    [[nodiscard]] bool isGone() const { return gone_; }

    // The side of the square that pictures are to fit into, in device pixels.
    void setIconSide(int side);
    // It has registered again, or is to be read anew for another reason.
    void refresh();

    // When update() is to be called next; empty: when something has come.
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    // Asks the program what has to be asked by now.
    void update(Clock::time_point now);

    // The name under which it answers.
    [[nodiscard]] const std::string& destination() const;

    // The user's deeds; the place is in root coordinates.
    enum class Deed { Activate, SecondaryActivate, ContextMenu };
    // `refused` is called when the program says that it knows no such deed.
    void tell(Deed deed, int x, int y, std::function<void()> refused = {});
    enum class Axis { Vertical, Horizontal };
    void scroll(int delta, Axis axis);

private:
    void ownerAnswered(const std::string& owner);
    void follow();
    void noteChange();
    void askProcess();
    void ask();
    void answered(sd_bus_message& message);
    void failed();

    sd_bus* bus_;
    std::uint64_t number_;
    ItemAddress address_;
    int iconSide_;
    std::string owner_;
    std::string registrant_;
    pid_t process_ = 0;
    std::string program_;
    std::optional<ItemProperties> properties_;
    bool changed_ = false;
    bool gone_ = false;

    // What is known is out of date.
    bool stale_ = false;
    Clock::time_point notBefore_;
    // In a row.
    int failures_ = 0;
    // Some programs answer only under the name that they registered, some only under that of their
    // connection.
    bool usesOwner_ = false;

    BusListener ownerChanges_;
    BusListener ownerQuestion_;
    BusListener processQuestion_;
    std::vector<BusListener> signals_;
    BusListener question_;
    // The last deed whose answer matters.
    BusListener deed_;
};

} // namespace pelistra::menubar
