#include <memory>

#include "base/Paths.h"
#include "support/FakeDesktop.h"
#include "support/FakeFileManager.h"
#include "support/FakeFontCatalog.h"
#include "support/FileManagerContract.h"
#include "support/FontCatalogContract.h"
#include "support/MainQueueContract.h"
#include "support/ManualMainQueue.h"
#include "support/ManualTimers.h"
#include "support/PreviewPanelContract.h"
#include "support/ProcessInfoContract.h"
#include "support/RecordingCanvas.h"
#include "support/TextFieldContract.h"
#include "support/TextMeasureContract.h"
#include "support/TimerContract.h"

namespace vantrel::test {

class FakeFilesSubject {
public:
    FakeFilesSubject() {
        files_.addFolder("/", "work");
        files_.capacity = VolumeCapacity{.freeBytes = 1, .totalBytes = 2};
    }

    FileManager& files() { return files_; }
    std::string path(const std::string& name) const { return "/work/" + name; }
    void makeFile(const std::string& name, const std::string& content) { files_.write(path(name), content); }
    void makeFolder(const std::string& name) { files_.add(folderOf(name), folderEntry(lastOf(name))); }
    void makeLink(const std::string& name, const std::string& target) {
        DirectoryEntry link = fileEntry(lastOf(name), static_cast<std::int64_t>(target.size()));
        link.target = files_.targetOf(paths::appending(folderOf(name), target));
        link.attributes->link = LinkKind::symbolicLink;
        files_.add(folderOf(name), link);
    }

    std::shared_ptr<void> failing(std::errc reason) {
        files_.fault = [reason] { return std::make_error_code(reason); };
        return atTheEnd([this] { files_.fault = nullptr; });
    }
    std::shared_ptr<void> refusingToRead(const std::string& name) {
        files_.makeUnreadable(path(name));
        FakeFileManager::Item& work = *FakeFileManager::childNamed(files_.root(), "work");
        return atTheEnd([&work, name] { FakeFileManager::childNamed(work, name)->isReadable = true; });
    }

private:
    static std::shared_ptr<void> atTheEnd(std::function<void()> action) {
        return {nullptr, [action = std::move(action)](void*) { action(); }};
    }
    std::string folderOf(const std::string& name) const { return paths::deletingLastComponent(path(name)); }
    static std::string lastOf(const std::string& name) { return paths::lastComponent(name); }

    FakeFileManager files_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FileManagerContract, FakeFilesSubject);

class ManualMainQueueSubject {
public:
    MainQueue& queue() { return queue_; }
    void runAll() { queue_.runAll(); }

private:
    ManualMainQueue queue_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Manual, MainQueueContract, ManualMainQueueSubject);

class ManualTimersSubject {
public:
    TimerFactory& timers() { return timers_; }
    void turn() { timers_.tickAll(); }

private:
    ManualTimers timers_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Manual, TimerContract, ManualTimersSubject);

class RecordingCanvasSubject {
public:
    Canvas& canvas() { return canvas_; }
    Font font() const { return {"Menlo", 13}; }

private:
    RecordingCanvas canvas_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Recording, TextMeasureContract, RecordingCanvasSubject);

class FakeProcessInfoSubject {
public:
    FakeProcessInfoSubject() { process_.homes["bea"] = "/Users/bea"; }

    const ProcessInfo& process() const { return process_; }
    std::string currentFolder() const { return process_.currentDirectory; }
    void removeCurrentFolder() { process_.isCurrentDirectoryGone = true; }
    static std::string knownUser() { return "bea"; }

private:
    FakeProcessInfo process_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ProcessInfoContract, FakeProcessInfoSubject);

class FakeFontCatalogSubject {
public:
    FakeFontCatalogSubject() { fonts_.withoutBoldFace = {withoutBold()}; }

    const FontCatalog& fonts() const { return fonts_; }
    static std::string installed() { return "Menlo"; }
    static std::string withoutBold() { return "Thin"; }

private:
    FakeFontCatalog fonts_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FontCatalogContract, FakeFontCatalogSubject);

class FakeTextFieldSubject {
public:
    std::unique_ptr<TextField> makeField() { return fields_.makeTextField({}); }
    void type(const std::string& letters) { fields_.alive.back()->type(letters); }
    void press(Key key) { fields_.alive.back()->press(key); }

private:
    FakeTextFields fields_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, TextFieldContract, FakeTextFieldSubject);

class FakePreviewPanelSubject {
public:
    PreviewPanel& panel() { return panel_; }
    void press(Key key) { panel_.press(key); }

private:
    FakePreviewPanel panel_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PreviewPanelContract, FakePreviewPanelSubject);

}  // namespace vantrel::test
