// Our ditto with an archive whose members' names, kinds and makers come from the input: nothing changes
// outside the folder, nothing is written through a link, a refusal leaves all as it was, and no link and no
// rest stays.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "fuzz/input.h"

namespace {

namespace fs = std::filesystem;

/// Taken away when the fuzzer ends.
struct Sandbox {
    Sandbox() {
        std::string name = (fs::temp_directory_path() / "ditto-XXXXXX").string();
        fuzz::promise(::mkdtemp(name.data()) != nullptr, "there is room for a folder");
        root = name;
    }
    ~Sandbox() { fs::remove_all(root); }
    Sandbox(const Sandbox &) = delete;
    Sandbox &operator=(const Sandbox &) = delete;
    fs::path root;
};

/// The folder is some levels down, so that a few ".." are still seen here.
constexpr char kOut[] = "a/b/out";
/// What a link holds; members of a maker that knows no links are files with it.
constexpr char kLinkTarget[] = "../../../m";

void write(const fs::path &path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

void furnish(const fs::path &root) {
    for (const auto &entry : fs::directory_iterator(root)) fs::remove_all(entry);
    fs::create_directories(root / kOut / "d");
    fs::create_directory(root / "m");
    write(root / "m/f", "mine");
    write(root / kOut / "f", "old");
    fs::create_symlink(kLinkTarget, root / kOut / "l");
    fs::create_symlink("../../../m/f", root / kOut / "k");
}

/// What is there below `root`, path by path: a folder's "/", a link's target behind ">", a file's content.
std::map<std::string, std::string> contentOf(const fs::path &root) {
    std::map<std::string, std::string> found;
    for (const auto &entry : fs::recursive_directory_iterator(root)) {
        std::string &content =
            found[fs::relative(entry.path().parent_path(), root) / entry.path().filename()];
        if (entry.is_symlink()) {
            content = ">" + fs::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            content = "/";
        } else {
            std::ifstream file(entry.path(), std::ios::binary);
            content.assign(std::istreambuf_iterator<char>(file), {});
        }
    }
    return found;
}

std::uint32_t crc32(std::string_view text) {
    std::uint32_t crc = ~0U;
    for (const char letter : text) {
        crc ^= static_cast<std::uint8_t>(letter);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

/// The lowest bytes of each value, little-endian.
std::string packed(std::initializer_list<std::pair<std::size_t, int>> values) {
    std::string bytes;
    for (auto [value, size] : values)
        for (; size > 0; --size, value >>= 8) bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

/// An absolute name would be seen nowhere: it leads into the sandbox.
std::string nameFrom(fuzz::Input &input, const fs::path &root) {
    const auto bytes = input.bytes(input.byte() % 24U);
    std::string name(bytes.begin(), bytes.end());
    return (name.starts_with('/') ? root.string() : "") + name;
}

/// Members that are stored as they are.
std::string archiveFrom(fuzz::Input &input, const fs::path &root) {
    std::string members;
    std::string directory;
    std::size_t count = 0;
    for (; count < 4 && !input.isUsedUp(); ++count) {
        const std::uint8_t kind = input.byte();
        const std::string name = nameFrom(input, root);
        const std::string nameBefore = (kind & 1) != 0 ? nameFrom(input, root) : name;
        const std::string content = (kind & 2) != 0 ? kLinkTarget : "new";
        const std::size_t type = (kind & 2) != 0 ? 0120777U : (kind & 4) != 0 ? 040755U : 0100644U;
        const std::size_t maker = (kind & 8) != 0 ? input.byte() : 3U;  // 3: Unix
        const std::size_t flags = (kind & 16) != 0 ? 0x800U : 0U;       // the name is UTF-8
        const std::string common = packed({{10, 2},
                                           {flags, 2},
                                           {0, 2},
                                           {0x58210000, 4},
                                           {crc32(content), 4},
                                           {content.size(), 4},
                                           {content.size(), 4}});
        const std::size_t offset = members.size();
        members.append(packed({{0x04034B50, 4}})).append(common);
        members.append(packed({{nameBefore.size(), 2}, {0, 2}})).append(nameBefore).append(content);
        directory.append(packed({{0x02014B50, 4}, {30, 1}, {maker, 1}})).append(common);
        directory.append(packed({{name.size(), 2}, {0, 8}, {type << 16, 4}, {offset, 4}})).append(name);
    }
    const std::string end = packed({{0x06054B50, 4},
                                    {0, 4},
                                    {count, 2},
                                    {count, 2},
                                    {directory.size(), 4},
                                    {members.size(), 4},
                                    {0, 2}});
    return members.append(directory).append(end);
}

/// Its exit status.
int ditto(const std::string &archive, const std::string &folder) {
    std::string words[] = {ZEL_DITTO, "-v", "-V", "-k", "-x", archive, folder};
    std::vector<char *> arguments;
    for (std::string &word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&quiet, stream, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    int status = -1;
    fuzz::promise(::posix_spawn(&child, ZEL_DITTO, &quiet, nullptr, arguments.data(), environ) == 0,
                  "ditto starts");
    posix_spawn_file_actions_destroy(&quiet);
    // The fuzzer's clock interrupts the wait.
    const auto waited = TEMP_FAILURE_RETRY(::waitpid(child, &status, 0));
    fuzz::promise(waited == child && WIFEXITED(status), "ditto ends by itself");
    return WEXITSTATUS(status);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const Sandbox sandbox;
    fuzz::Input input(data, size);
    furnish(sandbox.root);
    write(sandbox.root / "archive", archiveFrom(input, sandbox.root));
    const auto before = contentOf(sandbox.root);
    const int status = ditto(sandbox.root / "archive", sandbox.root / kOut);
    fuzz::promise(status == 0 || status == 1, "done or not done");
    const auto after = contentOf(sandbox.root);
    if (status != 0) fuzz::promise(after == before, "a refusal leaves all as it was");

    for (const auto &[path, content] : before)
        fuzz::promise(path.starts_with(std::string(kOut) + "/")
                          ? after.contains(path)
                          : after.contains(path) && after.at(path) == content,
                      "nothing goes, and nothing outside the folder changes");
    for (const auto &[path, content] : after) {
        if (before.contains(path) && before.at(path) == content) continue;
        fuzz::promise(path.starts_with(std::string(kOut) + "/"), "nothing is written outside the folder");
        fuzz::promise(
            content == "new" || content == kLinkTarget || (content == "/" && !before.contains(path)),
            "a member is a file or a new folder, and no rest stays");
    }
    return 0;
}
