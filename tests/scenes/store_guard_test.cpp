#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "store_files.h"

namespace {

using store_files::contentOf;
using store_files::printedBy;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

class StoreFolders : public store_files::StoreTest {
 protected:
    /// The line for a path under Documents whose characters need no encoding.
    [[nodiscard]] std::string urlLine(const std::string &path) const {
        return "file://" + documents.path().string() + "/" + path + "\n";
    }

    static std::string create(const std::string &path) {
        return printedBy([&] { crearDirectorioSiNoExiste(path); });
    }
    static std::string remove(const std::string &path) {
        return printedBy([&] { eliminarDirectorio(path); });
    }
};

TEST_F(StoreFolders, AreMadeOnceWithThoseAboveThem) {
    EXPECT_EQ(create("Presets/Norte/Planta 1"), urlLine("Presets/Norte/Planta%201"));
    EXPECT_TRUE(fs::is_directory(store() / "Norte" / "Planta 1"));
    EXPECT_EQ(create("Presets/Norte"), "");
    EXPECT_EQ(create("Presets/"), "") << "a path that callers use for the store";
    EXPECT_EQ(create("Presets/[Ñ] 50%?#"), urlLine("Presets/%5B%C3%91%5D%2050%25%3F%23"));
    EXPECT_TRUE(fs::is_directory(store() / "[Ñ] 50%?#"));
}

TEST_F(StoreFolders, ThatCannotBeMadeSayWhy) {
    store_files::write(store() / "ocupado", "");
    fs::create_symlink("../fuera", store() / "roto");
    for (const std::string &name : {std::string("ocupado"), std::string("ocupado/dentro"),
                                    std::string("roto"), std::string("roto/dentro"), std::string(300, 'x')}) {
        const std::string url = urlLine("Presets/" + name);
        EXPECT_THAT(create("Presets/" + name),
                    AllOf(StartsWith(url + "Unable to create directory "), EndsWith("\n")));
    }
    EXPECT_FALSE(fs::exists(documents.path() / "fuera"));
}

TEST_F(StoreFolders, AreRemovedWithAllThatTheyHold) {
    store_files::write(store() / "Norte" / "a" / "b.presets", "x");
    store_files::write(store() / "Norte" / ".oculto", "x");
    store_files::write(store() / "Sala.presets", "x");
    EXPECT_EQ(remove("Presets/Norte"), urlLine("Presets/Norte/"));
    EXPECT_EQ(remove("Presets/Sala.presets"), urlLine("Presets/Sala.presets"));
    EXPECT_TRUE(fs::is_empty(store()));
}

TEST_F(StoreFolders, ThatAreMissingCannotBeRemoved) {
    store_files::write(store() / "Sala.presets", "x");
    for (const char *path :
         {"Presets/Falta.presets", "Presets/Falta/Sala.presets", "Presets/Sala.presets/dentro"}) {
        EXPECT_THAT(remove(path), StartsWith(urlLine(path) + "Unable to create directory ")) << path;
    }
    EXPECT_EQ(contentOf(store() / "Sala.presets"), "x");
}

TEST_F(StoreFolders, ALinkIsRemovedAndItsTargetStays) {
    store_files::write(documents.path() / "fuera" / "f", "x");
    fs::create_directory_symlink("../fuera", store() / "enlace");
    EXPECT_EQ(remove("Presets/enlace"), urlLine("Presets/enlace/"));
    fs::create_symlink("falta", store() / "roto");
    EXPECT_EQ(remove("Presets/roto"), urlLine("Presets/roto"));
    EXPECT_TRUE(fs::is_empty(store()));
    EXPECT_EQ(contentOf(documents.path() / "fuera" / "f"), "x");
}

/// A store with a centre and a room, and things outside it.
class StoreGuard : public StoreFolders {
 protected:
    StoreGuard() {
        store_files::write(documents.path() / "carta.txt", "carta");
        store_files::write(documents.root() / "ajeno" / "f", "ajeno");
        store_files::write(store() / "Norte" / "Sala.presets", "sala");
        fs::create_directory_symlink("../../ajeno", store() / "salida");
        fs::create_directory_symlink("../../ajeno", store() / "Norte" / "salida");
        fs::create_directory_symlink("Norte", store() / "dentro");
        fs::create_directory_symlink("../ajeno", documents.path() / "otra");
        before_ = everything();
    }

    [[nodiscard]] std::vector<std::string> everything() const {
        std::vector<std::string> paths;
        for (const auto &entry : fs::recursive_directory_iterator(documents.root())) {
            paths.push_back(entry.path().string());
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    [[nodiscard]] bool untouched() const {
        return everything() == before_ && contentOf(documents.path() / "carta.txt") == "carta" &&
               contentOf(documents.root() / "ajeno" / "f") == "ajeno" &&
               contentOf(store() / "Norte" / "Sala.presets") == "sala";
    }

 private:
    std::vector<std::string> before_;
};

TEST_F(StoreGuard, NothingIsReachedByASecondName) {
    std::istringstream words(
        ". / .. ../ ../ajeno/f nuevo/../../ajeno ./Presets Presets// Presets/. Presets/.. "
        "Presets/../carta.txt Presets/../Presets Presets/../../ajeno Presets/Falta/../../carta.txt "
        "Presets/Norte/ Presets/./Norte Presets//Norte Presets/y/../Norte Presets/Norte/.. /Presets/Norte "
        "Presets/Norte/./Sala.presets Presets/Norte//Sala.presets Presets/Norte/x/../Sala.presets "
        "Presets/salida/f Presets/salida/nuevo Presets/dentro/salida/f otra/f");
    std::vector<std::string> names{std::istream_iterator<std::string>(words), {}};
    names.insert(names.end(), {"", std::string("Presets/Norte\0x", 15), std::string("Presets/\0", 9),
                               std::string("\0", 1)});
    for (const std::string &path : names) {
        EXPECT_THAT(remove(path), HasSubstr("\nUnable to create directory ")) << path;
        EXPECT_THAT(create(path), HasSubstr("\nUnable to create directory ")) << path;
        EXPECT_THAT(printedBy([&] { PresetToFile(path, {}); }), StartsWith("cant write...\n")) << path;
        ASSERT_TRUE(untouched()) << path;
    }
    for (const char *path : {"Presets", "Presets/"}) {
        EXPECT_THAT(remove(path), HasSubstr("\nUnable to create directory "));
        EXPECT_THAT(printedBy([&] { PresetToFile(path, {}); }), StartsWith("cant write...\n"));
        EXPECT_TRUE(untouched());
    }
}

TEST_F(StoreGuard, PlainNamesBesideTheStoreAreTaken) {
    EXPECT_EQ(printedBy([] { PresetToFile("suelto.presets", {}); }), "");
    EXPECT_TRUE(fs::exists(documents.path() / "suelto.presets"));
    EXPECT_EQ(remove("suelto.presets"), urlLine("suelto.presets"));
    EXPECT_EQ(create("Otra"), urlLine("Otra"));
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/dentro/x.presets", {}); }), "");
    EXPECT_TRUE(fs::exists(store() / "Norte" / "x.presets"));
    EXPECT_EQ(create("Presets/..."), urlLine("Presets/..."));
    EXPECT_EQ(remove("Presets/..."), urlLine("Presets/.../"));
}

TEST_F(StoreGuard, TheStoreMayItselfBeALink) {
    fs::rename(store(), documents.root() / "disco");
    fs::create_directory_symlink(documents.root() / "disco", store());
    EXPECT_EQ(create("Presets"), "");
    EXPECT_EQ(create("Presets/Sur"), urlLine("Presets/Sur"));
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/Sur/x.presets", {}); }), "");
    EXPECT_TRUE(fs::exists(documents.root() / "disco" / "Sur" / "x.presets"));
    EXPECT_EQ(remove("Presets/Norte"), urlLine("Presets/Norte/"));
    EXPECT_FALSE(fs::exists(documents.root() / "disco" / "Norte"));

    EXPECT_THAT(remove("Presets"), HasSubstr("\nUnable to create directory "));
    EXPECT_THAT(remove("Presets/salida/f"), HasSubstr("\nUnable to create directory "));
    EXPECT_TRUE(fs::is_symlink(store()));
    EXPECT_EQ(contentOf(documents.root() / "ajeno" / "f"), "ajeno");

    fs::rename(documents.root() / "disco", documents.root() / "desmontado");
    EXPECT_THAT(create("Presets"), HasSubstr("\nUnable to create directory "));
    EXPECT_THAT(printedBy([] { PresetToFile("Presets/x.presets", {}); }), StartsWith("cant write...\n"));
    EXPECT_FALSE(fs::exists(documents.root() / "disco"));
}

}  // namespace
