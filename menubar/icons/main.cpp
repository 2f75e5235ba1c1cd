// pelistra-menubar-icons: finds and reads the icons that programs name, in a process of its own, so
// that no file can hold up or harm the bar. It is started by the bar and answers on its standard
// input until the bar closes that.

#include "menubar/icons/IconFile.h"
#include "menubar/icons/IconTheme.h"

#include <array>
#include <cstring>
#include <vector>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

using namespace pelistra::menubar;

// A picture takes some milliseconds; whatever takes longer is there to harm. Of processor time, and
// on the clock, where a busy machine or a slow disk may be at fault.
constexpr int processorSeconds = 2;
constexpr unsigned clockSeconds = 10;

void limitTime(bool limited) {
    const itimerval time{.it_interval = {},
                         .it_value = {.tv_sec = limited ? processorSeconds : 0, .tv_usec = 0}};
    ::setitimer(ITIMER_PROF, &time, nullptr);
    ::alarm(limited ? clockSeconds : 0);
}

void limit(__rlimit_resource_t what, rlim_t most) {
    const rlimit bound{.rlim_cur = most, .rlim_max = most};
    ::setrlimit(what, &bound);
}

void limitResources() {
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
#ifndef PELISTRA_SANITIZE
    limit(RLIMIT_AS, rlim_t{768} * 1024 * 1024);
#endif
}

std::vector<char> answerOf(const ArgbImage& image) {
    const std::array<std::uint32_t, 2> size{static_cast<std::uint32_t>(image.width),
                                            static_cast<std::uint32_t>(image.height)};
    std::vector<char> answer(sizeof size + image.pixels.size() * sizeof(std::uint32_t));
    std::memcpy(answer.data(), size.data(), sizeof size);
    if (!image.pixels.empty()) {
        std::memcpy(answer.data() + sizeof size, image.pixels.data(),
                    image.pixels.size() * sizeof(std::uint32_t));
    }
    return answer;
}

} // namespace

int main() {
    limitResources();
    IconThemes themes;
    std::vector<char> question(iconRequestLimit);
    for (;;) {
        const ssize_t length = ::recv(iconSocket, question.data(), question.size(), 0);
        if (length <= 0) {
            return 0;
        }
        const auto request =
            IconRequest::parse({question.data(), static_cast<std::size_t>(length)});
        ArgbImage image;
        limitTime(true);
        if (request) {
            const auto path =
                themes.find(request->name, request->side, request->theme, request->themePath);
            image = path ? readIconFile(*path, *request) : ArgbImage{};
        }
        limitTime(false);
        const std::vector<char> answer = answerOf(image);
        if (::send(iconSocket, answer.data(), answer.size(), MSG_NOSIGNAL) < 0) {
            return 1;
        }
    }
}
