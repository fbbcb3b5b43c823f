#pragma once

#include "tests/acceptance/Transcript.h"

#include <functional>

/// Holds a conversation with the listener on that port, as a client of its own, and compares each reply
/// whole. `settle` is called behind each reply: it returns when the service has worked off what is queued, so
/// that what comes out stands in the order of the lines.
void holdTalk(unsigned short port, const std::vector<CTalkLine>& lines, const std::function<void()>& settle);
