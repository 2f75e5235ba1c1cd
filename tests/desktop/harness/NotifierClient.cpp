#include "tests/desktop/harness/NotifierClient.h"

#include "tests/desktop/harness/WaitFor.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <unistd.h>

namespace pelistra::testing {

namespace {

constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto menuInterface = "com.canonical.dbusmenu";

void append(sd_bus_message& reply, const char* name, const char* type, const std::string& value) {
    sd_bus_message_append(&reply, "{sv}", name, type, value.c_str());
}

void appendPixmaps(sd_bus_message& reply, const char* name,
                   const std::vector<NotifierClient::Pixmap>& pixmaps) {
    sd_bus_message_open_container(&reply, 'e', "sv");
    sd_bus_message_append(&reply, "s", name);
    sd_bus_message_open_container(&reply, 'v', "a(iiay)");
    sd_bus_message_open_container(&reply, 'a', "(iiay)");
    for (const NotifierClient::Pixmap& pixmap : pixmaps) {
        sd_bus_message_open_container(&reply, 'r', "iiay");
        sd_bus_message_append(&reply, "ii", pixmap.width, pixmap.height);
        sd_bus_message_append_array(&reply, 'y', pixmap.bytes.data(), pixmap.bytes.size());
        sd_bus_message_close_container(&reply);
    }
    for (int depth = 0; depth < 3; ++depth) {
        sd_bus_message_close_container(&reply);
    }
}

} // namespace

sd_bus* connectToBus(const std::string& address) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, address.c_str()) < 0 ||
        sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0) {
        sd_bus_unref(bus);
        throw std::runtime_error("there is no session bus at " + address);
    }
    return bus;
}

bool waitForWatcher(const std::string& busAddress) {
    sd_bus* const bus = connectToBus(busAddress);
    const bool found = waitFor([&] {
        return sd_bus_get_name_creds(bus, "org.kde.StatusNotifierWatcher", 0, nullptr) >= 0;
    });
    sd_bus_close_unref(bus);
    return found;
}

NotifierClient::Pixmap NotifierClient::plainPixmap(int side, std::uint32_t argb) {
    Pixmap pixmap{.width = side, .height = side, .bytes = {}};
    for (int i = 0; i < side * side; ++i) {
        for (const unsigned shift : {24U, 16U, 8U, 0U}) {
            pixmap.bytes.push_back(static_cast<std::uint8_t>(argb >> shift));
        }
    }
    return pixmap;
}

NotifierClient::NotifierClient(Options options) : options_(std::move(options)) {
    const char* unique = nullptr;
    bus_ = connectToBus(options_.address);
    sd_bus_get_unique_name(bus_, &unique);
    uniqueName_ = unique;
    sd_bus_add_object(bus_, nullptr, options_.path.c_str(), handle, this);
    if (options_.menu != "/" && options_.menu != options_.path) {
        sd_bus_add_object(bus_, nullptr, options_.menu.c_str(), handle, this);
    }
    if (options_.registration == Registration::WellKnownName) {
        wellKnownName_ = "org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-" +
                         uniqueName_.substr(uniqueName_.find('.') + 1);
        sd_bus_request_name(bus_, wellKnownName_.c_str(), 0);
    }
    registerItem();
}

NotifierClient::~NotifierClient() {
    sd_bus_close_unref(bus_);
}

void NotifierClient::registerItem() {
    registered_ = false;
    std::string name;
    switch (options_.registration) {
    case Registration::UniqueName:
        name = uniqueName_;
        break;
    case Registration::WellKnownName:
        name = wellKnownName_;
        break;
    case Registration::Path:
        name = options_.path;
        break;
    case Registration::None:
        return;
    }
    registerAs(name);
}

void NotifierClient::registerAs(const std::string& name) {
    sd_bus_call_method_async(
        bus_, nullptr, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
        "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem",
        [](sd_bus_message* message, void* data, sd_bus_error*) {
            static_cast<NotifierClient*>(data)->registered_ =
                sd_bus_message_is_method_error(message, nullptr) == 0;
            return 0;
        },
        this, "s", name.c_str());
    handleEvents();
}

void NotifierClient::handleEvents() {
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
}

void NotifierClient::change(const std::function<void(Options&)>& how, const char* signal) {
    how(options_);
    sd_bus_emit_signal(bus_, options_.path.c_str(), itemInterface, signal, "");
    handleEvents();
}

void NotifierClient::changeMenu(std::vector<Entry> entries) {
    options_.entries = std::move(entries);
    sd_bus_emit_signal(bus_, options_.menu.c_str(), menuInterface, "LayoutUpdated", "ui", 2U, 0);
    handleEvents();
}

int NotifierClient::handle(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    return static_cast<NotifierClient*>(data)->answer(*message);
}

bool NotifierClient::isAnswered(sd_bus_message& message) const {
    const std::string_view destination = sd_bus_message_get_destination(&message);
    switch (options_.answers) {
    case Answers::Always:
        return true;
    case Answers::ToWellKnownName:
        return destination == wellKnownName_;
    case Answers::ToUniqueName:
        return destination == uniqueName_;
    case Answers::Never:
        break;
    }
    return false;
}

int NotifierClient::answer(sd_bus_message& message) {
    if (options_.answers == Answers::Never) {
        return 1;
    }
    if (!isAnswered(message)) {
        return 0;
    }
    const std::string interface = sd_bus_message_get_interface(&message);
    const std::string member = sd_bus_message_get_member(&message);
    if (interface == "org.freedesktop.DBus.Properties" && member == "GetAll") {
        return answerAll(message);
    }
    if (interface == "org.freedesktop.DBus.Properties" && member == "Get") {
        return answerOne(message);
    }
    if (interface == menuInterface) {
        return answerMenu(message, member);
    }
    if (interface != itemInterface ||
        std::ranges::find(options_.methods, member) == options_.methods.end()) {
        return 0;
    }
    int number = 0;
    int second = 0;
    const char* axis = "";
    if (member == "Scroll") {
        sd_bus_message_read(&message, "is", &number, &axis);
        calls_.push_back(member + " " + std::to_string(number) + " " + axis);
    } else {
        sd_bus_message_read(&message, "ii", &number, &second);
        calls_.push_back(member + " " + std::to_string(number) + " " + std::to_string(second));
    }
    return sd_bus_reply_method_return(&message, "");
}

// Of the entries from `first` on, those of that depth with what lies below them.
void NotifierClient::appendEntries(sd_bus_message& reply, std::size_t first, int depth) const {
    for (std::size_t i = first; i < options_.entries.size(); ++i) {
        const Entry& entry = options_.entries[i];
        if (entry.depth < depth) {
            return;
        }
        if (entry.depth > depth) {
            continue;
        }
        sd_bus_message_open_container(&reply, 'v', "(ia{sv}av)");
        sd_bus_message_open_container(&reply, 'r', "ia{sv}av");
        sd_bus_message_append(&reply, "i", entry.id);
        sd_bus_message_open_container(&reply, 'a', "{sv}");
        append(reply, entry.label.empty() ? "type" : "label", "s",
               entry.label.empty() ? "separator" : entry.label);
        append(reply, "toggle-type", "s", entry.toggle);
        sd_bus_message_append(&reply, "{sv}", "toggle-state", "i", entry.on ? 1 : 0);
        sd_bus_message_append(&reply, "{sv}", "enabled", "b", entry.enabled ? 1 : 0);
        sd_bus_message_append(&reply, "{sv}", "visible", "b", entry.visible ? 1 : 0);
        if (!entry.iconName.empty()) {
            append(reply, "icon-name", "s", entry.iconName);
        }
        if (!entry.shortcut.empty()) {
            sd_bus_message_append(&reply, "{sv}", "shortcut", "aas", 1, 2,
                                  entry.shortcut.front().c_str(), entry.shortcut.back().c_str());
        }
        sd_bus_message_close_container(&reply);
        sd_bus_message_open_container(&reply, 'a', "v");
        appendEntries(reply, i + 1, depth + 1);
        sd_bus_message_close_container(&reply);
        sd_bus_message_close_container(&reply);
        sd_bus_message_close_container(&reply);
    }
}

int NotifierClient::answerMenu(sd_bus_message& message, const std::string& member) {
    if (std::ranges::find(options_.menuMethods, member) == options_.menuMethods.end()) {
        return 0;
    }
    int id = 0;
    sd_bus_message_read(&message, "i", &id);
    if (member == "AboutToShow") {
        const bool needsUpdate = id == 0 && !options_.lateEntries.empty();
        if (needsUpdate) {
            options_.entries = std::exchange(options_.lateEntries, {});
        }
        calls_.push_back("AboutToShow " + std::to_string(id));
        return sd_bus_reply_method_return(&message, "b", needsUpdate ? 1 : 0);
    }
    if (member == "Event") {
        const char* event = "";
        sd_bus_message_read(&message, "s", &event);
        calls_.push_back(std::string(event) + " " + std::to_string(id));
        return sd_bus_reply_method_return(&message, "");
    }
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(&message, &reply);
    sd_bus_message_append(reply, "u", 1U);
    if (options_.root) {
        options_.root(*reply);
    } else {
        sd_bus_message_open_container(reply, 'r', "ia{sv}av");
        sd_bus_message_append(reply, "ia{sv}", 0, 0);
        sd_bus_message_open_container(reply, 'a', "v");
        appendEntries(*reply, 0, 0);
        sd_bus_message_close_container(reply);
        sd_bus_message_close_container(reply);
    }
    const int result = sd_bus_send(bus_, reply, nullptr);
    sd_bus_message_unref(reply);
    return result < 0 ? result : 1;
}

int NotifierClient::answerOne(sd_bus_message& message) {
    const char* wanted = "";
    sd_bus_message_read(&message, "ss", nullptr, &wanted);
    sd_bus_message* const all = newList(message);
    sd_bus_message_seal(all, 1, 0);
    sd_bus_message_rewind(all, 1);
    sd_bus_message_enter_container(all, 'a', "{sv}");
    int result = 0;
    while (result == 0 && sd_bus_message_enter_container(all, 'e', "sv") > 0) {
        const char* name = "";
        sd_bus_message_read(all, "s", &name);
        if (std::string_view(name) == wanted) {
            sd_bus_message* reply = nullptr;
            sd_bus_message_new_method_return(&message, &reply);
            sd_bus_message_copy(reply, all, 0);
            result = sd_bus_send(bus_, reply, nullptr) < 0 ? -1 : 1;
            sd_bus_message_unref(reply);
        } else {
            sd_bus_message_skip(all, "v");
            sd_bus_message_exit_container(all);
        }
    }
    sd_bus_message_unref(all);
    return result;
}

int NotifierClient::answerAll(sd_bus_message& message) {
    ++questions_;
    sd_bus_message* const reply = newList(message);
    const int result = sd_bus_send(bus_, reply, nullptr);
    sd_bus_message_unref(reply);
    return result < 0 ? result : 1;
}

// The answer with all its properties.
sd_bus_message* NotifierClient::newList(sd_bus_message& message) const {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(&message, &reply);
    sd_bus_message_open_container(reply, 'a', "{sv}");
    append(*reply, "Id", "s", options_.id);
    append(*reply, "Category", "s", "ApplicationStatus");
    append(*reply, "Title", "s", options_.title);
    append(*reply, "Status", "s", options_.status);
    append(*reply, "IconName", "s", options_.iconName);
    append(*reply, "IconThemePath", "s", options_.iconThemePath);
    append(*reply, "OverlayIconName", "s", options_.overlayName);
    append(*reply, "AttentionIconName", "s", "");
    append(*reply, "XAyatanaLabel", "s", options_.label);
    append(*reply, "Menu", "o", options_.menu);
    sd_bus_message_append(reply, "{sv}", "ItemIsMenu", "b", options_.itemIsMenu ? 1 : 0);
    appendPixmaps(*reply, "IconPixmap", options_.pixmaps);
    appendPixmaps(*reply, "OverlayIconPixmap", options_.overlayPixmaps);
    appendPixmaps(*reply, "AttentionIconPixmap", options_.attentionPixmaps);
    sd_bus_message_append(reply, "{sv}", "ToolTip", "(sa(iiay)ss)", "", 0,
                          options_.toolTipTitle.c_str(), options_.toolTipText.c_str());
    if (options_.more) {
        options_.more(*reply);
    }
    sd_bus_message_close_container(reply);
    return reply;
}

} // namespace pelistra::testing
