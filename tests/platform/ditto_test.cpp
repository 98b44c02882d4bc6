// The package's own ditto, run as the import runs it: by the shell, found as the last folder of the PATH.
#include <filesystem>

#include "platform/command_shell.h"
#include "surroundings.h"

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
        alter(stored, other);
    }
    void alter(const std::string &stored, const std::string &other) {
        std::string bytes = read("a.prs");
        for (auto at = bytes.find(stored); !stored.empty() && at != std::string::npos;
             at = bytes.find(stored, at + 1))
            bytes.replace(at, stored.size(), other);
        write("a.prs", bytes);
    }

    void expectRefused(const char *why) {
        EXPECT_NE(extract("a.prs"), 0) << why;
        EXPECT_FALSE(fs::exists(path("out"))) << "a refused archive writes nothing: " << why;
        EXPECT_FALSE(read("errors").empty()) << why;
    }

 private:
    platform::BashShell shell_{ZEL_TOOLS_FOLDER};
};

TEST_F(Ditto, ExtractsDifficultNamesOverwritesAndLeavesTheRest) {
    const std::string names[] = {"Álava norte/Aula ñ 1.presets", "nueva\nlinea.presets", "-x.presets"};
    for (const std::string &name : names) write("in/" + name, "scenes of " + name);
    write("out/-x.presets", "old");
    write("out/other.presets", "kept");
    ASSERT_EQ(shell("cd in && zip -qr '../a b[1].prs' ."), 0);
    EXPECT_EQ(extract("'a b[1].prs'"), 0);
    for (const std::string &name : names) EXPECT_EQ(read("out/" + name), "scenes of " + name);
    EXPECT_EQ(read("out/other.presets"), "kept");
    EXPECT_NE(read("listing").find("Álava norte/Aula ñ 1.presets"), std::string::npos);

    // As some programs for Windows zip; unzip warns of such a name.
    write("in/NorteXSala.presets", "zipped elsewhere");
    zip("NorteXSala", "Norte\\Sala");
    alter(std::string("PK\x01\x02\x1e\x03", 6), std::string("PK\x01\x02\x1e\x00", 6));
    EXPECT_EQ(extract("a.prs"), 0);
    EXPECT_EQ(read("out/Norte/Sala.presets"), "zipped elsewhere");
}

TEST_F(Ditto, RefusesMembersThatLeaveTheFolderAndDamagedOrProtectedArchives) {
    write("in/a/XX/evil", std::string(3000, 'b'));
    zip("a/XX", "a/..");
    expectRefused("a name upwards");
    zip("a/XX/evil", "/tmp/evil");
    expectRefused("an absolute name");
    zip("bbbbbbbb", "bbbbbxbb");
    expectRefused("a changed byte");
    zip();
    fs::resize_file(path("a.prs"), 1500);
    expectRefused("truncated");
    write("in/second", "b");
    ASSERT_EQ(shell("cd in && zip -q0r ../half a && zip -qP clave ../half second && mv ../half.zip ../a.prs"),
              0);
    expectRefused("one of two members protected");

    fs::create_symlink("/etc/hostname", path("in/link"));
    zip();
    expectRefused("a link");
    // Made on VMS, it says: a listing then does not show that the member is a link; extracting it does.
    zip(std::string("PK\x01\x02\x1e\x03", 6), std::string("PK\x01\x02\x1e\x02", 6));
    expectRefused("a hidden link");
}

TEST_F(Ditto, WritesNothingThroughALinkInTheFolder) {
    write("in/Norte/Sala.presets", "new");
    write("in/Suelta.presets", "new");
    write("mine/other.presets", "old");
    zip();

    fs::create_directory(path("out"));
    fs::create_symlink(path("mine"), path("out/Norte"));
    EXPECT_NE(extract("a.prs"), 0);
    EXPECT_FALSE(fs::exists(path("mine/Sala.presets")));
    EXPECT_FALSE(fs::exists(path("out/Suelta.presets"))) << "refused as a whole";

    fs::remove(path("out/Norte"));
    fs::create_symlink(path("mine/other.presets"), path("out/Suelta.presets"));
    EXPECT_EQ(extract("a.prs"), 0);
    EXPECT_EQ(read("mine/other.presets"), "old");
    EXPECT_EQ(read("out/Suelta.presets"), "new") << "replaced like any file of that name";
}

TEST_F(Ditto, LeavesTheFolderAsItWasWhenItCannotWriteAll) {
    write("out/first.presets", "old");
    write("in/first.presets", "new");
    write("in/second.presets", std::string(5000, 'b'));
    zip();
    EXPECT_NE(shell("ulimit -f 2; ditto -v -V -k -x a.prs out >/dev/null 2>&1"), 0);
    EXPECT_EQ(read("out/first.presets"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(path("out")), {}), 1);
}

}  // namespace
