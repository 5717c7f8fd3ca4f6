#pragma once

/// @file
/// Paths and whole-file operations.

#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "quavin/export.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// A path: a UTF-8 string, kept exactly as given.
///
/// The separator is a backslash on every system, so that joined paths and messages are the same
/// everywhere; on POSIX systems it becomes "/" just before a system call. A "/" in a path also
/// works there, but parent_path() ignores it: build paths with append().
///
/// A value type.
class QUAVIN_API Filepath {
public:
    /// One backslash.
    static const String Separator;

    /// The empty path.
    Filepath();
    /// Stores a copy of `path`.
    Filepath(const String& path);
    /// Stores a copy of a narrow string, so that a call such as `FileUtils::createDir("models")`
    /// needs no explicit Filepath.
    /// @tparam Text a character array, a pointer that String accepts, `std::string` or
    ///         `std::string_view`; never `nullptr`, and never a class defined by the host.
    template <class Text, class = std::enable_if_t<std::is_convertible_v<const Text&, String> &&
                                                   (!std::is_class_v<Text> ||
                                                    std::is_same_v<Text, std::string> ||
                                                    std::is_same_v<Text, std::string_view>)>>
    Filepath(const Text& path) : Filepath(String(path)) {}

    /// The path, zero-terminated; valid until the path changes.
    const unsigned char* c_str() const { return path_.c_str(); }
    /// Appends the separator and `other`, even if this path already ends with a separator or
    /// `other` begins with one.
    Filepath& append(const Filepath& other);
    /// Everything before the last separator; the path itself if there is none.
    Filepath parent_path() const;

private:
    String path_;
};

/// Operations on files and directories.
///
/// Stateless; calls may run on several threads at once. Operations that open or query a file use
/// the path up to its first zero byte and throw `std::range_error` ("bad conversion") if that part
/// is not valid UTF-8. A directory in place of a file counts as a file that cannot be opened.
class QUAVIN_API FileUtils {
public:
    /// Creates one directory, but not its parents; it is not an error if it already exists.
    /// @throws FileException "Path incorrect : " and the path, if a parent is missing. All other
    ///         failures are ignored.
    static void createDir(const Filepath& path);
    /// Does nothing: the library never removes directories.
    static void deleteDir(const Filepath& path);
    /// Removes a file, never a directory.
    /// @throws FileException "Could not delete file : " and the path, if that fails.
    static void deleteFile(const Filepath& path);
    /// Whether a file or directory exists. False only if the parent directory exists and the entry
    /// does not; true whenever the check itself fails (a missing parent, no permission, the empty
    /// path).
    static bool pathExists(const Filepath& path);
    /// The size of a file in bytes.
    /// @throws FileException "File error!" if it cannot be opened.
    static uint64 getFileSize(const Filepath& path);
    /// Reads a whole file.
    /// @param path the file.
    /// @param size receives the number of bytes; unchanged if the file cannot be opened.
    /// @return the bytes, owned by the caller; null if the file cannot be opened. If the file
    ///         shrinks while it is read, the rest is zero bytes.
    static std::unique_ptr<char[]> readBinaryFileToBuffer(const Filepath& path, uint64& size);
    /// Reads a whole file into the caller's memory.
    /// @param path the file.
    /// @param size receives the number of bytes; unchanged if the file cannot be opened.
    /// @param buffer room for the whole file, whose size getFileSize() returns. If the file shrinks
    ///        while it is read, the rest is filled with zero bytes.
    /// @throws FileException "File error!" if the file cannot be opened.
    static void readBinaryFileToAllocated(const Filepath& path, uint64& size, char* buffer);
    /// Opens a file for binary writing and truncates it; other programs can still read and write
    /// it.
    /// @return the stream, even if opening failed: check it.
    static std::ofstream openFileToWriteBinaryData(const Filepath& path);
    /// Writes `length` bytes to a file, replacing its content.
    /// @return always true, even if opening or writing failed.
    static bool writeBinaryDataToFile(const void* data, uint64 length, const Filepath& path);
    /// Writes `text` up to its first zero byte to a file, in text mode, replacing its content.
    /// @return always true, even if opening or writing failed.
    static bool writeStringToFile(const String& text, const Filepath& path);

    /// Extracts a tar archive that the host created or checked itself. For untrusted archives use
    /// the overload with a length: this one trusts whatever the archive says.
    ///
    /// Accepts only plain ustar files ('0') and directories ('5'). Entries are written one by one,
    /// and nothing is removed after a failure. Directories whose full path contains white space, or
    /// whose parent is missing, are not created; failing to write a file goes unnoticed. A header
    /// that begins with a zero byte ends the archive.
    ///
    /// @param data the complete archive, including its end.
    /// @param destination the directory to extract into, which must exist. On success it becomes
    ///        the full path of the archive's first directory entry, or the empty path if there is
    ///        none; otherwise it is unchanged.
    /// @return SUCCESS; TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for any other type of entry;
    ///         INVALID_ARGUMENTS for a null pointer; all with an empty description.
    /// @throws FileException as createDir() does.
    /// @throws std::range_error "bad conversion" for a path that is not UTF-8.
    static QuavinStatus extractTarball(unsigned char* data, Filepath& destination);
    /// Extracts an untrusted tar archive. Nothing is read beyond its length or written outside the
    /// destination.
    ///
    /// Accepts files and directories as written by GNU tar, bsdtar and Python: ustar, plus the long
    /// names and sizes of GNU and pax. Missing directories are created. Names that are absolute,
    /// very long or very deep, or that contain ".." or a drive letter, are refused, as is anything
    /// that would pass through a symbolic link on disk. The whole archive is checked before the
    /// first byte is written. An existing file is replaced once the new one is complete. Contents
    /// are written straight from `data`, without copying.
    ///
    /// @param data the archive; anything after its end is ignored.
    /// @param length bytes at `data`.
    /// @param destination as above.
    /// @return SUCCESS; TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for links, devices and the
    ///         like; INVALID_ARGUMENTS for a null pointer, an empty destination, a truncated or
    ///         malformed archive, or a refused name; FILE_ERROR if the destination is not a
    ///         directory, a file or link is in the way, or writing fails (entries already written
    ///         stay); FAILURE for a destination that is not UTF-8, or if memory runs out. The
    ///         description names the entry. Never throws.
    static QuavinStatus extractTarball(const unsigned char* data, uint64 length,
                                       Filepath& destination);
    /// Decrypts a "secured_tar" in memory, extracts it like the overload with a length, and wipes
    /// the decrypted data.
    /// @param data a 16-byte initialisation vector, then the AES-128-CBC ciphertext of the archive;
    ///        padding after the archive's end is ignored.
    /// @param length bytes at `data`: a multiple of 16, at least 16 and less than 4 GiB.
    /// @param key sixteen bytes.
    /// @param destination as above.
    /// @return as above; INVALID_ARGUMENTS for a null pointer or any other length; FILE_ERROR if
    ///         the cryptography fails. A wrong key yields meaningless bytes and hence
    ///         TAR_CHECKSUM_MISMATCH. Never throws.
    static QuavinStatus extractSecuredTarball(const unsigned char* data, uint64 length,
                                              const unsigned char* key, Filepath& destination);
};

}  // namespace VelmoraQuavin
