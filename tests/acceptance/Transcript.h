#pragma once

#include <string>
#include <vector>

/// One line of a conversation: the bytes on the wire, without CR LF.
struct CTalkLine {
    enum class EWho { Client, Server, ServerCloses };
    EWho who;
    std::string bytes;
};

/// One statement of a transcript: a word and the rest of its line. A file or a conversation also has lines.
struct CStatement {
    std::string word;
    std::string rest;
    std::string bytes;           ///< content of a `file` statement
    std::vector<CTalkLine> talk; ///< lines of a `talk` statement
};

/// A transcript in tests/acceptance/transcripts: the input of a door and the expected results.
///
///     # remarks
///     strategy 3 price=latest volume=500     a file strategy; ServiceRun.cpp has all words
///     file 3                                 a file for channel 3; its lines follow, each after "> "
///     > 23,0,10.5,600000,100                 escapes: \t \r \\ \xHH; "file 3 gbk" converts the text to GBK
///     >> 24,0                                the same without a line feed at the end
///     talk 9                                 a conversation with the listener of socket strategy 9
///     C: user trader                         the client's line, with the escapes; "talk 9 gbk" sends GBK
///     S: +OK                                 the whole reply; texts are sent in GBK
///     S closes                               the server closes the connection
///     expect                                 the lines up to the next statement are the expected lines,
///     message ...                            as the host receives them
struct CTranscript {
    struct CStep {
        std::vector<CStatement> statements;
        std::vector<std::string> expected;
    };
    std::vector<CStep> steps;
};

/// Throws std::runtime_error with the line number if the transcript cannot be read.
CTranscript readTranscript(const std::string& path);
