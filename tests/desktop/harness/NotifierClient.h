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
        std::string label;
        std::string menu = "/";
        bool itemIsMenu = false;
        std::vector<Pixmap> pixmaps;
        Registration registration = Registration::UniqueName;
        Answers answers = Answers::Always;
        // The methods that it has beside those of properties.
        std::vector<std::string> methods = {"Activate", "SecondaryActivate", "ContextMenu",
                                            "Scroll"};
    };

    // Throws std::runtime_error when there is no bus.
    explicit NotifierClient(Options options);
    NotifierClient(const NotifierClient&) = delete;
    NotifierClient& operator=(const NotifierClient&) = delete;
    ~NotifierClient();

    void handleEvents();
    // Registers at the watcher once more, or for the first time.
    void registerItem();
    // Changes what it answers from now on, and says so by that signal.
    void change(const std::function<void(Options&)>& how, const char* signal);

    // What was called, with its arguments: "Activate 10 20", "Scroll 120 vertical".
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
    [[nodiscard]] bool isAnswered(sd_bus_message& message) const;
    void appendPixmaps(sd_bus_message& reply) const;

    Options options_;
    sd_bus* bus_ = nullptr;
    std::string uniqueName_;
    std::string wellKnownName_;
    std::vector<std::string> calls_;
    int questions_ = 0;
    bool registered_ = false;
};

} // namespace pelistra::testing
