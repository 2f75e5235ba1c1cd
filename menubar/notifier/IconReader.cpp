#include "menubar/notifier/IconReader.h"

#include "menubar/Log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <sys/socket.h>

namespace pelistra::menubar {

namespace {

constexpr int mostFaults = 3;
constexpr std::size_t mostRecent = 48;

// Reads an answer of the program; empty when it is none.
std::optional<ArgbImage> imageIn(std::string_view bytes) {
    std::array<std::uint32_t, 2> size{};
    if (bytes.size() < sizeof size) {
        return std::nullopt;
    }
    std::memcpy(size.data(), bytes.data(), sizeof size);
    bytes.remove_prefix(sizeof size);
    const auto [width, height] = size;
    if (width > longestIconSide || height > longestIconSide ||
        bytes.size() != std::size_t{width} * height * sizeof(std::uint32_t)) {
        return std::nullopt;
    }
    ArgbImage image{
        .width = static_cast<int>(width), .height = static_cast<int>(height), .pixels = {}};
    image.pixels.resize(bytes.size() / sizeof(std::uint32_t));
    if (!bytes.empty()) {
        std::memcpy(image.pixels.data(), bytes.data(), bytes.size());
    }
    return image;
}

} // namespace

void IconReader::ask(std::uint64_t asker, const IconRequest& request) {
    std::erase_if(waiting_, [&](const Question& question) { return question.asker == asker; });
    if (const ArgbImage* const image = remembered(request)) {
        answers_.push_back({.asker = asker, .request = request, .image = *image});
        return;
    }
    if (faults_[asker] >= mostFaults || request.text().size() > iconRequestLimit) {
        answers_.push_back({.asker = asker, .request = request, .image = {}});
        return;
    }
    waiting_.push_back({.asker = asker, .request = request});
    sendNext();
}

void IconReader::forget(std::uint64_t asker) {
    std::erase_if(waiting_, [&](const Question& question) { return question.asker == asker; });
    faults_.erase(asker);
}

pollfd IconReader::descriptor() const {
    return {.fd = program_.socket(), .events = POLLIN, .revents = 0};
}

std::optional<IconReader::Clock::time_point> IconReader::due() const {
    return program_.isRunning() ? std::optional(deadline_) : std::nullopt;
}

bool IconReader::process() {
    if (asked_) {
        receive();
        sendNext();
    } else if (program_.isRunning() && Clock::now() >= deadline_) {
        program_.close();
    }
    return !answers_.empty();
}

void IconReader::sendNext() {
    while (!asked_ && !waiting_.empty()) {
        asked_ = std::move(waiting_.front());
        waiting_.pop_front();
        deadline_ = Clock::now() + patience;
        if (!program_.isRunning() && !program_.start("pelistra-menubar-icons") &&
            !std::exchange(complained_, true)) {
            log("cannot start pelistra-menubar-icons: icons that are files are not shown");
        }
        if (!program_.send(asked_->request.text())) {
            fail();
        }
    }
}

void IconReader::receive() {
    std::vector<char> bytes(iconAnswerLimit);
    const ssize_t length = ::recv(program_.socket(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (length < 0 && errno == EAGAIN && Clock::now() < deadline_) {
        return;
    }
    auto image = imageIn({bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))});
    if (!image) {
        fail();
    } else if (const auto question = std::exchange(asked_, std::nullopt)) {
        answer(*question, *std::move(image));
    }
}

void IconReader::answer(const Question& question, ArgbImage image) {
    deadline_ = Clock::now() + quietTime;
    // Files may be written anew under the same name. What could not be read may be another time.
    if (program_.isRunning() && question.request.themePath.empty() &&
        !question.request.name.starts_with('/')) {
        recent_.push_front({.asker = 0, .request = question.request, .image = image});
        recent_.resize(std::min(recent_.size(), mostRecent));
    }
    answers_.push_back(
        {.asker = question.asker, .request = question.request, .image = std::move(image)});
}

// The program ended, or was held up: it is left to its own clock.
void IconReader::fail() {
    program_.close();
    const auto question = std::exchange(asked_, std::nullopt);
    if (!question) {
        return;
    }
    // Once more, after the others: a machine that is busy may have held it up.
    if (++faults_[question->asker] < mostFaults) {
        waiting_.push_back(*question);
    } else {
        answer(*question, {});
    }
}

const ArgbImage* IconReader::remembered(const IconRequest& request) const {
    const auto found = std::ranges::find(recent_, request, &Answer::request);
    return found == recent_.end() ? nullptr : &found->image;
}

} // namespace pelistra::menubar
