// The package's own ditto, run as the import runs it: by the shell, found as the last folder of the PATH.
#include "platform/command_shell.h"
#include "surroundings.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class Ditto : public FolderTest {
 protected:
    void SetUp() override {
        FolderTest::SetUp();
        if (shell("command -v zip unzip >/dev/null") != 0) GTEST_SKIP() << "zip and unzip are not installed";
        fs::create_directories(path("in"));
    }

    std::int32_t shell(const std::string &line) { return shell_.run({"cd '" + path() + "' && " + line}); }

    std::int32_t extract(const std::string &archive) {
        return shell("ditto -v -V -k -x " + archive + " out >listing 2>errors");
    }

    /// Zips "in" as a.prs, with `stored` replaced by `other`, of the same length, in the archive's bytes.
    void zip(const std::string &stored = {}, const std::string &other = {}) {
        fs::remove(path("a.prs"));
        ASSERT_EQ(shell("cd in && zip -qry0 ../a.prs ."), 0);
        std::string bytes = read(path("a.prs"));
        for (auto at = bytes.find(stored); !stored.empty() && at != std::string::npos;
             at = bytes.find(stored, at + 1))
            bytes.replace(at, stored.size(), other);
        write(path("a.prs"), bytes);
    }

    void expectRefused() {
        EXPECT_NE(extract("a.prs"), 0);
        EXPECT_FALSE(fs::exists(path("out"))) << "a refused archive writes nothing";
        EXPECT_FALSE(read(path("errors")).empty());
    }

 private:
    platform::BashShell shell_{ZEL_TOOLS_FOLDER};
};

TEST_F(Ditto, ExtractsDifficultNamesOverwritesAndLeavesTheRest) {
    const std::string names[] = {"Álava norte/Aula ñ 1.presets", "nueva\nlinea.presets", "-x.presets"};
    for (const std::string &name : names) {
        fs::create_directories(fs::path(path("in/" + name)).parent_path());
        write(path("in/" + name), "scenes of " + name);
    }
    fs::create_directories(path("out"));
    write(path("out/-x.presets"), "old");
    write(path("out/other.presets"), "kept");
    ASSERT_EQ(shell("cd in && zip -qr '../a b[1].prs' ."), 0);

    EXPECT_EQ(extract("'a b[1].prs'"), 0);

    for (const std::string &name : names) EXPECT_EQ(read(path("out/" + name)), "scenes of " + name);
    EXPECT_EQ(read(path("out/other.presets")), "kept");
    EXPECT_NE(read(path("listing")).find("Álava norte/Aula ñ 1.presets"), std::string::npos);
}

TEST_F(Ditto, RefusesMembersThatLeaveTheFolder) {
    fs::create_directories(path("in/a/XX"));
    write(path("in/a/XX/evil"), "x");
    zip("a/XX", "a/..");
    expectRefused();
    zip("a/XX/evil", "/tmp/evil");
    expectRefused();

    fs::create_symlink("/etc/hostname", path("in/link"));
    zip();
    expectRefused();
    // Made on VMS, it says: a listing then does not show that the member is a link; extracting it does.
    zip(std::string("PK\x01\x02\x1e\x03", 6), std::string("PK\x01\x02\x1e\x02", 6));
    expectRefused();
}

TEST_F(Ditto, TakesAnArchiveThatUnzipOnlyWarnsAbout) {
    write(path("in/NorteXSala.presets"), "x");
    zip("NorteXSala", "Norte\\Sala");
    // Folders are told from names by "/" on every system but this one.
    zip(std::string("PK\x01\x02\x1e\x03", 6), std::string("PK\x01\x02\x1e\x00", 6));
    EXPECT_EQ(extract("a.prs"), 0);
}

TEST_F(Ditto, WritesNothingThroughALinkInTheFolder) {
    fs::create_directories(path("in/Norte"));
    fs::create_directories(path("mine"));
    fs::create_directories(path("out"));
    write(path("in/Norte/Sala.presets"), "new");
    write(path("in/Suelta.presets"), "new");
    write(path("mine/other.presets"), "old");
    zip();

    fs::create_symlink(path("mine"), path("out/Norte"));
    EXPECT_NE(extract("a.prs"), 0);
    EXPECT_FALSE(fs::exists(path("mine/Sala.presets")));
    EXPECT_FALSE(fs::exists(path("out/Suelta.presets"))) << "refused as a whole";

    fs::remove(path("out/Norte"));
    fs::create_symlink(path("mine/other.presets"), path("out/Suelta.presets"));
    EXPECT_EQ(extract("a.prs"), 0);
    EXPECT_EQ(read(path("mine/other.presets")), "old");
    EXPECT_FALSE(fs::is_symlink(path("out/Suelta.presets"))) << "replaced like any file of that name";
    EXPECT_EQ(read(path("out/Suelta.presets")), "new");
}

TEST_F(Ditto, LeavesTheFolderAsItWasWhenItCannotWriteAll) {
    fs::create_directories(path("out"));
    write(path("out/first.presets"), "old");
    write(path("in/first.presets"), "new");
    write(path("in/second.presets"), std::string(5000, 'b'));
    zip();
    EXPECT_NE(shell("ulimit -f 2; ditto -v -V -k -x a.prs out >/dev/null 2>&1"), 0);
    EXPECT_EQ(read(path("out/first.presets")), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(path("out")), {}), 1);
}

TEST_F(Ditto, RefusesDamagedAndProtectedArchivesBeforeWriting) {
    write(path("in/first"), std::string(3000, 'a'));
    write(path("in/second"), std::string(3000, 'b'));
    ASSERT_EQ(shell("cd in && zip -q0r ../whole . && zip -q ../half f* && zip -qP clave ../half s*"), 0);
    const std::string whole = read(path("whole.zip"));
    std::string flipped = whole;
    flipped[flipped.rfind("bbbb")] = 'x';

    const std::pair<const char *, std::string> rows[] = {
        {"truncated", whole.substr(0, whole.size() / 2)},
        {"one byte changed in the last member", flipped},
        {"no archive at all", "[]"},
        {"one of two members protected", read(path("half.zip"))},
    };
    for (const auto &[name, bytes] : rows) {
        SCOPED_TRACE(name);
        write(path("a.prs"), bytes);
        expectRefused();
    }
}

}  // namespace
