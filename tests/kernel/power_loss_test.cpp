// Power that fails while scenes are saved, on a disk that forgets what was not flushed. The kernel's recorder
// (dm-log-writes) keeps every write; each is taken for the last one that the disk remembers.
#include <sys/mount.h>

#include <cstring>
#include <iostream>

#include "kernel/process.h"
#include "scenes/file_replacement.h"
#include "support/store.h"

namespace guest {
namespace {

namespace fs = std::filesystem;

constexpr char kDisk[] = "/dev/ram0", kRecord[] = "/dev/ram1", kAfterwards[] = "/dev/ram2";
constexpr std::size_t kSector = 512, kSectors = 5120;

/// Begins a sector of the record; what was written to the disk follows in the next ones. The recorder holds
/// back what no flush has reached: it comes behind a mark that is set before the flush.
struct Entry {
    std::uint64_t sector, sectors, flags, nameLength;
};
constexpr std::uint64_t kFlush = 1, kFua = 2, kDiscard = 4, kMark = 8;

class Mounted {
 public:
    Mounted(const char *device, fs::path folder) : folder_(std::move(folder)) {
        // Without these the file system writes by itself every few seconds.
        if (::mount(device, folder_.c_str(), "ext4", 0, "commit=300,noinit_itable") != 0)
            throw fs::filesystem_error("mount", device, {errno, std::generic_category()});
    }
    ~Mounted() { ::umount(folder_.c_str()); }
    Mounted(const Mounted &) = delete;
    Mounted &operator=(const Mounted &) = delete;

 private:
    fs::path folder_;
};

/// Paths below Documents and what the files hold; folders hold nothing.
using Content = std::map<std::string, std::string>;

class PowerLoss : public testing::Test, protected support::Store {
 protected:
    [[nodiscard]] Content content() const {
        Content found;
        for (const auto &entry : fs::recursive_directory_iterator(documents_.path()))
            found[entry.path()] = entry.is_directory() ? "" : support::contentOf(entry.path());
        return found;
    }

    /// Does these things one after the other on a recorded disk. What is there before and after each; `disk`:
    /// the disk's bytes before all of it.
    std::vector<Content> record(const std::vector<std::function<void()>> &steps, std::string &disk) const {
        run({"modprobe", "-a", "ext4", "dm-log-writes"});
        run({"modprobe", "brd", "rd_nr=3", "rd_size=" + std::to_string(kSectors * kSector / 1024)});
        run({"mke2fs", "-q", "-t", "ext4", "-b", "1024", "-J", "size=1", kDisk});
        {
            const Mounted mounted(kDisk, documents_.path());
            fs::remove(documents_.path() / "lost+found");
        }
        disk = support::contentOf(kDisk);

        run({"dmsetup", "create", "recorded", "--table",
             "0 " + std::to_string(kSectors) + " log-writes " + kDisk + " " + kRecord});
        std::vector<Content> stages;
        const Mounted mounted("/dev/mapper/recorded", documents_.path());
        stages.push_back(content());
        for (const auto &step : steps) {
            step();
            run({"dmsetup", "message", "recorded", "0", "mark", "done"});
            stages.push_back(content());
        }
        return stages;
    }

    /// What the next start finds on a disk that holds these bytes, once it has cleared away.
    [[nodiscard]] Content contentAfter(const std::string &disk) const {
        std::ofstream(kAfterwards, std::ios::binary) << disk;
        const Mounted mounted(kAfterwards, documents_.path());
        scenes::removeAbandonedFiles(documents_.path());
        return content();
    }
};

TEST_F(PowerLoss, LeavesTheOldOrTheNewScenesAndWhatIsDoneStaysDone) {
    const auto save = [](const std::string &centre, const char *room, std::size_t count) {
        PresetToFile(scenes::roomPath(centre, room), std::vector(count, support::scene(room)));
    };
    std::string disk;
    const auto stages = record(
        {[] { (void)obtenerPresets(); }, [] { crearDirectorioSiNoExiste("Presets/Norte"); },
         [&] { save("Norte", "Aula", 1); }, [&] { save("Norte", "Aula", 40); },
         [&] { save("Norte", "Aula", 2); }, [&] { save(scenes::kNoCentre, "Sala", 3); },
         [] { eliminarDirectorio("Presets/Sala.presets"); }, [] { eliminarDirectorio("Presets/Norte"); }},
        disk);
    run({"dmsetup", "remove", "recorded"});

    const std::string log = support::contentOf(kRecord);
    std::string durable = disk;  // as of the last flush
    Content found = stages.at(0);
    std::size_t done = 0;
    int replayed = 0;
    const auto replay = [&](const std::string &bytes) {
        ++replayed;
        Content after = contentAfter(bytes);
        EXPECT_TRUE(after == stages[done] || (done + 1 < stages.size() && after == stages[done + 1]))
            << "after step " << done << ", disk " << replayed;
        return after;
    };
    for (std::size_t at = kSector; done + 1 < stages.size();) {
        Entry entry{};
        ASSERT_LT(at + kSector, log.size());
        std::memcpy(&entry, log.data() + at, sizeof entry);
        at += kSector;
        ASSERT_EQ(entry.flags & kDiscard, 0U);
        if ((entry.flags & kMark) != 0) {
            ++done;
            EXPECT_TRUE(found == stages[done]) << "step " << done << " is not on the disk";
            EXPECT_FALSE(found == stages[done - 1]) << "step " << done << " did nothing";
            continue;
        }

        const std::size_t size = entry.sectors * kSector;
        std::string alone = durable;  // the disk has written this before what came earlier
        alone.replace(entry.sector * kSector, size, log, at, size);
        disk.replace(entry.sector * kSector, size, log, at, size);
        at += size;
        if (size > 0) {
            found = replay(disk);
            if (alone != disk) (void)replay(alone);
        }
        if ((entry.flags & (kFlush | kFua)) != 0) durable = disk;
    }
    std::cout << replayed << " disks replayed\n";
}

}  // namespace
}  // namespace guest
