#include "overflow/OutermostApplication.h"

#include "overflow/Lowercase.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra {

namespace {

// The components of an absolute path, standardised.
std::vector<std::string_view> componentsOf(std::string_view path) {
    std::vector<std::string_view> components;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view component = path.substr(0, slash);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
        if (component == "..") {
            if (!components.empty()) {
                components.pop_back();
            }
        } else if (!component.empty() && component != ".") {
            components.push_back(component);
        }
    }
    return components;
}

// What follows the last dot; nothing when the dots only begin the name.
std::string_view extensionOf(std::string_view component) {
    const std::size_t dot = component.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || component.starts_with("..")) {
        return {};
    }
    return component.substr(dot + 1);
}

} // namespace

std::optional<FileUrl> outermostApplicationURL(const std::optional<FileUrl>& url) {
    if (!url || !url->path.starts_with('/')) {
        return std::nullopt;
    }
    std::string path;
    for (const std::string_view component : componentsOf(url->path)) {
        path.append("/").append(component);
        if (lowercased(extensionOf(component)) == "app") {
            return FileUrl{.path = std::move(path)};
        }
    }
    return std::nullopt;
}

} // namespace pelistra
