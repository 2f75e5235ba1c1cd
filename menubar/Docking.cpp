#include "menubar/Docking.h"

#include "menubar/ItemNames.h"
#include "menubar/Sequence.h"
#include "menubar/XEmbed.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <xcb/xfixes.h>

namespace pelistra::menubar {

namespace {

// The place of everything in the bar is kept.
static_assert(OrderMemory::capacity >= Docking::itemLimit);

std::vector<std::uint32_t> wordsOf(const std::optional<x11::PropertyValue>& value) {
    return value ? value->words() : std::vector<std::uint32_t>{};
}

void setEvents(xcb_connection_t* x, xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(x, window, XCB_CW_EVENT_MASK, &events);
}

// A container takes the client's visual, or neither its colours nor an inherited background would
// fit. What the client does not paint shows the bar below: with alpha by being transparent, without
// by the background that the painter sets. As a child of the bar it is redirected, and the client
// draws into its pixmap: nothing is redirected that is not ours, which could fail, or be left
// behind, where a compositor redirects what lies in the root.
WindowHandle makeContainer(const Server& server, xcb_window_t bar, const PixelSize& size,
                           const xcb_get_window_attributes_reply_t& attributes,
                           std::uint8_t depth) {
    WindowHandle container(server.xcb(), server.connection().newId());
    const std::array<std::uint32_t, 4> values{
        0, 0, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        attributes.colormap};
    xcb_create_window(
        server.xcb(), depth, container.id(), bar, static_cast<std::int16_t>(-size.width), 0,
        static_cast<std::uint16_t>(size.width), static_cast<std::uint16_t>(size.height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, attributes.visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        values.data());
    return container;
}

// Takes a window out of the hands of a window manager that manages it, or is about to because it
// has been told that the window wants to be mapped: unmapping alone tells it nothing when the
// window is not mapped yet.
void withdraw(const Server& server, xcb_window_t window) {
    xcb_unmap_window(server.xcb(), window);
    xcb_unmap_notify_event_t notice{};
    notice.response_type = XCB_UNMAP_NOTIFY;
    notice.event = server.root();
    notice.window = window;
    xcb_send_event(server.xcb(), 0, server.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&notice));
}

} // namespace

// What is asked about a window that wants to be docked.
struct Docking::Question {
    Question(const Server& server, xcb_window_t window)
        : client(listenTo(server, window)),
          attributes(xcb_get_window_attributes(server.xcb(), window)),
          geometry(xcb_get_geometry(server.xcb(), window)),
          embedInfo(requestProperty(server.connection(), window, server.atom(Atom::XEmbedInfo))),
          hints(requestProperty(server.connection(), window, XCB_ATOM_WM_NORMAL_HINTS)),
          texts(requestTexts(server, window)),
          preferred(requestProperty(server.connection(), window,
                                    server.atom(Atom::PelistraPreferredPosition))) {}

    // Before anything is read, so that no change goes unnoticed in between.
    static xcb_window_t listenTo(const Server& server, xcb_window_t window) {
        setEvents(server.xcb(), window, XCB_EVENT_MASK_PROPERTY_CHANGE);
        return window;
    }

    xcb_window_t client;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    x11::PropertyRequest embedInfo;
    x11::PropertyRequest hints;
    TextRequests texts;
    x11::PropertyRequest preferred;
};

// The answers.
struct Docking::Arrival {
    Arrival(const Server& server, const Question& question)
        : client(question.client),
          attributes(
              server.connection().take<xcb_get_window_attributes_reply_t>(question.attributes)),
          geometry(server.connection().take<xcb_get_geometry_reply_t>(question.geometry)),
          embedInfo(readXEmbedInfo(wordsOf(readProperty(server.connection(), question.embedInfo)))),
          hints(sizeFromHints(wordsOf(readProperty(server.connection(), question.hints)))) {
        const TextAnswers answers = readTexts(server, question.texts);
        names = namesOf(answers.windowClass, answers.name);
        texts = textsOf(answers);
        const auto words = wordsOf(readProperty(server.connection(), question.preferred));
        if (!words.empty()) {
            preferred = words.front();
        }
    }

    [[nodiscard]] bool isAlive() const { return attributes && geometry; }

    xcb_window_t client;
    x11::Owned<xcb_get_window_attributes_reply_t> attributes;
    x11::Owned<xcb_get_geometry_reply_t> geometry;
    XEmbedInfo embedInfo;
    std::optional<PixelSize> hints;
    ItemNames names;
    ItemTexts texts;
    std::optional<std::uint32_t> preferred;
};

void Docking::request(xcb_window_t client) {
    if (DockedItem* item = items_->find(client)) {
        item->askedAgain = true;
        return;
    }
    const bool known = std::ranges::find(requested_, client, &Request::client) != requested_.end();
    // Neither the root nor a window of the bar itself, a container for one.
    if (!known && client != server_->root() && !server_->isOfOneClient(client, bar_)) {
        requested_.push_back({.client = client, .retrieval = Retrieval()});
    }
}

void Docking::settle(const Metrics& metrics) {
    dockRequested(metrics);
    readStale();
}

void Docking::dockRequested(const Metrics& metrics) {
    std::vector<Question> questions;
    questions.reserve(requested_.size());
    for (const Request& request : requested_) {
        questions.emplace_back(*server_, request.client);
    }
    const std::vector<Request> requests = std::exchange(requested_, {});
    for (std::size_t i = 0; i < requests.size(); ++i) {
        dock(Arrival(*server_, questions[i]), requests[i].retrieval, metrics);
    }
}

std::string Docking::faultOf(const Arrival& arrival) const {
    if (!arrival.isAlive()) {
        return "went away while it was being docked";
    }
    if (arrival.attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
        return "cannot be docked: it has nothing to show";
    }
    if (items_->size() >= itemLimit) {
        return "is not docked: there are " + std::to_string(itemLimit) + " items already";
    }
    return {};
}

void Docking::dock(const Arrival& arrival, const Retrieval& retrieval, const Metrics& metrics) {
    if (const std::string fault = faultOf(arrival); !fault.empty()) {
        setEvents(server_->xcb(), arrival.client, XCB_EVENT_MASK_NO_EVENT);
        complaints_.add("window " + hexadecimal(arrival.client) + " " + fault);
        return;
    }
    auto item = itemFor(arrival, metrics);
    item->retrieval = retrieval;
    embed(*item, *arrival.attributes);
    std::optional<std::uint32_t> preferred = arrival.preferred;
    if (preferred) {
        preferred = items_->countForShown(*preferred);
    }
    const std::size_t index = order_->place(item->identity, items_->identities(), preferred);
    items_->insert(index, std::move(item));
}

std::unique_ptr<DockedItem> Docking::itemFor(const Arrival& arrival, const Metrics& metrics) const {
    auto item = std::make_unique<DockedItem>();
    item->client = arrival.client;
    item->depth = arrival.geometry->depth;
    item->wantsMapped = arrival.embedInfo.mapped;
    item->xembedVersion = arrival.embedInfo.version;
    item->wish.exact = arrival.preferred.has_value();
    item->noteHints(arrival.hints);
    const ItemNames& names = arrival.names;
    item->identity = {.instance = names.instance,
                      .className = names.className,
                      .ordinal = items_->freeOrdinal(names.instance, names.className)};
    item->texts = arrival.texts;
    item->width = grantedWidth(item->wish, metrics);
    item->height = metrics.barHeight();
    item->x = -item->width;
    return item;
}

void Docking::embed(DockedItem& item, const xcb_get_window_attributes_reply_t& attributes) const {
    xcb_connection_t* x = server_->xcb();
    item.container = makeContainer(*server_, bar_, {.width = item.width, .height = item.height},
                                   attributes, item.depth);
    // From here on the client outlives the bar, however the bar dies: unmapped, so that no window
    // manager takes it for a window like any other while it waits for the next tray.
    item.firstSequence = xcb_xfixes_change_save_set(x, XCB_XFIXES_SAVE_SET_MODE_INSERT,
                                                    XCB_XFIXES_SAVE_SET_TARGET_ROOT,
                                                    XCB_XFIXES_SAVE_SET_MAPPING_UNMAP, item.client)
                             .sequence;
    withdraw(*server_, item.client);
    item.reparentSequence = xcb_reparent_window(x, item.client, item.container.id(), 0, 0).sequence;
    const std::array<std::uint32_t, 5> place{0, 0, static_cast<std::uint32_t>(item.width),
                                             static_cast<std::uint32_t>(item.height), 0};
    item.placeSequence =
        xcb_configure_window(x, item.client,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_BORDER_WIDTH,
                             place.data())
            .sequence;
    item.picture = ItemPicture(*server_, item.container.id(), server_->formatOf(attributes.visual));
    sendEmbeddedNotify(server_->connection(), server_->atom(Atom::XEmbed), item.client,
                       item.container.id(), item.xembedVersion);
}

void Docking::readStale() {
    struct Asked {
        DockedItem* item;
        std::optional<x11::PropertyRequest> hints;
        std::optional<x11::PropertyRequest> embedInfo;
        std::optional<TextRequests> texts;
    };
    std::vector<Asked> asked;
    const auto ask = [this](const DockedItem& item, xcb_atom_t property) {
        return requestProperty(server_->connection(), item.client, property);
    };
    for (const auto& item : items_->all()) {
        if (!item->hintsStale && !item->embedInfoStale && !item->textsStale) {
            continue;
        }
        Asked entry{.item = item.get(), .hints = {}, .embedInfo = {}, .texts = {}};
        if (item->hintsStale) {
            entry.hints = ask(*item, XCB_ATOM_WM_NORMAL_HINTS);
        }
        if (item->embedInfoStale) {
            entry.embedInfo = ask(*item, server_->atom(Atom::XEmbedInfo));
        }
        if (item->textsStale) {
            entry.texts = requestTexts(*server_, item->client);
        }
        asked.push_back(entry);
    }
    for (const Asked& entry : asked) {
        DockedItem& item = *entry.item;
        if (entry.hints) {
            item.hintsStale = false;
            const auto size =
                sizeFromHints(wordsOf(readProperty(server_->connection(), *entry.hints)));
            item.noteHints(size);
        }
        if (entry.embedInfo) {
            item.embedInfoStale = false;
            item.wantsMapped =
                readXEmbedInfo(wordsOf(readProperty(server_->connection(), *entry.embedInfo)))
                    .mapped;
            applyMapping(item);
        }
        if (entry.texts) {
            item.textsStale = false;
            item.texts = textsOf(readTexts(*server_, *entry.texts));
        }
    }
}

void Docking::arrived(DockedItem& item) {
    if (item.state == ItemState::Arriving) {
        item.state = ItemState::Waiting;
        applyMapping(item);
    }
}

void Docking::mappingChanged(DockedItem& item) const {
    if (item.state != ItemState::Arriving && !item.isOwn()) {
        item.embedInfoStale = true;
    }
}

void Docking::applyMapping(DockedItem& item) const {
    if (item.state == ItemState::Arriving) {
        return;
    }
    xcb_connection_t* x = server_->xcb();
    if (item.wantsMapped) {
        // Also when it is shown already: it may just have unmapped itself.
        item.state = ItemState::Shown;
        xcb_map_window(x, item.client);
        xcb_map_window(x, item.container.id());
        item.picture.renew();
    } else if (item.state == ItemState::Shown) {
        item.state = ItemState::Waiting;
        xcb_unmap_window(x, item.container.id());
        xcb_unmap_window(x, item.client);
    }
}

void Docking::forget(xcb_window_t client) {
    items_->take(client);
}

void Docking::letGo(xcb_window_t client, xcb_window_t newParent) {
    const std::unique_ptr<DockedItem> item = items_->take(client);
    if (item == nullptr || item->isOwn()) {
        return;
    }
    disown(*item);
    // Into a window of its own program.
    if (newParent != server_->root() && server_->isOfOneClient(client, newParent)) {
        return;
    }
    if (item->retrieval.fetch()) {
        requested_.push_back({.client = client, .retrieval = item->retrieval});
    } else if (item->retrieval.isExhausted()) {
        complaints_.add(describe(*item) + " is taken out of the bar again and again; it is let go");
    }
}

void Docking::disown(const DockedItem& item) const {
    setEvents(server_->xcb(), item.client, XCB_EVENT_MASK_NO_EVENT);
    xcb_change_save_set(server_->xcb(), XCB_SET_MODE_DELETE, item.client);
}

bool Docking::fail(const xcb_generic_error_t& error) {
    for (const auto& item : items_->all()) {
        if (item->picture.failed(error.full_sequence)) {
            return true;
        }
        if (error.full_sequence == item->reparentSequence && error.error_code != XCB_WINDOW) {
            complaints_.add(describe(*item) + " cannot be docked: the X server refuses it");
            disown(*items_->take(item->client));
            return true;
        }
        if (error.error_code == XCB_WINDOW && error.resource_id == item->client &&
            isSince(error.full_sequence, item->firstSequence)) {
            lose(*item);
            return true;
        }
    }
    return false;
}

// The window died, but its number may be in use again, even by a window that came into the
// container in its place. Nothing of that one's may go with the container.
void Docking::lose(DockedItem& item) {
    release(item);
    const std::unique_ptr<DockedItem> lost = items_->take(item.client);
    if (lost->askedAgain) {
        requested_.push_back({.client = lost->client, .retrieval = Retrieval()});
    } else {
        complaints_.add(describe(*lost) + " went away while it was being docked");
    }
}

void Docking::release(DockedItem& item) const {
    xcb_connection_t* x = server_->xcb();
    setEvents(x, item.client, XCB_EVENT_MASK_NO_EVENT);
    setEvents(x, item.container.id(), XCB_EVENT_MASK_NO_EVENT);
    xcb_unmap_window(x, item.client);
    xcb_reparent_window(x, item.client, server_->root(), 0, 0);
    xcb_change_save_set(x, XCB_SET_MODE_DELETE, item.client);
}

void Docking::releaseAll() {
    for (const auto& item : items_->all()) {
        if (!item->isOwn()) {
            release(*item);
        }
    }
    while (items_->size() > 0) {
        items_->take(items_->all().back()->client);
    }
}

} // namespace pelistra::menubar
