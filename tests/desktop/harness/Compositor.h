#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {

class XClient;

// The programs that show the screen through pictures of its windows; Xfwm4 is a window manager too.
enum class Compositor : std::uint8_t { None, Picom, Xcompmgr, Xfwm4 };

inline constexpr std::array withAndWithoutCompositor{Compositor::None, Compositor::Picom};
inline constexpr std::array everyCompositor{Compositor::None, Compositor::Picom,
                                            Compositor::Xcompmgr, Compositor::Xfwm4};

// For the names of tests and for reports.
[[nodiscard]] std::string nameOf(Compositor compositor);
void PrintTo(Compositor compositor, std::ostream* stream);

// How it is started; empty for None. Without effects that take time.
[[nodiscard]] std::vector<std::string> commandOf(Compositor compositor);

// Whether some program composites the screen: it says so, and new windows of the root have pixels
// of their own.
[[nodiscard]] bool isComposited(XClient& client);

// A fixture whose tests run under one compositor after the other.
template <class Fixture>
class UnderCompositor : public Fixture, public ::testing::WithParamInterface<Compositor> {
protected:
    UnderCompositor() : Fixture({.compositor = GetParam()}) {}
};
inline std::string compositorTestName(const ::testing::TestParamInfo<Compositor>& info) {
    return nameOf(info.param);
}

} // namespace pelistra::testing
