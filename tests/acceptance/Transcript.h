#pragma once

#include <string>
#include <vector>

/// One line of a conversation, in the bytes of the wire without CR LF.
struct CTalkLine {
    enum class EWho { Client, Server, ServerCloses };
    EWho who;
    std::string bytes;
};

/// One statement of a transcript: a word, what stands behind it, and for a file or a conversation its lines.
struct CStatement {
    std::string word;
    std::string rest;
    std::string bytes;           ///< content of a `file` statement
    std::vector<CTalkLine> talk; ///< lines of a `talk` statement
};

/// A transcript in tests/acceptance/transcripts: what goes in by a door, and what must come out.
///
///     # remarks
///     strategy 3 price=latest volume=500     a file strategy; see Road.cpp for all words
///     file 3                                 a file for channel 3; its lines follow, each behind "> "
///     > 23,0,10.5,600000,100                 escapes: \t \r \\ \xHH; "file 3 gbk" turns the text into GBK
///     >> 24,0                                the same without a line feed behind it
///     talk 9                                 a conversation with the listener of socket strategy 9
///     C: user trader                         the client's line, with the escapes; "talk 9 gbk" sends GBK
///     S: +OK                                 the reply, whole; texts go over the wire in GBK
///     S closes                               the server closes the connection
///     expect                                 every line from here to the next statement block is what
///     reaches the host message ...
struct CTranscript {
    struct CStep {
        std::vector<CStatement> statements;
        std::vector<std::string> expected;
    };
    std::vector<CStep> steps;
};

/// Throws std::runtime_error with the line's number where the transcript cannot be read.
CTranscript readTranscript(const std::string& path);
