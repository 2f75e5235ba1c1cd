#pragma once

#include "platform/Image.h"

#include <gtest/gtest.h>

namespace pelistra::testing {

// What every maker of pictures promises. Backend:
//   Images& images();
//   std::unique_ptr<Bitmap> bitmap(width, height);     of that many pixels
template <class Backend>
class ImagesContract : public ::testing::Test {
protected:
    Backend backend_;
};

TYPED_TEST_SUITE_P(ImagesContract);

TYPED_TEST_P(ImagesContract, ASymbolCarriesItsDescription) {
    for (const char* name : {"chevron.right", "chevron.down", "chevron.up"}) {
        const auto symbol = this->backend_.images().systemSymbol(name, "描述");
        ASSERT_NE(symbol, nullptr) << name;
        EXPECT_EQ(symbol->accessibilityDescription, "描述");
        EXPECT_FALSE(symbol->isTemplate);
        EXPECT_GT(symbol->size().width, 0);
        EXPECT_GT(symbol->size().height, 0);
    }
}

TYPED_TEST_P(ImagesContract, AnUnknownSymbolIsNull) {
    EXPECT_EQ(this->backend_.images().systemSymbol("no.such.symbol", "描述"), nullptr);
    EXPECT_EQ(this->backend_.images().systemSymbol("", ""), nullptr);
}

TYPED_TEST_P(ImagesContract, ADrawnPictureHasTheSizeThatWasAskedFor) {
    for (const Size size : {Size{.width = 12, .height = 18}, Size{.width = 2.5, .height = 0.5}}) {
        const auto picture = this->backend_.images().drawn(
            size, [](Canvas&, const Canvas::DrawRect&) { return false; });
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->size(), size);
    }
}

TYPED_TEST_P(ImagesContract, ABitmapCountsPixelsAndItsPictureHasAnySize) {
    const auto bitmap = this->backend_.bitmap(44, 48);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->pixelWidth(), 44U);
    EXPECT_EQ(bitmap->pixelHeight(), 48U);
    for (const Size size : {Size{.width = 22, .height = 24}, Size{.width = 17.5, .height = 18}}) {
        const auto picture = bitmap->image(size);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->size(), size);
    }
}

REGISTER_TYPED_TEST_SUITE_P(ImagesContract, ASymbolCarriesItsDescription, AnUnknownSymbolIsNull,
                            ADrawnPictureHasTheSizeThatWasAskedFor,
                            ABitmapCountsPixelsAndItsPictureHasAnySize);

} // namespace pelistra::testing
