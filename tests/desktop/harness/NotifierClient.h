#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <systemd/sd-bus.h>

namespace pelistra::testing {

// Throws std::runtime_error when there is no bus.
[[nodiscard]] sd_bus* connectToBus(const std::string& address);

// Waits until there is a watcher on that bus where programs can register.
[[nodiscard]] bool waitForWatcher(const std::string& busAddress);

// A program of the tests' own with one icon on the session bus. It answers when handleEvents() is
// called.
class NotifierClient {
public:
    struct Pixmap {
        int width = 0;
        int height = 0;
        // As on the bus; may be of any length.
        std::vector<std::uint8_t> bytes;
    };
    // One colour (0xaarrggbb) all over.
    [[nodiscard]] static Pixmap plainPixmap(int side, std::uint32_t argb);

    enum class Registration {
        // By the unique name of its connection.
        UniqueName,
        // By a well-known name that it takes.
        WellKnownName,
        // By the path of its object alone.
        Path,
        None,
    };
    enum class Answers { Always, ToWellKnownName, ToUniqueName, Never };
    // An entry of its menu; a separator without a label. Those behind it with a greater depth lie
    // below it.
    struct Entry {
        int id = 0;
        std::string label = {};
        int depth = 0;
        std::string toggle = {};
        bool on = false;
        bool enabled = true;
        bool visible = true;
        std::vector<std::string> shortcut = {};
        std::string iconName = {};
    };
    struct Options {
        // Of the session bus.
        std::string address;
        std::string id = "client";
        std::string title;
        std::string status = "Active";
        std::string path = "/StatusNotifierItem";
        std::string iconName;
        std::string iconThemePath;
        std::string overlayName;
        std::string toolTipTitle;
        std::string toolTipText;
        std::string label;
        std::string menu = "/";
        bool itemIsMenu = false;
        std::vector<Entry> entries;
        // Entries that are there only once the menu is about to be shown.
        std::vector<Entry> lateEntries;
        std::vector<Pixmap> pixmaps;
        std::vector<Pixmap> overlayPixmaps;
        std::vector<Pixmap> attentionPixmaps;
        // Appends further entries to the list of its properties.
        std::function<void(sd_bus_message&)> more;
        // Appends the root of its menu instead of one that is made of `entries`.
        std::function<void(sd_bus_message&)> root;
        Registration registration = Registration::UniqueName;
        Answers answers = Answers::Always;
        // The methods that it has beside those of properties.
        std::vector<std::string> methods = {"Activate", "SecondaryActivate", "ContextMenu",
                                            "Scroll"};
        // Those of its menu.
        std::vector<std::string> menuMethods = {"AboutToShow", "Event", "GetLayout"};
    };

    // Throws std::runtime_error when there is no bus.
    explicit NotifierClient(Options options);
    NotifierClient(const NotifierClient&) = delete;
    NotifierClient& operator=(const NotifierClient&) = delete;
    ~NotifierClient();

    void handleEvents();
    // Registers at the watcher once more, or for the first time.
    void registerItem();
    // Registers that, whatever it is.
    void registerAs(const std::string& name);
    // Changes what it answers from now on, and says so by that signal.
    void change(const std::function<void(Options&)>& how, const char* signal);

    // Has another menu from now on, and says so.
    void changeMenu(std::vector<Entry> entries);

    // What was called, with its arguments: "Activate 10 20", "Scroll 120 vertical", "clicked 3" of
    // its menu.
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
    // How often it was asked for what it is.
    [[nodiscard]] int questions() const { return questions_; }
    // Whether the watcher has taken the last registration.
    [[nodiscard]] bool isRegistered() const { return registered_; }
    [[nodiscard]] const std::string& uniqueName() const { return uniqueName_; }

private:
    static int handle(sd_bus_message* message, void* data, sd_bus_error* error);
    int answer(sd_bus_message& message);
    int answerAll(sd_bus_message& message);
    int answerOne(sd_bus_message& message);
    [[nodiscard]] sd_bus_message* newList(sd_bus_message& message) const;
    [[nodiscard]] bool isAnswered(sd_bus_message& message) const;
    int answerMenu(sd_bus_message& message, const std::string& member);
    void appendEntries(sd_bus_message& reply, std::size_t first, int depth) const;

    Options options_;
    sd_bus* bus_ = nullptr;
    std::string uniqueName_;
    std::string wellKnownName_;
    std::vector<std::string> calls_;
    int questions_ = 0;
    bool registered_ = false;
};

} // namespace pelistra::testing
