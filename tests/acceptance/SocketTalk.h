#pragma once

#include "tests/acceptance/Transcript.h"

#include <functional>

/// Connects to the listener on this port as a new client, sends the lines and compares each whole reply.
/// `settle` is called after each reply. It must return when the service has processed its queue, so that the
/// results have the order of the lines.
void holdTalk(unsigned short port, const std::vector<CTalkLine>& lines, const std::function<void()>& settle);
