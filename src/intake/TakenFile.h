#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace TC {

struct CFileCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using CFileStream = std::unique_ptr<std::FILE, CFileCloser>;

struct COpenedFile {
    CFileStream m_stream;   ///< null: it could not be opened
    std::string m_strCause; ///< why it could not be opened, in the local encoding; empty: there is no file
};

/// Opens a regular file for reading. Does not wait for the writer of a pipe.
COpenedFile openRegularFile(const std::string& path);

/// Checks that the new name is free and then renames the file. Returns 0 or an error number; EEXIST: the name
/// is taken. Only for file systems that cannot do both in one step.
int renameAfterLooking(const std::string& from, const std::string& to);

/// Result of moving a file aside.
struct CPutAside {
    bool m_bMoved = false;    ///< false: it is still where it was
    std::string m_strPath;    ///< where the file is now
    std::string m_strTrouble; ///< what failed, in the local encoding; empty: nothing failed
};

/// Moves the file at `path` to `folder`. Its new name is the file name of `name` plus the time. The folder is
/// created if it is missing. If `folder` is an empty text, or the file cannot be moved there, the file is
/// renamed to the path `name` plus ".rejected-" and the time. No other file is overwritten.
CPutAside putAside(const std::string& path, const std::string& name, const std::string& folder);

/// An order file that was taken away from its writer. It is under its .tmp name, open for reading. The
/// destructor deletes it, even if reading failed, unless it was kept. Not thread-safe.
class CTakenFile {
public:
    /// `path` is where the file is now, `source` is where its writer put it. The stream may be null.
    CTakenFile(std::string path, std::string source, CFileStream stream)
        : m_strPath(std::move(path)), m_strSource(std::move(source)), m_stream(std::move(stream)) {}
    ~CTakenFile();
    CTakenFile(CTakenFile&&) = delete;

    std::FILE* stream() const { return m_stream.get(); }
    /// Current size of the file in bytes.
    long long size() const;

    /// Moves the file aside instead of deleting it, see putAside. The name is its writer's name plus `mark`.
    /// If the move fails, the file is still not deleted.
    CPutAside keep(const std::string& mark, const std::string& folder);

private:
    const std::string m_strPath;
    const std::string m_strSource;
    CFileStream m_stream;
    bool m_bKept = false;
};

} // namespace TC
