#include "platform/Folders.h"
#include "platform/posix/PosixFolders.h"

#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace {

TEST(Folders, FollowTheEnvironmentAndIgnoreRelativePaths) {
    const TemporaryHome home; // gives the variables back
    EXPECT_EQ(homeFolder(), home.path());
    EXPECT_EQ(userConfigFolder(), home.path(".config/"));
    EXPECT_EQ(userDataFolder(), home.path(".local/share/"));
    setenv("XDG_CONFIG_HOME", "/opt/settings", 1);
    setenv("XDG_DATA_HOME", "somewhere", 1);
    EXPECT_EQ(userConfigFolder(), "/opt/settings/");
    EXPECT_EQ(userDataFolder(), home.path(".local/share/"));
}

TEST(Folders, WithoutAHomeVariableThePasswordEntryCounts) {
    const TemporaryHome home; // gives the variables back
    const passwd* const entry = getpwuid(getuid());
    const std::string wanted = entry != nullptr ? std::string(entry->pw_dir) + "/" : "";
    unsetenv("HOME");
    EXPECT_EQ(homeFolder(), wanted);
    setenv("HOME", "", 1);
    EXPECT_EQ(homeFolder(), wanted);
}

TEST(Folders, DocumentsAreWhereTheDesktopKeepsThem) {
    const TemporaryHome home; // gives the variables back
    const auto documentsFor = [&](const std::string& content) {
        home.write(".config/user-dirs.dirs", content);
        return documentsFolder();
    };
    EXPECT_EQ(documentsFolder(), home.path("Documents/"));
    EXPECT_EQ(documentsFor("# comment\nXDG_MUSIC_DIR=\"$HOME/Musik\"\n XDG_DOCUMENTS_DIR=\"$HOME/Eigene \\\"D\\\"\"\n"),
              home.path("Eigene \"D\"/"));
    EXPECT_EQ(documentsFor("XDG_DOCUMENTS_DIR=\"/first\"\nXDG_DOCUMENTS_DIR=\"/data/Documents/\"\n"),
              "/data/Documents/");
    EXPECT_EQ(documentsFor("XDG_DOCUMENTS_DIR=\"$HOME\"\n"), home.path());
    for (const char* const broken :
         {"XDG_DOCUMENTS_DIR=\"relative\"\n", "XDG_DOCUMENTS_DIR=\"$HOMEWARD/x\"\n", "\xff\n"})
        EXPECT_EQ(documentsFor(broken), home.path("Documents/")) << broken;
}

} // namespace
