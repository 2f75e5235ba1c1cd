#include "tests/desktop/harness/AccessibleTree.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <systemd/sd-bus.h>

namespace pelistra::testing {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr int deepest = 24;
// Of one question; an X client that is busy starting may be slow.
constexpr std::uint64_t answerMicroseconds{3'000'000};
// Bits of AT-SPI's set of states.
constexpr unsigned checkedState = 4;
constexpr unsigned focusedState = 12;
constexpr unsigned showingState = 25;
constexpr std::uint32_t screenCoordinates = 0;

struct MessageDeleter {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageDeleter>;

// Null when nobody answers, or with an error: the element may have gone.
template <class... Arguments>
MessagePtr call(sd_bus* bus, const std::string& name, const std::string& path,
                const char* interface, const char* member, const char* types = "",
                Arguments... arguments) {
    sd_bus_message* answer = nullptr;
    sd_bus_call_method(bus, name.c_str(), path.c_str(), interface, member, nullptr, &answer, types,
                       arguments...);
    return MessagePtr(answer);
}

std::string textOf(const MessagePtr& message) {
    const char* text = nullptr;
    if (!message || sd_bus_message_read(message.get(), "s", &text) < 0 || text == nullptr) {
        return {};
    }
    return text;
}

std::string nameOf(sd_bus* bus, const std::string& name, const std::string& path) {
    const MessagePtr answer =
        call(bus, name, path, "org.freedesktop.DBus.Properties", "Get", "ss", accessible, "Name");
    const char* text = nullptr;
    if (!answer || sd_bus_message_read(answer.get(), "v", "s", &text) < 0 || text == nullptr) {
        return {};
    }
    return text;
}

std::uint64_t statesOf(sd_bus* bus, const std::string& name, const std::string& path) {
    const MessagePtr answer = call(bus, name, path, accessible, "GetState");
    std::array<std::uint32_t, 2> words{};
    if (!answer || sd_bus_message_read(answer.get(), "au", 2, &words[0], &words[1]) < 0) {
        return 0;
    }
    constexpr unsigned wordBits = 32;
    return words[0] | (std::uint64_t{words[1]} << wordBits);
}

WindowFrame extentsOf(sd_bus* bus, const std::string& name, const std::string& path) {
    const MessagePtr answer =
        call(bus, name, path, "org.a11y.atspi.Component", "GetExtents", "u", screenCoordinates);
    WindowFrame frame;
    if (!answer || sd_bus_message_read(answer.get(), "(iiii)", &frame.x, &frame.y, &frame.width,
                                       &frame.height) < 0) {
        return {};
    }
    return frame;
}

} // namespace

void AccessibleTree::BusDeleter::operator()(sd_bus* bus) const {
    sd_bus_flush_close_unref(bus);
}

AccessibleTree::AccessibleTree(const PrivateDisplay& display) {
    const BusPtr sessionBus = connect(display.environment().at("DBUS_SESSION_BUS_ADDRESS"));
    const std::string address = textOf(
        call(sessionBus.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
    if (address.empty()) {
        throw std::runtime_error("no accessibility bus has come");
    }
    bus_ = connect(address);
}

AccessibleTree::~AccessibleTree() = default;

AccessibleTree::BusPtr AccessibleTree::connect(const std::string& address) {
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0) {
        throw std::runtime_error("no bus connection can be made");
    }
    BusPtr bus(made);
    if (sd_bus_set_address(made, address.c_str()) < 0 || sd_bus_set_bus_client(made, 1) < 0 ||
        sd_bus_start(made) < 0) {
        throw std::runtime_error("the bus at " + address + " does not answer");
    }
    sd_bus_set_method_call_timeout(made, answerMicroseconds);
    return bus;
}

std::vector<AccessibleTree::Element> AccessibleTree::elements(pid_t process) {
    std::vector<Element> result;
    for (const std::string& program : programs()) {
        if (processOf(program) == static_cast<std::uint32_t>(process)) {
            collect({.bus = program, .path = rootPath}, 0, result);
        }
    }
    return result;
}

std::optional<AccessibleTree::Element> AccessibleTree::find(pid_t process, std::string_view name) {
    const auto all = elements(process);
    const auto found = std::ranges::find_if(all, [&](const Element& element) {
        return element.isShowing && element.name.starts_with(name);
    });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

// Unique names of the connections on the bus.
std::vector<std::string> AccessibleTree::programs() {
    char** names = nullptr;
    std::vector<std::string> result;
    if (sd_bus_list_names(bus_.get(), &names, nullptr) < 0) {
        return result;
    }
    for (char** name = names; *name != nullptr; ++name) {
        if (std::string_view(*name).starts_with(':')) {
            result.emplace_back(*name);
        }
        std::free(*name); // NOLINT(*-no-malloc,*-owning-memory): the library's own way
    }
    std::free(names); // NOLINT(*-no-malloc,*-owning-memory,*-multi-level-*)
    return result;
}

std::optional<std::uint32_t> AccessibleTree::processOf(const std::string& name) {
    const MessagePtr answer =
        call(bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
             "GetConnectionUnixProcessID", "s", name.c_str());
    std::uint32_t process = 0;
    if (!answer || sd_bus_message_read(answer.get(), "u", &process) < 0) {
        return std::nullopt;
    }
    return process;
}

std::vector<AccessibleTree::Reference> AccessibleTree::children(const Reference& parent) {
    std::vector<Reference> result;
    const MessagePtr answer = call(bus_.get(), parent.bus, parent.path, accessible, "GetChildren");
    if (!answer || sd_bus_message_enter_container(answer.get(), SD_BUS_TYPE_ARRAY, "(so)") < 0) {
        return result;
    }
    const char* bus = nullptr;
    const char* path = nullptr;
    while (sd_bus_message_read(answer.get(), "(so)", &bus, &path) > 0) {
        result.push_back({.bus = bus, .path = path});
    }
    return result;
}

AccessibleTree::Element AccessibleTree::describe(const Reference& element) {
    const std::uint64_t states = statesOf(bus_.get(), element.bus, element.path);
    const auto has = [states](unsigned state) { return ((states >> state) & 1U) != 0; };
    return {.role = textOf(call(bus_.get(), element.bus, element.path, accessible, "GetRoleName")),
            .name = nameOf(bus_.get(), element.bus, element.path),
            .frame = extentsOf(bus_.get(), element.bus, element.path),
            .isChecked = has(checkedState),
            .isFocused = has(focusedState),
            .isShowing = has(showingState)};
}

void AccessibleTree::collect(const Reference& element, int depth, std::vector<Element>& into) {
    if (depth > 0) {
        into.push_back(describe(element));
    }
    if (depth < deepest) {
        for (const Reference& child : children(element)) {
            collect(child, depth + 1, into);
        }
    }
}

} // namespace pelistra::testing
