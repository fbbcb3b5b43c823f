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
    std::string m_strCause; ///< why not, in the local encoding; empty: there is no file
};

/// Opens a regular file for reading. Does not wait for the writer of a pipe.
COpenedFile openRegularFile(const std::string& path);

/// Renames a file to a name that nothing has yet, by looking first. Gives an error number; EEXIST: the name
/// is taken. For file systems that cannot do both in one step.
int renameAfterLooking(const std::string& from, const std::string& to);

/// Where a file lies after it should have been put aside.
struct CPutAside {
    bool m_bMoved = false;    ///< false: it is still where it was
    std::string m_strPath;    ///< where it lies now
    std::string m_strTrouble; ///< what went wrong on the way, in the local encoding; empty: nothing
};

/// Moves the file at `path` to `folder`, under the file name of `name` with the time behind it. The folder is
/// made if it is missing. If it is empty, or the file cannot be moved there, the file goes to the path `name`
/// with ".rejected-" and the time behind it. No other file is overwritten.
CPutAside putAside(const std::string& path, const std::string& name, const std::string& folder);

/// An order file that was taken away from its writer: it lies under its .tmp name, open for reading. It is
/// deleted with this object, however the reading ends, unless it was kept. One thread.
class CTakenFile {
public:
    /// `path` is where the file lies, `source` where its writer put it. The stream may be null.
    CTakenFile(std::string path, std::string source, CFileStream stream)
        : m_strPath(std::move(path)), m_strSource(std::move(source)), m_stream(std::move(stream)) {}
    ~CTakenFile();
    CTakenFile(CTakenFile&&) = delete;

    std::FILE* stream() const { return m_stream.get(); }
    /// Bytes of the file at this moment.
    long long size() const;

    /// Puts the file aside instead of deleting it, see putAside, under its writer's name with `mark` behind
    /// it. It is not deleted if that fails either.
    CPutAside keep(const std::string& mark, const std::string& folder);

private:
    const std::string m_strPath;
    const std::string m_strSource;
    CFileStream m_stream;
    bool m_bKept = false;
};

} // namespace TC
