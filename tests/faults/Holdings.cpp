#include "tests/faults/Holdings.h"

#include "platform/x11/Clients.h"
#include "tests/desktop/harness/FileContent.h"

#include <filesystem>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <systemd/sd-bus.h>
#include <xcb/res.h>

namespace pelistra::testing {

namespace {

// What the server keeps for one connection; nothing when that has ended meanwhile.
void countResources(std::uint32_t connection, XClient& client, Holdings& into) {
    const x11::Owned<xcb_res_query_client_resources_reply_t> reply(
        xcb_res_query_client_resources_reply(
            client.get(), xcb_res_query_client_resources(client.get(), connection), nullptr));
    if (!reply) {
        return;
    }
    for (auto each = xcb_res_query_client_resources_types_iterator(reply.get()); each.rem > 0;
         xcb_res_type_next(&each)) {
        const x11::Owned<xcb_get_atom_name_reply_t> name(xcb_get_atom_name_reply(
            client.get(), xcb_get_atom_name(client.get(), each.data->resource_type), nullptr));
        if (name) {
            into[std::string(xcb_get_atom_name_name(name.get()),
                             static_cast<std::size_t>(
                                 xcb_get_atom_name_name_length(name.get())))] += each.data->count;
        }
    }
}

long namesOf(pid_t process, sd_bus& bus) {
    char** list = nullptr;
    if (sd_bus_list_names(&bus, &list, nullptr) < 0) {
        throw std::runtime_error("the bus does not say who is on it");
    }
    const x11::Owned<char*> names(list);
    long count = 0;
    for (char** each = list; *each != nullptr; std::advance(each, 1)) {
        const x11::Owned<char> name(*each);
        sd_bus_creds* owner = nullptr;
        pid_t pid = 0;
        if (sd_bus_get_name_creds(&bus, name.get(), SD_BUS_CREDS_PID, &owner) >= 0 &&
            sd_bus_creds_get_pid(owner, &pid) >= 0 && pid == process) {
            ++count;
        }
        sd_bus_creds_unref(owner);
    }
    return count;
}

long childrenOf(pid_t process) {
    const std::string id = std::to_string(process);
    std::istringstream children(
        contentOf(std::filesystem::path("/proc") / id / "task" / id / "children"));
    return std::distance(std::istream_iterator<pid_t>(children), {});
}

} // namespace

Holdings holdingsOf(pid_t process, XClient& client, sd_bus& bus) {
    const xcb_res_client_id_spec_t everybody{.client = XCB_NONE,
                                             .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto processes = x11::takeProcesses<const x11::Connection>(
        client.connection(), xcb_res_query_client_ids(client.get(), 1, &everybody));
    if (!processes) {
        throw std::runtime_error("the X server does not say who its clients are");
    }
    Holdings holdings;
    for (const auto& [connection, owner] : *processes) {
        if (owner == process) {
            ++holdings["connections"];
            countResources(connection, client, holdings);
        }
    }
    const std::filesystem::directory_iterator descriptors(std::filesystem::path("/proc") /
                                                          std::to_string(process) / "fd");
    holdings["file descriptors"] = std::distance(begin(descriptors), end(descriptors));
    holdings["children"] = childrenOf(process);
    holdings["names on the bus"] = namesOf(process, bus);
    return holdings;
}

std::vector<std::string> growth(const Holdings& before, const Holdings& now) {
    std::vector<std::string> more;
    for (const auto& [kind, count] : now) {
        const auto found = before.find(kind);
        const long first = found == before.end() ? 0 : found->second;
        if (count > first) {
            more.push_back(kind + " " + std::to_string(first) + " -> " + std::to_string(count));
        }
    }
    return more;
}

} // namespace pelistra::testing
