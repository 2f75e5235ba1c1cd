#include "tests/platform/FakePrivateLibrary.h"

#include <algorithm>

namespace pelistra::testing {

namespace {

constexpr WindowServerError illegalArgument = 1001;

std::string call(const char* name, std::initializer_list<std::int64_t> arguments) {
    std::string text = name;
    const char* separator = "(";
    for (const std::int64_t argument : arguments) {
        text += separator + std::to_string(argument);
        separator = ", ";
    }
    return text + ")";
}

} // namespace

LibraryHandle FakePrivateLibrary::open(const std::string& path, int mode) {
    journal_.note("dlopen " + path + " " + std::to_string(mode));
    if (missing) {
        return nullptr;
    }
    ++openHandles;
    return &library_;
}

void FakePrivateLibrary::close(LibraryHandle handle) {
    journal_.note("dlclose");
    misuses += handle == &library_ && openHandles > 0 ? 0 : 1;
    --openHandles;
}

bool FakePrivateLibrary::resolves(LibraryHandle handle, const std::string& symbol) {
    journal_.note("dlsym " + symbol);
    expectOpen(handle == &library_);
    return !missingSymbols.contains(symbol);
}

void FakePrivateLibrary::expectOpen(bool zeroed) {
    misuses += openHandles > 0 && zeroed ? 0 : 1;
}

MainConnectionFunction FakePrivateLibrary::resolveMainConnection(LibraryHandle handle,
                                                                 const std::string& symbol) {
    if (!resolves(handle, symbol)) {
        return {};
    }
    return [this] {
        journal_.note("mainConnection");
        expectOpen(true);
        return connection;
    };
}

WindowCountFunction FakePrivateLibrary::resolveWindowCount(LibraryHandle handle,
                                                           const std::string& symbol) {
    if (!resolves(handle, symbol)) {
        return {};
    }
    return [this](ConnectionId asked, ConnectionId target, std::int32_t* outCount) {
        journal_.note(call("windowCount", {asked, target}));
        return answerCount(outCount);
    };
}

MenuBarWindowListFunction FakePrivateLibrary::resolveMenuBarWindowList(LibraryHandle handle,
                                                                       const std::string& symbol) {
    if (!resolves(handle, symbol)) {
        return {};
    }
    return [this](ConnectionId asked, ConnectionId target, std::int32_t capacity, WindowId* outList,
                  std::int32_t* outCount) {
        journal_.note(call("menuBarWindowList", {asked, target, capacity}));
        return answerList(capacity, outList, outCount);
    };
}

WindowFrameFunction FakePrivateLibrary::resolveWindowFrame(LibraryHandle handle,
                                                           const std::string& symbol) {
    if (!resolves(handle, symbol)) {
        return {};
    }
    return [this](ConnectionId asked, WindowId window, Rect* outRect) {
        journal_.note(call("windowFrame", {asked, window}));
        return answerFrame(window, outRect);
    };
}

WindowServerError FakePrivateLibrary::answerCount(std::int32_t* outCount) {
    expectOpen(*outCount == 0);
    *outCount = count.value_or(static_cast<std::int32_t>(ids.size()));
    return countError;
}

WindowServerError FakePrivateLibrary::answerList(std::int32_t capacity, WindowId* outList,
                                                 std::int32_t* outCount) {
    expectOpen(*outCount == 0 &&
               std::all_of(outList, outList + capacity, [](WindowId id) { return id == 0; }));
    const auto written = std::min(ids.size(), static_cast<std::size_t>(capacity));
    std::copy_n(ids.begin(), written, outList);
    *outCount = listed.value_or(static_cast<std::int32_t>(written));
    return listError;
}

WindowServerError FakePrivateLibrary::answerFrame(WindowId window, Rect* outRect) {
    expectOpen(*outRect == Rect());
    const auto found = frames.find(window);
    if (found == frames.end()) {
        return illegalArgument;
    }
    *outRect = found->second;
    const auto error = frameErrors.find(window);
    return error == frameErrors.end() ? windowServerSuccess : error->second;
}

} // namespace pelistra::testing
