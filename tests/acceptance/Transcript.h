#pragma once

#include <string>
#include <vector>

/// One statement of a transcript: a word, what stands behind it, and for a file its lines.
struct CStatement {
    std::string word;
    std::string rest;
    std::string bytes; ///< content of a `file` statement
};

/// A transcript in tests/acceptance/transcripts: what goes in by a door, and what must come out.
///
///     # remarks
///     strategy 3 price=latest volume=500     a file strategy; see TranscriptTest.cpp for all words
///     file 3                                 a file for channel 3; its lines follow, each behind "> "
///     > 23,0,10.5,600000,100                 escapes: \t \r \\ \xHH; "file 3 gbk" turns the text into GBK
///     >> 24,0                                the same without a line feed behind it
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
