#pragma once

namespace pelistra {

class Application;
class EventPosting;
class GlobalClicks;
class Images;
class LogSink;
class LoginItem;
class MainQueue;
class Panels;
class PrivateLibrary;
class RunningApplications;
class ScreenCapture;
class Screens;
class StatusBar;
class UserDefaults;
class WindowList;
class Windows;

// Everything that the core asks of an operating system, handed down from main. All of it outlives
// the core's objects.
struct Platform {
    Application& application;
    MainQueue& mainQueue;
    LogSink& log;
    UserDefaults& defaults;
    StatusBar& statusBar;
    Screens& screens;
    Images& images;
    WindowList& windowList;
    PrivateLibrary& privateLibrary;
    RunningApplications& runningApplications;
    ScreenCapture& screenCapture;
    EventPosting& eventPosting;
    Windows& windows;
    Panels& panels;
    GlobalClicks& globalClicks;
    LoginItem& loginItem;
};

} // namespace pelistra
