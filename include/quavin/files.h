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

/// A path: one text, kept exactly as it was given, UTF-8.
///
/// The separator is a backslash on every system, so that joined paths and messages are the same
/// everywhere; on POSIX systems it becomes "/" at the last moment before a system call. A "/" in a
/// path works there too, but parent_path() does not see it: build paths with append().
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
    /// Stores a copy of a narrow text, so that a call such as `FileUtils::createDir("models")`
    /// needs no Filepath of its own.
    /// @tparam Text an array of characters, a pointer that String takes, `std::string` or
    ///         `std::string_view`; never `nullptr` and never a class of the host's.
    template <class Text, class = std::enable_if_t<std::is_convertible_v<const Text&, String> &&
                                                   (!std::is_class_v<Text> ||
                                                    std::is_same_v<Text, std::string> ||
                                                    std::is_same_v<Text, std::string_view>)>>
    Filepath(const Text& path) : Filepath(String(path)) {}

    /// The text, ended by a zero byte; valid until the path changes.
    const unsigned char* c_str() const { return path_.c_str(); }
    /// Adds the separator and `other`, whatever either ends or begins with.
    Filepath& append(const Filepath& other);
    /// The text before the last separator; the path itself where there is none.
    Filepath parent_path() const;

private:
    String path_;
};

/// Operations on files and directories.
///
/// Stateless; calls may run on several threads at once. Operations that open or query a file read
/// the path up to its first zero byte and throw `std::range_error` ("bad conversion") where that is
/// not valid UTF-8. A directory where a file is expected counts as a file that cannot be opened.
class QUAVIN_API FileUtils {
public:
    /// Creates one directory; parents are not created, and an existing one is no error.
    /// @throws FileException "Path incorrect : " and the path, where a parent is missing. Every
    ///         other failure is ignored.
    static void createDir(const Filepath& path);
    /// Does nothing: the library never removes directories.
    static void deleteDir(const Filepath& path);
    /// Removes a file, never a directory.
    /// @throws FileException "Could not delete file : " and the path, where that fails.
    static void deleteFile(const Filepath& path);
    /// Whether a file or directory is there. False only where the parent directory exists and the
    /// entry does not; every other failure to look (a missing parent, no permission, the empty
    /// path) answers true.
    static bool pathExists(const Filepath& path);
    /// The size of a file in bytes.
    /// @throws FileException "File error!" where it cannot be opened.
    static uint64 getFileSize(const Filepath& path);
    /// Reads a whole file.
    /// @param path the file.
    /// @param size receives the number of bytes; unchanged where the file cannot be opened.
    /// @return the bytes, owned by the caller; null where the file cannot be opened. A file that
    ///         shrinks while it is read is filled up with zero bytes.
    static std::unique_ptr<char[]> readBinaryFileToBuffer(const Filepath& path, uint64& size);
    /// Reads a whole file into memory of the caller's.
    /// @param path the file.
    /// @param size receives the number of bytes; unchanged where the file cannot be opened.
    /// @param buffer as many bytes as the file has, as getFileSize() tells; the rest of a file that
    ///        shrinks while it is read is filled up with zero bytes.
    /// @throws FileException "File error!" where the file cannot be opened.
    static void readBinaryFileToAllocated(const Filepath& path, uint64& size, char* buffer);
    /// Opens a file for binary writing and empties it; others may read and write it meanwhile.
    /// @return the stream, also where opening failed: check it.
    static std::ofstream openFileToWriteBinaryData(const Filepath& path);
    /// Writes `length` bytes as the whole content of a file.
    /// @return always true, also where opening or writing failed.
    static bool writeBinaryDataToFile(const void* data, uint64 length, const Filepath& path);
    /// Writes `text` up to its first zero byte, in text mode, as the whole content of a file.
    /// @return always true, also where opening or writing failed.
    static bool writeStringToFile(const String& text, const Filepath& path);

    /// Extracts a tar archive that the host has made or checked itself. For one from outside use
    /// the form with a length: this one believes whatever the archive says.
    ///
    /// Takes plain ustar files ('0') and directories ('5') alone. Entries are written one by one,
    /// and nothing is removed after a failure. Not created are directories whose full path holds
    /// white space, and those whose parent is missing; a file that cannot be written is not
    /// noticed. The end is a header that begins with a zero byte.
    ///
    /// @param data the archive, whole and with its end.
    /// @param destination the directory to extract into, which must be there. On success it becomes
    ///        the full path of the archive's first directory entry, or the empty path where there
    ///        is none; unchanged otherwise.
    /// @return SUCCESS; TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for any other type of entry;
    ///         INVALID_ARGUMENTS for a null pointer; each without a text.
    /// @throws FileException as createDir() does.
    /// @throws std::range_error "bad conversion" for a path that is not UTF-8.
    static QuavinStatus extractTarball(unsigned char* data, Filepath& destination);
    /// Extracts a tar archive from outside. Nothing is read behind its length, and nothing is
    /// written outside the destination.
    ///
    /// Takes files and directories as GNU tar, bsdtar and Python write them: ustar, and the long
    /// names and sizes of GNU and pax. Missing directories are created. Names with "..", absolute
    /// ones, those with a drive letter and very long or deep ones are refused, and so is everything
    /// that would pass through a symbolic link on disk. The whole archive is checked before the
    /// first byte is written. A file that is there already is replaced once its successor is
    /// written. Contents are written from `data` without a copy.
    ///
    /// @param data the archive; what follows its end is ignored.
    /// @param length bytes at `data`.
    /// @param destination as above.
    /// @return SUCCESS; TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for links, devices and the
    ///         like; INVALID_ARGUMENTS for a null pointer, an empty destination, an archive that is
    ///         cut off or makes no sense, and for a name that is refused; FILE_ERROR where the
    ///         destination is no directory, a file or link is in the way, or writing fails (entries
    ///         written before stay); FAILURE for a destination that is not UTF-8, and where memory
    ///         runs out. The text names the entry. Throws nothing.
    static QuavinStatus extractTarball(const unsigned char* data, uint64 length,
                                       Filepath& destination);
    /// Decrypts a "secured_tar" in memory, extracts it as the form with a length does, and wipes
    /// what was decrypted.
    /// @param data an initialisation vector of 16 bytes and the AES-128-CBC ciphertext of the
    ///        archive; padding behind the archive's end is ignored.
    /// @param length bytes at `data`: a multiple of 16, at least 16 and less than 4 GiB.
    /// @param key sixteen bytes.
    /// @param destination as above.
    /// @return as above; INVALID_ARGUMENTS for a null pointer or another length; FILE_ERROR where
    ///         the cryptography fails. A wrong key gives bytes without meaning, and with them
    ///         TAR_CHECKSUM_MISMATCH. Throws nothing.
    static QuavinStatus extractSecuredTarball(const unsigned char* data, uint64 length,
                                              const unsigned char* key, Filepath& destination);
};

}  // namespace VelmoraQuavin
