#include "packaging/macos/icon/Files.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <zlib.h>

namespace pelistra::icon {

namespace {

// One by one: GCC 12 sees an overflow in an optimised range insertion.
void append(Bytes& bytes, std::string_view text) {
    std::ranges::copy(text, std::back_inserter(bytes));
}

// Both formats have their numbers with the highest byte first.
void append(Bytes& bytes, std::uint32_t number) {
    for (const int shift : {24, 16, 8, 0}) {
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void appendChunk(Bytes& png, std::string_view type, const Bytes& content) {
    append(png, static_cast<std::uint32_t>(content.size()));
    Bytes checked;
    append(checked, type);
    append(checked, content);
    append(png, checked);
    append(png,
           static_cast<std::uint32_t>(crc32(0, checked.data(), static_cast<uInt>(checked.size()))));
}

// Every row begins with its filter, here none.
Bytes rowsOf(const Picture& picture) {
    Bytes rows;
    const auto length = static_cast<std::ptrdiff_t>(picture.side) * 4;
    for (int y = 0; y < picture.side; ++y) {
        rows.push_back(0);
        const auto start = picture.pixels.begin() + y * length;
        rows.insert(rows.end(), start, start + length);
    }
    return rows;
}

Bytes compressed(const Bytes& bytes) {
    uLongf length = compressBound(bytes.size());
    Bytes result(length);
    if (compress2(result.data(), &length, bytes.data(), bytes.size(), Z_BEST_COMPRESSION) != Z_OK) {
        throw std::runtime_error("cannot compress the picture");
    }
    result.resize(length);
    return result;
}

// The types of an icon file's members whose content is a PNG file, and their sides in pixels.
constexpr std::array<std::pair<std::string_view, int>, 10> members = {{{"icp4", 16},
                                                                       {"icp5", 32},
                                                                       {"ic11", 32},
                                                                       {"ic12", 64},
                                                                       {"ic07", 128},
                                                                       {"ic13", 256},
                                                                       {"ic08", 256},
                                                                       {"ic14", 512},
                                                                       {"ic09", 512},
                                                                       {"ic10", 1024}}};
constexpr std::uint32_t headerLength = 8;

} // namespace

Bytes pngOf(const Picture& picture) {
    Bytes header;
    append(header, static_cast<std::uint32_t>(picture.side));
    append(header, static_cast<std::uint32_t>(picture.side));
    // Eight bits a channel, colour with alpha, the only compression, filter and interlace.
    append(header, Bytes{8, 6, 0, 0, 0});
    Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    appendChunk(png, "IHDR", header);
    appendChunk(png, "sRGB", Bytes{0});
    appendChunk(png, "IDAT", compressed(rowsOf(picture)));
    appendChunk(png, "IEND", {});
    return png;
}

Bytes icnsFile() {
    std::map<int, Bytes> pictures;
    Bytes content;
    for (const auto& [type, side] : members) {
        Bytes& picture = pictures[side];
        if (picture.empty()) {
            picture = pngOf(drawIcon(side));
        }
        append(content, type);
        append(content, static_cast<std::uint32_t>(picture.size()) + headerLength);
        append(content, picture);
    }
    Bytes file;
    append(file, "icns");
    append(file, static_cast<std::uint32_t>(content.size()) + headerLength);
    append(file, content);
    return file;
}

} // namespace pelistra::icon
