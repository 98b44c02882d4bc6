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

    /// Zips what is in "in" and replaces `stored` by `hostile`, of the same length, in the member names.
    void zipWithRenamedMember(const std::string &stored, const std::string &hostile) {
        ASSERT_EQ(stored.size(), hostile.size());
        ASSERT_EQ(shell("cd in && zip -qr ../a.prs ."), 0);
        std::string bytes = read(path("a.prs"));
        for (auto at = bytes.find(stored); at != std::string::npos; at = bytes.find(stored, at))
            bytes.replace(at, stored.size(), hostile);
        ASSERT_NE(bytes.find(hostile), std::string::npos);
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
    for (const std::string name : {"Álava norte/Aula ñ 1.presets", "nueva\nlinea.presets", "-x.presets"}) {
        fs::create_directories(fs::path(path("in/" + name)).parent_path());
        write(path("in/" + name), "scenes of " + name);
    }
    fs::create_directories(path("out"));
    write(path("out/-x.presets"), "old");
    write(path("out/other.presets"), "kept");
    ASSERT_EQ(shell("cd in && zip -qr '../a b[1].prs' ."), 0);

    EXPECT_EQ(extract("'a b[1].prs'"), 0);

    for (const std::string name : {"Álava norte/Aula ñ 1.presets", "nueva\nlinea.presets", "-x.presets"})
        EXPECT_EQ(read(path("out/" + name)), "scenes of " + name);
    EXPECT_EQ(read(path("out/other.presets")), "kept");
    EXPECT_NE(read(path("listing")).find("Álava norte/Aula ñ 1.presets"), std::string::npos)
        << "verbose: each file is told";
}

TEST_F(Ditto, RefusesAnAbsoluteMember) {
    write(path("in/good"), "x");
    write(path("in/Xtmp-zel-absolute"), "x");
    zipWithRenamedMember("Xtmp-zel-absolute", "/tmp/zel-absolute");
    expectRefused();
}

TEST_F(Ditto, RefusesAMemberThatClimbsOutOfTheFolder) {
    fs::create_directories(path("in/a/XX"));
    write(path("in/a/XX/evil"), "x");
    zipWithRenamedMember("a/XX", "a/..");
    expectRefused();
}

TEST_F(Ditto, RefusesALink) {
    write(path("in/good"), "x");
    fs::create_symlink("/etc/hostname", path("in/link"));
    ASSERT_EQ(shell("cd in && zip -qry ../a.prs ."), 0);
    expectRefused();
}

// A listing of such a member does not show that it is a link; extracting it does.
TEST_F(Ditto, RefusesALinkThatClaimsAnotherSystem) {
    fs::create_symlink("/etc/hostname", path("in/link"));
    ASSERT_EQ(shell("cd in && zip -qy ../a.prs link"), 0);
    std::string bytes = read(path("a.prs"));
    const auto central = bytes.find("PK\x01\x02");
    ASSERT_NE(central, std::string::npos);
    bytes[central + 5] = 2;  // "version made by", high byte: VMS
    write(path("a.prs"), bytes);
    expectRefused();
}

TEST_F(Ditto, RefusesDamagedAndProtectedArchivesBeforeWriting) {
    write(path("in/first"), std::string(3000, 'a'));
    write(path("in/second"), std::string(3000, 'b'));
    ASSERT_EQ(shell("cd in && zip -q0r ../whole.zip . && zip -qr -P clave ../protected.zip ."), 0);
    const std::string whole = read(path("whole.zip"));
    std::string flipped = whole;
    flipped[flipped.rfind("bbbb")] = 'x';

    const std::pair<const char *, std::string> rows[] = {
        {"truncated", whole.substr(0, whole.size() / 2)},
        {"one byte changed in the last member", flipped},
        {"no archive at all", "[]"},
        {"empty file", ""},
        {"protected", read(path("protected.zip"))},
    };
    for (const auto &[name, bytes] : rows) {
        SCOPED_TRACE(name);
        write(path("a.prs"), bytes);
        expectRefused();
    }
    fs::remove(path("a.prs"));
    SCOPED_TRACE("missing");
    expectRefused();
}

TEST_F(Ditto, UnderstandsOneFormOnly) {
    write(path("in/file"), "x");
    ASSERT_EQ(shell("cd in && zip -qr ../a.prs ."), 0);
    for (const char *arguments :
         {"", "-x -k a.prs out", "-v -V -k -x a.prs", "-v -V -k -x a b.prs out", "in out"})
        EXPECT_EQ(shell(std::string("ditto ") + arguments + " 2>errors"), 64) << arguments;
    EXPECT_FALSE(fs::exists(path("out")));
}

}  // namespace
