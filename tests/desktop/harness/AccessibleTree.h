#pragma once

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/XClient.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

struct sd_bus;

namespace pelistra::testing {

// What a screen reader hears of a program, over the accessibility bus (AT-SPI) of a private
// display. Every operation asks anew, so what it returns is what the program says now.
class AccessibleTree {
public:
    // Asks the display's session for an accessibility bus, which starts one. Throws
    // std::runtime_error when the display has no session bus or none comes.
    explicit AccessibleTree(const PrivateDisplay& display);
    AccessibleTree(const AccessibleTree&) = delete;
    AccessibleTree& operator=(const AccessibleTree&) = delete;
    ~AccessibleTree();

    // Makes every program that starts on the display from now on speak on the bus from its
    // beginning.
    static void letProgramsSpeak(PrivateDisplay& display) {
        display.setEnvironment("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    }

    struct Element {
        // As AT-SPI names it: "push button", "check box", "label", "frame".
        std::string role;
        std::string name;
        // In the program's own units: points, of the whole desktop.
        WindowFrame frame;
        bool isChecked = false;
        bool isFocused = false;
        // On the screen now, as far as the program knows.
        bool isShowing = false;
    };
    // All elements of a program, each before those inside it; empty while it does not speak.
    [[nodiscard]] std::vector<Element> elements(pid_t process);
    // The one whose name is or begins with `name`; empty without one that shows.
    [[nodiscard]] std::optional<Element> find(pid_t process, std::string_view name);
    // Whether one with that name shows.
    [[nodiscard]] bool shows(pid_t process, std::string_view name) {
        return find(process, name).has_value();
    }

private:
    struct Reference {
        std::string bus;
        std::string path;
    };
    struct BusDeleter {
        void operator()(sd_bus* bus) const;
    };
    using BusPtr = std::unique_ptr<sd_bus, BusDeleter>;

    [[nodiscard]] static BusPtr connect(const std::string& address);
    [[nodiscard]] std::vector<std::string> programs();
    [[nodiscard]] std::optional<std::uint32_t> processOf(const std::string& name);
    [[nodiscard]] std::vector<Reference> children(const Reference& parent);
    [[nodiscard]] Element describe(const Reference& element);
    void collect(const Reference& element, int depth, std::vector<Element>& into);

    BusPtr bus_;
};

} // namespace pelistra::testing
