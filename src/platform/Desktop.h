#pragma once

namespace vantrel {

class Application;
class FileManager;
class FontCatalog;
class MainQueue;
class PreviewPanel;
class ProcessInfo;
class StandardOutput;
class TextFieldFactory;
class TimerFactory;
class Workspace;

/// All ports in one hand, as the program's entry plugged them in. Borrowed: they outlive every view. Each
/// says who may call it; most are for the main thread only.
struct Desktop {
    Application& application;
    FileManager& files;
    FontCatalog& fonts;
    MainQueue& mainQueue;
    PreviewPanel& preview;
    ProcessInfo& process;
    StandardOutput& output;
    TextFieldFactory& textFields;
    TimerFactory& timers;
    Workspace& workspace;
};

}  // namespace vantrel
