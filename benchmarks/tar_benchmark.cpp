// Compares the extraction of tar archives with plain writes and with other programs. Needs `tar`
// and `bsdtar`, and a directory on a memory-backed file system.
//
//     quavin_tar_benchmark DIRECTORY [ROUNDS]
//
// Programs that are measured; they only extract:
//
//     quavin_tar_benchmark --extract-mapped FILE DIR
//     quavin_tar_benchmark --extract-read FILE DIR

#include <fcntl.h>
#include <quavin/quavin.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "rounds.h"

using namespace VelmoraQuavin;
namespace fs = std::filesystem;

namespace {

constexpr int kLargeFiles = 4;
constexpr std::size_t kLargeFile = std::size_t{64} << 20;
constexpr int kDirectories = 100;
constexpr int kFilesEach = 50;
constexpr std::size_t kSmallFile = 4096;

void require(bool fine, const std::string& what) {
    if (!fine) {
        throw std::runtime_error(what);
    }
}

void extract(const unsigned char* data, uint64 size, const std::string& directory) {
    Filepath destination(directory);
    const QuavinStatus status = FileUtils::extractTarball(data, size, destination);
    require(status.ok(), status.getDescription().str());
}

// The file's own memory: nothing is copied before it is written.
int extractMapped(const std::string& archive, const std::string& directory) {
    const int file = ::open(archive.c_str(), O_RDONLY | O_CLOEXEC);
    require(file >= 0, "cannot open " + archive);
    const auto size = static_cast<std::size_t>(::lseek(file, 0, SEEK_END));
    void* const data = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    require(data != MAP_FAILED, "cannot map " + archive);
    extract(static_cast<const unsigned char*>(data), size, directory);
    return 0;
}

int extractRead(const std::string& archive, const std::string& directory) {
    uint64 size = 0;
    const auto data = FileUtils::readBinaryFileToBuffer(Filepath(archive), size);
    require(data != nullptr, "cannot read " + archive);
    extract(reinterpret_cast<const unsigned char*>(data.get()), size, directory);
    return 0;
}

void run(std::vector<std::string> command) {
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

// A new empty directory for every measurement; the old one goes outside of the measured time.
std::string emptied(const fs::path& directory) {
    fs::remove_all(directory);
    fs::create_directory(directory);
    return directory.string();
}

void writePlainly(const unsigned char* data, const std::string& directory) {
    for (int i = 0; i < kLargeFiles; ++i) {
        const std::string name = directory + "/large" + std::to_string(i);
        const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        require(file >= 0, "cannot make " + name);
        std::size_t done = 0;
        while (done < kLargeFile) {
            const ssize_t count = ::write(file, data + done, kLargeFile - done);
            require(count > 0, "cannot write " + name);
            done += static_cast<std::size_t>(count);
        }
        require(::close(file) == 0, "cannot close " + name);
    }
}

void compareLargeFiles(const fs::path& place, int rounds) {
    const fs::path source = emptied(place / "source");
    const std::string content(kLargeFile, 'x');
    for (int i = 0; i < kLargeFiles; ++i) {
        std::ofstream(source / ("large" + std::to_string(i))) << content;
    }
    const std::string archive = place / "large.tar";
    run({"tar", "--format=ustar", "-cf", archive, "-C", source, "."});
    fs::remove_all(source);
    uint64 size = 0;
    const auto data = FileUtils::readBinaryFileToBuffer(Filepath(archive), size);
    require(data != nullptr, "cannot read " + archive);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(data.get());
    fs::remove(archive);

    const auto measure = [&place](auto work) {
        const std::string directory = emptied(place / "target");
        return benchmark::timeOf([&] { work(directory); });
    };
    const auto plainly = [&] {
        return measure([&](const std::string& directory) { writePlainly(bytes, directory); });
    };
    benchmark::compare("extract 4 files of 64 MiB",
                       {{"open, write, close", plainly},
                        {"open, write, close again (noise)", plainly},
                        {"extractTarball",
                         [&] {
                             return measure([&](const std::string& directory) {
                                 extract(bytes, size, directory);
                             });
                         }}},
                       rounds);
    fs::remove_all(place / "target");
}

void makeSmallFiles(const fs::path& root) {
    const std::string content(kSmallFile, 'y');
    for (int d = 0; d < kDirectories; ++d) {
        const fs::path directory = root / ("directory" + std::to_string(d));
        fs::create_directories(directory);
        for (int f = 0; f < kFilesEach; ++f) {
            std::ofstream(directory / ("file" + std::to_string(f))) << content;
        }
    }
}

void compareSmallFiles(const fs::path& place, const std::string& self, int rounds) {
    const fs::path source = emptied(place / "source");
    makeSmallFiles(source / "package");
    const std::string archive = place / "small.tar";
    run({"tar", "--format=ustar", "-cf", archive, "-C", source, "package"});
    fs::remove_all(source);

    const auto measure = [&](const std::vector<std::string>& command) {
        return [&place, command] {
            std::vector<std::string> whole = command;
            whole.push_back(emptied(place / "target"));
            return benchmark::timeOf([&] { run(whole); });
        };
    };
    const auto gnu = measure({"tar", "-xf", archive, "-C"});
    benchmark::compare(
        "extract 5,000 files of 4 KiB, whole process",
        {{"GNU tar", gnu},
         {"GNU tar again (noise)", gnu},
         {"bsdtar", measure({"bsdtar", "-xf", archive, "-C"})},
         {"extractTarball, archive mapped", measure({self, "--extract-mapped", archive})},
         {"extractTarball, archive read", measure({self, "--extract-read", archive})}},
        rounds);
    fs::remove_all(place / "target");
    fs::remove(archive);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 4 && std::strcmp(argv[1], "--extract-mapped") == 0) {
            return extractMapped(argv[2], argv[3]);
        }
        if (argc == 4 && std::strcmp(argv[1], "--extract-read") == 0) {
            return extractRead(argv[2], argv[3]);
        }
        require(argc >= 2, "usage: quavin_tar_benchmark DIRECTORY [ROUNDS]");
        const fs::path place = fs::path(argv[1]) / "quavin-tar-benchmark";
        emptied(place);
        const int rounds = argc > 2 ? std::stoi(argv[2]) : 21;
        compareLargeFiles(place, rounds);
        compareSmallFiles(place, fs::canonical("/proc/self/exe"), rounds);
        fs::remove_all(place);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
