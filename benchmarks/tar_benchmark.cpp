// Compares the extraction of archives with plain writes and with other programs.
//
//     quavin_tar_benchmark [ROUNDS [FOLDER]]
//     quavin_tar_benchmark --extract|--extract-mapped ARCHIVE DIRECTORY
//
// Works in memory: in FOLDER, which must be on a tmpfs, or in one that it finds. The second form is
// the small program that the first one starts and measures. Needs GNU tar and bsdtar.

#include <fcntl.h>
#include <quavin/quavin.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "memory_folder.h"
#include "rounds.h"

using namespace VelmoraQuavin;
namespace fs = std::filesystem;

namespace {

constexpr int kLargeFiles = 4;
constexpr std::size_t kLargeSize = std::size_t{64} << 20;
constexpr int kDirectories = 100;
constexpr int kFilesInEach = 50;
constexpr std::size_t kSmallSize = 4096;
// A tree, its archive and the extracted files exist at the same time.
constexpr std::uint64_t kRoom = std::uint64_t{4} * kLargeFiles * kLargeSize;

using Command = std::vector<std::string>;

void require(bool fine, const std::string& what) {
    if (!fine) {
        throw std::runtime_error(what);
    }
}

struct Archive {
    explicit Archive(const std::string& path)
        : content(FileUtils::readBinaryFileToBuffer(Filepath(path), size)) {
        require(content != nullptr, "cannot read " + path);
    }
    const unsigned char* bytes() const {
        return reinterpret_cast<const unsigned char*>(content.get());
    }

    uint64 size = 0;
    std::unique_ptr<char[]> content;
};

void extract(const unsigned char* bytes, uint64 size, const std::string& directory) {
    Filepath destination(directory);
    const QuavinStatus status = FileUtils::extractTarball(bytes, size, destination);
    require(status.ok(), status.getDescription().str());
}

void extract(const Archive& archive, const std::string& directory) {
    extract(archive.bytes(), archive.size, directory);
}

// From the mapped file: nothing is copied before it is written.
void extractMapped(const std::string& path, const std::string& directory) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    require(file >= 0, "cannot open " + path);
    const auto size = static_cast<std::size_t>(::lseek(file, 0, SEEK_END));
    void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    require(memory != MAP_FAILED, "cannot map " + path);
    extract(static_cast<const unsigned char*>(memory), size, directory);
}

void run(Command command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    pid_t process = 0;
    require(posix_spawnp(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0,
            "cannot start " + command[0]);
    int status = 0;
    require(waitpid(process, &status, 0) == process && status == 0, command[0] + " failed");
}

// A fresh directory for every measurement; the old one is removed outside the measured time.
std::string emptied(const fs::path& directory) {
    fs::remove_all(directory);
    fs::create_directory(directory);
    return directory.string();
}

// No two files are alike, so that a comparison detects mix-ups.
void makeTree(const fs::path& root, int directories, int filesInEach, std::size_t size) {
    for (int directory = 0; directory < directories; ++directory) {
        const fs::path folder = root / "package" / std::to_string(directory);
        fs::create_directories(folder);
        for (int file = 0; file < filesInEach; ++file) {
            std::string content(size, static_cast<char>('A' + file));
            content.replace(0, 3, std::to_string(100 + directory));
            std::ofstream(folder / std::to_string(file), std::ios::binary) << content;
        }
    }
}

std::string makeArchive(const fs::path& place, const fs::path& tree) {
    std::string archive = place / "archive.tar";
    run({"tar", "--format=ustar", "--sort=name", "-cf", archive, "-C", tree, "package"});
    return archive;
}

void writePlainly(const Archive& archive, const std::string& directory) {
    // After the headers of two directories and the first file.
    const unsigned char* next = archive.bytes() + 3 * std::size_t{512};
    for (int index = 0; index < kLargeFiles; ++index, next += kLargeSize + 512) {
        const std::string name = directory + "/" + std::to_string(index);
        const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        require(file >= 0, "cannot create " + name);
        require(::write(file, next, kLargeSize) == static_cast<ssize_t>(kLargeSize),
                "cannot write " + name);
        require(::close(file) == 0, "cannot close " + name);
    }
}

void compareLargeFiles(const fs::path& place, int rounds) {
    const fs::path tree = place / "large";
    const fs::path target = place / "target";
    makeTree(tree, 1, kLargeFiles, kLargeSize);
    const std::string path = makeArchive(place, tree);
    const Archive archive(path);
    fs::remove(path);
    extract(archive, emptied(target));
    run({"diff", "-r", tree, target});
    writePlainly(archive, emptied(target));
    run({"diff", "-r", tree / "package" / "0", target});
    fs::remove_all(tree);

    const auto measure = [&](void (*work)(const Archive&, const std::string&)) {
        return [&target, &archive, work] {
            const std::string directory = emptied(target);
            return benchmark::timeOf([&] { work(archive, directory); });
        };
    };
    benchmark::compare("extract 4 files of 64 MiB",
                       {{"open, write, close", measure(writePlainly)},
                        {"open, write, close again (noise)", measure(writePlainly)},
                        {"extractTarball", measure(extract)}},
                       rounds);
    fs::remove_all(target);
}

void compareSmallFiles(const fs::path& place, int rounds) {
    const fs::path tree = place / "small";
    const fs::path target = place / "target";
    makeTree(tree, kDirectories, kFilesInEach, kSmallSize);
    const std::string archive = makeArchive(place, tree);
    const std::string self = fs::canonical("/proc/self/exe");
    const Command ours{self, "--extract", archive};
    const Command mapped{self, "--extract-mapped", archive};
    Command once = ours;
    once.push_back(emptied(target));
    run(once);
    run({"diff", "-r", tree, target});

    const auto measure = [&target](const Command& command) {
        return [&target, command] {
            Command whole = command;
            whole.push_back(emptied(target));
            return benchmark::timeOf([&] { run(whole); });
        };
    };
    const Command gnu{"tar", "-xf", archive, "-C"};
    benchmark::compare("extract 5,000 files of 4 KiB, whole process",
                       {{"tar -xf", measure(gnu)},
                        {"tar -xf again (noise)", measure(gnu)},
                        {"bsdtar -xf", measure({"bsdtar", "-xf", archive, "-C"})},
                        {"extractTarball, archive mapped", measure(mapped)},
                        {"extractTarball, archive read", measure(ours)},
                        {"  its start and end alone", measure({self, "--start"})},
                        {"  these and reading the archive", measure({self, "--read", archive})}},
                       rounds);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::string first = argc > 1 ? argv[1] : "51";
        if (first == "--start") {
            return 0;
        }
        if (first == "--read" && argc > 2) {
            return Archive(argv[2]).size > 0 ? 0 : 1;
        }
        if (first == "--extract-mapped" && argc == 4) {
            extractMapped(argv[2], argv[3]);
            return 0;
        }
        if (first == "--extract" && argc == 4) {
            extract(Archive(argv[2]), argv[3]);
            return 0;
        }
        const benchmark::MemoryFolder folder(argc > 2 ? argv[2] : "", kRoom);
        std::cout << "in " << folder.path().parent_path().string() << std::endl;
        compareLargeFiles(folder.path(), std::stoi(first));
        compareSmallFiles(folder.path(), std::stoi(first));
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
