#include "platform/AsyncEventQueues.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/OwnModule.h"
#include "platform/windows/Windows.h"
#include "platform/windows/WindowsText.h"
#include "tests/support/TemporaryHome.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(OwnModule, IsWhatTheSystemKnowsUnderTheHostsPath) {
    wchar_t program[MAX_PATH] = {};
    ASSERT_NE(GetModuleFileNameW(nullptr, program, MAX_PATH), 0u);
    std::string path = "unchanged";
    EXPECT_FALSE(findOwnModule("", path));
    EXPECT_FALSE(findOwnModule("C:\\no such module.clap", path));
    EXPECT_EQ(path, "unchanged");
    EXPECT_TRUE(findOwnModule(utf8Text(program), path));
    EXPECT_EQ(path, utf8Text(program));
}

TEST(WindowsFolders, AreTheUsersSpecialFolders) {
    const TemporaryHome home;
    EXPECT_EQ(userDataFolder(), home.path(".local/share/"));
    EXPECT_EQ(documentsFolder(), home.path("Documents/"));
}

TEST(WindowsFiles, AWriteProtectedFileStaysAndNothingIsLeftBesideIt) {
    const TestFolder folder;
    const std::string path = folder.path("kept.tvp");
    ASSERT_TRUE(replaceFile(path, "old"));
    ASSERT_TRUE(SetFileAttributesW(widePath(path).c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(replaceFile(path, "new"));
    EXPECT_FALSE(removeFile(path));
    std::string bytes;
    ASSERT_TRUE(readFile(path, 10, bytes));
    EXPECT_EQ(bytes, "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("")), {}), 1);
    ASSERT_TRUE(SetFileAttributesW(widePath(path).c_str(), FILE_ATTRIBUTE_NORMAL));
}

class Heard {
public:
    explicit Heard(AsyncEventQueue& wanted) : queue(wanted) { queue.event.add(this, &Heard::take); }
    void take(EventSender*) { values.push_back(queue.value()); }

    AsyncEventQueue& queue;
    std::vector<std::intptr_t> values;
};

void runMessageLoop() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}

TEST(WindowsAsyncEventQueue, TheHostsMessageLoopDeliversEachPostOnceAndNoneAfterTheEnd) {
    auto queue = createAsyncEventQueue();
    auto other = createAsyncEventQueue(); // of the same class
    Heard heard(*queue);
    EXPECT_TRUE(queue->post(1, -1));
    std::thread([&] { EXPECT_TRUE(queue->postRealtime(1, 2)); }).join();
    runMessageLoop();
    EXPECT_EQ(heard.values, (std::vector<std::intptr_t>{-1, 2}));
    queue->drain();
    EXPECT_TRUE(queue->post(1, 3));
    queue->drain();
    runMessageLoop();
    EXPECT_EQ(heard.values, (std::vector<std::intptr_t>{-1, 2, 3}));
    EXPECT_TRUE(queue->post(1, 4));
    queue.reset();
    runMessageLoop();
    EXPECT_TRUE(other->post(1, 5));
    other.reset();
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    EXPECT_FALSE(GetClassInfoExW(GetModuleHandleW(nullptr), L"TV_QueueWindow", &description))
        << "the class outlives its code";
}

} // namespace
