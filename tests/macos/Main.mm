#include "tests/macos/standins/Attachments.h"
#include "tests/macos/standins/World.h"

#import <AppKit/AppKit.h>

#include <gtest/gtest.h>

using namespace pelistra::testing::standins;

namespace {

// Every test starts with a fresh world and its own autorelease pool, so that what it leaves behind
// can be counted.
class FreshWorld final : public ::testing::EmptyTestEventListener {
  public:
    void OnTestStart(const ::testing::TestInfo&) override {
        pool_ = [[NSAutoreleasePool alloc] init];
        resetWorld();
    }
    void OnTestEnd(const ::testing::TestInfo&) override { [pool_ drain]; }

  private:
    NSAutoreleasePool* pool_ = nil;
};

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!::testing::GTEST_FLAG(list_tests)) {
        installBlocks();
        const NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
        // GNUstep takes no other font for what the first one lacks.
        [[NSUserDefaults standardUserDefaults] registerDefaults:@{
            @"NSFont" : @"NotoSansCJKsc-Regular",
            @"NSBoldFont" : @"NotoSansCJKsc-Bold",
        }];
        [NSApplication sharedApplication];
        installAttachments();
        installRecording();
        [pool drain];
        ::testing::UnitTest::GetInstance()->listeners().Append(new FreshWorld);
    }
    return RUN_ALL_TESTS();
}
