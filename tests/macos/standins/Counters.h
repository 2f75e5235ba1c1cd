#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>

// What the stand-ins count for liveCounts().
namespace pelistra::testing::standins {

std::size_t liveStatusItems();
std::size_t liveMonitors();
std::size_t liveObservers();
std::size_t liveTimers();
std::size_t liveWindowControllers();
std::size_t liveCoreObjects();
std::size_t openLibraries();

// Forget what has been counted.
void forgetMonitors();
void forgetObserversAndTimers();

} // namespace pelistra::testing::standins
